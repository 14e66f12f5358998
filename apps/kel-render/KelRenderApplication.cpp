// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelRenderApplication.h"

#include "KelBeelineBuilder.h"
#include "KelFilePlace.h"
#include "KelMapArea.h"
#include "KelMapBounds.h"
#include "KelMapGeometry.h"
#include "KelOutputFile.h"
#include "KelPictureComposer.h"
#include "KelPictureEncoder.h"
#include "KelPlainText.h"
#include "KelRenderOptionsReader.h"
#include "KelSelectionFile.h"
#include "KelTimedPicture.h"
#include "KelTrackExporter.h"
#include "KelTrackLoader.h"
#include "KelTrackPalette.h"
#include "KelTrackReport.h"

#include <KelErrorHistory.h>
#include <KelGPXConfiguredTrackList.h>
#include <KelGPXTrackConfiguration.h>
#include <KelSettings.h>

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLoggingCategory>

#include <cmath>
#include <new>
#include <utility>

namespace
{

constexpr QSize DEFAULT_SIZE(1600, 1000);
// Beyond these a picture shows nothing: the world so large that places are closer than the numbers can tell, and
// endless rows of worlds.
constexpr double LARGEST_WORLD_PIXELS = 1e9;
constexpr double MOST_COPIES_OF_THE_WORLD = 100.0;

KelFilePlace storeOf(const QString &document)
{
    return KelFilePlace::ofResult(KelSelectionFile(document).store().path());
}

} // namespace

KelExitCode KelRenderApplication::run(const QStringList &arguments, const QStringList &undecodable)
{
    KelRenderOptionsReader reader(undecodable);
    const KelRenderOptionsReader::Outcome outcome = reader.read(arguments, m_options, m_diagnostics);
    if (outcome == KelRenderOptionsReader::Outcome::Done)
        return m_diagnostics.exitCode();
    if (outcome == KelRenderOptionsReader::Outcome::Run)
        drawWithinMemory();
    if (m_options.report || m_options.stats)
        printReport();
    return m_diagnostics.exitCode();
}

void KelRenderApplication::drawWithinMemory()
{
    m_diagnostics.setQuiet(m_options.quiet);
    if (m_options.verbose)
        qInstallMessageHandler(KelDiagnostics::showLogLine);
    const QString noSettings = KelSettings::unusableStore();
    if (!noSettings.isEmpty())
        m_diagnostics.warning(noSettings, QStringLiteral("the settings are not read: this is no file"));
    try {
        if (!readInputs())
            return;
        applyStyle();
        writeResults();
    } catch (const std::bad_alloc &) {
        // What took the memory must go before anything can be said.
        m_selection = KelGPXTrackSelection();
        m_ownMap = KelMapPicture();
        m_diagnostics.error(KelExitCode::InternalError,
                            QStringLiteral("there is too little memory; use a smaller --size or fewer tracks"));
    }
}

bool KelRenderApplication::readInputs()
{
    const KelRunStatistics::Watch watch(m_statistics, KelRunStatistics::Read);
    KelTrackLoader loader(m_diagnostics);
    loader.find(m_options.inputs);
    m_trackFiles = loader.files();
    if (!checkTargets())
        return false;
    if (!m_options.selectionFile.isEmpty())
        loadSelection();
    m_storedRows = m_selection.count();
    m_selection.addTracks(loader.load());
    for (const KelBeelineOption &option : std::as_const(m_options.beelines)) {
        if (const auto track = KelBeelineBuilder::build(option, m_diagnostics))
            m_selection.addTrack(*track);
    }
    m_statistics.setRead(m_selection, m_trackFiles.size());
    if (m_options.map == KelRenderOptions::Map::Picture
        && !m_ownMap.load(m_options.mapFile, *m_options.mapBounds, m_diagnostics))
        return false;
    if (m_diagnostics.hasErrors() && !m_options.keepGoing)
        return false;
    if (m_selection.isEmpty()) {
        m_diagnostics.error(KelExitCode::NothingToDraw,
                            QStringLiteral("there is nothing to draw: no input holds a track"));
        return false;
    }
    return checkWholeness();
}

