// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelTrackSelectionFactoryKmlFile.h"

#include "KelKMLReader.h"
#include <KelErrorHistory.h>
#include <KelFileHandler.h>
#include <KelGPXConfiguredTrackList.h>
#include <KelKMLNames.h>
#include <KelXMLTextReader.h>
#include <KelZIP.h>

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

/// Whether the text was UTF-16 or UTF-32 before it was read as UTF-8: a zero beside its first "<".
bool isOfWideCharacters(const QString &text)
{
    constexpr qsizetype mostBefore = 7; // a byte order mark and zeros
    const qsizetype first = text.indexOf(u'<');
    return first >= 0 && first <= mostBefore
        && ((first > 0 && text.at(first - 1).isNull()) || (first + 1 < text.size() && text.at(first + 1).isNull()));
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
    // From the one that reads: whoever opened a pipe once more, to see what was wrong, would wait for another writer.
    QString reason;
    const QString text = KelFileHandler::readText(file, &reason);
    if (text.isNull())
        report(errors, file.filePath(), reason);
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

/// The text of the first element "coordinates" that has one, with the blanks around it.
QString coordinatesOf(const QDomElement &element)
{
    QDomElement current = element;
    while (!current.isNull()) {
        if (current.nodeName() == KelKMLNames::Coordinates) {
            const QString text = current.text();
            if (!QStringView(text).trimmed().isEmpty())
                return text;
            current = nextBeside(current, element);
        } else {
            current = nextBelow(current, element);
        }
    }
    return QString();
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
    KelKMLReader reader(fileName);
    KelErrorHistory parseErrors;
    if (!KelXMLTextReader::read(kmlText, reader, &parseErrors)) {
        if (errors) {
            KelErrorHistory::Entry entry = parseErrors.last();
            if (isOfWideCharacters(kmlText))
                entry = {fileName, 1, 1, QStringLiteral("this is UTF-16 or UTF-32; KML is read as UTF-8: save it as UTF-8")};
            entry.fileName = fileName;
            errors->add(entry);
        }
        return {};
    }

    const KelGPXConfiguredTrackList list = reader.takeTracks();
    if (reader.hasPoints())
        return list;
    if (!reader.hasDocument()) {
        report(errors, fileName,
               QStringLiteral("no \"Document\" element in the root element \"%1\"").arg(reader.rootName()));
    } else if (list.tracks().isEmpty()) {
        report(errors, fileName, QStringLiteral("the \"Document\" holds no placemarks"));
    } else {
        report(errors, fileName, QStringLiteral("no placemark has coordinates"));
    }
    return list;
}

// Neither this search nor that for coordinates calls itself: elements may come from anywhere, not only from decode(),
// nested as deep as they like. KelKMLReader has the same rules for a whole document.
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
