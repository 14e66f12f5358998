// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelKMLReader.h"

#include <KelGPXConfiguredTrack.h>
#include <KelGPXConfiguredTrackList.h>
#include <KelGPXTrackShape.h>
#include <KelGPXTrackStyle.h>
#include <KelKMLNames.h>

#include <QXmlStreamAttributes>

#include <utility>

namespace
{

constexpr int DOCUMENT_DEPTH = 2;
constexpr int STYLE_DEPTH = DOCUMENT_DEPTH + 1;
constexpr int STYLE_PART_DEPTH = STYLE_DEPTH + 1;
constexpr int STYLE_VALUE_DEPTH = STYLE_PART_DEPTH + 1;

/// QDomElement::attribute()
QString attributeOf(const QXmlStreamAttributes &attributes, const QString &name)
{
    for (const QXmlStreamAttribute &attribute : attributes) {
        if (attribute.qualifiedName() == name)
            return attribute.value().toString();
    }
    return QString();
}

/// A new child of the parent; null when it has one of that name already, which counts.
QDomElement newChild(QDomDocument &document, QDomElement &parent, const QString &name)
{
    if (!parent.firstChildElement(name).isNull())
        return QDomElement();
    return parent.appendChild(document.createElement(name)).toElement();
}

} // namespace

void KelKMLReader::Text::begin(int atDepth)
{
    depth = atDepth;
    wasMet = true;
    copied = QString();
    lying = QStringView();
}

void KelKMLReader::Text::add(QStringView text, bool stays)
{
    if (!isOpen())
        return;
    if (stays && lying.isNull() && copied.isEmpty()) {
        lying = text;
        return;
    }
    copied.append(std::exchange(lying, QStringView()));
    copied.append(text);
}

void KelKMLReader::Text::endAt(int closingDepth)
{
    if (depth == closingDepth)
        depth = 0;
}

KelKMLReader::KelKMLReader(const QString &fileName)
    : m_fileName(fileName)
{
}

KelKMLReader::~KelKMLReader() = default;

void KelKMLReader::begin()
{
    m_rootName = QString();
    m_part = Part::Before;
    m_depth = 0;
    m_style = Style();
    m_placemark = Placemark();
    m_styles = KelGPXTrackStyleList();
    m_entries.clear();
    m_hasPoints = false;
}

void KelKMLReader::startElement(QStringView name, const QXmlStreamAttributes &attributes)
{
    ++m_depth;
    if (m_depth == 1)
        m_rootName = name.toString();
    if (m_part == Part::Before && m_depth == DOCUMENT_DEPTH && name == KelKMLNames::Document) {
        m_part = Part::Within;
    } else if (m_part == Part::Within) {
        startWithinStyle(name, attributes);
        startWithinPlacemark(name);
    }
}

/// Only styles that are direct children of the document count.
void KelKMLReader::startWithinStyle(QStringView name, const QXmlStreamAttributes &attributes)
{
    if (m_depth == STYLE_DEPTH && name == KelKMLNames::Style) {
        m_style.style = m_style.document.createElement(KelKMLNames::Style);
        m_style.style.setAttribute(KelKMLNames::Id, attributeOf(attributes, KelKMLNames::Id));
    } else if (m_depth == STYLE_PART_DEPTH && !m_style.style.isNull()) {
        if (name == KelKMLNames::LineStyle || name == KelKMLNames::PolyStyle)
            m_style.part = newChild(m_style.document, m_style.style, name.toString());
    } else if (m_depth == STYLE_VALUE_DEPTH && !m_style.part.isNull()) {
        if (name == KelKMLNames::Color || name == KelKMLNames::Width)
            m_style.value = newChild(m_style.document, m_style.part, name.toString());
        if (!m_style.value.isNull())
            m_style.text.begin(m_depth);
    }
}

void KelKMLReader::startWithinPlacemark(QStringView name)
{
    if (m_placemark.depth == 0) {
        if (name == KelKMLNames::Placemark)
            m_placemark.depth = m_depth;
        return;
    }
    if (m_depth == m_placemark.depth + 1)
        startChildOfPlacemark(name);
    if (name == KelKMLNames::Coordinates && !m_placemark.hasCoordinates && !m_placemark.coordinates.isOpen())
        m_placemark.coordinates.begin(m_depth);
}

