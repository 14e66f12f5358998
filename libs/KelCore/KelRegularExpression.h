// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELREGULAREXPRESSION_H
#define KELREGULAREXPRESSION_H

#include <KelCoreGlobal.h>

#include <QRegularExpression>
#include <QString>

/// A regular expression that is compiled once, on construction, and then used from any thread; meant to be a
/// function-local `static const` where it is needed.
class KELCORE_EXPORT KelRegularExpression
{
public:
    /// Compiles the pattern; a pattern that is not a regular expression matches nothing.
    explicit KelRegularExpression(const QString &pattern,
                                  QRegularExpression::PatternOptions options = QRegularExpression::NoPatternOption);

    /// Removes every match from the text, in place. A pattern that is not a regular expression removes nothing.
    void removeFrom(QString &text) const;

private:
    QRegularExpression m_expression;
};

#endif
