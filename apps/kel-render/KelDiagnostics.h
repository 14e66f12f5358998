// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELDIAGNOSTICS_H
#define KELDIAGNOSTICS_H

#include "KelExitCode.h"

#include <KelErrorHistory.h>

#include <QJsonArray>
#include <QString>
#include <QtGlobal>

/// Everything that the program says to the person at the command line: one line on standard error for each thing,
/// and the exit code that follows from it. The first error decides the exit code.
class KelDiagnostics
{
public:
    KelDiagnostics();

    /// Leaves out notes and progress; warnings and errors stay.
    void setQuiet(bool quiet) noexcept { m_quiet = quiet; }

    /// "kel-render: text". The text says what is wrong and what to do about it.
    void error(KelExitCode code, const QString &text);
    void warning(const QString &text);

    /// The same with the file that it is about: "kel-render: file: text".
    void error(KelExitCode code, const QString &file, const QString &text);
    void warning(const QString &file, const QString &text);
    void note(const QString &file, const QString &text);

    /// The same with the place in the file: "kel-render: file:line:column: text".
    void error(KelExitCode code, const KelErrorHistory::Entry &entry);
    void warning(const KelErrorHistory::Entry &entry);

    /// A line that the next one replaces, on a terminal only. An empty text removes it.
    void progress(const QString &text);

    /// A handler of Qt's messages: those lines, too, may hold names from strangers.
    static void showLogLine(QtMsgType type, const QMessageLogContext &context, const QString &text);

    [[nodiscard]] KelExitCode exitCode() const noexcept { return m_exitCode; }
    [[nodiscard]] bool hasErrors() const noexcept { return m_exitCode != KelExitCode::Success; }

    /// All that was said, in this order, quiet or not: "severity" (error, warning or note), "reason", and, where
    /// they are known, "file", "line" and "column" (from 1); errors with the "exitCode" that belongs to them.
    [[nodiscard]] const QJsonArray &messages() const noexcept { return m_messages; }

private:
    void keep(const char *severity, const KelErrorHistory::Entry &entry, KelExitCode code = KelExitCode::Success);
    void write(const QString &text);

    KelExitCode m_exitCode = KelExitCode::Success;
    QJsonArray m_messages;
    bool m_quiet = false;
    bool m_isTerminal = false;
    bool m_showsProgress = false;
};

#endif
