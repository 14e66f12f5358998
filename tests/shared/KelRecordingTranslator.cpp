// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelRecordingTranslator.h"

#include <QCoreApplication>
#include <QMutexLocker>

KelRecordingTranslator::KelRecordingTranslator()
{
    QCoreApplication::installTranslator(this);
    clear();
}

KelRecordingTranslator::~KelRecordingTranslator()
{
    QCoreApplication::removeTranslator(this);
}

QList<KelRecordingTranslator::Entry> KelRecordingTranslator::entries() const
{
    const QMutexLocker locker(&m_mutex);
    return m_entries;
}

bool KelRecordingTranslator::hasRecorded(const QString &context, const QString &source,
                                         const QString &disambiguation) const
{
    return entries().contains(Entry{context, source, disambiguation});
}

void KelRecordingTranslator::clear()
{
    const QMutexLocker locker(&m_mutex);
    m_entries.clear();
}

void KelRecordingTranslator::setTranslation(const QString &source, const QString &translation)
{
    const QMutexLocker locker(&m_mutex);
    m_translations.insert(source, translation);
}

bool KelRecordingTranslator::isEmpty() const
{
    // An empty translator would not be asked.
    return false;
}

QString KelRecordingTranslator::translate(const char *context, const char *sourceText, const char *disambiguation,
                                          int) const
{
    const QMutexLocker locker(&m_mutex);
    const QString source = QString::fromUtf8(sourceText);
    m_entries.append({QString::fromUtf8(context), source, QString::fromUtf8(disambiguation)});
    return m_translations.value(source);
}
