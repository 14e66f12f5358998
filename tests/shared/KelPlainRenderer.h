// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELPLAINRENDERER_H
#define KELPLAINRENDERER_H

#include "KelPathCutter.h"

#include <KelDistance.h>
#include <KelGPXConfiguredTrack.h>
#include <KelGPXConfiguredTrackList.h>
#include <KelGPXMarkerShape.h>
#include <KelGPXTrack.h>
#include <KelGPXTrackConfiguration.h>
#include <KelGPXTrackDisplayOptions.h>
#include <KelGPXTrackRenderer.h>
#include <KelGPXTrackSegment.h>
#include <KelGPXTrackSelection.h>
#include <KelGPXTrackShape.h>
#include <KelGeoPosition.h>
#include <KelGeoPositionList.h>
#include <KelLatitude.h>
#include <KelLongitude.h>

#include <QBrush>
#include <QImage>
#include <QLineF>
#include <QList>
#include <QPainter>
#include <QPainterPath>
#include <QPen>
#include <QPointF>

#include <algorithm>
#include <cmath>
#include <numeric>

/// The drawing of a selection once more in its plain form: one point after the other, one drawPath() for each copy of
/// the world, whether it can be seen or not. The yardstick for whatever makes rendering faster. Projection, colours,
/// pens and marker shapes are those of the renderer that it is given.
class KelPlainRenderer
{
public:
    KelPlainRenderer(const KelGPXTrackRenderer &renderer, const KelGPXTrackSelection &selection)
        : m_renderer(renderer)
        , m_selection(selection)
    {
    }

    using Option = KelGPXTrackRenderer::TrackRenderOption;

    [[nodiscard]] QImage render(Option option) const
    {
        return paint(option, QPainter::Antialiasing).convertToFormat(QImage::Format_ARGB32);
    }

    [[nodiscard]] QImage renderQuickAndDirty(Option option) const { return paint(option, QPainter::RenderHints()); }

    /// The map has the renderer's target size.
    [[nodiscard]] QImage crop(const QImage &map) const
    {
        const int opacity = std::clamp(m_selection.effectiveCroppingOpacity(), 0, 255);
        if (opacity == 255)
            return map;
        const QImage mask = render(KelGPXTrackRenderer::Foreground);
        QImage target = map.convertToFormat(QImage::Format_ARGB32);
        for (int y = 0; y < target.height(); ++y) {
            for (int x = 0; x < target.width(); ++x) {
                const int covered = qAlpha(mask.pixel(x, y));
                const int alpha = std::min(std::max(covered * (255 - opacity) / 255 + opacity, opacity), 255);
                const QRgb pixel = reinterpret_cast<const QRgb *>(target.constScanLine(y))[x];
                reinterpret_cast<QRgb *>(target.scanLine(y))[x] = (pixel & 0x00ffffffu) | uint(alpha) << 24;
            }
        }
        return target.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    }

    [[nodiscard]] QPainterPath path(const KelGPXConfiguredTrack &configured) const
    {
        const KelGPXTrack track = configured.track();
        QPainterPath result = path(track, configured.smoothingStrength(), configured.smoothingSteps());
        if (configured.naturalShape() == TrackShapeLineString && configured.effectiveShape() == TrackShapePolygon)
            result.closeSubpath();
        for (const KelGPXTrack &enclave : track.enclaves())
            result.addPath(path(enclave, configured.smoothingStrength(), configured.smoothingSteps()));
        return result;
    }