void KelKMLReader::startChildOfPlacemark(QStringView name)
{
    const auto take = [&](const QString &wanted, Text &text) {
        if (name == wanted && !text.wasMet)
            text.begin(m_depth);
    };
    take(KelKMLNames::Name, m_placemark.name);
    take(KelKMLNames::Description, m_placemark.description);
    take(KelKMLNames::StyleUrl, m_placemark.styleUrl);
    take(KelKMLNames::Shape, m_placemark.shape);
    m_placemark.hasPolygon = m_placemark.hasPolygon || name == KelKMLNames::Polygon;
    m_placemark.hasLineString = m_placemark.hasLineString || name == KelKMLNames::LineString;
    m_placemark.hasPoint = m_placemark.hasPoint || name == KelKMLNames::Point;
}

void KelKMLReader::text(QStringView text, bool stays)
{
    if (m_part != Part::Within)
        return;
    for (Text *open : {&m_style.text, &m_placemark.name, &m_placemark.description, &m_placemark.styleUrl,
                       &m_placemark.shape, &m_placemark.coordinates})
        open->add(text, stays);
}

void KelKMLReader::endElement()
{
    if (m_part == Part::Within) {
        endWithinPlacemark();
        endWithinStyle();
        if (m_depth == DOCUMENT_DEPTH)
            m_part = Part::Behind;
    }
    --m_depth;
}

void KelKMLReader::endWithinStyle()
{
    if (m_depth == STYLE_VALUE_DEPTH && !m_style.value.isNull()) {
        m_style.text.endAt(m_depth);
        m_style.value.appendChild(m_style.document.createTextNode(m_style.text.toString()));
        m_style.value = QDomElement();
    } else if (m_depth == STYLE_PART_DEPTH) {
        m_style.part = QDomElement();
    } else if (m_depth == STYLE_DEPTH && !m_style.style.isNull()) {
        m_styles.add(KelGPXTrackStyle::fromKml(m_style.style));
        m_style = Style();
    }
}

void KelKMLReader::endWithinPlacemark()
{
    if (m_placemark.depth == 0)
        return;
    if (m_depth == m_placemark.depth) {
        keepPlacemark();
        m_placemark = Placemark();
        return;
    }
    for (Text *open : {&m_placemark.name, &m_placemark.description, &m_placemark.styleUrl, &m_placemark.shape})
        open->endAt(m_depth);
    // The first that has more than blanks counts.
    Text &coordinates = m_placemark.coordinates;
    if (coordinates.isOpen() && coordinates.depth == m_depth) {
        coordinates.endAt(m_depth);
        m_placemark.hasCoordinates = !coordinates.view().trimmed().isEmpty();
    }
}

void KelKMLReader::keepPlacemark()
{
    const QStringView coordinates = m_placemark.hasCoordinates ? m_placemark.coordinates.view() : QStringView();
    const KelGPXTrack track = KelGPXTrack::decodeKml(orFileName(m_placemark.name), orFileName(m_placemark.description),
                                                     QString::fromRawData(coordinates.data(), coordinates.size()),
                                                     shapeOfPlacemark());
    m_hasPoints = m_hasPoints || track.isValid();
    m_entries.append({track, m_placemark.styleUrl.toString()});
}

KelGPXTrackShape KelKMLReader::shapeOfPlacemark() const
{
    if (m_placemark.hasPolygon)
        return TrackShapePolygon;
    if (m_placemark.hasLineString)
        return TrackShapeLineString;
    if (m_placemark.hasPoint)
        return TrackShapePoint;
    return m_placemark.shape.wasMet ? KelGPXTrackShape(m_placemark.shape.toString()) : KelGPXTrackShape(TrackShapeAuto);
}

KelGPXConfiguredTrackList KelKMLReader::takeTracks()
{
    KelGPXConfiguredTrackList list;
    for (const Entry &entry : std::as_const(m_entries))
        list.append(KelGPXConfiguredTrack(entry.track, m_styles.findStyling(entry.styleUrl)));
    m_entries.clear();
    return list;
}

QString KelKMLReader::orFileName(const Text &text) const
{
    return text.view().isEmpty() ? m_fileName : text.toString();
}
