// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELRENDEROPTIONSREADER_H
#define KELRENDEROPTIONSREADER_H

#include "KelRenderOptions.h"

#include <QCommandLineParser>

class KelDiagnostics;

/// Understands the command line of kel-render.
class KelRenderOptionsReader
{
public:
    enum class Outcome {
        Run,   ///< the options are complete and fit together
        Done,  ///< help or version was asked for and printed
        Failed ///< told to the diagnostics
    };

    /// Undecodable are those of the arguments that are not what was typed: that was no UTF-8.
    explicit KelRenderOptionsReader(const QStringList &undecodable = {});

    [[nodiscard]] Outcome read(const QStringList &arguments, KelRenderOptions &options, KelDiagnostics &diagnostics);

private:
    [[nodiscard]] QString helpText() const;
    /// Takes what belongs to beelines out of the arguments and returns what is wrong with it, empty if nothing is.
    [[nodiscard]] static QString takeBeelines(QStringList &arguments, KelRenderOptions &options);
    bool readKind(const char *option, bool &wanted, KelDiagnostics &diagnostics) const;
    bool checkFileNames(KelDiagnostics &diagnostics) const;
    bool readOutput(KelRenderOptions &options, KelDiagnostics &diagnostics) const;
    bool readMap(KelRenderOptions &options, KelDiagnostics &diagnostics) const;
    bool readNumbers(KelRenderOptions &options, KelDiagnostics &diagnostics) const;
    bool readStyle(KelStyleOptions &style, KelDiagnostics &diagnostics) const;
    bool checkWhole(const KelRenderOptions &options, KelDiagnostics &diagnostics) const;

    [[nodiscard]] bool isUndecodable(const QString &name) const;

    QCommandLineParser m_parser;
    QStringList m_undecodable;
};

#endif
