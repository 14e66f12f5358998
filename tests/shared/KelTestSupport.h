// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELTESTSUPPORT_H
#define KELTESTSUPPORT_H

#include <QDomDocument>
#include <QString>

/// Small builders that many tests share.
namespace KelTestSupport
{

/// The document element of an XML text; the test ends when the text does not parse.
/// The returned document keeps the element alive.
QDomDocument document(const QString &xml);

/// Path of a file in tests/data.
QString dataFile(const QString &name);

} // namespace KelTestSupport

#endif
