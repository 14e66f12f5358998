// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelTestSupport.h"

#include <QCoreApplication>
#include <QtTest>

#include <utility>

namespace KelTestSupport
{

QDomDocument document(const QString &xml)
{
    QDomDocument result;
    QString message;
    if (!result.setContent(xml, false, &message))
        qFatal("the test's XML does not parse: %s", qPrintable(message));
    return result;
}

QString dataFile(const QString &name)
{
    return QStringLiteral(KEL_TEST_DATA_DIR "/") + name;
}

namespace
{

int fromEnvironment(const char *name, int otherwise)
{
    bool ok = false;
    const int value = qEnvironmentVariableIntValue(name, &ok);
    return ok ? value : otherwise;
}

} // namespace

int randomCases(int otherwise)
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    otherwise /= 5; // as long as without, about
#endif
    return fromEnvironment("KEL_RANDOM_CASES", otherwise);
}

unsigned randomSeed(unsigned otherwise)
{
    return unsigned(fromEnvironment("KEL_RANDOM_SEED", int(otherwise)));
}

RecordingTranslator::RecordingTranslator()
{
    QCoreApplication::installTranslator(this);
}

RecordingTranslator::~RecordingTranslator()
{
    QCoreApplication::removeTranslator(this);
}

bool RecordingTranslator::isEmpty() const
{
    return false;
}

QString RecordingTranslator::translate(const char *context, const char *sourceText, const char *disambiguation,
                                       int) const
{
    m_requests.append(
        {QString::fromUtf8(context), QString::fromUtf8(sourceText), QString::fromUtf8(disambiguation)});
    return m_translations.value(QString::fromUtf8(sourceText));
}

void RecordingTranslator::setTranslation(const QString &sourceText, const QString &translation)
{
    m_translations.insert(sourceText, translation);
}

QList<RecordingTranslator::Request> RecordingTranslator::takeRequests()
{
    return std::exchange(m_requests, {});
}

} // namespace KelTestSupport
