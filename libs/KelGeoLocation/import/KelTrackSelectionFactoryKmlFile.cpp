// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelTrackSelectionFactoryKmlFile.h"

#include <KelErrorHistory.h>
#include <KelFileHandler.h>
#include <KelGPXConfiguredTrackList.h>
#include <KelGPXTrackStyleList.h>
#include <KelKMLNames.h>
#include <KelXMLLongTexts.h>
#include <KelZIP.h>

#include <QDomDocument>
#include <QFile>
#include <QFileInfo>
#include <QStringView>

#include <algorithm>

namespace
{

constexpr qint64 NO_POSITION = -1;

void report(KelErrorHistory *errors, const QString &fileName, const QString &message)
{
    if (errors)
        errors->add({fileName, NO_POSITION, NO_POSITION, message});
}

/// The element that follows in document order without going below this one; null at the end of @p top.
QDomElement nextBeside(QDomElement element, const QDomElement &top)
{
    while (!element.isNull() && element != top) {
        const QDomElement sibling = element.nextSiblingElement();
        if (!sibling.isNull())
            return sibling;
        element = element.parentNode().toElement();
    }
    return QDomElement();
}

/// The element that follows in document order, going below this one first; null at the end of @p top.
QDomElement nextBelow(const QDomElement &element, const QDomElement &top)
{
    const QDomElement child = element.firstChildElement();
    return child.isNull() ? nextBeside(element, top) : child;
}

QString readPlainFile(const QFileInfo &file, KelErrorHistory *errors)
{
    const QString text = KelFileHandler::readText(file);
    if (text.isNull() && errors) {
        QFile reader(file.filePath());
        report(errors, file.filePath(),
               reader.open(QIODevice::ReadOnly) ? QStringLiteral("the file is empty or cannot be read")
                                                : reader.errorString());
    }
    return text;
}

QString readArchive(const QFileInfo &file, KelErrorHistory *errors)
{
    KelZIP zip(file, KelZIP::Read);
    const QStringList names = zip.getFileNameList();
    // Deliberate: "doc.KML" does not count, although the archive's own suffix may be written in any case.
    const auto kml = std::find_if(names.cbegin(), names.cend(),
                                  [](const QString &name) { return name.endsWith(QLatin1String(".kml")); });
    if (kml == names.cend()) {
        report(errors, file.filePath(),
               zip.isOpen() ? QStringLiteral("the archive holds no .kml entry") : zip.errorString());
        zip.close();
        return QString();
    }
    const QByteArray content = zip.fileContent(*kml);
    if (content.isEmpty()) {
        report(errors, file.filePath(),
               zip.errorString().isEmpty() ? QStringLiteral("the entry \"%1\" is empty").arg(*kml)
                                           : zip.errorString());
    }
    return QString::fromUtf8(content);
}

/// QDomElement::text(), but a single text as it lies in the tree: that of coordinates is long.
QString wholeText(const QDomElement &element)
{
    const QDomNode child = element.firstChild();
    return child.isText() && child.nextSibling().isNull() ? child.nodeValue() : element.text();
}

/// The text of the first element "coordinates" that has one, with the blanks around it.
QString coordinatesOf(const QDomElement &element)
{
    QDomElement current = element;
    while (!current.isNull()) {
        if (current.nodeName() == KelKMLNames::Coordinates) {
            const QString text = wholeText(current);
            if (!QStringView(text).trimmed().isEmpty())
                return text;
            current = nextBeside(current, element);
        } else {
            current = nextBelow(current, element);
        }
    }
    return QString();
}

QString orFileName(const QString &text, const QString &fileName)
{
    return text.isEmpty() ? fileName : text;
}

/// Never one that refers to the text of the file, which does not stay.
QString childText(const QDomElement &element, const QString &name)
{
    QString text = element.firstChildElement(name).text();
    text.detach();
    return text;
}

} // namespace

KelTrackSelectionFactoryKmlFile::~KelTrackSelectionFactoryKmlFile() = default;

QStringList KelTrackSelectionFactoryKmlFile::supportedFileFormats() const
{
    return {QStringLiteral("*.kml"), QStringLiteral("*.kmz")};
}

