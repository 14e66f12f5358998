// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELDEBUGTEXT_H
#define KELDEBUGTEXT_H

#include <QDebug>
#include <QDebugStateSaver>
#include <QString>

/// For the debug stream operators of the value types, which share one manner of writing.
namespace KelDebugText
{

/// Writes @p text as it is, without quotes and without adding blanks; the stream's own settings stay untouched.
inline QDebug write(QDebug debug, const QString &text)
{
    const QDebugStateSaver saver(debug);
    const bool blanks = debug.autoInsertSpaces();
    debug.nospace().noquote() << text;
    // The saver adds a blank when it has to switch them on again.
    debug.setAutoInsertSpaces(blanks);
    return debug;
}

} // namespace KelDebugText

#endif
