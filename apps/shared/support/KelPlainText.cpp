// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelPlainText.h"

#include <QByteArray>
#include <QList>

#include <algorithm>

namespace
{

constexpr char32_t NON_JOINER = 0x200c;
constexpr char32_t JOINER = 0x200d;

/// U+FFFE, U+FFFF and their like in the other planes.
bool isNoCharacter(char32_t code)
{
    return (code & 0xfffe) == 0xfffe || (code >= 0xfdd0 && code <= 0xfdef);
}

/// With halves of surrogate pairs as they are, which QString::toUcs4() takes away.
QList<char32_t> codesOf(const QString &text)
{
    QList<char32_t> codes;
    codes.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar unit = text.at(i);
        if (unit.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate())
            codes.append(QChar::surrogateToUcs4(unit, text.at(++i)));
        else
            codes.append(unit.unicode());
    }
    return codes;
}

QString escaped(char32_t code)
{
    QString text;
    const auto units = QChar::fromUcs4(code);
    for (const QChar unit : QStringView(units))
        text += QStringLiteral("\\u%1").arg(unit.unicode(), 4, 16, QLatin1Char('0'));
    return text;
}

} // namespace

bool KelPlainText::isPlain(char32_t character)
{
    switch (QChar::category(character)) {
    case QChar::Other_Control:
    case QChar::Other_Surrogate:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return false;
    case QChar::Other_Format:
        return character == NON_JOINER || character == JOINER;
    default:
        return !isNoCharacter(character);
    }
}

QString KelPlainText::oneLine(const QString &text)
{
    QString result;
    result.reserve(text.size());
    for (const char32_t code : codesOf(text)) {
        if (isPlain(code))
            result += QChar::fromUcs4(code);
        else
            result += QLatin1Char('?');
    }
    return result;
}

QByteArray KelPlainText::json(const QByteArray &document)
{
    QString result;
    result.reserve(document.size());
    for (const char32_t code : codesOf(QString::fromUtf8(document))) {
        if (isPlain(code) || code == U'\n')
            result += QChar::fromUcs4(code);
        else
            result += escaped(code);
    }
    return result.toUtf8();
}

QString KelPlainText::shortened(const QString &text, qsizetype most)
{
    return text.size() <= most ? text : text.left(most) + QStringLiteral("...");
}

bool KelPlainText::isForXml(const QString &text)
{
    const QList<char32_t> codes = codesOf(text);
    return std::all_of(codes.cbegin(), codes.cend(), [](char32_t code) {
        const bool isBreak = code == U'\t' || code == U'\n' || code == U'\r';
        return (code >= 0x20 || isBreak) && QChar::category(code) != QChar::Other_Surrogate && code != 0xfffe && code != 0xffff;
    });
}
