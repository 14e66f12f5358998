// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELGPXTRACKRENDERER_H
#define KELGPXTRACKRENDERER_H

#include <KelGPXTrackSelection.h>
#include <KelGeoLocationGlobal.h>

#include <QList>
#include <QPointF>
#include <QSize>

class KelGPXConfiguredTrack;
class KelGPXTrack;
class KelGPXTrackConfiguration;
class KelGeoPosition;
class KelGeoPositionList;
class KelIntRange;
class QBrush;
class QColor;
class QImage;
class QPainter;
class QPainterPath;
class QPen;

/// Draws a track selection as raster images that lie over a map image of a given size.
///
/// Every point of every track is projected into image coordinates (pixels, origin top left, y downward), the projected
/// line is made continuous across the date line, smoothed and thinned, and painted as a point marker, a line, perhaps
/// with an arrow head, or a filled polygon, once for each visible copy of the world. crop() fades a map image outside
/// the tracks.
///
/// The renderer knows no map projection: a host derives and implements projectPosition(), as a rule with a
/// KelMapProjection for the map in view:
/// \code
/// class Renderer : public KelGPXTrackRenderer
/// {
/// public:
///     Renderer(const KelGPXTrackSelection &selection, const QSize &size, const KelMapProjection &projection)
///         : KelGPXTrackRenderer(selection, size, 1.0), m_projection(projection) {}
///     QPointF projectPosition(const KelGeoPosition &position) const override
///     { return m_projection.projectate(position); }
/// private:
///     KelMapProjection m_projection;
/// };
/// \endcode
///
/// A renderer is immutable: it is made for one view (selection, size, factor, projection) and thrown away when any
/// of them changes. It may be used from any thread, several at a time, pool threads included. With a caller's painter
/// everything is painted in the calling thread. Projection, date-line checks and cropping are spread over the global
/// thread pool by the rule of KelConcurrent, and so is the painting of long lines and areas on images; the result does
/// not depend on how.
///
/// Nothing is reported: a track without points draws nothing. What a pool task throws reaches the caller.
class KELGEOLOCATION_EXPORT KelGPXTrackRenderer
{
public:
    /// How colours, widths and display options are applied.
    enum TrackRenderOption {
        /// As configured: colours with their transparency, the line's width and dashes, only the configured parts.
        Normal = 0,
        /// The opaque silhouette: every colour opaque, pens as wide as line and halo together and never dashed,
        /// lines always stroked, polygons and point markers always filled. The only place where the halo shows.
        Foreground = 1
    };

    /// \a targetImageSize is the size in pixels of every image that the renderer makes. \a renderingFactor turns
    /// configured sizes (line widths, halo widths, marker sizes) into pixels; it is above 1 for high-density output.
    KelGPXTrackRenderer(const KelGPXTrackSelection &selection, const QSize &targetImageSize, double renderingFactor);

    KelGPXTrackRenderer(const KelGPXTrackRenderer &) = default;
    KelGPXTrackRenderer(KelGPXTrackRenderer &&) = default;
    KelGPXTrackRenderer &operator=(const KelGPXTrackRenderer &) = default;
    KelGPXTrackRenderer &operator=(KelGPXTrackRenderer &&) = default;
    virtual ~KelGPXTrackRenderer();

    /// The image point of a position, in pixels. Called from several threads at once. The world must be at least one
    /// pixel wide (see aroundTheWorldOffset()). Points that are not finite are left out of lines and get no marker.
    [[nodiscard]] virtual QPointF projectPosition(const KelGeoPosition &position) const = 0;

    /// \a value in configured size units as pixels: value × renderingFactor().
    [[nodiscard]] double scale(double value) const noexcept;
    /// The size of the pictures, in pixels.
    [[nodiscard]] QSize targetImageSize() const noexcept;
    /// What all widths are multiplied by: 1.0 on a normal screen.
    [[nodiscard]] double renderingFactor() const noexcept;

    /// \name Images
    /// All of targetImageSize(), transparent where no track is. An empty size gives a null image, and so does a size for
    /// which there is not enough memory.
    /// @{

    /// Antialiased, in QImage::Format_ARGB32.
    [[nodiscard]] QImage render(TrackRenderOption option) const;

    /// For interactive previews: not antialiased and not converted, in QImage::Format_ARGB32_Premultiplied.
    [[nodiscard]] QImage renderQuickAndDirty(TrackRenderOption option) const;

    /// renderQuickAndDirty() of the Foreground.
    [[nodiscard]] QImage renderForeground() const;

