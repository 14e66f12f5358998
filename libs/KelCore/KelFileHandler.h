// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELFILEHANDLER_H
#define KELFILEHANDLER_H

#include <KelCoreGlobal.h>

#include <QString>
#include <QStringList>
#include <QtGlobal>

class QFileInfo;

/// Reading of whole files.
class KELCORE_EXPORT KelFileHandler
{
public:
    KelFileHandler() = delete;

    /// In bytes: of a file that is read as a whole. What is larger counts as a file that cannot be read.
    static constexpr qint64 MAXIMUM_SIZE = qint64(1) << 31;
    /// In bytes: the same for a pipe or another device whose size is not known beforehand.
    static constexpr qint64 MAXIMUM_PIPE_SIZE = qint64(1) << 28;

    /// The lines of a text file, without their ends ("\n", "\r\n" or "\r"). A line feed at the very end begins no
    /// further line.
    ///
    /// The text is taken as UTF-8; a byte order mark is dropped, bytes that are no UTF-8 become U+FFFD. A file that
    /// cannot be read, or not to its end, gives an empty list, as an empty file does.
    [[nodiscard]] static QStringList readTextFile(const QFileInfo &fileInfo);

    /// The lines of readTextFile(), joined with line feeds, without making the lines; a null text where there are none.
    [[nodiscard]] static QString readText(const QFileInfo &fileInfo);
    /// The same; where there are no lines, `reason` says why.
    [[nodiscard]] static QString readText(const QFileInfo &fileInfo, QString *reason);
};

#endif
