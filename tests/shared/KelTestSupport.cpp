// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelTestSupport.h"

#include <QtTest>

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

} // namespace KelTestSupport
