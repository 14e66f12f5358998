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
        QString fileName;
        qint64 line = -1; ///< from 1
        qint64 column = -1; ///< from 1
        QString message;

        /// "file:line:column: message", the form that editors and compilers agree on, without the parts that are
        /// unknown.
        [[nodiscard]] QString toString() const;
    };

    void add(const Entry &entry);

    [[nodiscard]] bool isEmpty() const noexcept
    {
        return m_entries.isEmpty();
    }

    [[nodiscard]] const QList<Entry> &entries() const noexcept
    {
        return m_entries;
    }

    /// The latest error; an empty entry if there is none.
    [[nodiscard]] Entry last() const;

    void clear();

private:
    QList<Entry> m_entries;
};

#endif
