// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelGPXReader.h"

#include "KelGPXNames.h"
#include <KelGPXTrack.h>
#include <KelGPXTrackFileRegistry.h>
#include <KelGPXTrackFileRegistryKey.h>
#include <KelGPXTrackImpl.h>
#include <KelGPXTrackPointImpl.h>
#include <KelXMLGate.h>
#include <KelXMLPlainCursor.h>
#include <KelXMLStreamCursor.h>

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <utility>

namespace
{

/// The fields of a coordinate tuple.
struct Tuple
{
    double longitude = 0.0;
    double latitude = 0.0;
    int elevation = 0;
    bool hasTime = false;
    qint64 seconds = 0; // since 1970
};

constexpr int MAXIMUM_LEVELS = KelXMLGate::MAXIMUM_DEPTH / 2; // of enclaves, each of two elements
constexpr int keptDecimals = 7; // as KelGPXTrackElement::safeDouble()
constexpr int keptWithoutPoint = 7;
constexpr std::array<double, keptDecimals + 1> powersOfTen = {1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7};
constexpr int maximumWholeDigits = 8; // with the decimals below 2^53: exact
constexpr int maximumCutDigits = 9; // usual: what a double prints
constexpr int maximumElevationDigits = 9; // fit into 32 bits
constexpr int maximumTimeDigits = 18; // fit into 64 bits

/// No tuple of the plain form, with what is looked at behind it, is longer.
constexpr qsizetype longestPlainTuple = 2 * (1 + maximumWholeDigits + 1 + keptDecimals + maximumCutDigits + 1)
    + 1 + maximumElevationDigits + 1 + 1 + maximumTimeDigits + 1 + 8;

constexpr bool isDigit(char16_t character)
{
    return character >= u'0' && character <= u'9';
}

/// What "\s" matches in a regular expression without Unicode properties: blank, tab, line feed, vertical tab, form
/// feed, carriage return.
constexpr bool isSpace(char16_t character)
{
    return character == u' ' || (character >= u'\t' && character <= u'\r');
}

/// Four characters in one number, the first one lowest.
constexpr quint64 fourOf(quint64 character)
{
    return character << 48 | character << 32 | character << 16 | character;
}

/// Four characters: digits become their values, anything else more than nine.
quint64 loadFour(const char16_t *at)
{
    quint64 four = 0;
    if constexpr (std::endian::native == std::endian::little) {
        std::memcpy(&four, at, sizeof four);
    } else {
        for (int i = 3; i >= 0; --i)
            four = four << 16 | at[i];
    }
    return four ^ fourOf(u'0');
}

/// Zero if all four are digits.
constexpr quint64 othersIn(quint64 four)
{
    return (four | (four + fourOf(6))) & fourOf(0xfff0);
}

/// The number that four digits write. The product has the sum of digits times powers of ten in its highest sixteen bits, with
/// no carry from below.
constexpr quint64 numberOf(quint64 four)
{
    return (four * (quint64(1000) << 48 | quint64(100) << 32 | 10 << 16 | 1)) >> 48;
}

/// The fraction behind a point, when it has fewer digits than are kept.
double readShortFraction(quint64 whole, const char16_t *&at)
{
    const char16_t *const begin = at;
    for (; isDigit(*at); ++at)
        whole = whole * 10 + (*at - u'0');
    return double(qint64(whole)) / powersOfTen[std::size_t(at - begin)];
}

// The following read the plain form, and need not look for the end of the text, since that is at least longestPlainTuple
// away. They give the place behind what they read, null for any other form.

/// Digits with a minus before and a point among them, as KelGPXTrackElement::safeDouble() reads them. Both operands of the
/// division are exact, so it rounds once, as the conversion of the text would.
[[gnu::always_inline]] inline const char16_t *scanCoordinate(const char16_t *at, double &value)
{
    const bool negative = *at == u'-';
    const char16_t *const begin = at + int(negative);
    const char16_t *p = begin;
    quint64 whole = 0;
    for (unsigned digit = 0; (digit = unsigned(*p) - u'0') <= 9; ++p) {
        if (p - begin == maximumWholeDigits)
            return nullptr;
        whole = whole * 10 + digit;
    }
    if (p == begin)
        return nullptr;

    double size = 0.0;
    if (*p == u'.') {
        ++p;
        const quint64 first = loadFour(p);
        const quint64 second = loadFour(p + 4) << 16; // three of them, behind a zero
        if ((othersIn(first) | othersIn(second)) == 0) {
            p += keptDecimals;
            size = double(qint64(whole * 10000000 + numberOf(first) * 1000 + numberOf(second))) / 1e7;
            for (int cut = 0; isDigit(*p); ++p, ++cut) {
                if (cut == maximumCutDigits)
                    return nullptr;
            }
        } else {
            size = readShortFraction(whole, p);
        }
    } else {
        if (p - at > keptWithoutPoint)
            return nullptr;
        size = double(qint64(whole));
    }
    value = negative ? -size : size;
    return p;
}

/// Digits with a minus before.
[[gnu::always_inline]] inline const char16_t *scanInteger(const char16_t *at, int maximumDigits, qint64 &value)
{
    const bool negative = *at == u'-';
    const char16_t *const begin = at + int(negative);
    const char16_t *p = begin;
    qint64 size = 0;
    while (p - begin <= maximumDigits - 4 && othersIn(loadFour(p)) == 0) {
        size = size * 10000 + qint64(numberOf(loadFour(p)));
        p += 4;
    }
    for (; isDigit(*p); ++p) {
        if (p - begin == maximumDigits)
            return nullptr;
        size = size * 10 + (*p - u'0');
    }
    value = negative ? -size : size;
    return p == begin ? nullptr : p;
}

/// Elevation and perhaps a time.
const char16_t *scanFurtherFields(const char16_t *at, Tuple &tuple)
{
    qint64 elevation = 0;
    at = scanInteger(at, maximumElevationDigits, elevation);
    if (at == nullptr)
        return nullptr;
    tuple.elevation = int(elevation);
    if (isSpace(*at))
        return at;
    if (*at != u',')
        return nullptr;
    at = scanInteger(at + 1, maximumTimeDigits, tuple.seconds);
    tuple.hasTime = true;
    return at != nullptr && isSpace(*at) ? at : nullptr;
}

/// A tuple of two to four plain fields and the blank behind it.
[[gnu::always_inline]] inline const char16_t *scanTuple(const char16_t *at, Tuple &tuple)
{
    at = scanCoordinate(at, tuple.longitude);
    if (at == nullptr || *at != u',')
        return nullptr;
    at = scanCoordinate(at + 1, tuple.latitude);
    if (at == nullptr || isSpace(*at))
        return at;
    return *at == u',' ? scanFurtherFields(at + 1, tuple) : nullptr;
}

/// A tuple of any text.
Tuple readTuple(QStringView text)
{
    std::array<QStringView, 4> fields;
    std::size_t count = 0;
    for (QStringView rest = text; count < fields.size();) {
        const qsizetype comma = rest.indexOf(u',');
        fields[count++] = comma < 0 ? rest : rest.first(comma);
        if (comma < 0)
            break;
        rest = rest.sliced(comma + 1);
    }

    Tuple tuple;
    tuple.longitude = KelGPXTrackElement::safeDouble(fields[0]);
    tuple.latitude = KelGPXTrackElement::safeDouble(fields[1]);
    if (count > 2)
        tuple.elevation = fields[2].toInt();
    // Deliberate: seconds, although KelGPXTrackPoint::toKml() writes milliseconds.
    tuple.hasTime = count > 3;
    if (tuple.hasTime)
        tuple.seconds = fields[3].toLongLong();
    return tuple;
}

/// Such tuples are dropped from compact point text, see KelGPXTrackPoint::isNull().
bool isNull(const Tuple &tuple)
{
    return tuple.latitude == 0.0 && tuple.longitude == 0.0;
}

/// Hands the tuples that begin before `stop` to `append`, the last one to its end. False for a text that is
/// one tuple, as a whole.
template<typename Append>
bool readTuples(QStringView text, const char16_t *&at, const char16_t *stop, const char16_t *end, Append append)
{
    bool checked = false;
    while (at < stop) {
        if (isSpace(*at)) {
            ++at;
            continue;
        }
        Tuple tuple;
        if (const char16_t *const behind = scanTuple(at, tuple)) {
            at = behind;
        } else {
            // Half a surrogate pair anywhere: no regular expression matches in such a text, so it is one tuple.
            if (!checked && !text.isValidUtf16())
                return false;
            checked = true;
            const char16_t *const begin = at;
            at = std::find_if(begin, end, isSpace);
            tuple = readTuple(QStringView(begin, at));
        }
        append(tuple);
    }
    return true;
}

KelGPXTrackPointImpl *makeData(const Tuple &tuple)
{
    if (tuple.hasTime)
        return new KelGPXTrackPointImpl(tuple.latitude, tuple.longitude, tuple.elevation, tuple.seconds);
    return new KelGPXTrackPointImpl(tuple.latitude, tuple.longitude, tuple.elevation);
}

/// Cut toward zero; 0, no elevation, for what does not fit.
int toWholeMetres(double elevation)
{
    return elevation > -2147483649.0 && elevation < 2147483648.0 ? int(elevation) : 0;
}

} // namespace

