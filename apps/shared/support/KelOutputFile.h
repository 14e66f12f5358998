// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELOUTPUTFILE_H
#define KELOUTPUTFILE_H

#include <QString>

class QByteArray;

/// Writes a result as a whole or not at all: into a new file beside the target, which takes the target's place only
/// when every byte has reached the disk. What was there before survives every failure, and links stay links.
class KelOutputFile
{
public:
    explicit KelOutputFile(const QString &path);

    /// False on failure; error() then tells why in words that fit behind the file's name.
    bool write(const QByteArray &bytes);
    [[nodiscard]] QString error() const { return m_error; }

    /// The same for standard output.
    static bool writeToStandardOutput(const QByteArray &bytes, QString &error);

private:
    bool writeThrough(const QByteArray &bytes);
    bool replace(const QString &target, const QByteArray &bytes);
    bool fail(int errorNumber);

    QString m_path;
    QString m_error;
};

#endif
