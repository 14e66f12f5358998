// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELTEMPORARYSETTINGS_H
#define KELTEMPORARYSETTINGS_H

#include <QString>
#include <QTemporaryDir>

/// An empty settings store of the test's own, from its construction on: names the application and sends every QSettings
/// that is made afterwards into a temporary directory. Make it before the first use of a settings class.
class KelTemporarySettings
{
public:
    KelTemporarySettings();

    /// Forgets everything that was stored.
    void clear();

    /// The file that a default QSettings writes to.
    [[nodiscard]] QString filePath() const;

private:
    QTemporaryDir m_dir;
};

#endif
