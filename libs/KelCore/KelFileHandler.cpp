// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelFileHandler.h"

#include <QByteArray>
#include <QFile>
#include <QFileInfo>
#include <QString>

namespace
{

constexpr QChar ByteOrderMark(0xfeff);

QStringList splitLines(QString text)
{
    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    if (text.endsWith(QLatin1Char('\n')))
        text.chop(1);
    return text.split(QLatin1Char('\n'));
}

} // namespace

QStringList KelFileHandler::readTextFile(const QFileInfo &fileInfo)
{
    QFile file(fileInfo.filePath());
    // Qt warns about a file without a name; here it is one that cannot be read, like any other.
    if (file.fileName().isEmpty() || !file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return {};

    QString text = QString::fromUtf8(bytes);
    if (text.startsWith(ByteOrderMark))
        text.remove(0, 1);
    return text.isEmpty() ? QStringList() : splitLines(std::move(text));
}
