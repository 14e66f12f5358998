// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELERRORHISTORY_H
#define KELERRORHISTORY_H

#include <KelXMLGlobal.h>

#include <QList>
#include <QString>
#include <QtGlobal>

/// What went wrong while files were read and written, oldest first. Operations that can fail take a pointer to a history,
/// or nullptr from callers who do not ask.
class KELXML_EXPORT KelErrorHistory
{
public:
    /// One error. What is not known stays empty or -1.
    struct KELXML_EXPORT Entry
    {
        /// The file as the caller named it.
        QString fileName;
        qint64 line = -1; ///< from 1
        qint64 column = -1; ///< from 1
        /// What went wrong, in English.
        QString message;

        /// "file:line:column: message", the form that editors and compilers agree on, without the parts that are
        /// unknown.
        [[nodiscard]] QString toString() const;
    };

    /// Appends an entry, which becomes the last().
    void add(const Entry &entry);

    /// Whether nothing went wrong.
    [[nodiscard]] bool isEmpty() const noexcept
    {
        return m_entries.isEmpty();
    }

    /// All entries, the oldest first.
    [[nodiscard]] const QList<Entry> &entries() const noexcept
    {
        return m_entries;
    }

    /// The latest error; an empty entry if there is none.
    [[nodiscard]] Entry last() const;

    /// Forgets all entries.
    void clear();

private:
    QList<Entry> m_entries;
};

#endif
