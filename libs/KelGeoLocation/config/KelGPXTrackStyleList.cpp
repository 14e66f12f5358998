// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelGPXTrackStyleList.h"

#include <KelKMLNames.h>

#include <QDomElement>

KelGPXTrackStyleList::KelGPXTrackStyleList() = default;

KelGPXTrackStyleList::~KelGPXTrackStyleList() = default;

void KelGPXTrackStyleList::add(const KelGPXTrackStyle &style)
{
    m_styles.insert(QLatin1Char('#') + style.styleId(), style);
}

KelGPXTrackStyleList KelGPXTrackStyleList::fromKml(const QDomElement &document)
{
    KelGPXTrackStyleList list;
    for (QDomElement style = document.firstChildElement(KelKMLNames::Style); !style.isNull();
         style = style.nextSiblingElement(KelKMLNames::Style)) {
        list.add(KelGPXTrackStyle::fromKml(style));
    }
    return list;
}

KelGPXTrackConfiguration KelGPXTrackStyleList::findStyling(const QString &styleUrl) const
{
    // Deliberate: the library's default, not the user's, so that a document looks the same to everyone.
    const auto style = m_styles.constFind(styleUrl);
    return style == m_styles.cend() ? KelGPXTrackConfiguration::defaultValue() : style->styleValues();
}
