// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELTESTARCHIVE_H
#define KELTESTARCHIVE_H

#include <QByteArray>
#include <QFile>
#include <QList>
#include <QString>
#include <QtEndian>

#include <array>

/// Zip archives for tests, put together byte by byte, so that a test can also write what no honest writer writes.
class KelTestArchive
{
public:
    struct Entry {
        QByteArray name;
        QByteArray content;               ///< unpacked
        bool deflated = false;
        bool sizesBehindData = false;     ///< own header without sizes, data descriptor behind the data
        bool encryptedFlag = false;       ///< only says that it is encrypted
        QByteArray packed = QByteArray(); ///< when set: a deflate stream to be taken instead of the content
        qint64 claimedSize = -1;          ///< when set: the unpacked size that the headers claim
        int sharesDataOf = -1;            ///< when set: the directory points at that earlier entry
        qint64 extraPackedSize = 0;       ///< added to the packed size that both headers state
        bool wrongChecksum = false;
    };

    static QByteArray build(const QList<Entry> &entries)
    {
        QByteArray file;
        QByteArray directory;
        QList<quint32> offsets;
        for (const Entry &entry : entries) {
            const QByteArray packed = packedBytes(entry);
            offsets.append(entry.sharesDataOf < 0 ? quint32(file.size()) : offsets.at(entry.sharesDataOf));
            if (entry.sharesDataOf < 0) {
                append32(file, 0x04034b50);
                appendCommon(file, entry, packed, !entry.sizesBehindData);
                append16(file, quint16(entry.name.size()));
                append16(file, 0);
                file += entry.name;
                file += packed;
                if (entry.sizesBehindData) {
                    append32(file, 0x08074b50);
                    appendSizes(file, entry, packed);
                }
            }
            append32(directory, 0x02014b50);
            append16(directory, 20);
            appendCommon(directory, entry, packed, true);
            append16(directory, quint16(entry.name.size()));
            directory += QByteArray(12, '\0');
            append32(directory, offsets.constLast());
            directory += entry.name;
        }
        const auto directoryAt = quint32(file.size());
        file += directory;
        append32(file, 0x06054b50);
        append32(file, 0);
        append16(file, quint16(entries.size()));
        append16(file, quint16(entries.size()));
        append32(file, quint32(directory.size()));
        append32(file, directoryAt);
        append16(file, 0);
        return file;
    }

    static bool write(const QString &path, const QByteArray &bytes)
    {
        QFile file(path);
        return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(bytes) == bytes.size()
            && file.flush();
    }

    static bool write(const QString &path, const QList<Entry> &entries) { return write(path, build(entries)); }

    /// A deflate stream that unpacks to that many zero bytes (at least one), made without having them.
    static QByteArray deflatedZeros(qint64 count)
    {
        BitWriter bits;
        bits.put(1, 1); // the last block
        bits.put(1, 2); // fixed codes
        for (qint64 i = 0; i < 1 + (count - 1) % 258; ++i)
            bits.put(0b00001100, 8); // the literal 0
        for (qint64 i = 0; i < (count - 1) / 258; ++i) {
            bits.put(0b10100011, 8); // a match of 258 bytes …
            bits.put(0, 5);          // … one byte back
        }
        bits.put(0, 7); // the end of the block
        return bits.finished();
    }

private:
    /// Fills bytes from the lowest bit, as deflate wants it; codes come with their bits reversed.
    class BitWriter
    {
    public:
        void put(quint32 value, int count)
        {
            pending |= quint64(value) << pendingCount;
            for (pendingCount += count; pendingCount >= 8; pendingCount -= 8, pending >>= 8)
                bytes.append(char(pending & 0xff));
        }
        QByteArray finished()
        {
            put(0, 7);
            return bytes;
        }

    private:
        QByteArray bytes;
        quint64 pending = 0;
        int pendingCount = 0;
    };

    static void append16(QByteArray &out, quint16 value)
    {
        value = qToLittleEndian(value);
        out.append(reinterpret_cast<const char *>(&value), sizeof value);
    }
    static void append32(QByteArray &out, quint32 value)
    {
        value = qToLittleEndian(value);
        out.append(reinterpret_cast<const char *>(&value), sizeof value);
    }

    static QByteArray packedBytes(const Entry &entry)
    {
        if (!entry.packed.isNull())
            return entry.packed;
        if (!entry.deflated)
            return entry.content;
        // qCompress() writes a four-byte length, a two-byte header and a four-byte checksum around the stream.
        const QByteArray wrapped = qCompress(entry.content);
        return wrapped.mid(6, wrapped.size() - 10);
    }

    static void appendCommon(QByteArray &out, const Entry &entry, const QByteArray &packed, bool withSizes)
    {
        append16(out, 20);
        append16(out, quint16((entry.encryptedFlag ? 1 : 0) | (entry.sizesBehindData ? 8 : 0) | 0x800));
        append16(out, entry.deflated || !entry.packed.isNull() ? 8 : 0);
        append16(out, 0x6000);
        append16(out, 0x5821);
        if (withSizes)
            appendSizes(out, entry, packed);
        else
            out += QByteArray(12, '\0');
    }

    static void appendSizes(QByteArray &out, const Entry &entry, const QByteArray &packed)
    {
        append32(out, checksum(entry.content) ^ (entry.wrongChecksum ? 1U : 0U));
        append32(out, quint32(packed.size() + entry.extraPackedSize));
        append32(out, quint32(entry.claimedSize < 0 ? entry.content.size() : entry.claimedSize));
    }

    static quint32 checksum(const QByteArray &bytes)
    {
        static const std::array<quint32, 256> table = [] {
            std::array<quint32, 256> result{};
            for (quint32 i = 0; i < 256; ++i) {
                quint32 value = i;
                for (int bit = 0; bit < 8; ++bit)
                    value = (value & 1) ? 0xedb88320U ^ (value >> 1) : value >> 1;
                result[i] = value;
            }
            return result;
        }();
        quint32 sum = 0xffffffffU;
        for (const char c : bytes)
            sum = table[(sum ^ quint8(c)) & 0xff] ^ (sum >> 8);
        return ~sum;
    }
};

#endif
