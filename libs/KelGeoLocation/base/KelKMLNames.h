// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELKMLNAMES_H
#define KELKMLNAMES_H

#include <QString>

/// The element and attribute names of KML that the library reads. Names are compared exactly, as written in
/// the document: case counts, namespaces play no part.
namespace KelKMLNames
{

inline const QString Document = QStringLiteral("Document");

inline const QString Style = QStringLiteral("Style");
inline const QString Id = QStringLiteral("id");
inline const QString LineStyle = QStringLiteral("LineStyle");
inline const QString PolyStyle = QStringLiteral("PolyStyle");
inline const QString Color = QStringLiteral("color");
inline const QString Width = QStringLiteral("width");

inline const QString Placemark = QStringLiteral("Placemark");
inline const QString Name = QStringLiteral("name");
inline const QString Description = QStringLiteral("description");
inline const QString StyleUrl = QStringLiteral("styleUrl");
inline const QString Coordinates = QStringLiteral("coordinates");

inline const QString Polygon = QStringLiteral("Polygon");
inline const QString LineString = QStringLiteral("LineString");
inline const QString Point = QStringLiteral("Point");
/// No element of KML itself: names the shape by the library's own keys.
inline const QString Shape = QStringLiteral("shape");

} // namespace KelKMLNames

#endif
