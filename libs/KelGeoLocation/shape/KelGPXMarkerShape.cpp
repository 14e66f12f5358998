// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelGPXMarkerShape.h"

#include <KelXMLBuilder.h>

#include <QColor>
#include <QDomElement>
#include <QIcon>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QPen>
#include <QPixmap>
#include <QPolygonF>
#include <QRectF>
#include <QSize>
#include <QVarLengthArray>

#include <cmath>
#include <limits>
#include <numbers>

namespace
{

constexpr int fullPenBits = MarkerDisk | MarkerBlock;

/// Makes up for the outer half of the pen that a thinly outlined marker lacks, a little less than the half itself.
constexpr double growthPerPenWidth = 0.4;
constexpr int widestPenForCosmeticOutline = 9;
constexpr int outlineDivisor = 5;

constexpr double imagePenWidth = 5.0;
constexpr qint64 largestImage = std::numeric_limits<int>::max();
constexpr int iconSize = 20;
constexpr int iconMargin = 12;

constexpr double crossDivisor = 5.0;

struct Star
{
    int rays;
    double innerRatio;
};
// Deliberate: uneven ratios, so that nine slender rays and twelve short ones are told apart at icon size.
constexpr Star star6{6, 0.5};
constexpr Star star9{9, 0.3};
constexpr Star star12{12, 0.7};

QString markerShapeElement()
{
    return QStringLiteral("markerShape");
}

/// Fills with the painter's brush and outlines with its pen.
void fillAndOutline(QPainter *painter, const QPolygonF &corners)
{
    QPainterPath path;
    path.addPolygon(corners);
    painter->fillPath(path, painter->brush());
    // Deliberate: drawPath() fills once more, so a translucent brush covers twice.
    painter->drawPath(path);
}

} // namespace

KelGPXMarkerShape::KelGPXMarkerShape()
    : KelEnumWrapper(MarkerUnknown)
{
}

KelGPXMarkerShape::KelGPXMarkerShape(KelGPXMarkerShapeEnum shape)
    : KelEnumWrapper(shape)
{
}

KelGPXMarkerShape::KelGPXMarkerShape(int bits)
    : KelEnumWrapper(bits)
{
}

KelGPXMarkerShape::KelGPXMarkerShape(const QString &keys)
    : KelGPXMarkerShape()
{
    // The table is filled through a virtual function, so it is out of reach before this class is constructed.
    setValue(enumToStringTable()->decodeCSV(keys));
}

KelGPXMarkerShape::~KelGPXMarkerShape() = default;

void KelGPXMarkerShape::fillTable(KelEnumToStringTable<KelGPXMarkerShapeEnum> *table) const
{
    table->insert(QStringLiteral("unknown"), MarkerUnknown);
    table->insert(QStringLiteral("disk"), MarkerDisk);
    table->insert(QStringLiteral("rect"), MarkerRect);
    table->insert(QStringLiteral("circle"), MarkerCircle);
    table->insert(QStringLiteral("x"), MarkerX);
    table->insert(QStringLiteral("block"), MarkerBlock);
    table->insert(QStringLiteral("rhombus"), MarkerRhombus);
    table->insert(QStringLiteral("star6"), MarkerStar6);
    table->insert(QStringLiteral("star9"), MarkerStar9);
    table->insert(QStringLiteral("star12"), MarkerStar12);
    table->insert(QStringLiteral("arrow"), MarkerArrow);
}

QList<KelGPXMarkerShape> KelGPXMarkerShape::allPointShapes()
{
    static const QList<KelGPXMarkerShape> shapes{MarkerDisk,  MarkerCircle, MarkerStar6, MarkerStar9,  MarkerStar12,
                                                 MarkerX,     MarkerBlock,  MarkerRect,  MarkerRhombus};
    return shapes;
}

QList<KelGPXMarkerShape> KelGPXMarkerShape::allLineStringShapes()
{
    static const QList<KelGPXMarkerShape> shapes{MarkerUnknown, MarkerArrow};
    return shapes;
}

void KelGPXMarkerShape::fromXml(const QDomElement &parent)
{
    const QDomElement element = parent.firstChildElement(markerShapeElement());
    *this = element.isNull() ? KelGPXMarkerShape(MarkerDisk) : KelGPXMarkerShape(element.text());
}

void KelGPXMarkerShape::toXml(QDomElement &parent) const
{
    KelXMLBuilder::buildDomElement(parent, markerShapeElement(), encode());
}

bool KelGPXMarkerShape::usesFullPen() const
{
    return (toInt() & fullPenBits) != 0;
}

void KelGPXMarkerShape::draw(QPainter *painter, const QPointF &center, double radiusX, double radiusY) const
{
    const double growth = usesFullPen() ? 0.0 : growthPerPenWidth * painter->pen().width();

    painter->save();
    configurePainter(painter);
    drawShape(painter, targetRect(center, radiusX + growth, radiusY + growth));
    painter->restore();
}

