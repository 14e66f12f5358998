// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelDiagnostics.h"

#include "KelPlainText.h"

#include <QJsonObject>

#include <cstdio>

#include <unistd.h>

namespace
{

// No path is longer; and nobody reads on.
constexpr qsizetype LONGEST_TEXT = 5000;

/// One line stays one line, whatever characters a file name holds.
QByteArray printable(const QString &text)
{
    return KelPlainText::oneLine(text).toUtf8();
}

KelErrorHistory::Entry shortened(KelErrorHistory::Entry entry)
{
    entry.fileName = KelPlainText::shortened(entry.fileName, LONGEST_TEXT);
    entry.message = KelPlainText::shortened(entry.message, LONGEST_TEXT);
    return entry;
}

KelErrorHistory::Entry entryOf(const QString &file, const QString &text)
{
    return {file, -1, -1, text};
}

} // namespace

KelDiagnostics::KelDiagnostics()
    : m_isTerminal(isatty(STDERR_FILENO) != 0)
{
}

void KelDiagnostics::error(KelExitCode code, const QString &text)
{
    error(code, entryOf(QString(), text));
}

void KelDiagnostics::warning(const QString &text)
{
    warning(entryOf(QString(), text));
}

void KelDiagnostics::error(KelExitCode code, const QString &file, const QString &text)
{
    error(code, entryOf(file, text));
}

void KelDiagnostics::warning(const QString &file, const QString &text)
{
    warning(entryOf(file, text));
}

void KelDiagnostics::note(const QString &file, const QString &text)
{
    const KelErrorHistory::Entry entry = shortened(entryOf(file, text));
    keep("note", entry);
    if (!m_quiet)
        write(entry.toString());
}

void KelDiagnostics::error(KelExitCode code, const KelErrorHistory::Entry &whole)
{
    const KelErrorHistory::Entry entry = shortened(whole);
    if (!hasErrors())
        m_exitCode = code;
    keep("error", entry, code);
    write(entry.toString());
}

void KelDiagnostics::warning(const KelErrorHistory::Entry &whole)
{
    const KelErrorHistory::Entry entry = shortened(whole);
    keep("warning", entry);
    write(QStringLiteral("warning: ") + entry.toString());
}

void KelDiagnostics::keep(const char *severity, const KelErrorHistory::Entry &entry, KelExitCode code)
{
    QJsonObject message{{QStringLiteral("severity"), QLatin1String(severity)},
                        {QStringLiteral("reason"), entry.message}};
    if (!entry.fileName.isEmpty())
        message.insert(QStringLiteral("file"), entry.fileName);
    if (entry.line >= 0)
        message.insert(QStringLiteral("line"), entry.line);
    if (entry.line >= 0 && entry.column >= 0)
        message.insert(QStringLiteral("column"), entry.column);
    if (code != KelExitCode::Success)
        message.insert(QStringLiteral("exitCode"), static_cast<int>(code));
    m_messages.append(message);
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

void KelDiagnostics::showLogLine(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    std::fprintf(stderr, "%s\n", printable(qFormatLogMessage(type, context, text)).constData());
}

void KelDiagnostics::write(const QString &text)
{
    progress(QString());
    const QByteArray line = "kel-render: " + printable(text) + '\n';
    std::fputs(line.constData(), stderr);
}
