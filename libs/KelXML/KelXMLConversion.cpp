// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelXMLConversion.h"

#include <QDate>
#include <QString>
#include <QTime>

#include <array>
#include <optional>

namespace
{

// A whole number below 2^53 divided by a power of ten up to 10^22 has two exact operands, hence the division
// rounds once and gives the double that is nearest to the decimal text.
constexpr std::array<double, 19> powersOfTen = {1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9,
                                                1e10, 1e11, 1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18};
constexpr quint64 firstInexactWholeNumber = quint64(1) << 53;
constexpr int maximumDigits = 18; // fit into 64 bits

template<typename Character>
constexpr bool isDigit(Character character)
{
    return character >= '0' && character <= '9';
}

/// An optional sign, digits, and at most one point among them; nothing for any other form.
template<typename Character>
std::optional<double> plainDecimal(const Character *at, const Character *const end)
{
    const bool negative = at != end && *at == '-';
    if (at != end && (*at == '-' || *at == '+'))
        ++at;

    quint64 mantissa = 0;
    int digits = 0;
    int decimals = 0;
    bool pointSeen = false;
    for (; at != end; ++at) {
        if (isDigit(*at)) {
            if (++digits > maximumDigits)
                return std::nullopt;
            mantissa = mantissa * 10 + quint64(*at - '0');
            decimals += pointSeen ? 1 : 0;
        } else if (*at == '.' && !pointSeen) {
            pointSeen = true;
        } else {
            return std::nullopt;
        }
    }
    if (digits == 0 || mantissa >= firstInexactWholeNumber)
        return std::nullopt;
    const double value = double(mantissa) / powersOfTen[std::size_t(decimals)];
    return negative ? -value : value;
}

/// The number in a run of digits, -1 if there is anything else.
template<typename Character>
int digitsAt(const Character *at, int count)
{
    int number = 0;
    for (const Character *const end = at + count; at != end; ++at) {
        if (!isDigit(*at))
            return -1;
        number = number * 10 + (*at - '0');
    }
    return number;
}

/// "2023-11-14T22:13:20Z" or "2023-11-14T22:13:20.123Z"; an invalid value for any other form.
template<typename Character>
QDateTime plainDateTime(const Character *text, qsizetype size)
{
    const bool withMilliseconds = size == 24;
    if ((size != 20 && !withMilliseconds) || text[4] != '-' || text[7] != '-' || text[10] != 'T' || text[13] != ':'
        || text[16] != ':' || text[size - 1] != 'Z' || (withMilliseconds && text[19] != '.')) {
        return QDateTime();
    }
    const int year = digitsAt(text, 4);
    const int month = digitsAt(text + 5, 2);
    const int day = digitsAt(text + 8, 2);
    const int hour = digitsAt(text + 11, 2);
    const int minute = digitsAt(text + 14, 2);
    const int second = digitsAt(text + 17, 2);
    const int millisecond = withMilliseconds ? digitsAt(text + 20, 3) : 0;
    if (year < 1 || !QDate::isValid(year, month, day) || !QTime::isValid(hour, minute, second, millisecond))
        return QDateTime();
    return QDateTime(QDate(year, month, day), QTime(hour, minute, second, millisecond), Qt::UTC);
}

double found(double value, bool *ok)
{
    if (ok != nullptr)
        *ok = true;
    return value;
}

} // namespace

double KelXMLConversion::toDouble(QStringView text, bool *ok)
{
    const std::optional<double> value = plainDecimal(text.utf16(), text.utf16() + text.size());
    return value ? found(*value, ok) : text.toDouble(ok);
}

double KelXMLConversion::toDouble(QLatin1String text, bool *ok)
{
    const std::optional<double> value = plainDecimal(text.begin(), text.end());
    return value ? found(*value, ok) : QString(text).toDouble(ok);
}

QDateTime KelXMLConversion::toDateTime(QStringView text)
{
    const QDateTime value = plainDateTime(text.utf16(), text.size());
    return value.isValid() ? value : QDateTime::fromString(text, Qt::ISODate);
}

QDateTime KelXMLConversion::toDateTime(QLatin1String text)
{
    const QDateTime value = plainDateTime(text.data(), text.size());
    return value.isValid() ? value : QDateTime::fromString(QString(text), Qt::ISODate);
}
