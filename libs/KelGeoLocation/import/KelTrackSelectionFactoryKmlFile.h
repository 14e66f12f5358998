// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELTRACKSELECTIONFACTORYKMLFILE_H
#define KELTRACKSELECTIONFACTORYKMLFILE_H

#include <KelGeoLocationGlobal.h>
#include <KelTrackSelectionFactoryFile.h>

#include <QDomElement>
#include <QList>
#include <QString>

/// Reads KML documents, plain or packed in a KMZ archive: every "Placemark" becomes one track, whatever it holds, drawn
/// as the shared style that it refers to.
///
/// Names are compared exactly and without regard to namespaces. Of several geometries in one placemark the first one
/// with coordinates counts. References to styles that the document does not declare give the library's default
/// configuration.
class KELGEOLOCATION_EXPORT KelTrackSelectionFactoryKmlFile : public KelTrackSelectionFactoryFile
{
public:
    KelTrackSelectionFactoryKmlFile() = default;
    ~KelTrackSelectionFactoryKmlFile() override;
    KelTrackSelectionFactoryKmlFile(const KelTrackSelectionFactoryKmlFile &) = default;
    KelTrackSelectionFactoryKmlFile(KelTrackSelectionFactoryKmlFile &&) noexcept = default;
    KelTrackSelectionFactoryKmlFile &operator=(const KelTrackSelectionFactoryKmlFile &) = default;
    KelTrackSelectionFactoryKmlFile &operator=(KelTrackSelectionFactoryKmlFile &&) noexcept = default;

    /// The overloads below would hide those for URLs.
    using KelTrackSelectionFactoryFile::createConfiguredTrackList;
    using KelTrackSelectionFactoryFile::supportsFile;

    /// "*.kml", "*.kmz"
    [[nodiscard]] QStringList supportedFileFormats() const override;
    /// Suffix "kml" or "kmz" in any case.
    [[nodiscard]] bool supportsFile(const QFileInfo &file) const override;
    /// decode() of readFile().
    [[nodiscard]] KelGPXConfiguredTrackList createConfiguredTrackList(const QFileInfo &file) const override;
    [[nodiscard]] KelGPXConfiguredTrackList createConfiguredTrackList(const QFileInfo &file,
                                                                      KelErrorHistory *errors) const override;

    /// The KML text: of a "kml" file its UTF-8 text, of a "kmz" archive its first entry, in the archive's order, whose
    /// name ends with ".kml" (in small letters). Empty when there is none, for a file that cannot be read and for any
    /// other suffix; @p errors (may be null) gets the reason.
    [[nodiscard]] QString readFile(const QFileInfo &file, KelErrorHistory *errors = nullptr) const;

    /// One entry for each placemark inside the "Document" that is the root element's child, in document order. A
    /// placemark without a name or a description is called @p fileName. A text that does not parse gives an empty list;
    /// @p errors (may be null) gets the reason when there is nothing to draw.
    [[nodiscard]] KelGPXConfiguredTrackList decode(const QString &kmlText, const QString &fileName,
                                                   KelErrorHistory *errors = nullptr) const;

    /// The placemarks in the element at any depth, or the element itself, in document order. Placemarks inside a
    /// placemark are not looked for.
    [[nodiscard]] QList<QDomElement> findPlacemarks(const QDomElement &element) const;

    /// The text, without blanks around it, of the first element "coordinates" that has one, at any depth or the element
    /// itself; a null text when there is none.
    [[nodiscard]] QString findCoordinates(const QDomElement &element) const;
};

#endif
