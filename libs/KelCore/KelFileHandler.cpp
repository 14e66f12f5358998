// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelFileHandler.h"

#include <QByteArray>
#include <QFile>
#include <QFileInfo>
#include <QString>

#include <utility>

namespace
{

constexpr QChar ByteOrderMark(0xfeff);

constexpr qint64 block = 1024 * 1024;

/// All bytes of the file; nothing of one that is too large. A device need not have an end; one of zeros is left early,
/// since no text of any encoding starts with four of them.
QByteArray readBounded(QFile &file)
{
    const bool isPipe = file.isSequential() || file.size() == 0;
    const qint64 limit = isPipe ? KelFileHandler::MAXIMUM_PIPE_SIZE : KelFileHandler::MAXIMUM_SIZE;
    if (file.size() > limit)
        return QByteArray();
    QByteArray bytes;
    bytes.reserve(qsizetype(file.size()));
    QByteArray piece = file.read(block);
    while (!piece.isEmpty() && bytes.size() <= limit) {
        bytes.append(piece);
        if (isPipe && bytes.startsWith(QByteArray(4, '\0')))
            return QByteArray();
        piece = file.read(block);
    }
    return bytes.size() <= limit ? bytes : QByteArray();
}

/// The text of a file; null if it has none, or cannot be read to its end.
QString readWhole(const QFileInfo &fileInfo)
{
    QFile file(fileInfo.filePath());
    // Qt warns about a file without a name; here it is one that cannot be read, like any other.
    if (file.fileName().isEmpty() || !file.open(QIODevice::ReadOnly))
        return QString();
    const QByteArray bytes = readBounded(file);
    if (file.error() != QFileDevice::NoError)
        return QString();

    QString text = QString::fromUtf8(bytes);
    if (text.startsWith(ByteOrderMark))
        text.remove(0, 1);
    return text.isEmpty() ? QString() : text;
}

/// The text with line feeds between its lines only.
QString withPlainLineEnds(QString text)
{
    if (text.contains(QLatin1Char('\r'))) {
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
    QString text = readWhole(fileInfo);
    return text.isEmpty() ? QStringList() : withPlainLineEnds(std::move(text)).split(QLatin1Char('\n'));
}

QString KelFileHandler::readText(const QFileInfo &fileInfo)
{
    QString text = readWhole(fileInfo);
    if (text.isEmpty())
        return QString();
    text = withPlainLineEnds(std::move(text));
    return text.isEmpty() ? QStringLiteral("") : text; // one empty line
}