/// A slip of the pen must not cost the only copy of a track: no result replaces what is read, or another result. Only a
/// selection may be stored again.
bool KelRenderApplication::checkTargets()
{
    const QString &document = m_options.selectionFile;
    QStringList targets{m_options.exportFile, m_options.saveSelectionFile};
    if (!m_options.toStandardOutput())
        targets.append(m_options.outputFile);
    targets.removeAll(QString());
    QList<KelFilePlace> taken;
    for (const QString &source : sources())
        taken.append(KelFilePlace::ofInput(source));
    for (const QString &target : std::as_const(targets)) {
        const KelFilePlace place = KelFilePlace::ofResult(target);
        const bool isStoredAgain = target == m_options.saveSelectionFile && !document.isEmpty()
            && storeOf(target) == storeOf(document);
        const bool isTheDocument = !document.isEmpty() && place == KelFilePlace::ofInput(document);
        if (taken.contains(place) || (isTheDocument && !isStoredAgain))
            return refuse(target, QStringLiteral("the file is named for something else, too; name another one"));
        if (isInAStore(target))
            return refuse(target, QStringLiteral("it lies in the folder of a selection's tracks; name another place"));
        taken.append(place);
    }
    return true;
}

/// What a stored selection could not give is still in its document, until the user decides.
bool KelRenderApplication::checkWholeness()
{
    const QString &selection = m_options.saveSelectionFile;
    if (m_selectionIsWhole || selection.isEmpty()
        || KelFilePlace::ofResult(selection) != KelFilePlace::ofInput(m_options.selectionFile))
        return true;
    return refuse(selection, QStringLiteral("it could not be read completely; save under another name"));
}

bool KelRenderApplication::refuse(const QString &target, const QString &reason)
{
    m_diagnostics.error(KelExitCode::UsageError, target, QStringLiteral("nothing was written: %1").arg(reason));
    return false;
}

/// All files that are read, but the document of the selection.
QStringList KelRenderApplication::sources() const
{
    QStringList files = m_trackFiles;
    if (!m_options.mapFile.isEmpty())
        files.append(m_options.mapFile);
    if (!m_options.selectionFile.isEmpty())
        files.append(KelSelectionFile(m_options.selectionFile).storedFiles());
    return files;
}

/// Whether a file is to lie among the tracks of a selection, stored already or about to be.
bool KelRenderApplication::isInAStore(const QString &target) const
{
    for (const QString &document : {m_options.selectionFile, m_options.saveSelectionFile}) {
        if (!document.isEmpty() && KelFilePlace::folderOfResult(target) == storeOf(document))
            return true;
    }
    return false;
}

void KelRenderApplication::loadSelection()
{
    KelErrorHistory errors;
    const auto result = KelSelectionFile(m_options.selectionFile).load(m_selection, errors);
    m_selectionIsWhole = result == KelSelectionFile::Result::Done;
    for (KelErrorHistory::Entry entry : errors.entries()) {
        while (entry.message.endsWith(QLatin1Char('.')))
            entry.message.chop(1);
        // The name of a track's file stands for what is malformed in it.
        const bool isMalformed = result == KelSelectionFile::Result::Malformed || entry.fileName != m_options.selectionFile;
        m_diagnostics.error(isMalformed ? KelExitCode::InputMalformed : KelExitCode::InputUnreadable, entry);
    }
}

bool KelRenderApplication::saveSelection()
{
    const KelRunStatistics::Watch watch(m_statistics, KelRunStatistics::Store);
    KelErrorHistory errors;
    const KelSelectionFile file(m_options.saveSelectionFile);
    const bool saved = file.save(m_selection, errors) == KelSelectionFile::Result::Done;
    for (const KelErrorHistory::Entry &entry : errors.entries())
        m_diagnostics.error(KelExitCode::OutputFailed, entry);
    if (saved) {
        addResult("selection", m_options.saveSelectionFile);
        m_diagnostics.note(m_options.saveSelectionFile,
                           QStringLiteral("saved, with the tracks in %1/").arg(file.store().dirName()));
    }
    return saved;
}

