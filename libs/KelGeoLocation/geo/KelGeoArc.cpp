// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelGeoArc.h"

#include <KelDebugText.h>
#include <KelRational.h>
#include <KelRegularExpression.h>

#include <QStringList>
#include <QUrl>
#include <QUrlQuery>
#include <QVariant>

#include <limits>

namespace
{

constexpr double degreesPerRadian = 57.29577951308232;
constexpr int exifDenominator = 100000;
constexpr QChar degreeSign(0x00b0);

// The negative end is -INT_MAX, so that the absolute value of every result fits an int, too.
int truncated(double number) noexcept
{
    constexpr int largest = std::numeric_limits<int>::max();
    if (std::isnan(number))
        return 0;
    if (number >= largest)
        return largest;
    if (number <= -largest)
        return -largest;
    return static_cast<int>(number);
}

int madeNegative(int number) noexcept
{
    return number > 0 ? -number : number;
}

int madePositive(int number) noexcept
{
    if (number == std::numeric_limits<int>::min())
        return std::numeric_limits<int>::max();
    return std::abs(number);
}

bool holds(const QString &text, char letter)
{
    return text.contains(QLatin1Char(letter), Qt::CaseInsensitive);
}

} // namespace

QString KelGeoArc::directionIndicator() const
{
    return QString();
}

void KelGeoArc::setDegree(int degree, int minute, double second) noexcept
{
    m_decimalDegrees = minute / 60.0 + degree + second / 3600.0;
}

int KelGeoArc::degree() const noexcept
{
    return truncated(m_decimalDegrees);
}

int KelGeoArc::minute() const noexcept
{
    return truncated(m_decimalDegrees * 60.0) % 60;
}

double KelGeoArc::minuteF() const noexcept
{
    return (std::abs(m_decimalDegrees) - std::abs(degree())) * 60.0;
}

double KelGeoArc::secondF() const noexcept
{
    // In floating point, where the product cannot overflow; the integers are exact in it.
    const double wholeMinutes = degree() * 60.0 + minute();
    return m_decimalDegrees * 3600.0 - wholeMinutes * 60.0;
}

KelGeoArc KelGeoArc::fromRadians(double radians) noexcept
{
    return radians * degreesPerRadian;
}

QString KelGeoArc::toString() const
{
    return QString::number(m_decimalDegrees, 'f', 16);
}

QVariant KelGeoArc::toVariant() const
{
    return QVariant(m_decimalDegrees);
}

KelGeoArc KelGeoArc::fromVariant(const QVariant &variant)
{
    return variant.isNull() ? INVALID : variant.toReal();
}

void KelGeoArc::writeTo(QUrlQuery &query, const QString &key) const
{
    query.addQueryItem(key, QString::fromUtf8(QUrl::toPercentEncoding(KelGeoArc::toString())));
}

// The last two places are filled in one step each, so that nothing in a letter or number is taken for a place.
QString KelGeoArc::humanReadable(const QString &format, int precision) const
{
    const auto number = [precision](double value) { return QString::number(value, 'f', precision); };
    const QString letter = directionIndicator();

    if (format == QLatin1String("d"))
        return QStringLiteral("%1° %2").arg(number(std::abs(degreeF())), letter);
    if (format == QLatin1String("dm"))
        return QStringLiteral("%1° %2' %3").arg(std::abs(degree())).arg(number(minuteF()), letter);
    return QStringLiteral("%1° %2' %3\" %4")
        .arg(std::abs(degree()))
        .arg(std::abs(minute()))
        .arg(number(std::abs(secondF())), letter);
}

KelGeoArc KelGeoArc::fromString(const QString &text)
{
    static const KelRegularExpression blanksAndLetters(QStringLiteral("\\s|S|s|N|n|E|e|W|w"));

    KelGeoArc result;
    QString bare = text;
    bare.remove(degreeSign).remove(QLatin1Char('\'')).remove(QLatin1Char('"'));
    blanksAndLetters.removeFrom(bare);
    const QStringList parts = bare.split(QLatin1Char(','), Qt::SkipEmptyParts);
    if (parts.size() < 3)
        return result;

    int degree = parts.at(0).toInt();
    int minute = parts.at(1).toInt();
    double second = parts.at(2).toDouble();
    if (holds(text, 'S') || holds(text, 'W')) {
        degree = madeNegative(degree);
        minute = madeNegative(minute);
        second = second > 0.0 ? -second : second;
    }
    // Deliberate: a second test, not an alternative. A text that holds both an S and an E ends positive.
    if (holds(text, 'N') || holds(text, 'E')) {
        degree = madePositive(degree);
        minute = madePositive(minute);
        second = std::abs(second);
    }
    result.setDegree(degree, minute, second);
    return result;
}

QString KelGeoArc::toExifRational() const
{
    const int numerator = truncated(std::round(std::abs(secondF()) * exifDenominator));
    return QStringLiteral("%1/1 %2/1 %3")
        .arg(std::abs(degree()))
        .arg(std::abs(minute()))
        .arg(KelRational(numerator, exifDenominator).toString());
}

QDebug operator<<(QDebug debug, const KelGeoArc &arc)
{
    return KelDebugText::write(debug, arc.toString());
}
