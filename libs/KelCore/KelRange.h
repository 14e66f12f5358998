// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELRANGE_H
#define KELRANGE_H

#include <KelCoreGlobal.h>

#include <QDateTime>
#include <QtGlobal>

#include <type_traits>

/// A closed interval [min, max] between two values of one type; both ends belong to it.
///
/// T is `int` (rows, columns and indices, see KelIntRange), an angle, or QDateTime. It needs a default constructor and
/// the six comparisons, and for center() either `+` and `/ double`, or to be an integer or a QDateTime.
///
/// A range of two default values is *unset*: it holds nothing yet, and expandTo() replaces it by a single value. A
/// default angle is the invalid one and a default date-time is null, so for these no real range is mistaken for it. For
/// `int` the genuine range [0, 0] counts as unset too, which only expandTo() cares about.
///
/// Nothing is checked or put in order: `min` may exceed `max`, see isValid(). The operations call one another through
/// their virtual slots, so a subclass that overrides the point test contains(const T &) changes contains(range) and
/// intersects() with it.
template<class T>
class KELCORE_TEMPLATE_EXPORT KelRange
{
public:
    /// The unset range.
    KelRange() = default;
    /// Both bounds as they are, in order or not.
    KelRange(const T &min, const T &max)
        : m_min(min)
        , m_max(max)
    {
    }

    // The destructor is virtual because ranges are overridden and passed as KelRange<T> &; the others go with it.
    virtual ~KelRange() = default;
    KelRange(const KelRange &) = default;
    KelRange(KelRange &&) = default;
    KelRange &operator=(const KelRange &) = default;
    KelRange &operator=(KelRange &&) = default;

    // The order of the virtual operations is part of the interface.

    /// Both bounds are equal, as T compares (angles: within their tolerance).
    [[nodiscard]] virtual bool operator==(const KelRange<T> &other) const;

    /// Either bound differs.
    [[nodiscard]] virtual bool operator!=(const KelRange<T> &other) const;

    /// Order by `min`, and by `max` where the `min` are equal. Valid ranges sort before invalid ones; an invalid range
    /// is never less than anything.
    [[nodiscard]] virtual bool operator<(const KelRange<T> &other) const;

    /// Moves the nearer bound so that the range reaches the value. An unset range becomes [value, value].
    virtual void expandTo(const T &value);

    /// The middle, (min + max) / 2. Truncated toward zero for integers; for QDateTime to the millisecond, in the time
    /// zone of `min`.
    [[nodiscard]] virtual T center() const;

    /// True if max >= min.
    [[nodiscard]] virtual bool isValid() const;

    /// True if min <= value <= max.
    [[nodiscard]] virtual bool contains(const T &value) const;

    /// True if both bounds of the other range lie in this one.
    [[nodiscard]] virtual bool contains(const KelRange<T> &other) const;

    /// True if a bound of either range lies in the other one; touching ranges intersect.
    [[nodiscard]] virtual bool intersects(const KelRange<T> &other) const;

    /// The lower bound.
    [[nodiscard]] const T &min() const noexcept
    {
        return m_min;
    }

    /// The upper bound.
    [[nodiscard]] const T &max() const noexcept
    {
        return m_max;
    }

    /// Sets one bound and leaves the other one alone.
    void setMin(const T &min)
    {
        m_min = min;
    }

    /// \copydoc setMin
    void setMax(const T &max)
    {
        m_max = max;
    }

    /// True if both bounds equal the default value of T.
    [[nodiscard]] bool isUnset() const
    {
        return m_min == T{} && m_max == T{};
    }

private:
    T m_min{};
    T m_max{};
};

template<class T>
bool KelRange<T>::operator==(const KelRange<T> &other) const
{
    return m_min == other.m_min && m_max == other.m_max;
}

template<class T>
bool KelRange<T>::operator!=(const KelRange<T> &other) const
{
    return m_min != other.m_min || m_max != other.m_max;
}

template<class T>
bool KelRange<T>::operator<(const KelRange<T> &other) const
{
    if (!isValid())
        return false;
    if (!other.isValid())
        return true;
    if (m_min == other.m_min)
        return m_max < other.m_max;
    return m_min < other.m_min;
}

template<class T>
void KelRange<T>::expandTo(const T &value)
{
    if (isUnset()) {
        m_min = value;
        m_max = value;
    } else if (value > m_max) {
        m_max = value;
    } else if (value < m_min) {
        m_min = value;
    }
}

template<class T>
T KelRange<T>::center() const
{
    if constexpr (std::is_integral_v<T>)
        return static_cast<T>((static_cast<qint64>(m_min) + static_cast<qint64>(m_max)) / 2);
    else if constexpr (std::is_same_v<T, QDateTime>)
        return m_min.addMSecs(m_min.msecsTo(m_max) / 2);
    else
        return T((m_min + m_max) / 2.0);
}

template<class T>
bool KelRange<T>::isValid() const
{
    return m_max >= m_min;
}

template<class T>
bool KelRange<T>::contains(const T &value) const
{
    return m_min <= value && m_max >= value;
}

template<class T>
bool KelRange<T>::contains(const KelRange<T> &other) const
{
    return contains(other.m_min) && contains(other.m_max);
}

template<class T>
bool KelRange<T>::intersects(const KelRange<T> &other) const
{
    return contains(other.m_min) || contains(other.m_max) || other.contains(m_min) || other.contains(m_max);
}

#endif
