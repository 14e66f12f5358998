// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELRECORDINGTRANSLATOR_H
#define KELRECORDINGTRANSLATOR_H

#include <QHash>
#include <QList>
#include <QMutex>
#include <QString>
#include <QTranslator>

/// Notes every text that is asked for, with its context and disambiguation, from its construction to its destruction.
/// Translates nothing by itself, so that the German source texts are seen; single texts can be given a translation.
/// Needs an application object.
class KelRecordingTranslator : public QTranslator
{
public:
    struct Entry
    {
        QString context;
        QString source;
        QString disambiguation; ///< empty if none was given

        friend bool operator==(const Entry &a, const Entry &b) = default;
    };

    KelRecordingTranslator();
    ~KelRecordingTranslator() override;

    /// What was asked for so far, in order, repetitions included.
    [[nodiscard]] QList<Entry> entries() const;

    /// Whether exactly this text was asked for, disambiguation included.
    [[nodiscard]] bool hasRecorded(const QString &context, const QString &source,
                                   const QString &disambiguation = QString()) const;

    void clear();

    /// From now on the source text, in whatever context, reads as the translation.
    void setTranslation(const QString &source, const QString &translation);

    [[nodiscard]] bool isEmpty() const override;
    QString translate(const char *context, const char *sourceText, const char *disambiguation, int n) const override;

private:
    mutable QMutex m_mutex;
    mutable QList<Entry> m_entries;
    QHash<QString, QString> m_translations;
};

#endif
