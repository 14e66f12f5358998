// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELREFERENCERENDERER_H
#define KELREFERENCERENDERER_H

#include <KelGPXConfiguredTrack.h>
#include <KelGPXConfiguredTrackList.h>
#include <KelGPXMarkerShape.h>
#include <KelGPXTrack.h>
#include <KelGPXTrackConfiguration.h>
#include <KelGPXTrackDisplayOptions.h>
#include <KelGPXTrackRenderer.h>
#include <KelGPXTrackSelection.h>
#include <KelGPXTrackShape.h>
#include <KelGPXTrackSmoothing.h>
#include <KelGeoPosition.h>
#include <KelGeoPositionList.h>
#include <KelIntRange.h>

#include <QImage>
#include <QList>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <vector>

/// Paints what KelGPXTrackRenderer paints, point by point and in one thread, everything on every copy of the world, with
/// nothing left out, put off or put together. What is asked of the renderer itself: the projection, pens, brushes, arrow
/// heads.
class KelReferenceRenderer
{
public:
    using Option = KelGPXTrackRenderer::TrackRenderOption;

    KelReferenceRenderer(const KelGPXTrackRenderer &renderer, const KelGPXTrackSelection &selection)
        : m_renderer(renderer)
        , m_selection(selection)
    {
    }

    [[nodiscard]] QImage render(Option option) const
    {
        return picture(option, true).convertToFormat(QImage::Format_ARGB32);
    }

    [[nodiscard]] QImage renderQuickAndDirty(Option option) const { return picture(option, false); }

    void renderOver(QImage *image, Option option, bool antialiased = true) const
    {
        QPainter painter(image);
        painter.setRenderHint(QPainter::Antialiasing, antialiased);
        const KelGPXConfiguredTrackList list = m_selection.tracks();
        for (const KelGPXConfiguredTrack &track : list.tracks())
            drawTrack(&painter, track, option);
    }

    [[nodiscard]] QImage crop(const QImage &map) const
    {
        const int opacity = std::clamp(m_selection.effectiveCroppingOpacity(), 0, 255);
        if (opacity == 255)
            return map;
        const QImage mask = render(KelGPXTrackRenderer::Foreground);
        QImage target = map.convertToFormat(QImage::Format_ARGB32);
        for (int y = 0; y < std::min(target.height(), mask.height()); ++y) {
            for (int x = 0; x < std::min(target.width(), mask.width()); ++x) {
                const QRgb pixel = target.pixel(x, y);
                const int alpha = qAlpha(mask.pixel(x, y)) * (255 - opacity) / 255 + opacity;
                target.setPixel(x, y, qRgba(qRed(pixel), qGreen(pixel), qBlue(pixel), alpha));
            }
        }
        return target.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    }

private:
    QImage picture(Option option, bool antialiased) const
    {
        QImage image(m_renderer.targetImageSize(), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        renderOver(&image, option, antialiased);
        return image;
    }

    QPainterPath trackPath(const KelGPXTrack &track, int strength, int steps) const
    {
        std::vector<QPointF> points;
        KelGeoPosition last;
        int turns = 0;
        for (const KelGeoPositionList &chunk : track.chunkedPoints()) {
            for (const KelGeoPosition &position : chunk) {
                if (!points.empty())
                    turns += m_renderer.checkDateLineCrossing(last, position);
                points.push_back(m_renderer.projectPosition(position) + m_renderer.aroundTheWorldOffset() * turns);
                last = position;
            }
        }
        if (strength != 100)
            KelGPXTrackSmoothing(points.data(), static_cast<int>(points.size()), strength / 100.0, steps).run();
        if (points.empty())
            return QPainterPath();
        QPainterPath path(points.front());
        QPointF taken = points.front();
        int lines = 0;
        for (const QPointF &point : points) {
            if ((point - taken).manhattanLength() > 4.0 * m_renderer.renderingFactor()) {
                path.lineTo(point);
                taken = point;
                ++lines;
            }
        }
        if (lines == 0)
            return QPainterPath();
        path.lineTo(points.back());
        return path;
    }

    QPainterPath path(const KelGPXConfiguredTrack &configured) const
    {
        QPainterPath result = trackPath(configured.track(), configured.smoothingStrength(), configured.smoothingSteps());
        if (configured.naturalShape() == TrackShapeLineString && configured.effectiveShape() == TrackShapePolygon)
            result.closeSubpath();
        const KelGPXTrack track = configured.track();
        for (const KelGPXTrack &enclave : track.enclaves())
            result.addPath(trackPath(enclave, configured.smoothingStrength(), configured.smoothingSteps()));
        return result;
    }

    template<typename Draw>
    void onEveryWorld(QPainter *painter, Draw draw) const
    {
        const KelIntRange shifts = m_renderer.visibleShifts(painter);
        for (int shift = shifts.min(); shift <= shifts.max(); ++shift) {
            painter->save();
            painter->translate(m_renderer.aroundTheWorldOffset() * shift);
            draw();
            painter->restore();
        }
    }

    void drawTrack(QPainter *painter, const KelGPXConfiguredTrack &track, Option option) const
    {
        const QPainterPath path = track.effectiveShape() == TrackShapePoint ? QPainterPath() : this->path(track);
        if (path.isEmpty()) {
            drawPoint(painter, track, option);
            return;
        }
        const bool isArea = track.effectiveShape() == TrackShapePolygon;
        onEveryWorld(painter, [&] {
            if (isArea)
                m_renderer.drawPolygon(painter, path, track.configuration(), option);
            else
                m_renderer.drawLine(painter, path, track.configuration(), option);
        });
    }

    void drawPoint(QPainter *painter, const KelGPXConfiguredTrack &track, Option option) const
    {
        const KelGPXTrackConfiguration configuration = track.configuration();
        const bool everything = option == KelGPXTrackRenderer::Foreground;
        const bool stroked = everything || configuration.hasDrawOption(KelGPXTrackDisplayOptions(DisplayStroke));
        const bool filled = everything || configuration.hasDrawOption(KelGPXTrackDisplayOptions(DisplayFill));
        const KelGeoPositionList points = track.drawingPoints();
        if ((!stroked && !filled) || points.isEmpty())
            return;
        painter->save();
        painter->setPen(stroked ? m_renderer.penFromTrack(configuration, option) : QPen(Qt::transparent));
        painter->setBrush(filled ? m_renderer.brushFromTrack(configuration, option) : QBrush(Qt::transparent));
        const double size = m_renderer.scale(track.lineWidth().value());
        const QPointF center = m_renderer.projectPosition(points.first());
        onEveryWorld(painter, [&] { configuration.markerShape().draw(painter, center, size, size); });
        painter->restore();
    }

    const KelGPXTrackRenderer &m_renderer;
    KelGPXTrackSelection m_selection;
};

#endif
