// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelDesignerWidget.h"

#include <utility>

KelDesignerWidget::KelDesignerWidget(Description description)
    : m_description(std::move(description))
{
}

QString KelDesignerWidget::includeFile() const
{
    return QStringLiteral("<%1.h>").arg(m_description.className);
}

QString KelDesignerWidget::domXml() const
{
    return QStringLiteral("<ui language=\"c++\"><widget class=\"%1\" name=\"%2\"><property name=\"%3\">%4</property>"
                          "</widget></ui>")
        .arg(m_description.className, m_description.objectName, m_description.property, m_description.value);
}
