// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelRegularExpression.h"

KelRegularExpression::KelRegularExpression(const QString &pattern, QRegularExpression::PatternOptions options)
    : m_expression(pattern, options)
{
    m_expression.optimize();
}

void KelRegularExpression::removeFrom(QString &text) const
{
    if (m_expression.isValid())
        text.remove(m_expression);
}
