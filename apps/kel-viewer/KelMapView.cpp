// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelMapView.h"

#include "KelMapArea.h"
#include "KelMapWorker.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QThreadPool>
#include <QWheelEvent>

#include <cmath>
#include <utility>

namespace
{

constexpr int REST_MS = 180;
constexpr double FIT_MARGIN = 0.08;
constexpr double ZOOM_STEP = 1.5;
constexpr double WHEEL_STEPS_PER_DOUBLING = 4.0;
constexpr double KEY_PAN_SHARE = 0.15;
/// So many points are looked at within a millisecond or two.
constexpr int FIT_AT_ONCE = 10000;

int countPoints(const KelGPXTrackSelection &selection)
{
    int count = 0;
    for (int row = 0; row < selection.count(); ++row)
        count += selection.value(row).track().countPoints();
    return count;
}

} // namespace

KelMapView::KelMapView(QWidget *parent)
    : QWidget(parent)
    , m_worker(new KelMapWorker(this))
{
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setCursor(Qt::OpenHandCursor);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAccessibleName(tr("Karte"));
    setAccessibleDescription(tr("Pfeiltasten verschieben, Plus und Minus zoomen, Pos1 zeigt alles."));

    m_restTimer.setSingleShot(true);
    m_restTimer.setInterval(REST_MS);
    connect(&m_restTimer, &QTimer::timeout, this, [this] { requestPicture(KelViewPicture::Full); });
    connect(m_worker, &KelMapWorker::painted, this, &KelMapView::takePicture);
}

KelMapView::~KelMapView() = default;

void KelMapView::setBackground(std::shared_ptr<const KelMapBackground> background)
{
    m_background = std::move(background);
    requestPicture(KelViewPicture::Full);
}

void KelMapView::setSelection(const KelGPXTrackSelection &selection)
{
    m_selection = selection;
    requestPicture(KelViewPicture::Full);
}

void KelMapView::setViewport(const KelMapViewport &viewport)
{
    m_viewport = viewport;
    m_viewport.setSize(size());
    viewportMoved();
}

KelViewPicture KelMapView::picture() const
{
    KelViewPicture result;
    result.viewport = m_viewport;
    result.density = devicePixelRatioF();
    result.selection = m_selection;
    result.background = m_background;
    return result;
}

bool KelMapView::isUpToDate() const
{
    return !m_worker->isBusy() && !m_restTimer.isActive() && m_imageViewport == m_viewport && !m_image.isNull();
}

QSize KelMapView::sizeHint() const
{
    return {900, 640};
}

QSize KelMapView::minimumSizeHint() const
{
    return {200, 150};
}

void KelMapView::fitAll()
{
    fit(m_selection);
}

void KelMapView::fitTrack(int row)
{
    if (m_selection.isValidRow(row))
        fit(m_selection.reduceToTrackNumber(row));
}

void KelMapView::zoomIn()
{
    m_viewport.zoomAt(rect().center(), ZOOM_STEP);
    viewportMoved();
}

void KelMapView::zoomOut()
{
    m_viewport.zoomAt(rect().center(), 1.0 / ZOOM_STEP);
    viewportMoved();
}

void KelMapView::fit(const KelGPXTrackSelection &tracks)
{
    ++m_fits;
    if (countPoints(tracks) <= FIT_AT_ONCE) {
        fitArea(KelMapArea::boundingBox(tracks));
        return;
    }
    QThreadPool::globalInstance()->start([view = QPointer<KelMapView>(this), tracks, number = m_fits] {
        const KelGeoPositionRect area = KelMapArea::boundingBox(tracks);
        // Through the application: the view may be gone by now, which only its own thread can tell.
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [view, area, number] {
                if (view && number == view->m_fits)
                    view->fitArea(area);
            },
            Qt::QueuedConnection);
    });
}

void KelMapView::fitArea(const KelGeoPositionRect &area)
{
    m_viewport.fit(area, FIT_MARGIN);
    viewportMoved();
    m_fitted = area;
}

void KelMapView::viewportMoved()
{
    m_fitted.reset();
    requestPicture(KelViewPicture::Quick);
    m_restTimer.start();
    update();
}

