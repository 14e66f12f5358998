// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelXMLLoader.h"

#include <KelErrorHistory.h>
#include <KelXMLGate.h>

#include <QByteArray>
#include <QCoreApplication>
#include <QDomDocument>
#include <QFile>
#include <QFileInfo>
#include <QString>

#include <algorithm>

namespace
{

constexpr QChar ByteOrderMark(0xfeff);

constexpr qint64 BLOCK = 1024 * 1024;

/// Qt counts the characters of the line that it has read: none yet means the first column.
qint64 columnFromOne(qint64 column)
{
    return std::max<qint64>(column, 1);
}

/// All bytes of a file; false when there are more than may be. A device need not have an end; one of zeros is left early,
/// since no text of any encoding starts with four of them.
bool readAll(QFile &file, QByteArray &bytes)
{
    const bool isPipe = file.isSequential() || file.size() == 0;
    const qint64 limit = isPipe ? KelXMLGate::MAXIMUM_PIPE_SIZE : KelXMLGate::MAXIMUM_SIZE;
    if (file.size() > limit)
        return false;
    bytes.reserve(qsizetype(file.size()));
    QByteArray block = file.read(BLOCK);
    while (!block.isEmpty() && bytes.size() <= limit) {
        bytes.append(block);
        if (isPipe && bytes.startsWith(QByteArray(4, '\0')))
            return false;
        block = file.read(BLOCK);
    }
    return bytes.size() <= limit;
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
    KelErrorHistory::Entry reason;
    if (!KelXMLGate::admits(source, &reason)) {
        reason.fileName = fileName;
        report(errorHistory, reason);
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
    const bool fits = !file.open(QIODevice::ReadOnly) || readAll(file, bytes);
    if (!file.isOpen() || file.error() != QFileDevice::NoError) {
        report(errorHistory, {fileInfo.filePath(), -1, -1, file.errorString()});
        return {};
    }
    if (!fits) {
        report(errorHistory, {fileInfo.filePath(), -1, -1, QStringLiteral("the file is too large or has no end")});
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
