// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELXMLCONVERSION_H
#define KELXMLCONVERSION_H

#include <KelXMLGlobal.h>

#include <QDateTime>
#include <QLatin1String>
#include <QStringView>

/// Texts of XML files to values, a million times over.
///
/// Every operation returns exactly what Qt's own conversion returns, to the last bit. The forms that files
/// really hold (plain decimal numbers, UTC time stamps) take a short way that needs no allocation and no locale;
/// everything else is handed to Qt.
class KELXML_EXPORT KelXMLConversion
{
public:
    KelXMLConversion() = delete;

    /// QString::toDouble(): blanks around the number are allowed; unreadable text gives 0, a number too great for a
    /// double infinity, both with `*ok` false.
    [[nodiscard]] static double toDouble(QStringView text, bool *ok = nullptr);
    /// As above, from a text of bytes.
    [[nodiscard]] static double toDouble(QLatin1String text, bool *ok = nullptr);

    /// QDateTime::fromString(text, Qt::ISODate): unreadable text gives an invalid value.
    [[nodiscard]] static QDateTime toDateTime(QStringView text);
    /// As above, from a text of bytes.
    [[nodiscard]] static QDateTime toDateTime(QLatin1String text);
};

#endif
