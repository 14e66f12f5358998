// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

// Stored configurations and selections: whatever is read can be written, and what is written is read as the same.

#include "KelFuzz.h"

#include <KelGPXConfiguredTrackList.h>
#include <KelGPXTrackConfiguration.h>
#include <KelGPXTrackSelection.h>
#include <KelGPXTrackSelectionComparisonResult.h>
#include <KelGeoPosition.h>
#include <KelGeoPositionRect.h>
#include <KelPlainGPX.h>
#include <KelXMLBuilder.h>
#include <KelXMLLoader.h>

#include <QDir>
#include <QDomDocument>
#include <QString>

#include <cmath>

namespace
{

const QDir noDirectory{QString()};

QString written(const KelGPXTrackSelection &selection)
{
    QDomDocument document;
    QDomElement root = KelXMLBuilder::buildRootElement(document, QStringLiteral("host"));
    selection.toXml(root, noDirectory);
    return KelXMLBuilder::toText(document, 0);
}

QDomDocument parsed(const QString &text)
{
    QDomDocument document;
    KelFuzz::check(KelXMLLoader::setContent(document, text), "what was written is well formed");
    return document;
}

/// Written decimals and kept ones are exact together only for numbers of the size of angles.
KelGeoPosition near(const KelGeoPosition &position)
{
    constexpr double FAR = 1000.0;
    const double latitude = position.latitude().decimalDegrees();
    const double longitude = position.longitude().decimalDegrees();
    return KelGeoPosition(std::abs(latitude) <= FAR ? latitude : FAR, std::abs(longitude) <= FAR ? longitude : FAR);
}

/// Without times and descriptions, which are not kept.
QString kept(const KelGPXTrack &track)
{
    QString text = track.name() + QLatin1Char('|') + track.shape().encode() + QLatin1Char('|');
    for (const KelGPXTrackSegment &segment : track.segments()) {
        for (const KelGPXTrackPoint &point : segment.trackPoints()) {
            text += KelPlainGPX::describe(
                KelGPXTrackPoint(near(point.position()), point.elevation(), QDateTime(), QString()));
        }
        text += QLatin1Char('|');
    }
    for (const KelGPXTrack &enclave : track.enclaves())
        text += QLatin1Char('{') + kept(enclave) + QLatin1Char('}');
    return text;
}

void checkConfiguration(const QDomElement &element, const QString &text)
{
    const KelGPXTrackConfiguration first = KelGPXTrackConfiguration::deserialize(text);
    KelFuzz::check(first == KelGPXTrackConfiguration::fromXml(element), "a text and its tree give the same configuration");
    // Widths lose their fractions once.
    const KelGPXTrackConfiguration second = KelGPXTrackConfiguration::deserialize(first.serialize());
    const KelGPXTrackConfiguration third = KelGPXTrackConfiguration::deserialize(second.serialize());
    KelFuzz::check(second == third, "a configuration that was stored is read as the same");
    KelFuzz::compare(second.serialize(), first.serialize(), "a configuration that was stored is written as the same");
    static_cast<void>(KelGPXTrackConfiguration::fromKml(element));
}

void checkSelection(const QDomElement &element)
{
    const KelGPXTrackSelection prefixed(element, noDirectory, QStringLiteral("p_"));
    const KelGPXTrackSelection first(element, noDirectory, QString());
    const QDomDocument firstTree = parsed(written(first));
    const KelGPXTrackSelection second(firstTree.documentElement(), noDirectory, QString());
    const QDomDocument secondTree = parsed(written(second));
    const KelGPXTrackSelection third(secondTree.documentElement(), noDirectory, QString());

    KelFuzz::compare(second.count(), first.count(), "every row is kept");
    KelFuzz::compare(third.count(), second.count(), "every row is kept again");
    KelFuzz::compare(second.nominalCroppingOpacity(), first.nominalCroppingOpacity(), "the opacity is kept");
    for (int row = 0; row < second.count(); ++row) {
        KelFuzz::check(second.configuration(row) == third.configuration(row), "a row's configuration is kept");
        KelFuzz::compare(kept(third.value(row).track()), kept(second.value(row).track()), "a row's track is kept");
        // What the values are asked for while they are shown.
        const KelGPXConfiguredTrack track = second.value(row);
        static_cast<void>(track.effectiveShape());
        static_cast<void>(track.drawingPoints());
        static_cast<void>(track.positionRelativeFromStart(0.5));
        static_cast<void>(track.differentAspects(first.value(row)));
    }
    static_cast<void>(second.compare(first));
    static_cast<void>(prefixed.boundingBox());
    static_cast<void>(prefixed.timeFrame());
}

void checkPosition(const QDomElement &element)
{
    const KelGeoPosition position = KelGeoPosition::fromXml(element);
    QDomDocument document;
    QDomElement root = KelXMLBuilder::buildRootElement(document, QStringLiteral("place"));
    position.writeToXml(root);
    if (position.isValid())
        KelFuzz::check(KelGeoPosition::fromXml(root) == position, "a position is kept");
    else
        KelFuzz::check(root.attributes().isEmpty(), "of an invalid position nothing is written");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString text = QString::fromUtf8(KelFuzz::bytes(data, size));
    QDomDocument document;
    KelXMLLoader::setContent(document, text);
    const QDomElement root = document.documentElement();
    checkConfiguration(root, text);
    checkSelection(root);
    checkPosition(root);
    return 0;
}
