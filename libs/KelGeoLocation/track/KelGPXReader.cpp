// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelGPXReader.h"

#include "KelGPXNames.h"
#include <KelGPXTrack.h>
#include <KelGPXTrackFileRegistry.h>
#include <KelGPXTrackFileRegistryKey.h>
#include <KelGPXTrackImpl.h>
#include <KelGPXTrackPointImpl.h>
#include <KelXMLPlainCursor.h>
#include <KelXMLStreamCursor.h>

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

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

constexpr int keptDecimals = 7; // as KelGPXTrackElement::safeDouble()
constexpr int keptWithoutPoint = 7;
constexpr std::array<double, keptDecimals + 1> powersOfTen = {1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7};
constexpr std::array<quint64, 5> wholePowersOfTen = {1, 10, 100, 1000, 10000};
constexpr int maximumWholeDigits = 8; // with the decimals below 2^53: exact
constexpr int maximumElevationDigits = 9; // fit into 32 bits
constexpr int maximumTimeDigits = 18; // fit into 64 bits

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

/// Four characters as they lie in memory, the first one lowest.
constexpr quint64 fourOf(quint64 character)
{
    return character << 48 | character << 32 | character << 16 | character;
}

/// Four characters at a time: digits become their values, anything else more than nine.
constexpr int atOnce = 4;

constexpr bool canLoad(const char16_t *at, const char16_t *end, int count)
{
    return std::endian::native == std::endian::little && end - at >= count;
}

quint64 loadFour(const char16_t *at)
{
    quint64 four = 0;
    std::memcpy(&four, at, sizeof four);
    return four ^ fourOf(u'0');
}

/// The highest bit of each that is no digit.
constexpr quint64 othersIn(quint64 four)
{
    return (((four & fourOf(0x7fff)) + fourOf(0x8000 - 10)) | four) & fourOf(0x8000);
}

constexpr int countBefore(quint64 others)
{
    return std::countr_zero(others) / 16;
}

/// The number that the first `count` of the four write. The product has the sum of digits times powers of ten in its
/// highest sixteen bits, with no carry from below.
constexpr quint64 numberOf(quint64 four, int count)
{
    const int half = 8 * (atOnce - count); // a shift by all bits at once would be undefined
    return ((four << half << half) * (quint64(1000) << 48 | quint64(100) << 32 | 10 << 16 | 1)) >> 48;
}

/// Appends the decimals that are kept to the number; gives how many.
int scanDecimals(const char16_t *at, const char16_t *end, quint64 &number)
{
    if (!canLoad(at, end, 2 * atOnce)) {
        int count = 0;
        for (; at != end && count < keptDecimals && isDigit(*at); ++at, ++count)
            number = number * 10 + (*at - u'0');
        return count;
    }
    constexpr quint64 whereThreeAre = 0xffffffffffff;
    const quint64 first = loadFour(at);
    const quint64 second = loadFour(at + atOnce);
    const quint64 othersInFirst = othersIn(first);
    const quint64 othersInSecond = othersIn(second) | ~whereThreeAre;
    if (othersInFirst == 0 && (othersInSecond & whereThreeAre) == 0) {
        // Nearly always: what follows need not wait until they are counted.
        number = number * 10000000 + numberOf(first, 4) * 1000 + numberOf(second, 3);
        return keptDecimals;
    }
    const int inFirst = countBefore(othersInFirst);
    const int inSecond = inFirst == atOnce ? countBefore(othersInSecond) : 0;
    number = number * wholePowersOfTen[std::size_t(inFirst)] + numberOf(first, inFirst);
    number = number * wholePowersOfTen[std::size_t(inSecond)] + numberOf(second, inSecond);
    return inFirst + inSecond;
}

// What follows gives the place behind what it read, null for any other form than its own.

/// Digits with a minus before and a point among them, as KelGPXTrackElement::safeDouble() reads them. Both operands of the
/// division are exact, so it rounds once, as the conversion of the text would.
const char16_t *scanCoordinate(const char16_t *at, const char16_t *end, double &value)
{
    const char16_t *p = at;
    const bool negative = p != end && *p == u'-';
    if (negative)
        ++p;

    quint64 mantissa = 0;
    const char16_t *const wholeBegin = p;
    for (; p != end && isDigit(*p); ++p)
        mantissa = mantissa * 10 + (*p - u'0');
    if (p == wholeBegin || p - wholeBegin > maximumWholeDigits)
        return nullptr;

    double size = 0.0;
    if (p != end && *p == u'.') {
        ++p;
        const int decimals = scanDecimals(p, end, mantissa);
        size = double(qint64(mantissa)) / powersOfTen[std::size_t(decimals)];
        p += decimals;
        while (p != end && isDigit(*p)) // cut off
            ++p;
    } else {
        if (p - at > keptWithoutPoint)
            return nullptr;
        size = double(qint64(mantissa));
    }
    value = negative ? -size : size;
    return p;
}

