// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelMapPicture.h"

#include "KelDiagnostics.h"
#include "KelMapGeometry.h"

#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QLoggingCategory>
#include <QPainter>

#include <cmath>
#include <cstdio>

#include <fcntl.h>
#include <unistd.h>

namespace
{

/// Image libraries print remarks of their own about damaged files; the user gets one line, and it is ours.
class SilentStandardError
{
public:
    SilentStandardError()
        : m_kept(::dup(STDERR_FILENO))
    {
        std::fflush(stderr);
        const int nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
        if (nowhere >= 0) {
            ::dup2(nowhere, STDERR_FILENO);
            ::close(nowhere);
        }
    }
    ~SilentStandardError()
    {
        std::fflush(stderr);
        if (m_kept >= 0) {
            ::dup2(m_kept, STDERR_FILENO);
            ::close(m_kept);
        }
    }
    SilentStandardError(const SilentStandardError &) = delete;
    SilentStandardError &operator=(const SilentStandardError &) = delete;

private:
    int m_kept;
};

/// Keeps what Qt's JPEG reader remarks: a picture that is cut off counts as read, its rest is grey.
class JpegRemarks
{
public:
    JpegRemarks()
        : m_former(qInstallMessageHandler(keep))
    {
        s_first.clear();
    }
    ~JpegRemarks() { qInstallMessageHandler(m_former); }
    JpegRemarks(const JpegRemarks &) = delete;
    JpegRemarks &operator=(const JpegRemarks &) = delete;

    [[nodiscard]] static QString first() { return s_first; }

private:
    static void keep(QtMsgType, const QMessageLogContext &context, const QString &text)
    {
        if (s_first.isEmpty() && QLatin1String(context.category) == QLatin1String("qt.gui.imageio.jpeg"))
            s_first = text.trimmed();
    }

    static inline QString s_first;
    QtMessageHandler m_former;
};

constexpr int LARGEST_PICTURE_MB = 1024;
const QColor NOT_COVERED(0xe4, 0xe4, 0xe4);

} // namespace

bool KelMapPicture::load(const QString &fileName, const KelMapBounds &bounds, KelDiagnostics &diagnostics)
{
    const QFileInfo info(fileName);
    if (info.exists() && !info.isFile() && !info.isDir()) { // opening a pipe would wait for somebody to write
        diagnostics.error(KelExitCode::InputUnreadable, fileName,
                          QStringLiteral("the map picture cannot be read: a pipe or device"));
        return false;
    }
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        diagnostics.error(KelExitCode::InputUnreadable, fileName,
                          QStringLiteral("the map picture cannot be read: %1").arg(file.errorString()));
        return false;
    }
    QImageReader::setAllocationLimit(LARGEST_PICTURE_MB);
    QImageReader reader(&file);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    QString remark;
    {
        const SilentStandardError silence;
        const JpegRemarks remarks;
        m_image = reader.read();
        remark = JpegRemarks::first();
    }
    if (m_image.isNull()) {
        const bool unknown = reader.error() == QImageReader::UnsupportedFormatError;
        diagnostics.error(
            unknown ? KelExitCode::UnsupportedFormat : KelExitCode::InputMalformed, fileName,
            unknown ? QStringLiteral("the map picture is of no known kind; use PNG, JPEG or WebP")
                    : QStringLiteral("the map picture is damaged or too large: %1").arg(reader.errorString()));
        return false;
    }
    if (!remark.isEmpty())
        diagnostics.warning(fileName, QStringLiteral("the map picture may be damaged: %1").arg(remark));
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
