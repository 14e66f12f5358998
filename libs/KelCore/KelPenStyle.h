// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELPENSTYLE_H
#define KELPENSTYLE_H

#include <KelCoreGlobal.h>

#include <QList>
#include <QString>
#include <Qt>

class QDebug;
class QDomElement;
class QPen;

/// The dash pattern of a line: a Qt::PenStyle with its text form, the name of the enumerator ("DashLine").
class KELCORE_EXPORT KelPenStyle
{
public:
    /// A solid line.
    KelPenStyle() noexcept = default;

    /// Implicit on purpose: the enumerators are the styles. A number that is none of them gives a solid line.
    KelPenStyle(Qt::PenStyle style) noexcept;

    /// The style as Qt knows it.
    [[nodiscard]] Qt::PenStyle value() const noexcept
    {
        return m_style;
    }

    /// Gives the pen this style and leaves its colour, width, cap and join alone. Qt::CustomDashLine carries no pattern
    /// of its own here, so it keeps the pattern that the pen has.
    void modifyPen(QPen &pen) const;

    /// Appends a child element "penStyle" whose text is key().
    void toXml(QDomElement &parent) const;

    /// Reads what toXml() wrote: the first child "penStyle". A missing child and a text that names no style give a solid
    /// line.
    [[nodiscard]] static KelPenStyle fromXml(const QDomElement &parent);

    /// The styles to offer to a user, the solid line first, no line at all last.
    [[nodiscard]] static QList<KelPenStyle> allStyles();

    /// The name of the style: "NoPen", "SolidLine", "DashLine", "DotLine", "DashDotLine", "DashDotDotLine" or
    /// "CustomDashLine".
    [[nodiscard]] QString key() const;

    /// The style of that name, blanks around it and upper or lower case disregarded; a solid line for any other text.
    [[nodiscard]] static KelPenStyle fromKey(const QString &key);

    friend bool operator==(const KelPenStyle &a, const KelPenStyle &b) noexcept
    {
        return a.m_style == b.m_style;
    }

    friend bool operator!=(const KelPenStyle &a, const KelPenStyle &b) noexcept
    {
        return a.m_style != b.m_style;
    }

private:
    Qt::PenStyle m_style = Qt::SolidLine;
};

/// Writes key().
KELCORE_EXPORT QDebug operator<<(QDebug debug, const KelPenStyle &style);

/// Equal styles have equal hashes.
[[nodiscard]] KELCORE_EXPORT size_t qHash(const KelPenStyle &style, size_t seed = 0) noexcept;

#endif