    /// \a mapImage with its own alpha *replaced*: opaque under the tracks' silhouette (halo included), the selection's
    /// effective cropping opacity o elsewhere, blended linearly at antialiased edges; premultiplied. An o of 255 or
    /// more returns the map unchanged; below 0 counts as 0. The caller's image never changes. The map should have
    /// targetImageSize(): pixels beyond it keep their own alpha. Null where there is not enough memory.
    [[nodiscard]] QImage crop(const QImage &mapImage) const;
    /// @}

    /// Paints all tracks in list order, later ones over earlier ones, with a painter that the caller owns. Any paint
    /// device serves, vector formats included.
    void renderWith(QPainter *painter, TrackRenderOption option) const;

    /// \name Over images
    /// On an image of any size and format, with the very pixels of an antialiased painter, but much faster for long
    /// lines if the image is in QImage::Format_ARGB32_Premultiplied with a device pixel ratio of 1. Images on which
    /// QPainter cannot begin (null ones, those with a colour table of 8 bits, those that somebody else is painting on)
    /// stay as they are.
    /// @{

    /// What renderWith() paints.
    void renderOver(QImage *image, TrackRenderOption option) const;

    /// Strokes \a path, which is in image coordinates, once for each visible copy of the world.
    void strokeOver(QImage *image, const QPainterPath &path, const QPen &pen) const;
    /// @}

    /// \name Painter paths
    /// @{

    /// The path of the track in its configured smoothing, closed when a line string is drawn as a polygon, followed
    /// by the paths of the track's enclaves, which are never closed here (filling closes them implicitly, and the
    /// odd-even rule makes them holes).
    [[nodiscard]] QPainterPath createPainterPath(const KelGPXConfiguredTrack &configuredTrack) const;

    /// The path of a track's points, enclaves not included. \a smoothingStrength is the percentage of its own
    /// position that a point keeps (100 means no smoothing), \a smoothingSteps the number of pieces, see
    /// KelGPXTrackSmoothing. A point is left out while its Manhattan distance to the last one taken is at most
    /// 4 × renderingFactor(); the last point of all always ends the path. Empty for a track without points and for
    /// a track that collapses into that distance of its first point: that is a point.
    [[nodiscard]] QPainterPath createPainterPath(const KelGPXTrack &track, int smoothingStrength,
                                                 int smoothingSteps) const;
    /// @}

    /// \name World copies
    /// @{

    /// The displacement of one whole world width in image coordinates: longitude 180 minus longitude −180 at the
    /// equator.
    [[nodiscard]] QPointF aroundTheWorldOffset() const;

    /// The world copies to paint, inclusive: [−n − 1, n + 1] with n = device width / world width, both in whole
    /// pixels. A world narrower than a pixel, which no projection should give, counts as n = 0.
    [[nodiscard]] KelIntRange visibleShifts(QPainter *painter) const;
    /// @}

    /// \name Building blocks of a path
    /// A track's positions come in chunks; \a ranges holds for each chunk the inclusive range of its points' indices
    /// in the whole track. Arrays have one entry for each point of the whole track and belong to the caller.
    /// @{

    /// The date-line crossing of the step from \a a to \a b: +1 eastward (from about +180 to about −180),
    /// −1 westward, 0 for none; the prime meridian does not count, nor do equal longitudes.
    [[nodiscard]] int checkDateLineCrossing(const KelGeoPosition &a, const KelGeoPosition &b) const;

    /// Writes, for each point of one chunk, the crossing of the step that leads to it. The first point's step comes
    /// from the last earlier chunk that holds a point; the very first point's entry is 0.
    void checkDateLineCrossings(int chunkIndex, const QList<KelGeoPositionList> &chunks,
                                const QList<KelIntRange> &ranges, int *crossings) const;

    /// The displacement of each of \a total points that makes the line continuous across the date line: one
    /// aroundTheWorldOffset() for each eastward crossing before it, minus one for each westward. \a crossed is set
    /// when there is any crossing and left alone otherwise. The caller frees the array with delete[].
    [[nodiscard]] QPointF *createDateLineCrossingOffsets(const QList<KelGeoPositionList> &chunks,
                                                         const QList<int> &chunkIndices, int total,
                                                         const QList<KelIntRange> &ranges, bool *crossed) const;

    /// Projects the positions with the indices in \a range; position k goes to output entry k.
    void projectPoints(const KelGeoPositionList &positions, const KelIntRange &range, QPointF *output) const;

    /// Projects one chunk; its position j goes to output entry "start of the chunk's range + j".
    void projectPointsPP(int chunkIndex, const QList<KelGeoPositionList> &chunks, const QList<KelIntRange> &ranges,
                         QPointF *output) const;

    /// Adds the offsets to the projected points with the indices in \a range.
    void shiftProjected(const KelIntRange &range, QPointF *projected, const QPointF *offsets) const;
    /// @}

