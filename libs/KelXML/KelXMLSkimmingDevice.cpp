// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelXMLSkimmingDevice.h"

#include <KelXMLGate.h>

#include <QRegularExpression>

#include <algorithm>
#include <limits>

namespace
{

/// As long as the size of a document is unknown, so much may come of it that its rest has to make up for.
constexpr qint64 expansionInAdvance = 1 << 20;
/// More never counts, so that sums stay far from the end of 64 bits.
constexpr qint64 unboundedExpansion = qint64(1) << 40;

/// In characters. The reader's first block has to hold it, in any encoding.
constexpr qsizetype longestDeclaration = 1024;

/// How many bytes all characters of the encoding consist of, or a multiple of which.
int unitOf(const QStringDecoder &decoder)
{
    const QLatin1String encoding(decoder.name());
    return encoding.startsWith(QLatin1String("UTF-16")) ? 2 : encoding.startsWith(QLatin1String("UTF-32")) ? 4
                                                                                                           : 1;
}

/// The encoding that the XML declaration names, null if there is none. `end` becomes where the declaration ends, -1
/// if it does not end in the text.
QString declaredEncoding(const QString &text, qsizetype &end)
{
    end = 0;
    constexpr qsizetype behindTarget = 5;
    if (!text.startsWith(QLatin1String("<?xml")) || !text.mid(behindTarget, 1).trimmed().isEmpty())
        return QString();
    end = text.indexOf(QLatin1String("?>"));
    static const QRegularExpression encoding(QStringLiteral("\\sencoding\\s*=\\s*(?:\"([^\"]*)\"|'([^']*)')"));
    const QRegularExpressionMatch match = encoding.match(text.left(end));
    return match.captured(1).isEmpty() ? match.captured(2) : match.captured(1);
}

} // namespace

KelXMLSkimmingDevice::KelXMLSkimmingDevice(QIODevice *source)
    : m_source(source)
{
    if (!source->isSequential() && source->size() > 0)
        m_expectedSize = std::max<qint64>(source->size() - source->pos(), 0);
    // A buffer of its own would read on behind a refusal.
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

void KelXMLSkimmingDevice::addExpansion(qint64 characters)
{
    m_expansion = std::min(m_expansion + std::min(characters, unboundedExpansion), unboundedExpansion);
    if (m_expectedSize >= 0)
        check(std::max(m_expectedSize, m_size) * KelXMLGate::MAXIMUM_EXPANSION);
    else
        check(m_size * KelXMLGate::MAXIMUM_EXPANSION + expansionInAdvance);
}

void KelXMLSkimmingDevice::setEntityCosts(const QHash<QString, EntityCost> &costs)
{
    m_costs = costs;
    m_hasCosts = true;
    countReferences();
}

void KelXMLSkimmingDevice::refuse(const QString &reason)
{
    m_skimmer.refuse(reason);
}

void KelXMLSkimmingDevice::checkTotal()
{
    check(m_size * KelXMLGate::MAXIMUM_EXPANSION);
}

void KelXMLSkimmingDevice::check(qint64 limit)
{
    if (m_expansion > limit) {
        refuse(QStringLiteral("entities and attributes of the document type make the document more than %1 times as long")
                   .arg(KelXMLGate::MAXIMUM_EXPANSION));
    }
}

void KelXMLSkimmingDevice::countReferences()
{
    if (!m_hasCosts)
        return;
    const QHash<QString, qint64> references = m_skimmer.takeReferences();
    for (auto it = references.cbegin(); it != references.cend(); ++it) {
        const EntityCost cost = m_costs.value(it.key());
        if (!cost.broken.isEmpty())
            refuse(QStringLiteral("the entity \"%1\" is no balanced piece of markup").arg(cost.broken));
        addExpansion(cost.characters > unboundedExpansion / it.value() ? unboundedExpansion : cost.characters * it.value());
    }
}

qint64 KelXMLSkimmingDevice::readData(char *data, qint64 maxSize)
{
    if (m_skimmer.isRefused() || maxSize <= 0)
        return m_skimmer.isRefused() ? -1 : 0;
    const bool isFirst = m_isFirst;
    const qint64 count = isFirst ? readFirst(data, maxSize) : m_source->read(data, maxSize);
    if (count == 0)
        checkEnd();
    if (count <= 0)
        return m_skimmer.isRefused() ? -1 : count;
    m_isFirst = false;
    m_size += count;
    const QByteArrayView bytes(data, count);
    const QString text = isFirst ? decodeFirst(bytes) : QString(m_decoder->decode(bytes));
    if (isFirst)
        m_follower.emplace(m_decoder->name());
    take(bytes, text);
    if (m_skimmer.hasDocumentType())
        countReferences();
    return m_skimmer.isRefused() ? -1 : count;
}

void KelXMLSkimmingDevice::take(QByteArrayView bytes, const QString &text)
{
    if (m_decoder->hasError()) {
        refuseBytes(bytes);
        return;
    }
    const qsizetype half = unitOf(*m_decoder) == 1 ? -1 : halfPair(text);
    if (half >= 0) {
        m_skimmer.feed(text.left(half + 1));
        refuse(QStringLiteral("half of a pair of surrogates"));
        return;
    }
    m_skimmer.feed(text);
    const QString followed = m_follower->decode(m_lastBlock);
    Q_UNUSED(followed);
    m_lastBlock = bytes.toByteArray();
}

/// At the first of them that is no text.
void KelXMLSkimmingDevice::refuseBytes(QByteArrayView bytes)
{
    const QString followed = m_follower->decode(m_lastBlock);
    Q_UNUSED(followed);
    QString text;
    for (const char &byte : bytes) {
        const QString piece = m_follower->decode(QByteArrayView(&byte, 1));
        if (m_follower->hasError())
            break;
        text += piece;
    }
    m_skimmer.feed(text + QChar(QChar::ReplacementCharacter));
    refuse(QStringLiteral("a byte that does not belong to a text in %1").arg(QLatin1String(m_decoder->name())));
}

/// Where a surrogate stands that is not one of two, -1 for nowhere. Decoders let them pass where they stand for themselves.
qsizetype KelXMLSkimmingDevice::halfPair(QStringView text)
{
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text.at(i).isLowSurrogate() != m_isWithinPair)
            return i;
        m_isWithinPair = text.at(i).isHighSurrogate();
    }
    return -1;
}