void KelRenderApplication::applyStyle()
{
    KelTrackPalette(m_options.dark).colorize(m_selection, m_storedRows);
    for (int row = 0; row < m_selection.count(); ++row) {
        KelGPXTrackConfiguration configuration = m_selection.configuration(row);
        m_options.style.applyTo(configuration);
        m_selection.setConfiguration(row, configuration);
    }
    if (m_options.croppingOpacity)
        m_selection.setCroppingOpacity(*m_options.croppingOpacity);
}

bool KelRenderApplication::writeResults()
{
    if (m_options.info && !print(KelTrackReport::describe(m_selection).toUtf8()))
        return false;
    if (!m_options.exportFile.isEmpty() && !exportTracks())
        return false;
    if (!m_options.saveSelectionFile.isEmpty() && !saveSelection())
        return false;
    return m_options.outputFile.isEmpty() || writePicture();
}

bool KelRenderApplication::exportTracks()
{
    const KelRunStatistics::Watch watch(m_statistics, KelRunStatistics::Store);
    KelTrackExporter exporter(m_diagnostics, sources() + QStringList{m_options.saveSelectionFile, m_options.outputFile});
    const bool done = exporter.write(m_selection, m_options.exportFile);
    for (const QString &file : exporter.files())
        addResult("gpx", file);
    return done;
}

void KelRenderApplication::addResult(const char *kind, const QString &file)
{
    m_results.append(
        QJsonObject{{QStringLiteral("kind"), QLatin1String(kind)}, {QStringLiteral("file"), file}});
}

void KelRenderApplication::printReport()
{
    const auto code = [this] { return static_cast<int>(m_diagnostics.exitCode()); };
    QJsonObject report{{QStringLiteral("program"), QStringLiteral("kel-render")},
                       {QStringLiteral("version"), QCoreApplication::applicationVersion()},
                       {QStringLiteral("exitCode"), code()}};
    report.insert(QStringLiteral("messages"), m_diagnostics.messages());
    if (m_options.report) {
        report.insert(QStringLiteral("tracks"), KelTrackReport::toJson(m_selection));
        report.insert(QStringLiteral("results"), m_results);
    }
    if (m_options.stats)
        report.insert(QStringLiteral("stats"), m_statistics.toJson());
    print(KelPlainText::json(QJsonDocument(report).toJson()));
}

bool KelRenderApplication::print(const QByteArray &text)
{
    QString error;
    if (KelOutputFile::writeToStandardOutput(text, error))
        return true;
    m_diagnostics.error(KelExitCode::OutputFailed, QStringLiteral("standard output: %1").arg(error));
    return false;
}

QSize KelRenderApplication::pictureSize() const
{
    if (m_options.size)
        return *m_options.size;
    const int most = m_options.format.maximumSide();
    if (m_options.map == KelRenderOptions::Map::Picture && !m_options.bounds && m_ownMap.size().width() <= most
        && m_ownMap.size().height() <= most)
        return m_ownMap.size();
    return DEFAULT_SIZE;
}

bool KelRenderApplication::checkScale(const KelMapGeometry &geometry)
{
    const QString size = QStringLiteral("%1x%2").arg(geometry.size().width()).arg(geometry.size().height());
    if (geometry.worldWidth() > LARGEST_WORLD_PIXELS) {
        m_diagnostics.error(
            KelExitCode::UsageError,
            QStringLiteral("the area is too small for a picture of %1 pixels; use wider --bounds or a smaller --size")
                .arg(size));
        return false;
    }
    if (!geometry.isFinite()) {
        m_diagnostics.error(
            KelExitCode::UsageError,
            QStringLiteral("a picture of %1 pixels would reach too far beyond the poles; use a less extreme --size or "
                           "smaller --bounds")
                .arg(size));
        return false;
    }
    if (geometry.size().width() > MOST_COPIES_OF_THE_WORLD * geometry.worldWidth()) {
        m_diagnostics.error(
            KelExitCode::UsageError,
            QStringLiteral(
                "a picture of %1 pixels would show the whole world more than %2 times side by side; use a less "
                "extreme --size or smaller --bounds")
                .arg(size)
                .arg(MOST_COPIES_OF_THE_WORLD));
        return false;
    }
    return true;
}