bool KelTrackSelectionFactoryKmlFile::supportsFile(const QFileInfo &file) const
{
    const QString suffix = file.suffix().toLower();
    return suffix == QLatin1String("kml") || suffix == QLatin1String("kmz");
}

KelGPXConfiguredTrackList KelTrackSelectionFactoryKmlFile::createConfiguredTrackList(const QFileInfo &file) const
{
    return createConfiguredTrackList(file, nullptr);
}

KelGPXConfiguredTrackList KelTrackSelectionFactoryKmlFile::createConfiguredTrackList(const QFileInfo &file,
                                                                                     KelErrorHistory *errors) const
{
    KelErrorHistory readErrors;
    const QString text = readFile(file, errors ? &readErrors : nullptr);
    // A text that could not be read does not parse either; that would only repeat the reason.
    KelErrorHistory decodeErrors;
    KelGPXConfiguredTrackList list = decode(text, file.fileName(), errors ? &decodeErrors : nullptr);
    if (errors) {
        for (KelErrorHistory::Entry entry : (readErrors.isEmpty() ? decodeErrors : readErrors).entries()) {
            entry.fileName = file.filePath();
            errors->add(entry);
        }
    }
    return list;
}

QString KelTrackSelectionFactoryKmlFile::readFile(const QFileInfo &file, KelErrorHistory *errors) const
{
    const QString suffix = file.suffix().toLower();
    if (suffix == QLatin1String("kml"))
        return readPlainFile(file, errors);
    if (suffix == QLatin1String("kmz"))
        return readArchive(file, errors);
    report(errors, file.filePath(), QStringLiteral("neither a .kml nor a .kmz file"));
    return QString();
}

KelGPXConfiguredTrackList KelTrackSelectionFactoryKmlFile::decode(const QString &kmlText, const QString &fileName,
                                                                  KelErrorHistory *errors) const
{
    QDomDocument xml;
    KelErrorHistory parseErrors;
    // Coordinates are read and forgotten below.
    KelXMLLongTexts::setContentInPlace(xml, kmlText, KelKMLNames::Coordinates, &parseErrors);

    const QDomElement document = xml.documentElement().firstChildElement(KelKMLNames::Document);
    const KelGPXTrackStyleList styles = KelGPXTrackStyleList::fromKml(document);
    const QList<QDomElement> placemarks = findPlacemarks(document);

    KelGPXConfiguredTrackList list;
    bool anyPoints = false;
    for (const QDomElement &placemark : placemarks) {
        const KelGPXTrack track = KelGPXTrack::decodeKml(
            orFileName(childText(placemark, KelKMLNames::Name), fileName),
            orFileName(childText(placemark, KelKMLNames::Description), fileName), coordinatesOf(placemark),
            KelGPXTrackShape::decodeKml(placemark));
        anyPoints = anyPoints || track.isValid();
        list.append(KelGPXConfiguredTrack(track, styles.findStyling(childText(placemark, KelKMLNames::StyleUrl))));
    }

    if (errors && !anyPoints) {
        if (!parseErrors.isEmpty()) {
            KelErrorHistory::Entry entry = parseErrors.last();
            entry.fileName = fileName;
            errors->add(entry);
        } else if (document.isNull()) {
            report(errors, fileName, QStringLiteral("no \"Document\" element in the root element \"%1\"")
                                         .arg(xml.documentElement().tagName()));
        } else if (placemarks.isEmpty()) {
            report(errors, fileName, QStringLiteral("the \"Document\" holds no placemarks"));
        } else {
            report(errors, fileName, QStringLiteral("no placemark has coordinates"));
        }
    }
    return list;
}

// Neither this search nor that for coordinates calls itself: elements may come from anywhere, not only from decode(),
// nested as deep as they like.
QList<QDomElement> KelTrackSelectionFactoryKmlFile::findPlacemarks(const QDomElement &element) const
{
    QList<QDomElement> placemarks;
    QDomElement current = element;
    while (!current.isNull()) {
        if (current.nodeName() == KelKMLNames::Placemark) {
            placemarks.append(current);
            current = nextBeside(current, element);
        } else {
            current = nextBelow(current, element);
        }
    }
    return placemarks;
}

QString KelTrackSelectionFactoryKmlFile::findCoordinates(const QDomElement &element) const
{
    return coordinatesOf(element).trimmed();
}
