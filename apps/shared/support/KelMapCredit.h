// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELMAPCREDIT_H
#define KELMAPCREDIT_H

#include <KelCopyrightRenderer.h>

#include <QString>

/// The credit of the map that a picture really shows.
class KelMapCredit : public KelCopyrightRenderer
{
public:
    explicit KelMapCredit(const QString &text)
        : m_text(text)
    {
    }

    [[nodiscard]] QString copyrightText() const override { return m_text; }

private:
    QString m_text;
};

#endif