    [[nodiscard]] QPainterPath path(const KelGPXTrack &track, int strength, int steps) const
    {
        const QPointF world = m_renderer.aroundTheWorldOffset();
        const KelGeoPositionList positions = track.allPoints();
        QList<QPointF> points;
        int crossings = 0;
        for (qsizetype k = 0; k < positions.size(); ++k) {
            if (k > 0)
                crossings += m_renderer.checkDateLineCrossing(positions.at(k - 1), positions.at(k));
            const QPointF projected = m_renderer.projectPosition(positions.at(k));
            points.append(crossings == 0 ? projected : projected + world * crossings);
        }
        if (strength != 100)
            smooth(&points, strength / 100.0, steps);
        return thinned(points);
    }

private:
    /// Lines refuse what is not finite, and coordinates that are absurdly far away.
    static bool isDrawable(const QPointF &point) { return std::abs(point.x()) < 1e100 && std::abs(point.y()) < 1e100; }

    static QPointF mix(const QPointF &a, const QPointF &b, double t)
    {
        return QPointF(t * a.x() + (1 - t) * b.x(), t * a.y() + (1 - t) * b.y());
    }

    static double length(const QPointF &vector)
    {
        return std::sqrt(vector.x() * vector.x() + vector.y() * vector.y());
    }

    static void smooth(QList<QPointF> *points, double factor, int wanted)
    {
        const qint64 n = points->size();
        const qint64 pieces = std::max<qint64>(std::min<qint64>(wanted, n), 1);
        if (n / pieces == 1 || n <= 2)
            return;
        qint64 piece = 1;
        qint64 previous = 0;
        qint64 next = n / pieces - 1;
        for (qint64 i = 1; i <= n - 2; ++i) {
            if (i == next) {
                ++piece;
                previous = i;
                next = n * piece / pieces - 1;
                continue;
            }
            const QPointF p = points->at(i);
            const QPointF a = points->at(previous);
            const QPointF b = points->at(next);
            const double toNext = length(b - p);
            const double toPrevious = length(a - p);
            (*points)[i] = mix(p, mix(a, b, toNext / (toPrevious + toNext)), factor);
        }
    }

    [[nodiscard]] QPainterPath thinned(const QList<QPointF> &points) const
    {
        QPainterPath result;
        QPointF last;
        QPointF end;
        bool started = false;
        int lines = 0;
        for (const QPointF &point : points) {
            if (!isDrawable(point))
                continue;
            end = point;
            if (!started) {
                result.moveTo(point);
                last = point;
                started = true;
            } else if (std::abs(point.x() - last.x()) + std::abs(point.y() - last.y())
                       > m_renderer.renderingFactor() * 4.0) {
                result.lineTo(point);
                last = point;
                ++lines;
            }
        }
        if (lines == 0)
            return QPainterPath();
        result.lineTo(end);
        return result;
    }

    [[nodiscard]] QImage paint(Option option, QPainter::RenderHints hints) const
    {
        QImage image(m_renderer.targetImageSize(), QImage::Format_ARGB32_Premultiplied);
        if (image.isNull())
            return image;
        image.fill(Qt::transparent);
        QPainter painter(&image);
        painter.setRenderHints(hints);
        const KelGPXConfiguredTrackList list = m_selection.tracks();
        for (const KelGPXConfiguredTrack &configured : list.tracks())
            drawTrack(&painter, configured, option);
        painter.end();
        return image;
    }

    void drawTrack(QPainter *painter, const KelGPXConfiguredTrack &configured, Option option) const
    {
        const KelGPXTrackShape shape = configured.effectiveShape();
        const QPainterPath whole = shape == TrackShapePoint ? QPainterPath() : path(configured);
        if (whole.isEmpty()) {
            drawPoint(painter, configured, option);
            return;
        }
        const KelGPXTrackConfiguration configuration = configured.configuration();
        forEachShift(painter, [&] {
            if (shape == TrackShapePolygon) {
                if (has(configuration, DisplayFill, option))
                    painter->fillPath(KelPathCutter(painter, 0.0).area(whole), m_renderer.brushFromTrack(configuration, option));
                drawPath(painter, whole, configuration, option);
            } else {
                drawPath(painter, whole, configuration, option);
                if ((configuration.markerShape() & KelGPXMarkerShape(MarkerArrow)) != 0)
                    drawArrowHead(painter, whole, configuration, option);
            }
        });
    }

