// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

// Texts of angles, positions, ranges, rectangles and distances, as users type them and as they stand in addresses.

#include "KelFuzz.h"

#include <KelDistance.h>
#include <KelDistanceUnit.h>
#include <KelGPXBeelineCreator.h>
#include <KelGeoPosition.h>
#include <KelGeoPositionList.h>
#include <KelGeoPositionRect.h>
#include <KelLatitudeRange.h>
#include <KelLongitudeRange.h>
#include <KelTrackSelectionFactory.h>

#include <QRegularExpression>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <QUrlQuery>
#include <QVariant>

#include <climits>
#include <cmath>

namespace
{

double plainParse(const QString &text, QChar positive, QChar negative)
{
    const bool isPositive = text.startsWith(positive);
    const bool isNegative = !isPositive && text.startsWith(negative);
    bool ok = false;
    const double value = (isPositive || isNegative ? text.mid(1) : text).toDouble(&ok);
    return !ok ? 720.0 : isNegative ? -value
                                    : value;
}

double plainFromString(const QString &text)
{
    static const QRegularExpression blanksAndLetters(QStringLiteral("\\s|S|s|N|n|E|e|W|w"));
    QString bare = text;
    bare.remove(QChar(0xb0)).remove(QLatin1Char('\'')).remove(QLatin1Char('"')).remove(blanksAndLetters);
    const QStringList parts = bare.split(QLatin1Char(','), Qt::SkipEmptyParts);
    if (parts.size() < 3)
        return 720.0;
    // In 64 bits, where the sign of every 32-bit number can be changed; the library keeps to 32.
    qint64 degree = parts.at(0).toInt();
    qint64 minute = parts.at(1).toInt();
    double second = parts.at(2).toDouble();
    const auto has = [&text](char letter) { return text.contains(QLatin1Char(letter), Qt::CaseInsensitive); };
    if (has('S') || has('W')) {
        degree = degree > 0 ? -degree : degree;
        minute = minute > 0 ? -minute : minute;
        second = second > 0 ? -second : second;
    }
    if (has('N') || has('E')) {
        degree = qMin<qint64>(qAbs(degree), INT_MAX);
        minute = qMin<qint64>(qAbs(minute), INT_MAX);
        second = std::abs(second);
    }
    return double(minute) / 60.0 + double(degree) + second / 3600.0;
}

/// Into the range turn by turn, for numbers that are not too many turns away.
double plainFold(double value, double limit, double turn)
{
    while (value > limit)
        value -= turn;
    while (value < -limit)
        value += turn;
    return value;
}

/// Everything that is made of an angle for someone to read.
template<typename Angle>
void describe(const Angle &angle, double limit)
{
    const QString decimal = angle.toString(false);
    KelFuzz::check(decimal.isEmpty() == !angle.isValid(), "valid angles have a text, others have none");
    KelFuzz::check(angle.toString(true).isEmpty() == !angle.isValid(), "the same with minutes and seconds");
    if (angle.isValid()) {
        const Angle again = Angle::parse(decimal);
        // The letter follows the shorter way round, the number does not; beyond half a turn they differ.
        if (std::abs(angle.decimalDegrees()) < limit)
            KelFuzz::check(std::abs(again.decimalDegrees() - angle.decimalDegrees()) <= 5.001e-9,
                           "an angle's text is read as the angle");
    }
    for (const char *format : {"d", "dm", "dms", ""})
        static_cast<void>(angle.humanReadable(QLatin1String(format), 5));
    static_cast<void>(angle.toExifRational());
    KelFuzz::compareDouble(KelGeoArc::fromVariant(angle.toVariant()).decimalDegrees(), angle.decimalDegrees(),
                           "a variant keeps the number");
}

void checkAngles(const QString &text)
{
    const KelLatitude latitude = KelLatitude::parse(text);
    const KelLongitude longitude = KelLongitude::parse(text);
    KelFuzz::compareDouble(latitude.decimalDegrees(), plainParse(text, u'N', u'S'), "a latitude is as by the plain rules");
    KelFuzz::compareDouble(longitude.decimalDegrees(), plainParse(text, u'E', u'W'), "a longitude is as by the plain rules");
    KelFuzz::compareDouble(KelGeoArc::fromString(text).decimalDegrees(), plainFromString(text),
                           "an angle of three parts is as by the plain rules");
    describe(latitude, 90.0);
    describe(longitude, 180.0);

    const double value = latitude.decimalDegrees();
    const double safeLatitude = KelLatitude::safeLatitude(value).decimalDegrees();
    const double safeLongitude = KelLongitude::safeLongitude(value).decimalDegrees();
    if (std::isfinite(value)) {
        KelFuzz::check(std::abs(safeLatitude) <= 90.0 && std::abs(safeLongitude) <= 180.0, "folded angles are in range");
        if (std::abs(value) < 1e6) {
            KelFuzz::compareDouble(safeLatitude, plainFold(value, 90.0, 180.0), "a latitude is folded as turn by turn");
            KelFuzz::compareDouble(safeLongitude, plainFold(value, 180.0, 360.0), "a longitude is folded as turn by turn");
        }
    }
    KelFuzz::compareDouble(KelLongitude(value).normalized().decimalDegrees(), safeLongitude, "normalised is folded");
    static_cast<void>(latitude.bounded());
    static_cast<void>(latitude.catchOutOfBound());
    for (int unit = -1; unit < 6; ++unit)
        static_cast<void>(KelDistance(value).describe(KelDistanceUnit(unit), unit, true));
}

void comparePositions(const KelGeoPosition &actual, const KelGeoPosition &expected, const char *rule)
{
    KelFuzz::compareDouble(actual.latitude().decimalDegrees(), expected.latitude().decimalDegrees(), rule);
    KelFuzz::compareDouble(actual.longitude().decimalDegrees(), expected.longitude().decimalDegrees(), rule);
}

KelGeoPosition checkPosition(const QString &text)
{
    static const QRegularExpression blanks(QStringLiteral("\\s+"));
    const QStringList parts = text.trimmed().split(blanks);
    KelGeoPosition expected;
    if (parts.size() == 2) {
        const KelGeoPosition both(plainParse(parts.at(0), u'N', u'S'), plainParse(parts.at(1), u'E', u'W'));
        if (both.latitude().isValid() && both.longitude().isValid())
            expected = both;
    }
    const KelGeoPosition position = KelGeoPosition::parse(text);
    comparePositions(position, expected, "a position is as by the plain rules");

    KelGeoPosition expectedParts;
    const QStringList halves = text.split(QLatin1Char(';'));
    if (halves.size() > 1) {
        const KelGeoPosition both(plainFromString(halves.at(0).trimmed()), plainFromString(halves.at(1).trimmed()));
        if (both.latitude().isValid() && both.longitude().isValid())
            expectedParts = both;
    }
    const KelGeoPosition ofParts = KelGeoPosition::fromString(text);
    comparePositions(ofParts, expectedParts, "a position of parts is as by the plain rules");
    static_cast<void>(position.toString(true));
    static_cast<void>(ofParts.toString(false));
    return position.isValid() ? position : ofParts;
}

void checkQuery(const QString &text)
{
    const QUrlQuery query(text);
    const KelGeoPositionRect rect = KelGeoPositionRect::parse(query);
    const auto value = [&query](const char *key) { return query.queryItemValue(QLatin1String(key)); };
    KelFuzz::compareDouble(rect.south().decimalDegrees(), plainParse(value("latitude_min"), u'N', u'S'), "the south of a query");
    KelFuzz::compareDouble(rect.north().decimalDegrees(), plainParse(value("latitude_max"), u'N', u'S'), "the north of a query");
    KelFuzz::compareDouble(rect.west().decimalDegrees(), plainParse(value("longitude_min"), u'E', u'W'), "the west of a query");
    KelFuzz::compareDouble(rect.east().decimalDegrees(), plainParse(value("longitude_max"), u'E', u'W'), "the east of a query");

    QUrlQuery written;
    rect.writeTo(written);
    const KelGeoPositionRect again = KelGeoPositionRect::parse(QUrlQuery(written.query(QUrl::FullyEncoded)));
    if (rect.isValid())
        KelFuzz::check(again == rect, "a rectangle in an address is read as the same");
    static_cast<void>(rect.toString(true));
    static_cast<void>(rect.withPadding(10.0).toReasonableSize().center());
    static_cast<void>(rect.latitudeRange().toString(false));
    static_cast<void>(rect.longitudeRange().contains(rect.center().longitude()));
    static_cast<void>(KelTrackSelectionFactory::instance().supportsFile(QUrl(text)));
}

void checkBeeline(const KelGeoPosition &start, const KelGeoPosition &end)
{
    const KelGPXBeelineCreator creator(start, end);
    KelFuzz::check(creator.createPoints().size() < 100'000, "a great circle has an end");
    static_cast<void>(start.distance(end));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString text = QString::fromUtf8(KelFuzz::bytes(data, size));
    const QStringList lines = text.split(QLatin1Char('\n'));
    checkAngles(lines.first());
    checkQuery(lines.first());
    const KelGeoPosition start = checkPosition(lines.first());
    const KelGeoPosition end = checkPosition(lines.last());
    if ((start.isValid() && end.isValid()) || size % 16 == 0) // the others take long
        checkBeeline(start, end);
    return 0;
}