QRectF KelGPXMarkerShape::targetRect(const QPointF &center, double radiusX, double radiusY) const
{
    const QPointF topLeft(center.x() - radiusX, center.y() - radiusY);
    const QPointF bottomRight(center.x() + radiusX, center.y() + radiusY);
    return QRectF(topLeft, bottomRight);
}

void KelGPXMarkerShape::configurePainter(QPainter *painter) const
{
    painter->setRenderHint(QPainter::Antialiasing, true);
    if (usesFullPen())
        return;

    QPen pen = painter->pen();
    if (pen.width() > widestPenForCosmeticOutline) {
        pen.setWidth(pen.width() / outlineDivisor);
    } else {
        pen.setWidth(1);
        pen.setCosmetic(true);
    }
    painter->setPen(pen);
}

void KelGPXMarkerShape::drawShape(QPainter *painter, const QRectF &rect) const
{
    switch (toInt()) {
    case MarkerRhombus:
        drawRhombus(painter, rect);
        break;
    case MarkerBlock:
    case MarkerRect:
        drawBlock(painter, rect);
        break;
    case MarkerX:
        drawX(painter, rect);
        break;
    case MarkerStar6:
        drawStar(painter, rect, star6.rays, star6.innerRatio);
        break;
    case MarkerStar9:
        drawStar(painter, rect, star9.rays, star9.innerRatio);
        break;
    case MarkerStar12:
        drawStar(painter, rect, star12.rays, star12.innerRatio);
        break;
    default:
        painter->drawEllipse(rect);
        break;
    }
}

void KelGPXMarkerShape::drawRhombus(QPainter *painter, const QRectF &rect) const
{
    const double x = rect.x();
    const double y = rect.y();
    const double w = rect.width();
    const double h = rect.height();
    const double cx = x + w / 2;
    const double cy = y + h / 2;

    fillAndOutline(painter, {{cx, y}, {x, cy}, {cx, y + h}, {x + w, cy}, {cx, y}});
}

void KelGPXMarkerShape::drawBlock(QPainter *painter, const QRectF &rect) const
{
    painter->fillRect(rect, painter->brush());
    painter->drawRects(&rect, 1);
}

void KelGPXMarkerShape::drawX(QPainter *painter, const QRectF &rect) const
{
    const double x = rect.x();
    const double y = rect.y();
    const double w = rect.width();
    const double h = rect.height();
    const double cx = x + w / 2;
    const double cy = y + h / 2;
    const double dx = w / crossDivisor;
    const double dy = h / crossDivisor;
    // Deliberate: the bars' ends are cut at whole pixels, visible on small markers; the notches are not.
    const double ox = std::trunc(dx);
    const double oy = std::trunc(dy);

    fillAndOutline(painter, {{x + ox, y},
                             {x, y + oy},
                             {cx - dx, cy},
                             {x, y + h - oy},
                             {x + ox, y + h},
                             {cx, cy + dy},
                             {x + w - ox, y + h},
                             {x + w, y + h - oy},
                             {cx + dx, cy},
                             {x + w, y + oy},
                             {x + w - ox, y},
                             {cx, cy - dy},
                             {x + ox, y}});
}

void KelGPXMarkerShape::drawStar(QPainter *painter, const QRectF &rect, int rays, double innerRatio) const
{
    Q_ASSERT(rays > 0);
    const double rx = rect.width() / 2;
    const double ry = rect.height() / 2;
    const double cx = rect.x() + rx;
    const double cy = rect.y() + ry;

    QVarLengthArray<QPointF, 2 * star12.rays + 1> points(2 * rays + 1);
    for (int i = 0; i < 2 * rays; ++i) {
        const double angle = i * std::numbers::pi / rays;
        const double ratio = i % 2 == 0 ? innerRatio : 1.0;
        points[i] = QPointF(ratio * rx * std::sin(angle) + cx, ratio * ry * std::cos(angle) + cy);
    }
    points[2 * rays] = points[0];
    painter->drawPolygon(points.constData(), 2 * rays + 1, Qt::WindingFill);
}

QImage KelGPXMarkerShape::createImage(const QSize &size, int margin, const QColor &penColor,
                                      const QColor &fillColor) const
{
    const qint64 width = qint64(size.width()) + margin;
    const qint64 height = qint64(size.height()) + margin;
    if (width > largestImage || height > largestImage) // no image is as large, and an int cannot hold it
        return QImage();
    QImage image(int(width), int(height), QImage::Format_ARGB32_Premultiplied);
    if (image.isNull())
        return image;
    image.fill(Qt::transparent);

    QPainter painter(&image);
    painter.translate(margin / 2, margin / 2);
    painter.setPen(QPen(QBrush(penColor), imagePenWidth, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin));
    painter.setBrush(fillColor);
    const QPointF center(std::round(size.width() * 0.5), std::round(size.height() * 0.5));
    draw(&painter, center, center.x(), center.y());
    return image;
}

QIcon KelGPXMarkerShape::createIcon(const QColor &penColor, const QColor &fillColor) const
{
    if (!isValid() || (toInt() & MarkerArrow) != 0)
        return QIcon();
    return QIcon(QPixmap::fromImage(createImage(QSize(iconSize, iconSize), iconMargin, penColor, fillColor)));
}
