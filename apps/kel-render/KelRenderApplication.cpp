// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelRenderApplication.h"

#include "KelBeelineBuilder.h"
#include "KelMapArea.h"
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

#include <QLoggingCategory>

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
    m_selection.addTracks(KelTrackLoader(m_diagnostics).load(m_options.inputs));
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
    return true;
}

void KelRenderApplication::loadSelection()
{
    KelErrorHistory errors;
    const auto result = KelSelectionFile(m_options.selectionFile).load(m_selection, errors);
    const KelExitCode code = result == KelSelectionFile::Result::Malformed ? KelExitCode::InputMalformed : KelExitCode::InputUnreadable;
    for (const KelErrorHistory::Entry &entry : errors.entries())
        m_diagnostics.error(code, entry.toString());
}

bool KelRenderApplication::saveSelection()
{
    KelErrorHistory errors;
    const KelSelectionFile file(m_options.saveSelectionFile);
    const bool saved = file.save(m_selection, errors) == KelSelectionFile::Result::Done;
    for (const KelErrorHistory::Entry &entry : errors.entries())
        m_diagnostics.error(KelExitCode::OutputFailed, entry.toString());
    if (saved) {
        m_diagnostics.note(QStringLiteral("%1: saved, with the tracks in %2/").arg(m_options.saveSelectionFile, file.store().dirName()));
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
