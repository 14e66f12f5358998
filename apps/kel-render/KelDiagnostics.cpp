// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelDiagnostics.h"

#include <cstdio>

#include <unistd.h>

namespace
{

/// One line stays one line, whatever characters a file name holds.
QByteArray printable(QString text)
{
    for (QChar &character : text) {
        if (character.category() == QChar::Other_Control)
            character = QLatin1Char('?');
    }
    return text.toUtf8();
}

} // namespace

KelDiagnostics::KelDiagnostics()
    : m_isTerminal(isatty(STDERR_FILENO) != 0)
{
}

void KelDiagnostics::error(KelExitCode code, const QString &text)
{
    if (!hasErrors())
        m_exitCode = code;
    write(text);
}

void KelDiagnostics::warning(const QString &text)
{
    write(QStringLiteral("warning: ") + text);
}

void KelDiagnostics::note(const QString &text)
{
    if (!m_quiet)
        write(text);
}

void KelDiagnostics::progress(const QString &text)
{
    if (!m_isTerminal || m_quiet || (text.isEmpty() && !m_showsProgress))
        return;
    // Back to the first column, and clear to the end of the line.
    std::fputs("\r\x1b[K", stderr);
    std::fputs(printable(text).constData(), stderr);
    std::fflush(stderr);
    m_showsProgress = !text.isEmpty();
}

void KelDiagnostics::write(const QString &text)
{
    progress(QString());
    const QByteArray line = "kel-render: " + printable(text) + '\n';
    std::fputs(line.constData(), stderr);
}
