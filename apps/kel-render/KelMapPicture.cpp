// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelMapPicture.h"

#include "KelDiagnostics.h"
#include "KelMapGeometry.h"
#include "KelPictureReader.h"

#include <QPainter>

#include <cmath>

namespace
{

const QColor NOT_COVERED(0xe4, 0xe4, 0xe4);

} // namespace

bool KelMapPicture::load(const QString &fileName, const KelMapBounds &bounds, KelDiagnostics &diagnostics)
{
    const auto fail = [&](KelExitCode code, const QString &reason) {
        diagnostics.error(code, fileName, QStringLiteral("the map picture ") + reason);
        return false;
    };
    KelPictureReader reader;
    switch (reader.read(fileName)) {
    case KelPictureReader::Result::Done:
        break;
    case KelPictureReader::Result::Unreadable:
        return fail(KelExitCode::InputUnreadable, QStringLiteral("cannot be read: %1").arg(reader.reason()));
    case KelPictureReader::Result::UnknownKind:
        return fail(KelExitCode::UnsupportedFormat, QStringLiteral("is of no known kind; use PNG, JPEG or WebP"));
    case KelPictureReader::Result::TooLarge:
        return fail(KelExitCode::InputMalformed,
                    QStringLiteral("is too large: %1; %2 for each side, %3 million pixels in all are possible")
                        .arg(reader.reason())
                        .arg(KelPictureReader::MAXIMUM_SIDE)
                        .arg(KelPictureReader::MAXIMUM_PIXELS / 1'000'000));
    case KelPictureReader::Result::Damaged:
        return fail(KelExitCode::InputMalformed, QStringLiteral("is damaged: %1").arg(reader.reason()));
    }
    if (!reader.remark().isEmpty())
        diagnostics.warning(fileName, QStringLiteral("the map picture may be damaged: %1").arg(reader.remark()));
    m_image = reader.image();
    m_bounds = bounds;
    return true;
}

void KelMapPicture::paint(QPainter &painter, const KelMapGeometry &geometry) const
{
    const QRectF view(QPointF(0, 0), QSizeF(geometry.size()));
    const QPointF northWest = geometry.toPixel(m_bounds.north, m_bounds.west);
    const double bottom = geometry.toPixel(m_bounds.south, m_bounds.west).y();
    const double world = geometry.worldWidth();
    const QRectF target(northWest, QSizeF(m_bounds.width() / 360.0 * world, bottom - northWest.y()));

    painter.save();
    painter.setClipRect(view);
    painter.fillRect(view, NOT_COVERED);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    for (double shift = std::ceil((view.left() - target.right()) / world); target.left() + shift * world < view.right();
         shift += 1.0) {
        // Only the visible part: the whole target may be far larger than a painter can take.
        const QRectF whole = target.translated(shift * world, 0);
        const QRectF visible = whole.intersected(view);
        if (visible.isEmpty())
            continue;
        const double sx = m_image.width() / whole.width();
        const double sy = m_image.height() / whole.height();
        painter.drawImage(visible, m_image,
                          QRectF((visible.left() - whole.left()) * sx, (visible.top() - whole.top()) * sy,
                                 visible.width() * sx, visible.height() * sy));
    }
    painter.restore();
}
