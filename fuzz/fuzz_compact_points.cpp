// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

// Compact point text: decoded as by lists of strings and Qt's conversions, written as by Qt's conversions.

#include "KelFuzz.h"

#include <KelPlainGPX.h>

#include <QString>
#include <QStringList>

namespace
{

/// UTF-8, or after a zero the bytes of UTF-16, halves of surrogate pairs included.
QString textOf(const std::uint8_t *data, std::size_t size)
{
    if (size == 0 || data[0] != 0)
        return QString::fromUtf8(KelFuzz::bytes(data, size));
    QString text;
    for (std::size_t i = 1; i + 1 < size; i += 2)
        text.append(QChar(static_cast<char16_t>(data[i] | data[i + 1] << 8)));
    return text;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString text = textOf(data, size);
    const QList<KelGPXTrackPoint> points = KelGPXTrackSegment::decodeTrackPoints(text);
    KelFuzz::compare(KelPlainGPX::describe(points), KelPlainGPX::describe(KelPlainGPX::decodeTuples(text)),
                     "points are decoded as by the plain rules");
    KelFuzz::compare(KelPlainGPX::describe(KelGPXTrackPoint::decodeKml(text)),
                     KelPlainGPX::describe(KelPlainGPX::decodeTuple(text)), "a tuple is decoded as by the plain rules");

    QStringList tuples;
    for (const KelGPXTrackPoint &point : points)
        tuples.append(KelPlainGPX::encodeTuple(point));
    const QString written = KelGPXTrackSegment(points).toKml();
    KelFuzz::compare(written, tuples.join(QLatin1Char('\n')), "points are written as by the plain rules");
    KelFuzz::compare(KelPlainGPX::describe(KelGPXTrackSegment::decodeTrackPoints(written)),
                     KelPlainGPX::describe(KelPlainGPX::decodeTuples(written)), "what is written is read by the plain rules");
    return 0;
}
