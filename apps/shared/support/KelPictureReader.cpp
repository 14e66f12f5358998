// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelPictureReader.h"

#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QLoggingCategory>

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
    {
        s_first.clear();
        s_former = qInstallMessageHandler(keep);
    }
    ~JpegRemarks() { qInstallMessageHandler(s_former); }
    JpegRemarks(const JpegRemarks &) = delete;
    JpegRemarks &operator=(const JpegRemarks &) = delete;

    [[nodiscard]] static QString first() { return s_first; }

private:
    static void keep(QtMsgType type, const QMessageLogContext &context, const QString &text)
    {
        if (QLatin1String(context.category) != QLatin1String("qt.gui.imageio.jpeg"))
            s_former(type, context, text);
        else if (s_first.isEmpty())
            s_first = text.trimmed();
    }

    static inline QString s_first;
    static inline QtMessageHandler s_former = nullptr;
};

constexpr int MAXIMUM_MEGABYTES = 1024; // the most pixels, with 64 bits each

/// As Qt calls it; empty if it is none of the known ones.
QByteArray kindOf(QFile &file)
{
    const QByteArray head = file.peek(12);
    if (head.startsWith("\x89PNG\r\n\x1a\n"))
        return "png";
    if (head.startsWith("\xff\xd8\xff"))
        return "jpeg";
    if (head.startsWith("RIFF") && head.endsWith("WEBP"))
        return "webp";
    return {};
}

bool isTooLarge(const QSize &size)
{
    return size.width() > KelPictureReader::MAXIMUM_SIDE || size.height() > KelPictureReader::MAXIMUM_SIDE
        || qint64(size.width()) * size.height() > KelPictureReader::MAXIMUM_PIXELS;
}

QString explain(const QImageReader &reader, const QSize &size)
{
    if (!QImageReader::supportedImageFormats().contains(reader.format()))
        return QStringLiteral("this Qt cannot read %1").arg(QString::fromLatin1(reader.format()));
    return size.isValid() ? reader.errorString() : QStringLiteral("it tells no size");
}

} // namespace

KelPictureReader::Result KelPictureReader::read(const QString &fileName)
{
    *this = KelPictureReader();
    const QFileInfo info(fileName);
    if (info.exists() && !info.isFile() && !info.isDir()) { // opening a pipe would wait for somebody to write
        m_reason = QStringLiteral("a pipe or device");
        return Result::Unreadable;
    }
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        m_reason = file.errorString();
        return Result::Unreadable;
    }
    const QByteArray kind = kindOf(file);
    if (kind.isEmpty())
        return Result::UnknownKind;

    QImageReader::setAllocationLimit(MAXIMUM_MEGABYTES);
    QImageReader reader(&file, kind);
    reader.setAutoDetectImageFormat(false); // or Qt would ask all others if this one does not like it
    reader.setAutoTransform(true);
    const SilentStandardError silence;
    const JpegRemarks remarks;
    const QSize size = reader.size();
    if (isTooLarge(size)) {
        m_reason = QStringLiteral("%1 x %2 pixels").arg(size.width()).arg(size.height());
        return Result::TooLarge;
    }
    if (size.isValid())
        m_image = reader.read();
    if (m_image.isNull()) {
        m_reason = explain(reader, size);
        return Result::Damaged;
    }
    m_remark = JpegRemarks::first();
    return Result::Done;
}
