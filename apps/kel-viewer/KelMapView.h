// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELMAPVIEW_H
#define KELMAPVIEW_H

#include "KelViewPicture.h"
#include "KelMapViewport.h"

#include <KelGeoPositionRect.h>

#include <QTimer>
#include <QWidget>

#include <optional>

class KelMapWorker;

/// The map in the middle of the window: tracks on a background, moved with the mouse or the keyboard.
///
/// Pictures are painted in a worker thread: quickly while the map moves, in full quality once it rests.
/// Until the next one is there, the last picture is shown moved and stretched into place. Nothing that this class
/// does in the thread of the user interface depends on the number of points.
/// Keys: arrows pan, + and - zoom, Home shows everything.
class KelMapView : public QWidget
{
    Q_OBJECT

public:
    explicit KelMapView(QWidget *parent = nullptr);
    ~KelMapView() override;

    void setBackground(std::shared_ptr<const KelMapBackground> background);
    [[nodiscard]] std::shared_ptr<const KelMapBackground> background() const { return m_background; }
    void setSelection(const KelGPXTrackSelection &selection);

    [[nodiscard]] const KelMapViewport &viewport() const noexcept { return m_viewport; }
    void setViewport(const KelMapViewport &viewport);
    /// Everything that is shown as one picture, for exporting.
    [[nodiscard]] KelViewPicture picture() const;
    /// False while a newer picture than the visible one is being painted.
    [[nodiscard]] bool isUpToDate() const;

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

public Q_SLOTS:
    /// What is fitted stays fitted when the view is resized, until the user moves the map. At first it is the world.
    void fitAll();
    void fitTrack(int row);
    void zoomIn();
    void zoomOut();

Q_SIGNALS:
    /// The position under the mouse, or an invalid one when it left.
    void positionHovered(const KelGeoPosition &position);
    void pictureFinished();

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void leaveEvent(QEvent *event) override;

private:
    void viewportMoved();
    void requestPicture(KelViewPicture::Quality quality);
    void takePicture(const QImage &image, const KelMapViewport &viewport, double density,
                     KelViewPicture::Quality quality);
    /// Shows the tracks' area, at once or, where many points have to be looked at, as soon as it is known.
    void fit(const KelGPXTrackSelection &tracks);
    void fitArea(const KelGeoPositionRect &area);
    [[nodiscard]] const QImage &overlays();

    KelMapViewport m_viewport;
    std::shared_ptr<const KelMapBackground> m_background;
    KelGPXTrackSelection m_selection;

    KelMapWorker *m_worker;
    QTimer m_restTimer;

    std::shared_ptr<const KelMapBackground> m_overlayBackground;
    QImage m_overlays;
    double m_overlayScale = 0.0;
    std::optional<KelGeoPositionRect> m_fitted = KelGeoPositionRect(); ///< until the user moves the map
    int m_fits = 0; ///< an area that is known only after the next fit is not shown any more

    QImage m_image;
    KelMapViewport m_imageViewport;
    double m_imageDensity = 1.0;
    QPointF m_dragFrom;
    bool m_dragging = false;
};

#endif