/// Whether the bounding box of a track, on any copy of the world, touches the picture.
bool KelRenderApplication::isAnyTrackWithin(const KelMapGeometry &geometry) const
{
    const QSize size = geometry.size();
    for (int row = 0; row < m_selection.count(); ++row) {
        const KelGeoPositionRect box = KelMapArea::boundingBox(m_selection.value(row));
        if (!box.isValid())
            continue;
        const KelMapBounds bounds = KelMapBounds::fromRect(box);
        const QPointF northWest = geometry.toPixel(bounds.north, bounds.west);
        const QPointF southEast = geometry.toPixel(bounds.south, bounds.east);
        const double width = southEast.x() < northWest.x() ? southEast.x() - northWest.x() + geometry.worldWidth()
                                                           : southEast.x() - northWest.x();
        // The first copy whose east is not left of the picture.
        const double copies = std::ceil(-(northWest.x() + width) / geometry.worldWidth());
        const double left = northWest.x() + copies * geometry.worldWidth();
        if (left <= size.width() && northWest.y() <= size.height() && southEast.y() >= 0)
            return true;
    }
    return false;
}

void KelRenderApplication::warnOfEmptyPicture()
{
    QString reason = QStringLiteral("; check --bounds");
    if (!m_options.bounds) {
        reason = m_options.map == KelRenderOptions::Map::Picture
            ? QStringLiteral("; check --map-bounds")
            : QStringLiteral(": the map ends at 85 degrees north and south");
    }
    m_diagnostics.warning(QStringLiteral("no track lies within the picture") + reason);
}

bool KelRenderApplication::writePicture()
{
    const QSize size = pictureSize();
    KelGeoPositionRect area;
    if (m_options.bounds)
        area = m_options.bounds->toRect();
    else if (m_options.map == KelRenderOptions::Map::Picture)
        area = m_ownMap.bounds().toRect();
    else
        area = KelMapArea::aroundTracks(m_selection, size, KelPictureComposer::margins(m_options, m_selection, size));
    if (!area.latitudeRange().isValid()) {
        m_diagnostics.error(KelExitCode::NothingToDraw,
                            QStringLiteral("there is nothing to draw: no track has a position on the globe"));
        return false;
    }

    const KelMapGeometry geometry(area, size);
    if (!checkScale(geometry))
        return false;
    if (!isAnyTrackWithin(geometry))
        warnOfEmptyPicture();

    m_diagnostics.progress(QStringLiteral("Drawing %1 x %2 pixels").arg(size.width()).arg(size.height()));
    KelPictureEncoder encoder(m_options.format, size, m_options.scaleFactor, m_options.quality);
    const QByteArray bytes = encode(encoder, KelPictureComposer(m_options, m_selection, geometry, m_ownMap));
    m_diagnostics.progress(QString());

    if (bytes.isEmpty()) {
        failPicture(KelExitCode::InternalError, QStringLiteral("not made"), encoder.error());
        return false;
    }
    m_statistics.setPicture(size, bytes.size());
    return writePicture(bytes);
}

QByteArray KelRenderApplication::encode(KelPictureEncoder &encoder, const KelPictureSource &picture)
{
    const KelRunStatistics::Watch watch(m_statistics, KelRunStatistics::Encode);
    return encoder.encode(KelTimedPicture(picture, m_statistics));
}

void KelRenderApplication::failPicture(KelExitCode code, const QString &what, const QString &reason)
{
    const QString text = QStringLiteral("the picture was %1: %2").arg(what, reason);
    if (m_options.toStandardOutput())
        m_diagnostics.error(code, QStringLiteral("standard output: ") + text);
    else
        m_diagnostics.error(code, m_options.outputFile, text);
}

bool KelRenderApplication::writePicture(const QByteArray &bytes)
{
    const KelRunStatistics::Watch watch(m_statistics, KelRunStatistics::Write);
    QString error;
    bool written = false;
    if (m_options.toStandardOutput()) {
        written = KelOutputFile::writeToStandardOutput(bytes, error);
    } else {
        KelOutputFile file(m_options.outputFile);
        written = file.write(bytes);
        error = file.error();
    }
    if (written)
        addResult("picture", m_options.outputFile);
    else
        failPicture(KelExitCode::OutputFailed, QStringLiteral("not written"), error);
    return written;
}
