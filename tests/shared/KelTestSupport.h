// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELTESTSUPPORT_H
#define KELTESTSUPPORT_H

#include <QDomDocument>
#include <QHash>
#include <QList>
#include <QString>
#include <QTranslator>

/// Small builders that many tests share.
namespace KelTestSupport
{

/// The document element of an XML text; the test ends when the text does not parse.
/// The returned document keeps the element alive.
QDomDocument document(const QString &xml);

/// Path of a file in tests/data.
QString dataFile(const QString &name);

/// How many random cases a test goes through: KEL_RANDOM_CASES, or the number when that is not set; a fifth
/// of it under a sanitizer.
int randomCases(int otherwise);
/// Where they begin: KEL_RANDOM_SEED, or the number when that is not set.
unsigned randomSeed(unsigned otherwise);

/// Translator that writes down what it is asked for; installed in the application for as long as it lives.
class RecordingTranslator : public QTranslator
{
public:
    struct Request
    {
        QString context;
        QString sourceText;
        QString disambiguation;

        bool operator==(const Request &other) const = default;
    };

    RecordingTranslator();
    ~RecordingTranslator() override;

    bool isEmpty() const override;
    QString translate(const char *context, const char *sourceText, const char *disambiguation, int n) const override;

    /// From now on @p sourceText is translated; everything else stays as it is.
    void setTranslation(const QString &sourceText, const QString &translation);
    /// What was asked for since the last call, in order.
    QList<Request> takeRequests();

private:
    QHash<QString, QString> m_translations;
    mutable QList<Request> m_requests;
};

} // namespace KelTestSupport

#endif
