// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelTrackReport.h"

#include "KelMapArea.h"
#include "KelMapBounds.h"
#include "KelPlainText.h"

#include <KelGPXConfiguredTrack.h>
#include <KelGPXTrack.h>
#include <KelGPXTrackSegment.h>
#include <KelGPXTrackSelection.h>
#include <KelGeoPosition.h>
#include <KelGeoPositionList.h>

#include <QDateTime>
#include <QJsonObject>
#include <QJsonValue>

#include <algorithm>
#include <cstdlib>

namespace
{

constexpr int KEY_WIDTH = 10;

QString line(const char *key, const QString &value)
{
    return QString::fromLatin1(key).leftJustified(KEY_WIDTH) + value + QLatin1Char('\n');
}

/// Stored tracks come back with their milliseconds taken for seconds. Later than the year 9999 is where that puts all
/// that satellites have recorded (since 1978), and where nothing else is: so it is seen, and mended here, in a report
/// for people.
QDateTime likelyTime(const QDateTime &time)
{
    constexpr qint64 YEAR_10000 = 253'402'300'800;
    qint64 seconds = time.toSecsSinceEpoch();
    while (std::abs(seconds) >= YEAR_10000)
        seconds /= 1000;
    return QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC);
}

struct TimeFrame
{
    QDateTime first; ///< invalid without times
    QDateTime last;
};

TimeFrame timeFrame(const KelGPXConfiguredTrack &track)
{
    QDateTime first;
    QDateTime last;
    const QList<QDateTime> times = track.allTimeStamps();
    for (const QDateTime &stamp : times) {
        if (!stamp.isValid())
            continue;
        const QDateTime time = likelyTime(stamp);
        first = first.isValid() ? std::min(first, time) : time;
        last = last.isValid() ? std::max(last, time) : time;
    }
    return {first, last};
}

QString toString(const TimeFrame &frame)
{
    if (!frame.first.isValid())
        return QStringLiteral("-");
    return frame.first.toString(Qt::ISODate) + QStringLiteral(" to ") + frame.last.toString(Qt::ISODate);
}

QJsonValue toJson(const QDateTime &time)
{
    return time.isValid() ? QJsonValue(time.toString(Qt::ISODate)) : QJsonValue();
}

QJsonValue toJson(const KelGeoPositionRect &box)
{
    if (!box.isValid())
        return {};
    const KelMapBounds bounds = KelMapBounds::fromRect(box);
    return QJsonObject{{QStringLiteral("south"), bounds.south},
                       {QStringLiteral("west"), bounds.west},
                       {QStringLiteral("north"), bounds.north},
                       {QStringLiteral("east"), bounds.east}};
}

} // namespace

double KelTrackReport::lengthKm(const KelGPXTrack &track)
{
    double length = 0.0;
    const QList<KelGPXTrackSegment> segments = track.segments();
    for (const KelGPXTrackSegment &segment : segments) {
        const KelGeoPositionList points = segment.allPoints();
        for (qsizetype i = 1; i < points.size(); ++i) {
            if (points.at(i - 1).isValid() && points.at(i).isValid())
                length += points.at(i - 1).distance(points.at(i));
        }
    }
    return length;
}

QString KelTrackReport::describe(const KelGPXTrackSelection &selection)
{
    QString text;
    for (int row = 0; row < selection.count(); ++row)
        text += (row ? QStringLiteral("\n") : QString()) + describe(selection.value(row));
    return text;
}

QString KelTrackReport::describe(const KelGPXConfiguredTrack &track)
{
    const KelGeoPositionRect box = KelMapArea::boundingBox(track);
    QString text = line("name:", KelPlainText::oneLine(track.name().simplified())) + line("shape:", track.effectiveShape().encode())
        + line("segments:", QString::number(track.track().segments().size()))
        + line("points:", QString::number(track.track().countPoints()))
        + line("length:", QString::number(lengthKm(track.track()), 'f', 2) + QStringLiteral(" km"))
        + line("bounds:", box.isValid() ? KelMapBounds::fromRect(box).toString() : QStringLiteral("-"))
        + line("time:", toString(timeFrame(track)));
    if (!track.track().enclaves().isEmpty())
        text += line("enclaves:", QString::number(track.track().enclaves().size()));
    return text;
}

QJsonArray KelTrackReport::toJson(const KelGPXTrackSelection &selection)
{
    QJsonArray tracks;
    for (int row = 0; row < selection.count(); ++row) {
        const KelGPXConfiguredTrack track = selection.value(row);
        const TimeFrame time = timeFrame(track);
        tracks.append(QJsonObject{
            {QStringLiteral("name"), track.name()},
            {QStringLiteral("shape"), track.effectiveShape().encode()},
            {QStringLiteral("segments"), static_cast<qint64>(track.track().segments().size())},
            {QStringLiteral("points"), static_cast<qint64>(track.track().countPoints())},
            {QStringLiteral("enclaves"), static_cast<qint64>(track.track().enclaves().size())},
            {QStringLiteral("lengthKm"), lengthKm(track.track())},
            {QStringLiteral("bounds"), ::toJson(KelMapArea::boundingBox(track))},
            {QStringLiteral("start"), ::toJson(time.first)},
            {QStringLiteral("end"), ::toJson(time.last)},
        });
    }
    return tracks;
}