QList<KelGPXTrack> KelGPXReader::readFile(KelXMLCursor &root, const QFileInfo &file)
{
    QList<KelGPXTrack> tracks;
    // Those that hold anything, each with its number among the routes: how many tracks come before them is known only when
    // all were seen.
    QList<std::pair<int, KelGPXTrack>> routes;
    int trackCount = 0;
    int routeCount = 0;
    while (root.nextChild()) {
        KelXMLCursor &child = root.child();
        const bool isTrack = child.name() == KelGPXNames::Track;
        if (!isTrack && child.name() != KelGPXNames::Route)
            continue;
        KelGPXTrack track;
        mergeTrack(child, nullptr, track);
        if (isTrack)
            keepTrack(std::move(track), file, ++trackCount, tracks);
        else if (++routeCount; track.isValid())
            routes.append({routeCount, std::move(track)});
    }
    for (const auto &[number, route] : std::as_const(routes))
        keepTrack(route, file, trackCount + number, tracks);
    return tracks;
}

void KelGPXReader::keepTrack(KelGPXTrack track, const QFileInfo &file, int number, QList<KelGPXTrack> &tracks)
{
    if (!track.isValid())
        return;
    // Both arguments at once: a file name that holds "%2" stays as it is.
    if (track.name().isEmpty())
        track.setName(QStringLiteral("%1 %2").arg(file.baseName(), QString::number(number)));
    tracks.append(std::move(track));
}

