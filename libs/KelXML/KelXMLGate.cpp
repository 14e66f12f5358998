// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelXMLGate.h"

#include "KelXMLSkimmer.h"
#include "KelXMLSkimmingDevice.h"

#include <QBuffer>
#include <QByteArray>
#include <QHash>
#include <QString>

#include <algorithm>
#include <array>

namespace
{

/// What an entity costs that cannot be worked out. No document can pay for it.
constexpr qint64 unbounded = qint64(1) << 40;
constexpr qsizetype skimmedAtOnce = 64 * 1024;

/// The characters that a reference to each entity stands for, entities in entities included.
class EntityCosts
{
public:
    /// Of several entities with one name the first counts, as XML has it. Only where the reader's list may hold
    /// parameter entities, which it does not tell apart, all are taken together: that is never too little.
    explicit EntityCosts(bool firstCounts)
        : m_firstCounts(firstCounts)
    {
    }

    void add(const QXmlStreamEntityDeclaration &declaration)
    {
        if (m_firstCounts && m_entities.contains(declaration.name().toString()))
            return;
        KelXMLSkimmer skimmer;
        skimmer.countReferences();
        const bool isWhole = skimmer.feed(declaration.value()) && skimmer.isBalanced() && !skimmer.hasDocumentType();
        Entity &entity = m_entities[declaration.name().toString()];
        // What the text is behind a reference to it could be said by nobody but the reader.
        if (!isWhole)
            entity.broken = declaration.name().toString();
        entity.length += declaration.value().size();
        const QHash<QString, qint64> references = skimmer.takeReferences();
        for (auto it = references.cbegin(); it != references.cend(); ++it)
            entity.references[it.key()] += it.value();
    }

    [[nodiscard]] KelXMLSkimmingDevice::EntityCost of(const QString &name)
    {
        const qint64 cost = costOf(name, 0);
        return {cost, m_entities.value(name).broken};
    }

private:
    struct Entity
    {
        qint64 length = 0;
        qint64 cost = -1;    // not known yet
        bool isOpen = false; // being worked out: an entity in itself
        QString broken;      // the name of an entity, itself or within, that starts or ends in the middle of markup
        QHash<QString, qint64> references;
    };

    qint64 costOf(const QString &name, int depth)
    {
        const auto found = m_entities.find(name);
        if (found == m_entities.end())
            return 0;
        Entity &entity = *found;
        if (entity.cost >= 0)
            return entity.cost;
        if (entity.isOpen || depth == KelXMLGate::MAXIMUM_DEPTH)
            return unbounded;
        entity.isOpen = true;
        qint64 cost = entity.length;
        for (auto it = entity.references.cbegin(); it != entity.references.cend(); ++it) {
            const qint64 one = costOf(it.key(), depth + 1);
            cost = one > unbounded / it.value() ? unbounded : std::min(cost + one * it.value(), unbounded);
            if (entity.broken.isEmpty())
                entity.broken = m_entities.value(it.key()).broken;
        }
        entity.isOpen = false;
        entity.cost = cost;
        return cost;
    }

    QHash<QString, Entity> m_entities;
    bool m_firstCounts;
};

bool needsNoCloserLook(const KelXMLSkimmer &skimmer)
{
    return !skimmer.isRefused() && !skimmer.hasDocumentType() && skimmer.deepest() <= KelXMLGate::MAXIMUM_DEPTH;
}

/// The text without its XML declaration, whose encoding is not the text's any more. Lines and columns stay.
QString withoutDeclaration(const QString &text)
{
    if (!text.startsWith(QLatin1String("<?xml")))
        return text;
    QString result = text;
    const qsizetype end = result.indexOf(QLatin1String("?>")); // of another instruction that starts so: no loss
    for (qsizetype i = 0; i < end + 2; ++i) {
        if (!result.at(i).isSpace())
            result[i] = u' ';
    }
    return result;
}

} // namespace

struct KelXMLGate::Private
{
    explicit Private(QIODevice *source)
        : device(source)
        , reader(&device)
    {
        // With it, tag names would lose their prefix and an undeclared prefix would be an error.
        reader.setNamespaceProcessing(false);
    }

    void passStartElement()
    {
        hasRoot = true;
        if (++depth > MAXIMUM_DEPTH)
            refuse(QStringLiteral("elements are nested more than %1 levels deep").arg(MAXIMUM_DEPTH));
        if (hasDocumentType)
            countDefaults();
    }

    /// The attributes that stand in the document type only.
    void countDefaults()
    {
        const QXmlStreamAttributes attributes = reader.attributes();
        qint64 characters = 0;
        for (const QXmlStreamAttribute &attribute : attributes) {
            if (attribute.isDefault())
                characters += attribute.qualifiedName().size() + attribute.value().size();
        }
        device.addExpansion(characters);
    }

