// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELGPXNAMES_H
#define KELGPXNAMES_H

#include <QStringView>

/// Element and attribute names of the GPX dialect that is read and written here.
namespace KelGPXNames
{

// GPX itself
inline constexpr QStringView Gpx = u"gpx";
inline constexpr QStringView Track = u"trk";
inline constexpr QStringView Route = u"rte";
inline constexpr QStringView Name = u"name";
inline constexpr QStringView Description = u"desc";
inline constexpr QStringView TrackSegment = u"trkseg";
inline constexpr QStringView RoutePoint = u"rtept";
inline constexpr QStringView TrackPoint = u"trkpt";
inline constexpr QStringView Extensions = u"extensions";
inline constexpr QStringView Latitude = u"lat";
inline constexpr QStringView Longitude = u"lon";
inline constexpr QStringView Elevation = u"ele";
inline constexpr QStringView Time = u"time";

// Garmin's extension; the prefix is part of the name, namespaces are not resolved.
inline constexpr QStringView GarminRoutePointExtension = u"gpxx:RoutePointExtension";
inline constexpr QStringView GarminRoutePoint = u"gpxx:rpt";

// Additions of this system
inline constexpr QStringView CompressedPoints = u"compressedPoints";
inline constexpr QStringView Shape = u"shape";
inline constexpr QStringView Enclaves = u"enclaves";
inline constexpr QStringView Include = u"include";
inline constexpr QStringView IncludedTrack = u"includedTrack";

} // namespace KelGPXNames

#endif
