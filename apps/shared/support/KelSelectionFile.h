// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELSELECTIONFILE_H
#define KELSELECTIONFILE_H

#include <KelErrorHistory.h>
#include <KelGPXTrackSelection.h>

#include <QDir>
#include <QMap>
#include <QSet>
#include <QString>
#include <QStringList>

#include <chrono>

class KelGPXTrack;
class QDomElement;

/// Keeps a selection in a document of its own: looks and cropping in the document, each track in a file of a folder
/// beside it ("trip.xml" and "trip.tracks/"), so that points are stored once.
///
/// Several processes may save one document: the last one wins, as a whole. While one saves, the others wait, those that
/// load included, so that they get the former state or the new one.
///
/// Reasons of a failure are added to the error history, in words that fit behind the file's name.
class KelSelectionFile
{
public:
    enum class Result {
        Done,
        Unreadable, ///< the document is missing or may not be read
        Incomplete, ///< one of its tracks is missing or malformed; the others were read
        Malformed,  ///< the document is no stored selection
        NotWritten  ///< a document that was there before is unchanged
    };

    explicit KelSelectionFile(const QString &path);

    /// How long to wait for others that use the document before saving fails; a minute if nothing is set. Loading waits
    /// no longer than a few seconds, then it reads what is there.
    void setPatience(std::chrono::milliseconds patience) { m_patience = patience; }

    /// On failure the selection is left alone; if only tracks are missing or malformed, it holds the others. What is malformed is
    /// told with the place: of a track with the name of its file. Everything else is told with the name of the document. The
    /// reasons of many tracks end with how many more there are.
    Result load(KelGPXTrackSelection &selection, KelErrorHistory &errors) const;
    Result save(const KelGPXTrackSelection &selection, KelErrorHistory &errors) const;

    /// Deletes track files that the document does not mention: those of former versions. Only for documents that
    /// nobody keeps copies of.
    void removeUnusedTracks() const;

    /// The folder with the tracks, absolute.
    [[nodiscard]] QDir store() const { return m_store; }
    /// All files in it, absolute.
    [[nodiscard]] QStringList storedFiles() const;

private:
    [[nodiscard]] static QStringList trackFiles(const QDomElement &root);
    [[nodiscard]] QString objectionTo(const QDomElement &root) const;
    [[nodiscard]] KelGPXTrackSelection read(const QDomElement &root, const QSet<QString> &unwanted) const;
    [[nodiscard]] bool areNamedTooOften(const QStringList &names) const;
    /// Why a file gives no track; without words if it does.
    [[nodiscard]] KelErrorHistory::Entry flawOf(const QString &name) const;
    /// The files that give no track, of those mentioned; each once, by name.
    [[nodiscard]] QMap<QString, KelErrorHistory::Entry> flaws(const QStringList &names) const;
    /// Whether the file holds that track, as the library writes it.
    [[nodiscard]] bool holds(const QString &name, const KelGPXTrack &track) const;
    void correctTracks(const KelGPXTrackSelection &selection, const QDomElement &root,
                       const QSet<QString> &formerFiles) const;
    void removeFiles(const QStringList &names) const;
    Result fail(Result result, const QString &message, KelErrorHistory &errors) const;

    QString m_path;
    QDir m_store; ///< absolute
    std::chrono::milliseconds m_patience{60000};
};

#endif
