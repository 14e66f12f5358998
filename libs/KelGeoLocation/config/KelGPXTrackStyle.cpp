// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelGPXTrackStyle.h"

#include <KelKMLNames.h>

#include <QDomElement>

KelGPXTrackStyle::KelGPXTrackStyle(const QString &styleId, const KelGPXTrackConfiguration &styleValues)
    : m_styleId(styleId)
    , m_styleValues(styleValues)
{
}

KelGPXTrackStyle::~KelGPXTrackStyle() = default;

KelGPXTrackStyle KelGPXTrackStyle::fromKml(const QDomElement &style)
{
    return KelGPXTrackStyle(style.attribute(KelKMLNames::Id), KelGPXTrackConfiguration::fromKml(style));
}

QString KelGPXTrackStyle::styleId() const
{
    return m_styleId;
}

KelGPXTrackConfiguration KelGPXTrackStyle::styleValues() const
{
    return m_styleValues;
}
