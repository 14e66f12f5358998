// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelXMLCursor.h"

#include <KelXMLConversion.h>

KelXMLCursor::~KelXMLCursor() = default;

double KelXMLCursor::attributeDouble(QStringView name, double defaultValue) const
{
    const QString value = attribute(name);
    return value.isNull() ? defaultValue : toDouble(value);
}

double KelXMLCursor::textDouble()
{
    return toDouble(text());
}

QDateTime KelXMLCursor::textDateTime()
{
    return KelXMLConversion::toDateTime(text());
}

double KelXMLCursor::toDouble(QStringView text)
{
    bool isNumber = false;
    const double number = KelXMLConversion::toDouble(text, &isNumber);
    return isNumber ? number : 0.0;
}
