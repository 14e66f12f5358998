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

namespace
{

constexpr QChar ByteOrderMark(0xfeff);

void report(KelErrorHistory *errorHistory, const KelErrorHistory::Entry &entry)
{
    if (errorHistory)
        errorHistory->add(entry);
}

/// The one place where text becomes a tree, whatever it comes from; Source is a QString or a QByteArray.
template<class Source>
QDomDocument parse(const Source &source, const QString &fileName, KelErrorHistory *errorHistory)
{
    QDomDocument document;
    QString message;
    int line = -1;
    int column = -1;
    // Without namespaces: with them, tag names lose their prefix and undeclared prefixes are errors.
    if (document.setContent(source, false, &message, &line, &column))
        return document;
    // After an error Qt leaves the tree as far as it came.
    report(errorHistory, {fileName, line, column, message});
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