    /// There may be one, before the root. The reader lets more pass, XML and the tree do not.
    void passDocumentType()
    {
        if (hasRoot)
            reader.raiseError(QStringLiteral("Unexpected token"));
        else if (hasDocumentType)
            reader.raiseError(QStringLiteral("Multiple DTD sections are not allowed"));
        hasDocumentType = true;
        const QXmlStreamEntityDeclarations declarations = reader.entityDeclarations();
        EntityCosts costs(!device.skimmer().declaresParameters());
        for (const QXmlStreamEntityDeclaration &declaration : declarations)
            costs.add(declaration);
        QHash<QString, KelXMLSkimmingDevice::EntityCost> known;
        for (const QXmlStreamEntityDeclaration &declaration : declarations) {
            const QString name = declaration.name().toString();
            known.insert(name, costs.of(name));
        }
        device.setEntityCosts(known);
    }

    void refuse(const QString &reason)
    {
        if (!reader.hasError())
            reader.raiseError(reason);
    }

    /// Counting is the device's; it says so here, at once and not only when the reader comes for more.
    void takeOverRefusal()
    {
        if (device.skimmer().isRefused() && !reader.hasError())
            reader.raiseError(device.skimmer().refusal().reason);
    }

    KelXMLSkimmingDevice device;
    QXmlStreamReader reader;
    int depth = 0;
    bool hasRoot = false;
    bool hasDocumentType = false;
};

KelXMLGate::KelXMLGate(QIODevice *device)
    : d(std::make_unique<Private>(device))
{
}

KelXMLGate::~KelXMLGate() = default;

QXmlStreamReader::TokenType KelXMLGate::next()
{
    // Behind a premature end the reader would try once more, and the error would move elsewhere.
    if (isOver())
        return QXmlStreamReader::Invalid;
    switch (d->reader.readNext()) {
    case QXmlStreamReader::StartElement:
        d->passStartElement();
        break;
    case QXmlStreamReader::EndElement:
        --d->depth;
        break;
    case QXmlStreamReader::DTD:
        d->passDocumentType();
        break;
    case QXmlStreamReader::EndDocument:
        d->device.checkTotal();
        // What is refused behind the document element ends the document for the reader.
        d->takeOverRefusal();
        break;
    default:
        break;
    }
    if (d->hasDocumentType)
        d->takeOverRefusal();
    return d->reader.tokenType();
}

const QXmlStreamReader &KelXMLGate::reader() const noexcept
{
    return d->reader;
}

int KelXMLGate::depth() const noexcept
{
    return d->depth;
}

bool KelXMLGate::isOver() const
{
    return d->reader.atEnd();
}

bool KelXMLGate::isPassed() const
{
    return isOver() && d->hasRoot && !d->reader.hasError();
}

KelErrorHistory::Entry KelXMLGate::error() const
{
    KelErrorHistory::Entry entry;
    const KelXMLSkimmer &skimmer = d->device.skimmer();
    const bool endedHere = d->reader.error() == QXmlStreamReader::PrematureEndOfDocumentError
        || d->reader.errorString() == skimmer.refusal().reason;
    if (skimmer.isRefused() && endedHere) {
        entry.line = skimmer.refusal().line;
        entry.column = skimmer.refusal().column;
        entry.message = skimmer.refusal().reason;
    } else if (d->reader.hasError()) {
        entry.line = d->reader.lineNumber();
        // Qt counts the characters of the line that it has read: none yet means the first column.
        entry.column = std::max<qint64>(d->reader.columnNumber(), 1);
        entry.message = d->reader.errorString();
    }
    return entry;
}

bool KelXMLGate::admits(const QString &text, KelErrorHistory::Entry *reason)
{
    KelXMLSkimmer skimmer;
    if (skimmer.feed(text) && needsNoCloserLook(skimmer))
        return true;
    return admits(withoutDeclaration(text).toUtf8(), reason);
}

bool KelXMLGate::admits(const QByteArray &bytes, KelErrorHistory::Entry *reason)
{
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    KelXMLSkimmingDevice skimming(&buffer);
    std::array<char, skimmedAtOnce> block;
    while (skimming.read(block.data(), block.size()) > 0) { }
    if (needsNoCloserLook(skimming.skimmer()))
        return true;

    // Now in detail: what the entities come to, and where exactly what is wrong.
    buffer.seek(0);
    KelXMLGate gate(&buffer);
    while (!gate.isOver())
        gate.next();
    if (gate.isPassed())
        return true;
    if (reason != nullptr)
        *reason = gate.error();
    return false;
}
