// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelGPXTrackElement.h"

#include <KelGeoPositionRect.h>
#include <KelXMLConversion.h>

KelGPXTrackElement::~KelGPXTrackElement() = default;

bool KelGPXTrackElement::isSinglePoint() const
{
    return allPoints().size() == 1;
}

KelRange<QDateTime> KelGPXTrackElement::timeFrame() const
{
    KelRange<QDateTime> frame;
    const QList<QDateTime> timeStamps = allTimeStamps();
    for (const QDateTime &timeStamp : timeStamps)
        frame.expandTo(timeStamp);
    return frame;
}

KelGeoPositionRect KelGPXTrackElement::boundingBox() const
{
    return allPoints().boundingBox();
}

double KelGPXTrackElement::safeDouble(const QString &text)
{
    return safeDouble(QStringView(text));
}

double KelGPXTrackElement::safeDouble(QStringView text)
{
    // Deliberate: without a point the index is -1, and the text is cut to seven characters.
    const qsizetype pointAndSevenDecimals = text.indexOf(u'.') + 8;
    return KelXMLConversion::toDouble(text.first(qMin(text.size(), pointAndSevenDecimals)));
}
