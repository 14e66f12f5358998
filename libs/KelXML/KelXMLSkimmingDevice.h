// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELXMLSKIMMINGDEVICE_H
#define KELXMLSKIMMINGDEVICE_H

#include "KelXMLSkimmer.h"

#include <QByteArray>
#include <QHash>
#include <QIODevice>
#include <QString>
#include <QStringDecoder>

#include <optional>

/// Hands on the bytes of another device as long as the text in them keeps the limits, and ends where it does not.
///
/// The bytes are decoded for that as QXmlStreamReader decodes them: by their first bytes, then as the XML declaration says.
/// Bytes that are no text in that encoding are refused at their place, which the reader does not tell, or not at all.
class KelXMLSkimmingDevice : public QIODevice
{
public:
    /// What a reference to an entity comes to.
    struct EntityCost
    {
        qint64 characters = 0;
        QString broken; ///< the entity, itself or one in it, that is no balanced piece of markup; empty for none
    };

    /// Starts at the source's current position.
    explicit KelXMLSkimmingDevice(QIODevice *source);

    [[nodiscard]] bool isSequential() const override { return true; }

    [[nodiscard]] const KelXMLSkimmer &skimmer() const noexcept { return m_skimmer; }

    /// Counts what the document makes of itself, in characters, and refuses when it becomes too much.
    void addExpansion(qint64 characters);
    /// What each entity stands for; references are counted from now on, those so far included. A reference to a broken one
    /// is refused.
    void setEntityCosts(const QHash<QString, EntityCost> &costs);
    /// Ends for a reason.
    void refuse(const QString &reason);
    /// To be called at the end of the document, since only then it is known for certain how much would have been too much.
    void checkTotal();

protected:
    qint64 readData(char *data, qint64 maxSize) override;
    qint64 writeData(const char *data, qint64 maxSize) override;

private:
    qint64 readFirst(char *data, qint64 maxSize);
    [[nodiscard]] QString decodeFirst(QByteArrayView bytes);
    void take(QByteArrayView bytes, const QString &text);
    void refuseBytes(QByteArrayView bytes);
    [[nodiscard]] qsizetype halfPair(QStringView text);
    void checkEnd();
    void countReferences();
    void check(qint64 limit);

    QIODevice *m_source;
    // Made in place: one that was moved does not tell errors any more if it is ICU's.
    std::optional<QStringDecoder> m_decoder;
    std::optional<QStringDecoder> m_follower; // has read all but the last block: to find the place of an error in the next one
    QByteArray m_lastBlock;
    KelXMLSkimmer m_skimmer;
    QHash<QString, EntityCost> m_costs;
    qint64 m_expectedSize = -1; // -1: not known before the end
    qint64 m_size = 0;          // so far, in bytes
    qint64 m_expansion = 0;
    bool m_isFirst = true;
    bool m_hasCosts = false;
    bool m_isAtEnd = false;
    bool m_isWithinPair = false; // of surrogates
};

#endif
