// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELGPXTRACKSTYLELIST_H
#define KELGPXTRACKSTYLELIST_H

#include <KelGPXTrackStyle.h>
#include <KelGeoLocationGlobal.h>

#include <QHash>
#include <QString>

class QDomElement;

/// The styles of one KML document, found by the reference that a placemark gives in its "styleUrl": "#" and the
/// style's identifier. Built once per document.
class KELGEOLOCATION_EXPORT KelGPXTrackStyleList
{
public:
    KelGPXTrackStyleList();

    KelGPXTrackStyleList(const KelGPXTrackStyleList &) = default;
    KelGPXTrackStyleList(KelGPXTrackStyleList &&) noexcept = default;
    KelGPXTrackStyleList &operator=(const KelGPXTrackStyleList &) = default;
    KelGPXTrackStyleList &operator=(KelGPXTrackStyleList &&) noexcept = default;
    virtual ~KelGPXTrackStyleList();

    /// Adds the style; the last one with the same identifier counts.
    void add(const KelGPXTrackStyle &style);

    /// The styles that are direct children "Style" of `document`, usually the KML element "Document". Styles nested
    /// deeper and other kinds of style elements are not read.
    [[nodiscard]] static KelGPXTrackStyleList fromKml(const QDomElement &document);

    /// The configuration of the style with exactly this reference, for example "#red"; case and the "#" count.
    /// KelGPXTrackConfiguration::defaultValue() when there is none.
    [[nodiscard]] KelGPXTrackConfiguration findStyling(const QString &styleUrl) const;

private:
    QHash<QString, KelGPXTrackStyle> m_styles;
};

#endif