void KelMapView::requestPicture(KelViewPicture::Quality quality)
{
    KelViewPicture wanted = picture();
    wanted.quality = quality;
    m_worker->request(wanted);
}

void KelMapView::takePicture(const QImage &image, const KelMapViewport &viewport, double density,
                             KelViewPicture::Quality)
{
    m_image = image;
    m_imageViewport = viewport;
    m_imageDensity = density;
    update();
    if (isUpToDate())
        Q_EMIT pictureFinished();
}

void KelMapView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), m_background ? m_background->baseColor() : palette().color(QPalette::Mid));
    if (m_image.isNull())
        return;

    // A view that was moved since shows its last picture where it belongs now.
    const bool moved = m_imageViewport != m_viewport;
    painter.save();
    painter.setRenderHint(QPainter::SmoothPixmapTransform, moved);
    if (moved)
        painter.setTransform(m_viewport.transformFrom(m_imageViewport), true);
    painter.drawImage(QRectF(QPointF(0, 0), QSizeF(m_imageViewport.size())), m_image);
    painter.restore();

    painter.drawImage(QRectF(rect()), overlays());

    if (hasFocus()) {
        painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
        painter.drawRect(rect().adjusted(1, 1, -1, -1));
    }
}

const QImage &KelMapView::overlays()
{
    const QSize pixels = size() * devicePixelRatioF();
    const double scale = m_viewport.pixelsPerKilometre();
    if (m_overlays.size() != pixels || m_overlayScale != scale || m_overlayBackground != m_background) {
        m_overlays = QImage(pixels, QImage::Format_ARGB32_Premultiplied);
        m_overlays.fill(Qt::transparent);
        picture().paintOverlays(m_overlays);
        m_overlayScale = scale;
        m_overlayBackground = m_background;
    }
    return m_overlays;
}

void KelMapView::resizeEvent(QResizeEvent *)
{
    m_viewport.setSize(size());
    if (m_fitted)
        fitArea(*std::exchange(m_fitted, std::nullopt));
    else
        viewportMoved();
}

void KelMapView::wheelEvent(QWheelEvent *event)
{
    const double steps = event->angleDelta().y() / 120.0;
    if (steps != 0.0) {
        m_viewport.zoomAt(event->position(), std::pow(2.0, steps / WHEEL_STEPS_PER_DOUBLING));
        viewportMoved();
    }
    event->accept();
}

void KelMapView::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    m_dragging = true;
    m_dragFrom = event->position();
    setCursor(Qt::ClosedHandCursor);
}

void KelMapView::mouseMoveEvent(QMouseEvent *event)
{
    if (m_dragging) {
        m_viewport.pan(event->position() - m_dragFrom);
        m_dragFrom = event->position();
        viewportMoved();
    }
    Q_EMIT positionHovered(m_viewport.unproject(event->position()));
}

void KelMapView::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    m_dragging = false;
    setCursor(Qt::OpenHandCursor);
}

void KelMapView::mouseDoubleClickEvent(QMouseEvent *event)
{
    m_viewport.zoomAt(event->position(), 2.0);
    viewportMoved();
}

void KelMapView::keyPressEvent(QKeyEvent *event)
{
    const double x = width() * KEY_PAN_SHARE;
    const double y = height() * KEY_PAN_SHARE;
    switch (event->key()) {
    case Qt::Key_Left:
        m_viewport.pan({x, 0});
        break;
    case Qt::Key_Right:
        m_viewport.pan({-x, 0});
        break;
    case Qt::Key_Up:
        m_viewport.pan({0, y});
        break;
    case Qt::Key_Down:
        m_viewport.pan({0, -y});
        break;
    case Qt::Key_Plus:
    case Qt::Key_Equal:
        m_viewport.zoomAt(rect().center(), ZOOM_STEP);
        break;
    case Qt::Key_Minus:
        m_viewport.zoomAt(rect().center(), 1.0 / ZOOM_STEP);
        break;
    case Qt::Key_Home:
        fitAll();
        return;
    default:
        QWidget::keyPressEvent(event);
        return;
    }
    viewportMoved();
}

void KelMapView::leaveEvent(QEvent *)
{
    Q_EMIT positionHovered(KelGeoPosition());
}
