// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelErrorHistory.h"

#include <QStringList>

QString KelErrorHistory::Entry::toString() const
{
    QStringList place;
    if (!fileName.isEmpty())
        place.append(fileName);
    if (line >= 0)
        place.append(QString::number(line));
    if (line >= 0 && column >= 0)
        place.append(QString::number(column));
    return place.isEmpty() ? message : place.join(QLatin1Char(':')) + QLatin1String(": ") + message;
}

void KelErrorHistory::add(const Entry &entry)
{
    m_entries.append(entry);
}

KelErrorHistory::Entry KelErrorHistory::last() const
{
    return m_entries.isEmpty() ? Entry() : m_entries.last();
}

void KelErrorHistory::clear()
{
    m_entries.clear();
}
