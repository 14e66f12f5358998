// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELXMLCURSOR_H
#define KELXMLCURSOR_H

#include <KelXMLGlobal.h>

#include <QDateTime>
#include <QString>
#include <QStringView>

/// One element of an XML document, read strictly forward.
///
/// Reading rules that are written against a cursor run over a tree (KelXMLDomCursor) as well as over a file that
/// is never in memory as a whole (KelXMLStreamCursor), with the same result. What the order of use is:
///
/// 1. name() at any time, attribute() before the first child;
/// 2. then either text() (or one of its value forms), once, or nextChild() and child() until there is no more.
///
/// Whatever is left unread is skipped when the parent goes on. A rule can therefore look at each child only once;
/// where the first of several children of the same name counts, the rule has to remember that it saw one.
///
/// \code
/// while (element.nextChild()) {
///     KelXMLCursor &child = element.child();
///     if (child.name() == u"name")
///         name = child.text();
/// }
/// \endcode
///
/// Names are qualified and as written ("gpxx:rpt"); namespaces are not resolved.
class KELXML_EXPORT KelXMLCursor
{
public:
    virtual ~KelXMLCursor();

    KelXMLCursor(const KelXMLCursor &) = delete;
    KelXMLCursor &operator=(const KelXMLCursor &) = delete;

    /// The qualified name; empty for a cursor on nothing. Valid until the cursor moves to another element.
    [[nodiscard]] virtual QStringView name() const = 0;

    /// The attribute's value: null when there is no such attribute, empty but not null when it is empty.
    [[nodiscard]] virtual QString attribute(QStringView name) const = 0;

    /// The text of the element and of all elements in it, as QDomElement::text() returns it: runs of white space
    /// alone do not count unless they stand in a CDATA section. Never null. Ends the element.
    [[nodiscard]] virtual QString text() = 0;

    /// Goes to the next child element and returns whether there is one.
    virtual bool nextChild() = 0;

    /// The child that nextChild() went to; only valid when that returned true, and until it is called again.
    [[nodiscard]] virtual KelXMLCursor &child() = 0;

    /// Where the element's start tag ends, both counted from 1 (the column from 0 at a line's start); -1 if unknown.
    [[nodiscard]] virtual qint64 line() const = 0;
    /// See line().
    [[nodiscard]] virtual qint64 column() const = 0;

    /// The attribute as a number; `defaultValue` when there is no such attribute, 0 when it cannot be read.
    [[nodiscard]] virtual double attributeDouble(QStringView name, double defaultValue) const;

    /// text() as a number, 0 when it cannot be read. Ends the element.
    [[nodiscard]] virtual double textDouble();

    /// text() as an ISO 8601 date and time, invalid when it cannot be read. Ends the element.
    [[nodiscard]] virtual QDateTime textDateTime();

protected:
    KelXMLCursor() = default;

    /// The number in a text, as KelXMLParser::toDouble() reads it: 0 for what is no number, or too great for one.
    [[nodiscard]] static double toDouble(QStringView text);
};

#endif
