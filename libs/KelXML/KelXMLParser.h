// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELXMLPARSER_H
#define KELXMLPARSER_H

#include <KelXMLGlobal.h>

#include <QColor>
#include <QDateTime>
#include <QString>
#include <Qt>

class QDomElement;
class QDomNode;

/// Reads values from XML. Reading never fails: what is missing takes the default that the caller gives, a number that
/// cannot be read is 0. Children are found by their qualified name ("gpxx:rpt"); of several with the same name the first
/// counts. A null element or node has nothing, so every default applies.
class KELXML_EXPORT KelXMLParser
{
public:
    KelXMLParser() = delete;

    /// The attribute as a number; the default when the attribute is missing, 0 when it is there but unreadable or empty.
    [[nodiscard]] static double doubleAttribute(const QDomElement &element, const QString &name, double defaultValue);

    /// \copydoc doubleAttribute
    [[nodiscard]] static int intAttribute(const QDomElement &element, const QString &name, int defaultValue);

    /// The attribute's text, never null when the attribute is there.
    [[nodiscard]] static QString attribute(const QDomElement &element, const QString &name,
                                           const QString &defaultValue);

    /// The text of the named child as a number; the default when the child is missing, 0 when its text is unreadable or
    /// empty.
    [[nodiscard]] static double doubleText(const QDomNode &node, const QString &childName, double defaultValue);

    /// \copydoc doubleText
    [[nodiscard]] static int intText(const QDomNode &node, const QString &childName, int defaultValue);

    /// The text of the named child as a date with time; the default when the child is missing, an invalid date-time when
    /// its text is not in the format.
    [[nodiscard]] static QDateTime dateTimeText(const QDomNode &node, const QString &childName, Qt::DateFormat format,
                                                const QDateTime &defaultValue);

    /// The text of the named child, that of its descendants included, never null when the child is there.
    [[nodiscard]] static QString text(const QDomNode &node, const QString &childName, const QString &defaultValue);

    /// A number as QString::toDouble() reads it: the default for a null text, 0 for one that is unreadable, empty or
    /// beyond the range of a double.
    [[nodiscard]] static double toDouble(const QString &text, double defaultValue);

    /// As toDouble(), for what QString::toInt() reads; "12.5" is not an integer and gives 0.
    [[nodiscard]] static int toInt(const QString &text, int defaultValue);

    /// A date with time as QDateTime::fromString() reads it: the default for a null text, an invalid date-time for one
    /// that is not in the format.
    [[nodiscard]] static QDateTime toDateTime(const QString &text, Qt::DateFormat format,
                                              const QDateTime &defaultValue);

    /// The order of the four bytes in a colour of eight hexadecimal digits: alpha, red, green, blue as our own files have
    /// it, or alpha, blue, green, red as KML has it.
    enum class ColorByteOrder { Argb, Abgr };

    /// A colour from "#" and eight hexadecimal digits in the given order, from the other forms that QColor knows
    /// ("#rrggbb", always in this order, or "steelblue"), blanks around it disregarded. An empty text is opaque black, so
    /// that a track without a colour stays visible; any other text, a lone "#" too, is fully transparent black, which
    /// readers of foreign files take as the sign of a missing colour.
    [[nodiscard]] static QColor readColor(const QString &text, ColorByteOrder order = ColorByteOrder::Argb);
};

#endif
