// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelPenStyle.h"

#include <QDebug>
#include <QDomDocument>
#include <QDomElement>
#include <QHashFunctions>
#include <QPen>

#include <algorithm>
#include <array>

namespace
{

const QString PenStyleElement = QStringLiteral("penStyle");

struct Style
{
    Qt::PenStyle value;
    const char *key;
};

constexpr std::array Styles = {
    Style{Qt::SolidLine, "SolidLine"},
    Style{Qt::DashLine, "DashLine"},
    Style{Qt::DotLine, "DotLine"},
    Style{Qt::DashDotLine, "DashDotLine"},
    Style{Qt::DashDotDotLine, "DashDotDotLine"},
    Style{Qt::NoPen, "NoPen"},
    Style{Qt::CustomDashLine, "CustomDashLine"},
};

const Style &find(Qt::PenStyle value)
{
    const auto it = std::find_if(Styles.begin(), Styles.end(), [value](const Style &s) { return s.value == value; });
    return it == Styles.end() ? Styles.front() : *it;
}

} // namespace

KelPenStyle::KelPenStyle(Qt::PenStyle style) noexcept
    : m_style(find(style).value)
{
}

void KelPenStyle::modifyPen(QPen &pen) const
{
    // Setting the custom style would clear the pen's pattern, and a line without any pattern is not drawn at all.
    if (m_style != Qt::CustomDashLine)
        pen.setStyle(m_style);
}

void KelPenStyle::toXml(QDomElement &parent) const
{
    QDomDocument document = parent.ownerDocument();
    QDomElement element = document.createElement(PenStyleElement);
    element.appendChild(document.createTextNode(key()));
    parent.appendChild(element);
}

KelPenStyle KelPenStyle::fromXml(const QDomElement &parent)
{
    return fromKey(parent.firstChildElement(PenStyleElement).text());
}

QList<KelPenStyle> KelPenStyle::allStyles()
{
    QList<KelPenStyle> result;
    for (const Style &style : Styles) {
        if (style.value != Qt::CustomDashLine)
            result.append(style.value);
    }
    return result;
}

QString KelPenStyle::key() const
{
    return QLatin1String(find(m_style).key);
}

KelPenStyle KelPenStyle::fromKey(const QString &key)
{
    const QString wanted = key.trimmed();
    for (const Style &style : Styles) {
        if (wanted.compare(QLatin1String(style.key), Qt::CaseInsensitive) == 0)
            return style.value;
    }
    return {};
}

QDebug operator<<(QDebug debug, const KelPenStyle &style)
{
    const QDebugStateSaver saver(debug);
    debug.nospace().noquote() << style.key();
    return debug;
}

size_t qHash(const KelPenStyle &style, size_t seed) noexcept
{
    return ::qHash(static_cast<int>(style.value()), seed);
}
