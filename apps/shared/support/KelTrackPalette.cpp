// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelTrackPalette.h"

#include <KelDistance.h>
#include <KelGPXTrackConfiguration.h>
#include <KelGPXTrackSelection.h>

#include <QList>
#include <QSet>

#include <cmath>
#include <iterator>

namespace
{

constexpr QRgb COLORS[] = {0xffe8590c, 0xff1864ab, 0xffc2255c, 0xff2b8a3e, 0xff6741d9,
                           0xff0b7285, 0xffa1690a, 0xff9c36b5, 0xff5c940d, 0xffc92a2a};
constexpr double GOLDEN_TURN = 0.61803398875;
constexpr int LIGHTER_ON_DARK = 145;
constexpr int FILL_ALPHA = 80;
constexpr double UNCHOSEN_WIDTH = 5.0; // the library's standard is made for print

/// Whether somebody chose this look, the shape aside, which follows from the points.
bool looksLike(const KelGPXTrackConfiguration &configuration, KelGPXTrackConfiguration standard)
{
    standard.setTrackShape(configuration.trackShape());
    return configuration == standard;
}

bool looksStandard(const KelGPXTrackConfiguration &configuration)
{
    return looksLike(configuration, KelGPXTrackConfiguration::currentDefaultConfiguration())
        || looksLike(configuration, KelGPXTrackConfiguration::defaultValue());
}

void setColor(KelGPXTrackSelection &selection, int row, const QColor &color)
{
    KelGPXTrackConfiguration configuration = selection.configuration(row);
    QColor fill = color;
    fill.setAlpha(FILL_ALPHA);
    configuration.setLineColor(color);
    configuration.setFillColor(fill);
    selection.setConfiguration(row, configuration);
}

} // namespace

KelTrackPalette::KelTrackPalette(bool darkMap)
    : m_darkMap(darkMap)
{
}

QColor KelTrackPalette::color(int index) const
{
    constexpr int known = static_cast<int>(std::size(COLORS));
    QColor color;
    if (index < known) {
        color = QColor::fromRgb(COLORS[index]);
    } else {
        // Hues that stay apart however many there are.
        const double hue = std::fmod(index * GOLDEN_TURN, 1.0);
        color = QColor::fromHsvF(static_cast<float>(hue), 0.85F, index % 2 ? 0.62F : 0.78F).toRgb();
    }
    return m_darkMap ? color.lighter(LIGHTER_ON_DARK) : color;
}

void KelTrackPalette::colorize(KelGPXTrackSelection &selection, int firstRow) const
{
    QList<int> rows;
    for (int row = firstRow; row < selection.count(); ++row) {
        if (looksStandard(selection.configuration(row)))
            rows.append(row);
    }
    if (rows.size() < 2)
        return;
    for (int i = 0; i < rows.size(); ++i)
        setColor(selection, rows.at(i), color(i));
}

void KelTrackPalette::distinguish(KelGPXTrackSelection &selection, int firstRow) const
{
    QSet<QRgb> used;
    for (int row = 0; row < firstRow; ++row)
        used.insert(selection.configuration(row).lineColor().rgb());
    int next = 0;
    for (int row = firstRow; row < selection.count(); ++row) {
        KelGPXTrackConfiguration configuration = selection.configuration(row);
        const bool isStandard = looksStandard(configuration);
        if (looksLike(configuration, KelGPXTrackConfiguration::defaultValue())) {
            configuration.setLineWidth(KelDistance(UNCHOSEN_WIDTH));
            selection.setConfiguration(row, configuration);
        }
        QColor chosen = configuration.lineColor();
        if (isStandard && used.contains(chosen.rgb())) {
            while (used.contains(color(next).rgb()))
                ++next;
            chosen = color(next);
            setColor(selection, row, chosen);
        }
        used.insert(chosen.rgb());
    }
}