    void drawPath(QPainter *painter, const QPainterPath &whole, const KelGPXTrackConfiguration &configuration,
                  Option option) const
    {
        const QPen pen = m_renderer.penFromTrack(configuration, option);
        const KelPathCutter cutter(painter, pen.widthF() * std::max(1.0, pen.miterLimit()));
        const QList<qreal> pattern = pen.dashPattern();
        const double period = pen.widthF() * std::accumulate(pattern.begin(), pattern.end(), 0.0);
        painter->save();
        painter->setPen(pen);
        if (has(configuration, DisplayStroke, option))
            painter->drawPath(pen.style() == Qt::SolidLine ? cutter.line(whole) : cutter.dashedLine(whole, period));
        painter->restore();
    }

    void drawArrowHead(QPainter *painter, const QPainterPath &whole, const KelGPXTrackConfiguration &configuration,
                       Option option) const
    {
        double angle = 0;
        for (const double percent : {0.95, 0.96, 0.97, 0.98, 0.99})
            angle += whole.angleAtPercent(percent);
        angle /= 5.0;
        const QPointF tip = whole.elementAt(whole.elementCount() - 1);
        const double distance = QLineF(whole.elementAt(0), tip).length();
        const double barb = std::clamp(0.5 * distance, 10.0, 100.0) * m_renderer.renderingFactor();
        painter->save();
        painter->setPen(m_renderer.solidPenFromTrack(configuration, option));
        for (const double opening : {30.0, -30.0}) {
            const double radians = (180 - (angle + opening)) * 3.141592653589793 / 180;
            painter->drawLine(tip, tip + QPointF(barb * std::cos(radians), barb * std::sin(radians)));
        }
        painter->restore();
    }

    void drawPoint(QPainter *painter, const KelGPXConfiguredTrack &configured, Option option) const
    {
        const KelGPXTrackConfiguration configuration = configured.configuration();
        const bool stroked = has(configuration, DisplayStroke, option);
        const bool filled = has(configuration, DisplayFill, option);
        const KelGeoPositionList points = configured.drawingPoints();
        if ((!stroked && !filled) || points.isEmpty())
            return;
        const QPointF center = m_renderer.projectPosition(points.first());
        if (!isDrawable(center))
            return;
        const double size = m_renderer.scale(configured.lineWidth().value());
        painter->save();
        painter->setPen(stroked ? m_renderer.penFromTrack(configuration, option) : QPen(Qt::transparent));
        painter->setBrush(filled ? m_renderer.brushFromTrack(configuration, option) : QBrush(Qt::transparent));
        forEachShift(painter, [&] { configuration.markerShape().draw(painter, center, size, size); });
        painter->restore();
    }

    static bool has(const KelGPXTrackConfiguration &configuration, KelGPXTrackDisplayOptionsEnum part, Option option)
    {
        return option == KelGPXTrackRenderer::Foreground
            || configuration.hasDrawOption(KelGPXTrackDisplayOptions(part));
    }

    template<typename Draw>
    void forEachShift(QPainter *painter, Draw draw) const
    {
        const QPointF world = m_renderer.aroundTheWorldOffset();
        const double width = std::clamp(world.x(), -2e9, 2e9);
        const int whole = std::isnan(width) ? 0 : int(width);
        const int count = whole == 0 ? 0 : painter->device()->width() / whole;
        for (int shift = -count - 1; shift <= count + 1; ++shift) {
            const QPointF offset = shift == 0 ? QPointF() : world * shift;
            if (!std::isfinite(offset.x()) || !std::isfinite(offset.y()))
                continue;
            painter->save();
            painter->translate(offset);
            draw();
            painter->restore();
        }
    }

    const KelGPXTrackRenderer &m_renderer;
    KelGPXTrackSelection m_selection;
};

#endif
