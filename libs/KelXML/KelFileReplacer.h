// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELFILEREPLACER_H
#define KELFILEREPLACER_H

#include <QByteArray>
#include <QFile>
#include <QString>

/// Replaces one file as a whole; see KelXMLBuilder::saveUTF8() for what is promised. One use each.
///
/// QSaveFile would do most of this, but up to Qt 6.4 its commit() reports success after a short write on a full disk
/// and then puts the cut-off file in the old one's place.
class KelFileReplacer
{
public:
    explicit KelFileReplacer(const QString &path);

    bool replaceWith(const QByteArray &content);

    /// Why replaceWith() returned false, in the words of the operating system where it has some.
    [[nodiscard]] QString errorText() const
    {
        return m_errorText;
    }

private:
    bool resolveTarget();
    bool writeInto(QFile &file, const QByteArray &content);
    bool writeDirectly(const QByteArray &content);
    bool createTemporary(QFile &file);
    bool takeOverAttributes(const QFile &file);
    bool moveOverTarget(const QString &temporary);
    bool fail(const QString &reason);
    bool failWithErrno();

    QString m_path;
    QString m_target; // m_path, or what it finally links to
    QString m_errorText;
};

#endif