    /// Sets the alpha of the target's pixels in \a rows (inclusive) to table[alpha of the mask's pixel]. Both images
    /// have 32 bits per pixel with the alpha in the fourth byte (QImage::Format_ARGB32); others are left alone.
    /// Only the area that both images have is touched. \a table has 256 entries.
    void mergeCropping(QImage *target, const QImage &mask, const KelIntRange &rows, const uchar *table) const;

    /// \name Arrow geometry
    /// Angles are degrees as QPainterPath gives them: counter-clockwise, 0 points right.
    /// @{

    /// The direction in which the path ends: the mean of its angle at 95, 96, 97, 98 and 99 percent.
    [[nodiscard]] double detectAngleOfPath(const QPainterPath &path) const;

    /// The vector of that length that points *backwards* along a path of that angle, in image coordinates.
    [[nodiscard]] QPointF carthesian(double radius, double angle) const;

    /// \a point + carthesian(radius, angle).
    [[nodiscard]] QPointF movePolar(const QPointF &point, double radius, double angle) const;
    /// @}

    /// \name Colours, pens, brushes
    /// @{

    /// The colour, opaque for Foreground.
    [[nodiscard]] QColor adaptColor(const QColor &color, TrackRenderOption option) const;
    /// The configuration's line colour after adaptColor().
    [[nodiscard]] QColor lineColor(const KelGPXTrackConfiguration &configuration, TrackRenderOption option) const;
    /// The configuration's fill colour after adaptColor().
    [[nodiscard]] QColor fillColor(const KelGPXTrackConfiguration &configuration, TrackRenderOption option) const;

    /// A solid pen with round caps and joins in the line colour, as wide as the line, for Foreground as line and
    /// halo together.
    [[nodiscard]] QPen solidPenFromTrack(const KelGPXTrackConfiguration &configuration,
                                         TrackRenderOption option) const;

    /// The solid pen, for Normal in the configured pen style.
    [[nodiscard]] QPen penFromTrack(const KelGPXTrackConfiguration &configuration, TrackRenderOption option) const;

    /// A solid brush in the fill colour.
    [[nodiscard]] QBrush brushFromTrack(const KelGPXTrackConfiguration &configuration,
                                        TrackRenderOption option) const;
    /// @}

    /// \name Drawing a configured track
    /// Each repeats the track for all visible world copies and leaves the painter's state as it was. On a QImage,
    /// copies of which no pixel would be seen are left out; other devices get them all.
    /// @{

    /// Draws a point, polygon or line according to the track's effective shape.
    void drawTrack(QPainter *painter, const KelGPXConfiguredTrack &configuredTrack, TrackRenderOption option) const;

    /// Draws the marker at the first drawing point, with the scaled line width as radius. Normal draws stroke and
    /// fill as the display options say, and nothing without either.
    void drawPoint(QPainter *painter, const KelGPXConfiguredTrack &configuredTrack, TrackRenderOption option) const;

    /// Draws the path, or a point when the path is empty.
    void drawLine(QPainter *painter, const KelGPXConfiguredTrack &configuredTrack, TrackRenderOption option) const;
    /// Draws the area and its outline, or a point when the path is empty.
    void drawPolygon(QPainter *painter, const KelGPXConfiguredTrack &configuredTrack, TrackRenderOption option) const;
    /// @}

    /// \name Drawing a path
    /// In image coordinates, once, where the painter stands.
    /// @{

    /// The path, then an arrow head if the marker shape holds the arrow (also where the line itself is not stroked).
    void drawLine(QPainter *painter, const QPainterPath &path, const KelGPXTrackConfiguration &configuration,
                  TrackRenderOption option) const;

    /// The area, if filled, and the outline over it.
    void drawPolygon(QPainter *painter, const QPainterPath &path, const KelGPXTrackConfiguration &configuration,
                     TrackRenderOption option) const;

    /// Strokes the path, if stroked. The painter's current brush fills it.
    void drawPath(QPainter *painter, const QPainterPath &path, const KelGPXTrackConfiguration &configuration,
                  TrackRenderOption option) const;

    /// Two barbs at the path's last element, 30 degrees to each side of its end direction, never dashed. Their length
    /// is half the distance from the first to the last element, limited to 10 .. 100 and then scaled. A path without
    /// elements has no arrow head.
    void drawArrowHead(QPainter *painter, const QPainterPath &path, const KelGPXTrackConfiguration &configuration,
                       TrackRenderOption option) const;
    /// @}

private:
    KelGPXTrackSelection m_selection;
    QSize m_targetImageSize;
    double m_renderingFactor;
};

#endif