/// Half a character is an error to a decoder only when more follows.
void KelXMLSkimmingDevice::checkEnd()
{
    if (m_isAtEnd || m_isFirst)
        return;
    m_isAtEnd = true;
    const int unit = unitOf(*m_decoder);
    const QString behind = unit == 1 ? QString(m_decoder->decode("<")) : QString();
    if (m_size % unit != 0 || m_decoder->hasError() || m_isWithinPair)
        refuse(QStringLiteral("the text ends in the middle of a character"));
}

/// As much as there is, so that the declaration is not torn apart.
qint64 KelXMLSkimmingDevice::readFirst(char *data, qint64 maxSize)
{
    qint64 total = 0;
    while (total < maxSize) {
        const qint64 count = m_source->read(data + total, maxSize - total);
        if (count <= 0)
            return total > 0 ? total : count;
        total += count;
    }
    return total;
}

/// Only what reads the declaration itself as the first bytes do can be meant; anything else would have text in two
/// encodings, of which two readers make two documents.
QString KelXMLSkimmingDevice::decodeFirst(QByteArrayView bytes)
{
    m_decoder.emplace(QStringConverter::encodingForData(bytes, u'<').value_or(QStringConverter::Utf8));
    const QString text = m_decoder->decode(bytes);
    qsizetype end = 0;
    const QString encoding = declaredEncoding(text, end);
    if (end < 0 && text.size() <= longestDeclaration) {
        refuse(QStringLiteral("the XML declaration has no end (\"?>\")"));
        return text;
    }
    if (end < 0 || end > longestDeclaration) {
        refuse(QStringLiteral("the XML declaration is too long"));
        return text;
    }
    if (encoding.isEmpty())
        return text;
    const QByteArray name = encoding.toUtf8();
    if (!QStringDecoder(name.constData()).isValid()) // the reader says so
        return text;
    m_decoder.emplace(name.constData());
    const QString declaredText = m_decoder->decode(bytes);
    if (QStringView(declaredText).left(end) != QStringView(text).left(end))
        refuse(QStringLiteral("the document is not written in the encoding \"%1\" that it declares").arg(encoding));
    return declaredText;
}

qint64 KelXMLSkimmingDevice::writeData(const char *data, qint64 maxSize)
{
    Q_UNUSED(data);
    Q_UNUSED(maxSize);
    return -1;
}
