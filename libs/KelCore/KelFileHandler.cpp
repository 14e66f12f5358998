// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelFileHandler.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QFile>
#include <QFileInfo>
#include <QString>

#include <algorithm>
#include <cstring>
#include <utility>

namespace
{

constexpr QChar ByteOrderMark(0xfeff);

constexpr qsizetype BLOCK = 128 * 1024; // stays in the processor's cache until it is text

struct FileText
{
    QString text;
    bool hasReturns = false;
    QString reason = {}; // why there is no text
};

FileText noText(const QString &reason)
{
    return {QString(), false, reason};
}

bool isAscii(const char *at, const char *end)
{
    unsigned char bits = 0;
    for (; at != end; ++at)
        bits |= static_cast<unsigned char>(*at);
    return bits < 0x80;
}

void append(const char *begin, const char *end, FileText *result)
{
    if (isAscii(begin, end))
        result->text += QLatin1String(begin, end - begin);
    else
        result->text += QString::fromUtf8(begin, end - begin);
    result->hasReturns = result->hasReturns || std::find(begin, end, '\r') != end;
}

/// Where a piece of text may end: nothing that is cut before an ASCII character is read in another way, and no piece but the
/// first begins like a byte order mark.
qsizetype cutOf(const QByteArray &bytes, qsizetype size)
{
    do {
        --size;
    } while (size > 0 && static_cast<unsigned char>(bytes.at(size)) >= 0x80);
    return size;
}

/// As much as there is, up to the end of the bytes.
qsizetype fill(QFile &file, QByteArray &bytes, qsizetype size)
{
    while (size < bytes.size()) {
        const qint64 count = file.read(bytes.data() + size, bytes.size() - size);
        if (count <= 0)
            break;
        size += count;
    }
    return size;
}

FileText tooLarge(bool isPipe)
{
    return noText(isPipe ? QStringLiteral("it holds more than the %1 MiB that are read of a pipe or a device")
                               .arg(KelFileHandler::MAXIMUM_PIPE_SIZE >> 20)
                         : QStringLiteral("the file is larger than the %1 GiB that are read").arg(KelFileHandler::MAXIMUM_SIZE >> 30));
}

/// The text of the file; none of one that is too large. A device need not have an end; one of zeros is left early, since no
/// text of any encoding starts with four of them.
FileText readBounded(QFile &file)
{
    const bool isPipe = file.isSequential() || file.size() == 0;
    const qint64 limit = isPipe ? KelFileHandler::MAXIMUM_PIPE_SIZE : KelFileHandler::MAXIMUM_SIZE;
    if (file.size() > limit)
        return tooLarge(isPipe);
    FileText result;
    result.text.reserve(file.size());
    QByteArray bytes(BLOCK, Qt::Uninitialized);
    qsizetype size = fill(file, bytes, 0);
    if (isPipe && QByteArrayView(bytes).first(size).startsWith(QByteArray(4, '\0')))
        return noText(QStringLiteral("it begins with zeros, which no text does"));
    qint64 total = size;
    while (size == bytes.size()) {
        const qsizetype cut = cutOf(bytes, size);
        append(bytes.constData(), bytes.constData() + cut, &result);
        const qsizetype rest = size - cut;
        std::memmove(bytes.data(), bytes.constData() + cut, std::size_t(rest));
        if (cut == 0)
            bytes.resize(2 * size);
        size = fill(file, bytes, rest);
        total += size - rest;
        if (total > limit)
            return tooLarge(isPipe);
    }
    append(bytes.constData(), bytes.constData() + size, &result);
    return result;
}

/// The text of a file; null if it has none, or cannot be read to its end.
FileText readWhole(const QFileInfo &fileInfo)
{
    QFile file(fileInfo.filePath());
    // Qt warns about a file without a name; here it is one that cannot be read, like any other.
    if (file.fileName().isEmpty())
        return noText(QStringLiteral("the file has no name"));
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return noText(file.errorString());
    FileText result = readBounded(file);
    if (file.error() != QFileDevice::NoError)
        return noText(file.errorString());

    if (result.text.startsWith(ByteOrderMark))
        result.text.remove(0, 1);
    if (result.text.isEmpty() && result.reason.isEmpty())
        result.reason = QStringLiteral("the file is empty");
    return result;
}

/// The text with line feeds between its lines only.
QString withPlainLineEnds(FileText file)
{
    QString text = std::move(file.text);
    if (file.hasReturns) {
        text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
        text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    }
    if (text.endsWith(QLatin1Char('\n')))
        text.chop(1);
    return text;
}

} // namespace

QStringList KelFileHandler::readTextFile(const QFileInfo &fileInfo)
{
    FileText file = readWhole(fileInfo);
    return file.text.isEmpty() ? QStringList() : withPlainLineEnds(std::move(file)).split(QLatin1Char('\n'));
}

QString KelFileHandler::readText(const QFileInfo &fileInfo)
{
    return readText(fileInfo, nullptr);
}

QString KelFileHandler::readText(const QFileInfo &fileInfo, QString *reason)
{
    FileText file = readWhole(fileInfo);
    if (file.text.isEmpty()) {
        if (reason)
            *reason = file.reason;
        return QString();
    }
    const QString text = withPlainLineEnds(std::move(file));
    return text.isEmpty() ? QStringLiteral("") : text; // one empty line
}