/// Digits with a minus before.
const char16_t *scanInteger(const char16_t *at, const char16_t *end, int maximumDigits, qint64 &value)
{
    const char16_t *p = at;
    const bool negative = p != end && *p == u'-';
    if (negative)
        ++p;
    const char16_t *const begin = p;
    qint64 size = 0;
    for (; canLoad(p, end, atOnce) && p - begin <= maximumDigits - atOnce; p += atOnce) {
        const quint64 four = loadFour(p);
        if (othersIn(four) != 0)
            break;
        size = size * 10000 + qint64(numberOf(four, atOnce));
    }
    for (; p != end && isDigit(*p); ++p) {
        if (p - begin == maximumDigits)
            return nullptr;
        size = size * 10 + (*p - u'0');
    }
    value = negative ? -size : size;
    return p == begin ? nullptr : p;
}

const char16_t *scanComma(const char16_t *at, const char16_t *end)
{
    return at != nullptr && at != end && *at == u',' ? at + 1 : nullptr;
}

bool isTupleEnd(const char16_t *at, const char16_t *end)
{
    return at == end || isSpace(*at);
}

/// Elevation and perhaps a time.
const char16_t *scanFurtherFields(const char16_t *at, const char16_t *end, Tuple &tuple)
{
    qint64 elevation = 0;
    at = scanInteger(at, end, maximumElevationDigits, elevation);
    if (at == nullptr)
        return nullptr;
    tuple.elevation = int(elevation);
    if (isTupleEnd(at, end))
        return at;
    at = scanComma(at, end);
    if (at != nullptr)
        at = scanInteger(at, end, maximumTimeDigits, tuple.seconds);
    tuple.hasTime = true;
    return at != nullptr && isTupleEnd(at, end) ? at : nullptr;
}

/// A tuple of two to four plain fields.
const char16_t *scanTuple(const char16_t *at, const char16_t *end, Tuple &tuple)
{
    at = scanComma(scanCoordinate(at, end, tuple.longitude), end);
    if (at == nullptr)
        return nullptr;
    at = scanCoordinate(at, end, tuple.latitude);
    if (at == nullptr || isTupleEnd(at, end))
        return at;
    at = scanComma(at, end);
    return at != nullptr ? scanFurtherFields(at, end, tuple) : nullptr;
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
    QList<KelGPXTrack> routes; // the invalid ones included: their number is known only when all tracks were seen
    int counter = 0;
    while (root.nextChild()) {
        KelXMLCursor &child = root.child();
        const bool isTrack = child.name() == KelGPXNames::Track;
        if (!isTrack && child.name() != KelGPXNames::Route)
            continue;
        KelGPXTrack track;
        mergeTrack(child, nullptr, track);
        if (isTrack)
            keepTrack(std::move(track), file, ++counter, tracks);
        else
            routes.append(std::move(track));
    }
    for (const KelGPXTrack &route : std::as_const(routes))
        keepTrack(route, file, ++counter, tracks);
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
    // The one rule that calls itself.
    if (depth == KelGPXTrack::MAXIMUM_ENCLAVE_DEPTH)
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
    QList<KelGPXTrackPoint> points;
    const auto append = [&points](const Tuple &tuple) {
        if (!isNull(tuple))
            points.append(KelGPXTrackPoint(makeData(tuple)));
    };
    bool checked = false;
    const char16_t *at = text.utf16();
    const char16_t *const end = at + text.size();
    while (at != end) {
        if (isSpace(*at)) {
            ++at;
            continue;
        }
        Tuple tuple;
        if (const char16_t *const behind = scanTuple(at, end, tuple)) {
            at = behind;
        } else {
            // Half a surrogate pair anywhere: no regular expression matches in such a text, so it is one tuple.
            if (!checked && !text.isValidUtf16()) {
                points.clear();
                append(readTuple(text));
                return points;
            }
            checked = true;
            const char16_t *const begin = at;
            while (!isTupleEnd(at, end))
                ++at;
            tuple = readTuple(QStringView(begin, at));
        }
        append(tuple);
    }
    return points;
}
