// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelRenderApplication.h"

#include "KelBeelineBuilder.h"
#include "KelMapArea.h"
#include "KelMapBounds.h"
#include "KelMapGeometry.h"
#include "KelOutputFile.h"
#include "KelPictureComposer.h"
#include "KelPictureEncoder.h"
#include "KelRenderOptionsReader.h"
#include "KelSelectionFile.h"
#include "KelTrackExporter.h"
#include "KelTrackLoader.h"
#include "KelTrackPalette.h"
#include "KelTrackReport.h"

#include <KelErrorHistory.h>
#include <KelGPXConfiguredTrackList.h>
#include <KelGPXTrackConfiguration.h>

#include <QDir>
#include <QFileInfo>
#include <QLoggingCategory>

#include <cmath>

namespace
{

constexpr QSize DEFAULT_SIZE(1600, 1000);
// Beyond these a picture shows nothing: the world so large that places are closer than the numbers can tell, and
// endless rows of worlds.
constexpr double LARGEST_WORLD_PIXELS = 1e9;
constexpr double MOST_COPIES_OF_THE_WORLD = 100.0;

} // namespace

KelExitCode KelRenderApplication::run(const QStringList &arguments)
{
    KelRenderOptionsReader reader;
    if (reader.read(arguments, m_options, m_diagnostics) != KelRenderOptionsReader::Outcome::Run)
        return m_diagnostics.exitCode();
    m_diagnostics.setQuiet(m_options.quiet);
    if (m_options.verbose)
        qInstallMessageHandler(nullptr);

    if (!readInputs())
        return m_diagnostics.exitCode();
    applyStyle();
    writeResults();
    return m_diagnostics.exitCode();
}

bool KelRenderApplication::readInputs()
{
    if (!m_options.selectionFile.isEmpty())
        loadSelection();
    m_storedRows = m_selection.count();
    KelTrackLoader loader(m_diagnostics);
    m_selection.addTracks(loader.load(m_options.inputs));
    m_trackFiles = loader.files();
    for (const KelBeelineOption &option : std::as_const(m_options.beelines)) {
        if (const auto track = KelBeelineBuilder::build(option, m_diagnostics))
            m_selection.addTrack(*track);
    }
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
    return checkTargets();
}

/// A slip of the pen must not cost the only copy of a track: no result replaces what was read, or another result.
/// Stored again are selections, and single tracks that --export rewrites.
bool KelRenderApplication::checkTargets()
{
    const auto same = [](const QString &a, const QString &b) {
        const auto place = [](const QString &name) {
            const QFileInfo file(name);
            return file.exists() ? file.canonicalFilePath() : QDir::cleanPath(file.absoluteFilePath());
        };
        return place(a) == place(b);
    };
    const auto refuse = [this](const QString &target, const QString &reason) {
        m_diagnostics.error(KelExitCode::UsageError,
                            QStringLiteral("%1: nothing was written: %2").arg(target, reason));
        return false;
    };
    const QString picture = m_options.toStandardOutput() ? QString() : m_options.outputFile;
    const QString &selection = m_options.saveSelectionFile;
    QStringList sources = m_trackFiles;
    if (m_options.map == KelRenderOptions::Map::Picture)
        sources.append(m_options.mapFile);
    for (const QString &target : {picture, selection}) {
        QStringList others = sources;
        if (target == picture)
            others << m_options.selectionFile << selection << m_options.exportFile;
        else
            others << m_options.exportFile;
        for (const QString &other : std::as_const(others)) {
            if (!target.isEmpty() && !other.isEmpty() && same(target, other))
                return refuse(target, QStringLiteral("the file is named for something else, too; name another one"));
        }
    }
    if (!m_selectionIsWhole && !selection.isEmpty() && same(selection, m_options.selectionFile))
        return refuse(selection, QStringLiteral("it could not be read completely; save under another name"));
    return true;
}

void KelRenderApplication::loadSelection()
{
    KelErrorHistory errors;
    const auto result = KelSelectionFile(m_options.selectionFile).load(m_selection, errors);
    const KelExitCode code = result == KelSelectionFile::Result::Malformed ? KelExitCode::InputMalformed
                                                                           : KelExitCode::InputUnreadable;
    m_selectionIsWhole = result == KelSelectionFile::Result::Done;
    for (KelErrorHistory::Entry entry : errors.entries()) {
        while (entry.message.endsWith(QLatin1Char('.')))
            entry.message.chop(1);
        m_diagnostics.error(code, entry.toString());
    }
}

bool KelRenderApplication::saveSelection()
{
    KelErrorHistory errors;
    const KelSelectionFile file(m_options.saveSelectionFile);
    const bool saved = file.save(m_selection, errors) == KelSelectionFile::Result::Done;
    for (const KelErrorHistory::Entry &entry : errors.entries())
        m_diagnostics.error(KelExitCode::OutputFailed, entry.toString());
    if (saved) {
        m_diagnostics.note(QStringLiteral("%1: saved, with the tracks in %2/")
                               .arg(m_options.saveSelectionFile, file.store().dirName()));
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
    if (m_options.info && !printInfo())
        return false;
    if (!m_options.exportFile.isEmpty() && !KelTrackExporter(m_diagnostics).write(m_selection, m_options.exportFile))
        return false;
    if (!m_options.saveSelectionFile.isEmpty() && !saveSelection())
        return false;
    return m_options.outputFile.isEmpty() || writePicture();
}

bool KelRenderApplication::printInfo()
{
    QString error;
    if (KelOutputFile::writeToStandardOutput(KelTrackReport::describe(m_selection).toUtf8(), error))
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
    if (!isAnyTrackWithin(geometry)) {
        m_diagnostics.warning(
            QStringLiteral("no track lies within the picture; check %1")
                .arg(m_options.bounds ? QStringLiteral("--bounds") : QStringLiteral("--map-bounds")));
    }

    m_diagnostics.progress(QStringLiteral("Drawing %1 x %2 pixels").arg(size.width()).arg(size.height()));
    KelPictureEncoder encoder(m_options.format, size, m_options.scaleFactor, m_options.quality);
    const QByteArray bytes = encoder.encode(KelPictureComposer(m_options, m_selection, geometry, m_ownMap));
    m_diagnostics.progress(QString());

    const QString target = m_options.toStandardOutput() ? QStringLiteral("standard output") : m_options.outputFile;
    QString error = encoder.error();
    if (bytes.isEmpty()) {
        m_diagnostics.error(KelExitCode::InternalError,
                            QStringLiteral("%1: the picture was not made: %2").arg(target, error));
        return false;
    }
    bool written = false;
    if (m_options.toStandardOutput()) {
        written = KelOutputFile::writeToStandardOutput(bytes, error);
    } else {
        KelOutputFile file(m_options.outputFile);
        written = file.write(bytes);
        error = file.error();
    }
    if (!written)
        m_diagnostics.error(KelExitCode::OutputFailed,
                            QStringLiteral("%1: the picture was not written: %2").arg(target, error));
    return written;
}
