// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelBeelineBuilder.h"

#include "KelDiagnostics.h"
#include "KelPlainText.h"

#include <KelGPXBeelineCreator.h>
#include <KelGeoPositionSamples.h>

#include <QStringList>

namespace
{

constexpr int LAST_SAMPLE = 12;

std::optional<KelGeoPosition> sample(const QString &name)
{
    const KelGeoPositionSamples &samples = KelGeoPositionSamples::instance();
    for (int i = 0; i <= LAST_SAMPLE; ++i) {
        const auto place = static_cast<KelGeoPositionSamplesEnum>(i);
        if (samples.name(place).compare(name, Qt::CaseInsensitive) == 0)
            return samples.position(place);
    }
    return std::nullopt;
}

KelGeoPosition decimalPair(const QString &text)
{
    const QStringList parts = text.split(QLatin1Char(','));
    bool latitudeOk = false;
    bool longitudeOk = false;
    if (parts.size() != 2)
        return {};
    const double latitude = parts.at(0).trimmed().toDouble(&latitudeOk);
    const double longitude = parts.at(1).trimmed().toDouble(&longitudeOk);
    return latitudeOk && longitudeOk ? KelGeoPosition(latitude, longitude) : KelGeoPosition();
}

} // namespace

std::optional<KelGeoPosition> KelBeelineBuilder::parsePlace(const QString &text)
{
    if (const auto known = sample(text.trimmed()))
        return known;
    KelGeoPosition position = KelGeoPosition::parse(text);
    if (!position.isValid())
        position = KelGeoPosition::fromString(text);
    if (!position.isValid())
        position = decimalPair(text);
    if (!position.isValid() || !position.latitude().isInValidRange() || !position.longitude().isInValidRange())
        return std::nullopt;
    return position;
}

std::optional<KelGPXTrack> KelBeelineBuilder::build(const KelBeelineOption &option, KelDiagnostics &diagnostics)
{
    const auto place = [&](const QString &text) {
        const auto position = parsePlace(text);
        if (!position) {
            diagnostics.error(
                KelExitCode::UsageError,
                QStringLiteral(
                    "--beeline: \"%1\" is no place; write \"N53.14 E8.21\", \"53.14,8.21\", \"53,8,24 N; 8,12,36 E\" "
                    "or a known place such as Sydney")
                    .arg(KelPlainText::shortened(text)));
        }
        return position;
    };
    const auto from = place(option.from);
    const auto to = place(option.to);
    if (!from || !to)
        return std::nullopt;
    const QString name = option.name.isEmpty() ? option.from + QStringLiteral(" \u2013 ") + option.to : option.name;
    return KelGPXBeelineCreator(*from, *to).createBeeline(name);
}
