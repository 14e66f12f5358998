// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELENUMWRAPPER_H
#define KELENUMWRAPPER_H

#include <KelEnumToStringTable.h>
#include <KelGeoLocationGlobal.h>

#include <QDebug>
#include <QHashFunctions>
#include <QMutex>
#include <QMutexLocker>
#include <QString>

#include <atomic>

/// A value of a bit-flag enumeration E together with its text form, a comma list of keys.
///
/// E is a plain enumeration whose values are single bits or combinations of bits. A subclass adds the keys by
/// overriding fillTable(), and a constructor that reads the text form:
/// @code
/// KelGPXTrackShape::KelGPXTrackShape(const QString &text) { setValue(enumToStringTable()->decodeCSV(text)); }
/// @endcode
///
/// The value is kept as a 32-bit integer; 0 means "nothing" and is not valid. Values are ordered by that integer.
/// The class is a template with static state and therefore visible from every library: there is one key table per
/// enumeration in the whole process.
template<class E>
class KELGEOLOCATION_TEMPLATE_EXPORT KelEnumWrapper
{
public:
    KelEnumWrapper() = default;
    /// Implicit on purpose: an enumerator is a value.
    KelEnumWrapper(E value) noexcept
        : m_value(static_cast<int>(value))
    {
    }
    /// From a combination of bits, taken as it is.
    explicit KelEnumWrapper(int value) noexcept
        : m_value(value)
    {
    }
    KelEnumWrapper(const KelEnumWrapper &other) = default;
    KelEnumWrapper(KelEnumWrapper &&other) noexcept = default;
    KelEnumWrapper &operator=(const KelEnumWrapper &other) = default;
    KelEnumWrapper &operator=(KelEnumWrapper &&other) noexcept = default;
    virtual ~KelEnumWrapper() = default;

    /// Values are ordered by their integers.
    [[nodiscard]] virtual bool operator<(const KelEnumWrapper &other) const { return m_value < other.m_value; }
    /// Values are ordered by their integers.
    [[nodiscard]] virtual bool operator<=(const KelEnumWrapper &other) const { return m_value <= other.m_value; }
    /// Values are ordered by their integers.
    [[nodiscard]] virtual bool operator>(const KelEnumWrapper &other) const { return m_value > other.m_value; }
    /// Exactly the same bits.
    [[nodiscard]] virtual bool operator==(const KelEnumWrapper &other) const { return m_value == other.m_value; }
    /// Exactly these bits.
    [[nodiscard]] virtual bool operator==(E other) const { return m_value == static_cast<int>(other); }
    /// Any bit differs.
    [[nodiscard]] virtual bool operator!=(const KelEnumWrapper &other) const { return m_value != other.m_value; }
    /// Any bit differs.
    [[nodiscard]] virtual bool operator!=(E other) const { return m_value != static_cast<int>(other); }

    /// Sets the bits of @p other, too.
    virtual KelEnumWrapper &operator|=(const KelEnumWrapper &other) { return setBits(m_value | other.m_value); }
    /// Sets the bits of @p other, too.
    virtual KelEnumWrapper &operator|=(E other) { return setBits(m_value | static_cast<int>(other)); }
    /// Keeps only the bits that @p other has as well.
    virtual KelEnumWrapper &operator&=(const KelEnumWrapper &other) { return setBits(m_value & other.m_value); }
    /// Keeps only the bits that @p other has as well.
    virtual KelEnumWrapper &operator&=(E other) { return setBits(m_value & static_cast<int>(other)); }

    /// The common bits as a number, 0 for none: `if (options & DisplayFill)`.
    [[nodiscard]] virtual int operator&(const KelEnumWrapper &other) const { return m_value & other.m_value; }
    /// The bits of both as a number.
    [[nodiscard]] virtual int operator|(const KelEnumWrapper &other) const { return m_value | other.m_value; }

    /// Clears the bits of @p other.
    virtual void exclude(const KelEnumWrapper &other) { m_value &= ~other.m_value; }
    /// Clears the bits of @p other.
    virtual void exclude(E other) { m_value &= ~static_cast<int>(other); }
    /// Sets the bits of @p other, too.
    virtual void expandTo(const KelEnumWrapper &other) { m_value |= other.m_value; }
    /// Sets the bits of @p other, too.
    virtual void expandTo(E other) { m_value |= static_cast<int>(other); }
    /// Keeps only the bits of @p other.
    virtual void reduceTo(E other) { m_value &= static_cast<int>(other); }
    /// The bits that this value and @p other have in common; the object stays as it is.
    [[nodiscard]] virtual int reducedTo(E other) const { return m_value & static_cast<int>(other); }

    /// Whether any bit is set.
    [[nodiscard]] virtual bool isValid() const { return m_value != 0; }

    /// Inserts the keys of the enumeration into @p table. Called once per enumeration, by the first object that
    /// needs the table.
    virtual void fillTable(KelEnumToStringTable<E> *table) const = 0;

    /// The table of all keys of E, made on first use by any thread and kept until the process ends.
    /// Must not be called by the constructor of a class that does not implement fillTable() yet.
    [[nodiscard]] const KelEnumToStringTable<E> *enumToStringTable() const
    {
        static std::atomic<const KelEnumToStringTable<E> *> published{nullptr};
        static QMutex mutex;

        if (const auto *table = published.load(std::memory_order_acquire))
            return table;
        const QMutexLocker locker(&mutex);
        if (const auto *table = published.load(std::memory_order_relaxed))
            return table;
        auto *table = new KelEnumToStringTable<E>();
        fillTable(table);
        published.store(table, std::memory_order_release);
        return table;
    }

    /// The value as a comma list of keys (KelEnumToStringTable::encodeCSV()).
    [[nodiscard]] QString encode() const { return enumToStringTable()->encodeCSV(m_value); }

    /// The bits as the enumeration; need not be one of its enumerators.
    [[nodiscard]] E value() const noexcept { return static_cast<E>(m_value); }
    /// The bits as a number.
    [[nodiscard]] int toInt() const noexcept { return m_value; }
    /// Replaces all bits.
    void setValue(E value) noexcept { m_value = static_cast<int>(value); }
    /// Replaces all bits by those of a number, unchecked.
    void setValue(int value) noexcept { m_value = value; }

private:
    KelEnumWrapper &setBits(int value)
    {
        m_value = value;
        return *this;
    }

    int m_value = 0;
};

/// Writes the keys, "disk, star6", or the number of a value that has none.
template<class E>
QDebug operator<<(QDebug debug, const KelEnumWrapper<E> &value)
{
    const QDebugStateSaver saver(debug);
    const QString keys = value.encode();
    debug.nospace().noquote() << (keys.isEmpty() ? QString::number(value.toInt()) : keys);
    return debug;
}

/// Equal values have equal hashes.
template<class E>
[[nodiscard]] size_t qHash(const KelEnumWrapper<E> &value, size_t seed = 0) noexcept
{
    return ::qHash(value.toInt(), seed);
}

#endif
