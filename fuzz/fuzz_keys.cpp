// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

// Lists of keys: shapes, markers, display options and pen styles, read and written as by the plain rules.

#include "KelFuzz.h"

#include <KelGPXFullShape.h>
#include <KelGPXMarkerShape.h>
#include <KelGPXTrackConfiguration.h>
#include <KelGPXTrackDisplayOptions.h>
#include <KelGPXTrackShape.h>
#include <KelGPXTrackStyleList.h>
#include <KelPenStyle.h>

#include <QDomDocument>
#include <QHash>
#include <QString>
#include <QStringList>

namespace
{

using Keys = QHash<QString, int>;

const Keys shapes = {{"point", 1}, {"linestring", 4}, {"polygon", 8}, {"hop", 2}, {"auto", 256}, {"unknown", 0}};
const Keys markers = {
    {"unknown", 0},
    {"disk", 1},
    {"rect", 32},
    {"circle", 2},
    {"x", 8},
    {"block", 16},
    {"rhombus", 64},
    {"star6", 128},
    {"star9", 256},
    {"star12", 512},
    {"arrow", 1024},
};
const Keys options = {{"stroke", 1}, {"fill", 2}};

int plainDecode(const Keys &keys, const QString &text)
{
    int value = 0;
    const QStringList parts = text.split(QLatin1Char(','));
    for (const QString &part : parts)
        value |= keys.value(part.trimmed().toLower(), 0);
    return value;
}

QString plainEncode(const Keys &keys, int value)
{
    QStringList parts;
    for (int bit = 0; bit < 31 && value > 0; ++bit) {
        if ((value & 1 << bit) != 0)
            parts.append(keys.key(1 << bit));
    }
    return parts.join(QLatin1String(", "));
}

template<typename Value>
Value checkKeys(const Keys &keys, const QString &text)
{
    const Value value(text);
    KelFuzz::compare(value.toInt(), plainDecode(keys, text), "keys are read as by the plain rules");
    KelFuzz::compare(value.encode(), plainEncode(keys, value.toInt()), "keys are written as by the plain rules");
    KelFuzz::compare(Value(value.encode()).toInt(), value.toInt(), "keys that were written are read as the same");
    return value;
}

/// Any bits at all, as they come from a program.
void checkBits(int bits)
{
    KelFuzz::compare(KelGPXTrackShape(bits).encode(), plainEncode(shapes, bits), "any shape can be written");
    KelFuzz::compare(KelGPXMarkerShape(bits).encode(), plainEncode(markers, bits), "any marker can be written");
    KelFuzz::compare(KelGPXTrackDisplayOptions(bits).encode(), plainEncode(options, bits), "any options can be written");
    KelGPXFullShape full{KelGPXTrackShape(bits), KelGPXMarkerShape(bits)};
    full.normalize();
    static_cast<void>(full.describe());
}

void checkStyles(const QString &text)
{
    QDomDocument document;
    QDomElement root = document.createElement("Document");
    QDomElement style = document.createElement("Style");
    style.setAttribute("id", text);
    style.appendChild(document.createElement("PolyStyle"));
    root.appendChild(style);
    const KelGPXTrackStyleList list = KelGPXTrackStyleList::fromKml(root);
    const KelGPXTrackConfiguration known = KelGPXTrackConfiguration::fromKml(style);
    KelFuzz::check(list.findStyling(QLatin1Char('#') + text) == known, "a style is found under its id");
    KelFuzz::check(list.findStyling(text + QLatin1Char('x')) == KelGPXTrackConfiguration::defaultValue()
                       || text.startsWith(QLatin1Char('#')),
                   "an unknown reference gives the default");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString text = QString::fromUtf8(KelFuzz::bytes(data, size));
    const KelGPXTrackShape shape = checkKeys<KelGPXTrackShape>(shapes, text);
    const KelGPXMarkerShape marker = checkKeys<KelGPXMarkerShape>(markers, text);
    checkKeys<KelGPXTrackDisplayOptions>(options, text);
    static_cast<void>(KelGPXFullShape(shape, marker).toolTip());
    static_cast<void>(KelPenStyle::fromKey(text).key());
    std::uint32_t bits = 0;
    for (std::size_t i = 0; i < size; ++i)
        bits = bits << 8 ^ bits >> 24 ^ data[i];
    checkBits(static_cast<int>(bits));
    checkStyles(text);
    return 0;
}
