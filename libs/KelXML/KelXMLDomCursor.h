// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELXMLDOMCURSOR_H
#define KELXMLDOMCURSOR_H

#include <KelXMLCursor.h>

#include <QDomElement>

#include <memory>

/// Reads a tree that is already in memory. See KelXMLCursor for the rules.
class KELXML_EXPORT KelXMLDomCursor : public KelXMLCursor
{
public:
    /// A null element has no name, no attribute, no text and no child.
    explicit KelXMLDomCursor(const QDomElement &element);
    ~KelXMLDomCursor() override;

    [[nodiscard]] QStringView name() const override;
    [[nodiscard]] QString attribute(QStringView name) const override;
    [[nodiscard]] QString text() override;
    bool nextChild() override;
    [[nodiscard]] KelXMLCursor &child() override;
    [[nodiscard]] qint64 line() const override;
    /// See line().
    [[nodiscard]] qint64 column() const override;

private:
    void setElement(const QDomElement &element);

    QDomElement m_element;
    QString m_name;
    std::unique_ptr<KelXMLDomCursor> m_child; // one object for all children, one after the other
    bool m_started = false;
    bool m_ended = false;
};

#endif
