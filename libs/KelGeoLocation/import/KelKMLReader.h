// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELKMLREADER_H
#define KELKMLREADER_H

#include <KelGPXTrack.h>
#include <KelGPXTrackStyleList.h>
#include <KelXMLTextHandler.h>

#include <QDomDocument>
#include <QDomElement>
#include <QList>
#include <QString>

class KelGPXConfiguredTrackList;

/// All rules by which a KML document is read, in one pass: what a placemark or a style holds is remembered until its end and
/// then becomes a track or a configuration. A tree of the document would need many times the document's size.
///
/// Of several children with the same name the first counts. A text is that of an element with all elements in it, so that
/// one text may count for several: the name of a placemark may hold its coordinates.
class KelKMLReader : public KelXMLTextHandler
{
public:
    /// Placemarks without a name or a description are called `fileName`.
    explicit KelKMLReader(const QString &fileName);
    ~KelKMLReader() override;

    void begin() override;
    void startElement(QStringView name, const QXmlStreamAttributes &attributes) override;
    void text(QStringView text, bool stays) override;
    void endElement() override;

    /// Once for a document that was read to its end: one entry for each placemark.
    [[nodiscard]] KelGPXConfiguredTrackList takeTracks();

    /// The name of the document element; empty without one.
    [[nodiscard]] const QString &rootName() const noexcept { return m_rootName; }
    /// Whether there is an element "Document", the root's child, in which everything lies.
    [[nodiscard]] bool hasDocument() const noexcept { return m_part != Part::Before; }
    /// Whether any placemark has coordinates.
    [[nodiscard]] bool hasPoints() const noexcept { return m_hasPoints; }

private:
    enum class Part { Before,
                      Within,
                      Behind };

    /// The text of an element, while it is open and afterwards.
    struct Text
    {
        void begin(int atDepth);
        void add(QStringView text, bool stays);
        void endAt(int closingDepth);
        [[nodiscard]] bool isOpen() const noexcept { return depth > 0; }
        /// Valid as long as this object does not change.
        [[nodiscard]] QStringView view() const { return lying.isNull() ? QStringView(copied) : lying; }
        [[nodiscard]] QString toString() const { return view().toString(); }

        QString copied;
        QStringView lying; // a single text that stays where it is, of which there is no copy
        int depth = 0;     // of the element while it is open
        bool wasMet = false;
    };

    struct Placemark
    {
        int depth = 0; // 0: none is open
        Text name;
        Text description;
        Text styleUrl;
        Text shape;
        Text coordinates;
        bool hasCoordinates = false; // more than blanks
        bool hasPolygon = false;
        bool hasLineString = false;
        bool hasPoint = false;
    };

    /// A style as a little tree of what counts of it.
    struct Style
    {
        QDomDocument document;
        QDomElement style; // null: none is open
        QDomElement part;  // "LineStyle" or "PolyStyle"
        QDomElement value; // "color" or "width"
        Text text;         // of the value
    };

    struct Entry
    {
        KelGPXTrack track;
        QString styleUrl;
    };

    void startWithinStyle(QStringView name, const QXmlStreamAttributes &attributes);
    void startWithinPlacemark(QStringView name);
    void startChildOfPlacemark(QStringView name);
    void endWithinStyle();
    void endWithinPlacemark();
    void keepPlacemark();
    [[nodiscard]] QString orFileName(const Text &text) const;
    [[nodiscard]] KelGPXTrackShape shapeOfPlacemark() const;

    const QString m_fileName;
    QString m_rootName;
    Part m_part = Part::Before;
    int m_depth = 0; // of the innermost open element, the document element being 1
    Style m_style;
    Placemark m_placemark;
    KelGPXTrackStyleList m_styles;
    QList<Entry> m_entries;
    bool m_hasPoints = false;
};

#endif
