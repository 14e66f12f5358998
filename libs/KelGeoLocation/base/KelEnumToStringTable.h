// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELENUMTOSTRINGTABLE_H
#define KELENUMTOSTRINGTABLE_H

#include <KelGeoLocationGlobal.h>

#include <QHash>
#include <QLatin1String>
#include <QString>
#include <QStringList>

/// Translates between the values of a bit-flag enumeration E and the keys under which they are stored.
///
/// A text is a comma list of keys, one per set bit, for example "stroke, fill". Reading ignores case, blanks
/// around a key and unknown keys; writing uses the first key that was inserted for a bit, in its original case.
///
/// There is one table per enumeration (see KelEnumWrapper::enumToStringTable()); it is filled once and only read
/// afterwards, so that any number of threads may use it.
template<class E>
class KELGEOLOCATION_TEMPLATE_EXPORT KelEnumToStringTable
{
public:
    /// Makes @p key readable as @p value. A later key that differs at most in case replaces the earlier meaning;
    /// of several keys of one value the first is the one that is written.
    void insert(const QString &key, E value)
    {
        m_values.insert(key.toLower(), value);
        if (!m_keys.contains(static_cast<int>(value)))
            m_keys.insert(static_cast<int>(value), key);
    }

    /// All known keys of the comma list @p text combined. An empty text gives 0, unknown words count as 0.
    [[nodiscard]] E decodeCSV(const QString &text) const
    {
        int result = 0;
        const QStringList parts = text.split(QLatin1Char(','), Qt::KeepEmptyParts, Qt::CaseSensitive);
        for (const QString &part : parts)
            result |= static_cast<int>(m_values.value(part.trimmed().toLower(), m_fallbackValue));
        return static_cast<E>(result);
    }

    /// The keys of the set bits, lowest bit first; an empty text for a bit without a key.
    /// Nothing for 0 and for negative values. Combinations are never looked up as a whole.
    [[nodiscard]] QStringList encodeAsList(E value) const { return encodeAsList(static_cast<int>(value)); }

    /// The same for a plain number, which need not lie in the range of the enumeration.
    [[nodiscard]] QStringList encodeAsList(int value) const
    {
        QStringList result;
        if (value <= 0)
            return result;
        for (unsigned int bit = 1, rest = static_cast<unsigned int>(value); rest != 0; bit <<= 1) {
            if (rest & bit)
                result.append(m_keys.value(static_cast<int>(bit), m_fallbackText));
            rest &= ~bit;
        }
        return result;
    }

    /// The keys of the set bits joined with ", "; an empty text for 0 and for negative values.
    // Deliberate: a bit without a key leaves an empty entry behind ("stroke, fill, "), which is lost on reading.
    [[nodiscard]] QString encodeCSV(E value) const { return encodeCSV(static_cast<int>(value)); }

    /// The same for a plain number, which need not lie in the range of the enumeration.
    [[nodiscard]] QString encodeCSV(int value) const
    {
        const QStringList keys = encodeAsList(value);
        return keys.isEmpty() ? m_fallbackText : keys.join(QLatin1String(", "));
    }

private:
    QHash<QString, E> m_values;
    QHash<int, QString> m_keys;
    QString m_fallbackText;
    E m_fallbackValue{};
};

#endif
