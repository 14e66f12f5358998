// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelXMLParser.h"

#include <QDomElement>
#include <QDomNode>

#include <algorithm>

namespace
{

constexpr qsizetype HexDigitsWithAlpha = 8;

QString neverNull(const QString &text)
{
    return text.isNull() ? QLatin1String("") : text;
}

/// Null when the attribute is missing, and only then.
QString attributeOrNull(const QDomElement &element, const QString &name)
{
    return element.hasAttribute(name) ? neverNull(element.attribute(name)) : QString();
}

/// Null when the child is missing, and only then.
QString childTextOrNull(const QDomNode &node, const QString &childName)
{
    const QDomElement child = node.firstChildElement(childName);
    return child.isNull() ? QString() : neverNull(child.text());
}

bool isHexDigit(QChar c)
{
    return (c >= QLatin1Char('0') && c <= QLatin1Char('9')) || (c >= QLatin1Char('a') && c <= QLatin1Char('f'))
        || (c >= QLatin1Char('A') && c <= QLatin1Char('F'));
}

QColor colorFromEightDigits(const QString &digits, KelXMLParser::ColorByteOrder order)
{
    const auto byte = [&digits](qsizetype index) { return QStringView(digits).mid(2 * index, 2).toInt(nullptr, 16); };
    return order == KelXMLParser::ColorByteOrder::Argb ? QColor(byte(1), byte(2), byte(3), byte(0))
                                                       : QColor(byte(3), byte(2), byte(1), byte(0));
}

/// Invalid unless the text is a name or a short form that QColor knows.
QColor colorFromHexDigits(const QString &digits, KelXMLParser::ColorByteOrder order)
{
    if (!std::all_of(digits.begin(), digits.end(), isHexDigit))
        return {};
    if (digits.size() == HexDigitsWithAlpha)
        return colorFromEightDigits(digits, order);
    return QColor(QLatin1Char('#') + digits);
}

} // namespace

double KelXMLParser::doubleAttribute(const QDomElement &element, const QString &name, double defaultValue)
{
    return toDouble(attributeOrNull(element, name), defaultValue);
}

int KelXMLParser::intAttribute(const QDomElement &element, const QString &name, int defaultValue)
{
    return toInt(attributeOrNull(element, name), defaultValue);
}

QString KelXMLParser::attribute(const QDomElement &element, const QString &name, const QString &defaultValue)
{
    const QString text = attributeOrNull(element, name);
    return text.isNull() ? defaultValue : text;
}

double KelXMLParser::doubleText(const QDomNode &node, const QString &childName, double defaultValue)
{
    return toDouble(childTextOrNull(node, childName), defaultValue);
}

int KelXMLParser::intText(const QDomNode &node, const QString &childName, int defaultValue)
{
    return toInt(childTextOrNull(node, childName), defaultValue);
}

QDateTime KelXMLParser::dateTimeText(const QDomNode &node, const QString &childName, Qt::DateFormat format,
                                     const QDateTime &defaultValue)
{
    return toDateTime(childTextOrNull(node, childName), format, defaultValue);
}

QString KelXMLParser::text(const QDomNode &node, const QString &childName, const QString &defaultValue)
{
    const QString text = childTextOrNull(node, childName);
    return text.isNull() ? defaultValue : text;
}

double KelXMLParser::toDouble(const QString &text, double defaultValue)
{
    if (text.isNull())
        return defaultValue;
    // Beyond the range of a double Qt gives an infinity and says "not read".
    bool isNumber = false;
    const double number = text.toDouble(&isNumber);
    return isNumber ? number : 0.0;
}

int KelXMLParser::toInt(const QString &text, int defaultValue)
{
    return text.isNull() ? defaultValue : text.toInt();
}

QDateTime KelXMLParser::toDateTime(const QString &text, Qt::DateFormat format, const QDateTime &defaultValue)
{
    return text.isNull() ? defaultValue : QDateTime::fromString(text, format);
}

QColor KelXMLParser::readColor(const QString &text, ColorByteOrder order)
{
    const QString trimmed = text.trimmed();
    if (trimmed.isEmpty())
        return QColor(Qt::black);

    const QColor color = trimmed.startsWith(QLatin1Char('#')) ? colorFromHexDigits(trimmed.mid(1).trimmed(), order)
                                                              : QColor(trimmed);
    return color.isValid() ? color : QColor(Qt::transparent);
}