void KelGPXReader::mergeTrack(KelXMLCursor &element, const QDir *directory, KelGPXTrack &track)
{
    mergeTrack(element, directory, 0, track);
}

void KelGPXReader::mergeTrack(KelXMLCursor &element, const QDir *directory, int depth, KelGPXTrack &track)
{
    QString includeName;
    while (element.nextChild()) {
        KelXMLCursor &child = element.child();
        const QStringView name = child.name();
        // Deliberate: a route point is a segment made of what its extensions hold; its own position is not read.
        if (name == KelGPXNames::TrackSegment || name == KelGPXNames::RoutePoint) {
            track.d->addSegment(KelGPXTrackSegment(readSegment(child)));
        } else if (name == KelGPXNames::Name) {
            track.d->setName(child.text());
        } else if (name == KelGPXNames::Description) {
            track.d->setDescription(child.text());
        } else if (name == KelGPXNames::Shape) {
            track.d->setShape(KelGPXTrackShape(child.text()));
        } else if (name == KelGPXNames::Enclaves) {
            mergeEnclaves(child, depth, track);
        } else if (name == KelGPXNames::Include && directory != nullptr && *directory != QDir(QString())) {
            includeName = child.text();
            mergeIncludedFile(QFileInfo(*directory, includeName), depth, track);
        }
    }
    if (track.shape() == TrackShapeAuto)
        track.setShape(track.naturalShape());
    // Also when the file could not be read. From here on the track must not change any more: it is the key.
    if (!includeName.isEmpty()) {
        KelGPXTrackFileRegistry::instance().registerFile(KelGPXTrackFileRegistryKey(track, *directory),
                                                         includeName);
    }
}

void KelGPXReader::mergeIncludedFile(const QFileInfo &file, int depth, KelGPXTrack &track)
{
    // A store holds plain files. Opening a pipe of that name would wait for a writer for ever.
    QFile source(file.filePath());
    if (!file.isFile() || !source.open(QIODevice::ReadOnly))
        return;
    // Into a copy, since nothing counts of a file that turns out to be malformed further down.
    KelGPXTrack merged = track;
    if (!source.isSequential()) {
        KelXMLPlainCursor plain(&source);
        mergeFirstTrack(plain, depth, merged);
        if (plain.finish()) {
            track = merged;
            return;
        }
        source.seek(0);
        merged = track;
    }
    KelXMLStreamCursor root(&source);
    mergeFirstTrack(root, depth, merged);
    if (root.finish() && source.error() == QFileDevice::NoError)
        track = merged;
}

