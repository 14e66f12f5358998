// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelGPXTrackFile.h"

#include "KelGPXReader.h"
#include <KelErrorHistory.h>
#include <KelXMLPlainCursor.h>
#include <KelXMLStreamCursor.h>

#include <QCoreApplication>
#include <QDir>
#include <QDomElement>
#include <QFile>
#include <QFileInfo>

#include <utility>

namespace
{

void addError(KelErrorHistory *errors, const QFileInfo &file, qint64 line, qint64 column, const QString &message)
{
    if (errors == nullptr)
        return;
    errors->add({file.filePath(), line, column, message});
}

/// The fast way. False, and nothing read, for whatever is not beyond doubt; the device stands anywhere then.
bool readPlain(QIODevice &source, const QFileInfo &file, QList<KelGPXTrack> &tracks)
{
    KelXMLPlainCursor root(&source);
    QList<KelGPXTrack> read = KelGPXReader::readFile(root, file);
    if (!root.finish())
        return false;
    tracks = std::move(read);
    return true;
}

} // namespace

KelGPXTrackFile::KelGPXTrackFile(const QFileInfo &file, KelErrorHistory *errors)
{
    if (file.filePath().isEmpty()) { // QFile would say so on standard error
        addError(errors, file, -1, -1, QCoreApplication::translate("KelXMLLoader", "no file name"));
        return;
    }
    QFile source(file.filePath());
    if (!source.open(QIODevice::ReadOnly)) {
        addError(errors, file, -1, -1, source.errorString());
        return;
    }
    // What cannot be read twice is left to the stream, which knows all forms and what is wrong with them.
    if (!source.isSequential()) {
        if (readPlain(source, file, m_tracks))
            return;
        source.seek(0);
    }
    KelXMLStreamCursor root(&source);
    QList<KelGPXTrack> tracks = KelGPXReader::readFile(root, file);
    const bool isWellFormed = root.finish();
    if (source.error() != QFileDevice::NoError)
        addError(errors, file, -1, -1, source.errorString());
    else if (isWellFormed)
        m_tracks = std::move(tracks);
    else
        addError(errors, file, root.errorLine(), root.errorColumn(), root.errorString());
}

KelGPXTrackFile::~KelGPXTrackFile() = default;

QList<KelGPXTrack> KelGPXTrackFile::readTracks(QDomElement root, const QString &tagName, int &counter,
                                               const QFileInfo &file) const
{
    QList<KelGPXTrack> tracks;
    for (QDomElement element = root.firstChildElement(tagName); !element.isNull();
         element = element.nextSiblingElement(tagName)) {
        KelGPXReader::keepTrack(KelGPXTrack(element, QDir(QString())), file, ++counter, tracks);
    }
    return tracks;
}
