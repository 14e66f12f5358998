// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelXMLDomCursor.h"

KelXMLDomCursor::KelXMLDomCursor(const QDomElement &element)
{
    setElement(element);
}

KelXMLDomCursor::~KelXMLDomCursor() = default;

QStringView KelXMLDomCursor::name() const
{
    return m_name;
}

QString KelXMLDomCursor::attribute(QStringView name) const
{
    const QString key = QString::fromRawData(name.data(), name.size());
    const QString value = m_element.attribute(key);
    return value.isNull() && m_element.hasAttribute(key) ? QStringLiteral("") : value;
}

QString KelXMLDomCursor::text()
{
    m_ended = true;
    const QString text = m_element.text();
    return text.isNull() ? QStringLiteral("") : text;
}

bool KelXMLDomCursor::nextChild()
{
    if (m_ended)
        return false;
    const QDomElement next = m_started ? m_child->m_element.nextSiblingElement() : m_element.firstChildElement();
    if (next.isNull()) {
        m_ended = true;
        return false;
    }
    m_started = true;
    if (m_child)
        m_child->setElement(next);
    else
        m_child = std::make_unique<KelXMLDomCursor>(next);
    return true;
}

KelXMLCursor &KelXMLDomCursor::child()
{
    Q_ASSERT(m_child);
    return *m_child;
}

qint64 KelXMLDomCursor::line() const
{
    return m_element.lineNumber();
}

qint64 KelXMLDomCursor::column() const
{
    return m_element.columnNumber();
}

void KelXMLDomCursor::setElement(const QDomElement &element)
{
    m_element = element;
    m_name = element.tagName();
    m_started = false;
    m_ended = false;
}
