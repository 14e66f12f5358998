// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELGPXTRACKSTYLE_H
#define KELGPXTRACKSTYLE_H

#include <KelGPXTrackConfiguration.h>
#include <KelGeoLocationGlobal.h>

#include <QString>

class QDomElement;

/// A style that a KML document declares: its identifier and the configuration that it stands for.
class KELGEOLOCATION_EXPORT KelGPXTrackStyle
{
public:
    /// `styleId` is the identifier as the document declares it, without the "#" of a reference.
    KelGPXTrackStyle(const QString &styleId, const KelGPXTrackConfiguration &styleValues);

    KelGPXTrackStyle(const KelGPXTrackStyle &) = default;
    KelGPXTrackStyle(KelGPXTrackStyle &&) noexcept = default;
    KelGPXTrackStyle &operator=(const KelGPXTrackStyle &) = default;
    KelGPXTrackStyle &operator=(KelGPXTrackStyle &&) noexcept = default;
    virtual ~KelGPXTrackStyle();

    /// Reads a KML "Style" element: its attribute "id" (empty when absent) and KelGPXTrackConfiguration::fromKml().
    [[nodiscard]] static KelGPXTrackStyle fromKml(const QDomElement &style);

    /// The identifier without "#".
    [[nodiscard]] QString styleId() const;
    /// The configuration that it stands for.
    [[nodiscard]] KelGPXTrackConfiguration styleValues() const;

private:
    QString m_styleId;
    KelGPXTrackConfiguration m_styleValues;
};

#endif
