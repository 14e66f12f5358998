// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelXMLLoader.h"

#include <KelErrorHistory.h>

#include <QByteArray>
#include <QCoreApplication>
#include <QDomDocument>
#include <QFile>
#include <QFileInfo>
#include <QString>
#include <QXmlStreamReader>

#include <algorithm>

namespace
{

constexpr QChar ByteOrderMark(0xfeff);

/// Qt counts the characters of the line that it has read: none yet means the first column.
qint64 columnFromOne(qint64 column)
{
    return std::max<qint64>(column, 1);
}

/// Whether elements are nested deeper than the tree bears, and where. Most documents have fewer tags than that and
/// need no look.
template<class Source>
bool isTooDeep(const Source &source, KelErrorHistory::Entry &place)
{
    if (source.count('<') <= KelXMLLoader::MAXIMUM_DEPTH)
        return false;
    QXmlStreamReader xml(source);
    xml.setNamespaceProcessing(false);
    int depth = 0;
    while (!xml.atEnd() && depth <= KelXMLLoader::MAXIMUM_DEPTH) {
        const QXmlStreamReader::TokenType token = xml.readNext();
        depth += token == QXmlStreamReader::StartElement ? 1 : token == QXmlStreamReader::EndElement ? -1 : 0;
    }
    place.line = xml.lineNumber();
    place.column = columnFromOne(xml.columnNumber());
    return depth > KelXMLLoader::MAXIMUM_DEPTH;
}

void report(KelErrorHistory *errorHistory, const KelErrorHistory::Entry &entry)
{
    if (errorHistory)
        errorHistory->add(entry);
}

/// The one place where text becomes a tree, whatever it comes from; Source is a QString or a QByteArray.
template<class Source>
QDomDocument parse(const Source &source, const QString &fileName, KelErrorHistory *errorHistory)
{
    KelErrorHistory::Entry place;
    if (isTooDeep(source, place)) {
        report(errorHistory, {fileName, place.line, place.column,
                              QStringLiteral("elements are nested more than %1 levels deep")
                                  .arg(KelXMLLoader::MAXIMUM_DEPTH)});
        return {};
    }
    QDomDocument document;
    QString message;
    int line = -1;
    int column = -1;
    // Without namespaces: with them, tag names lose their prefix and undeclared prefixes are errors.
    if (document.setContent(source, false, &message, &line, &column))
        return document;
    // After an error Qt leaves the tree as far as it came.
    report(errorHistory, {fileName, line, columnFromOne(column), message});
    return {};
}

} // namespace

QDomElement KelXMLLoader::loadDocumentElement(const QFileInfo &fileInfo, KelErrorHistory *errorHistory)
{
    return loadDocument(fileInfo, errorHistory).documentElement();
}

QDomDocument KelXMLLoader::loadDocument(const QFileInfo &fileInfo, KelErrorHistory *errorHistory)
{
    QFile file(fileInfo.filePath());
    // Qt warns about a file without a name; here it is one that cannot be read, like any other.
    if (file.fileName().isEmpty()) {
        report(errorHistory, {QString(), -1, -1, QCoreApplication::translate("KelXMLLoader", "no file name")});
        return {};
    }
    QByteArray bytes;
    if (file.open(QIODevice::ReadOnly))
        bytes = file.readAll();
    if (!file.isOpen() || file.error() != QFileDevice::NoError) {
        report(errorHistory, {fileInfo.filePath(), -1, -1, file.errorString()});
        return {};
    }
    return parse(bytes, fileInfo.filePath(), errorHistory);
}

bool KelXMLLoader::setContent(QDomDocument &document, const QString &text, KelErrorHistory *errorHistory)
{
    document = parse(text.startsWith(ByteOrderMark) ? text.mid(1) : text, QString(), errorHistory);
    return !document.isNull();
}

bool KelXMLLoader::setContent(QDomDocument &document, const QByteArray &bytes, KelErrorHistory *errorHistory)
{
    document = parse(bytes, QString(), errorHistory);
    return !document.isNull();
}