void KelGPXReader::mergeFirstTrack(KelXMLCursor &root, int depth, KelGPXTrack &track)
{
    while (root.nextChild()) {
        if (root.child().name() != KelGPXNames::Track)
            continue;
        mergeTrack(root.child(), nullptr, depth, track); // without directory: inclusion is one level deep
        return;
    }
}

void KelGPXReader::mergeEnclaves(KelXMLCursor &enclaves, int depth, KelGPXTrack &track)
{
    // The one rule that calls itself. Nothing that passed the gate is nested any deeper; a tree may be.
    if (depth == MAXIMUM_LEVELS)
        return;
    while (enclaves.nextChild()) {
        KelGPXTrack enclave;
        mergeTrack(enclaves.child(), nullptr, depth + 1, enclave);
        track.d->addEnclave(enclave);
    }
}

QList<KelGPXTrackPoint> KelGPXReader::readSegment(KelXMLCursor &segment)
{
    QList<KelGPXTrackPoint> points;
    while (segment.nextChild()) {
        KelXMLCursor &child = segment.child();
        if (child.name() == KelGPXNames::TrackPoint)
            points.append(readPoint(child));
        else if (child.name() == KelGPXNames::CompressedPoints)
            points.append(decodeTuples(child.text()));
        else if (child.name() == KelGPXNames::Extensions)
            points.append(readGarminRoutePoints(child));
    }
    return points;
}

QList<KelGPXTrackPoint> KelGPXReader::readGarminRoutePoints(KelXMLCursor &extensions)
{
    QList<KelGPXTrackPoint> points;
    while (extensions.nextChild()) {
        KelXMLCursor &extension = extensions.child();
        if (extension.name() != KelGPXNames::GarminRoutePointExtension)
            continue;
        while (extension.nextChild()) {
            if (extension.child().name() == KelGPXNames::GarminRoutePoint)
                points.append(readPoint(extension.child()));
        }
        break; // only the first
    }
    return points;
}

KelGPXTrackPoint KelGPXReader::readPoint(KelXMLCursor &element)
{
    // Deliberate: a missing coordinate is 1.0 degree.
    const double latitude = element.attributeDouble(KelGPXNames::Latitude, 1.0);
    const double longitude = element.attributeDouble(KelGPXNames::Longitude, 1.0);

    QDateTime timeStamp;
    double elevation = 0.0;
    QString description;
    bool hasTime = false;
    bool hasElevation = false;
    bool hasDescription = false;
    while (element.nextChild()) {
        KelXMLCursor &child = element.child();
        if (!hasTime && child.name() == KelGPXNames::Time) {
            timeStamp = child.textDateTime();
            hasTime = true;
        } else if (!hasElevation && child.name() == KelGPXNames::Elevation) {
            elevation = child.textDouble();
            hasElevation = true;
        } else if (!hasDescription && child.name() == KelGPXNames::Description) {
            description = child.text();
            hasDescription = true;
        }
    }
    return KelGPXTrackPoint(new KelGPXTrackPointImpl(latitude, longitude, toWholeMetres(elevation), std::move(timeStamp),
                                                     std::move(description)));
}

KelGPXTrackPoint KelGPXReader::decodeTuple(QStringView text)
{
    return KelGPXTrackPoint(makeData(readTuple(text)));
}

QList<KelGPXTrackPoint> KelGPXReader::decodeTuples(QStringView text)
{
    /// Becomes a point where the list wants it, not before: nothing is moved, nor has an end.
    struct NewPoint
    {
        operator KelGPXTrackPoint() const { return KelGPXTrackPoint(makeData(tuple)); }
        const Tuple &tuple;
    };
    QList<KelGPXTrackPoint> points;
    const auto append = [&points](const Tuple &tuple) {
        if (!isNull(tuple))
            points.emplaceBack(NewPoint{tuple});
    };
    const char16_t *at = text.utf16();
    const char16_t *const end = at + text.size();
    bool isList = text.size() <= longestPlainTuple || readTuples(text, at, end - longestPlainTuple, end, append);
    if (isList) {
        // Where the text ends: once more, with room behind it. A blank more changes nothing.
        std::array<char16_t, 2 * longestPlainTuple> rest;
        const char16_t *const endOfRest = std::copy(at, end, rest.begin());
        std::fill(rest.begin() + (end - at), rest.end(), u' ');
        at = rest.data();
        isList = readTuples(text, at, endOfRest, endOfRest, append);
    }
    if (!isList) {
        points.clear();
        append(readTuple(text));
    }
    return points;
}
