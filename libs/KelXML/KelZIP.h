// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELZIP_H
#define KELZIP_H

#include <KelXMLGlobal.h>

#include <QByteArray>
#include <QFileInfo>
#include <QString>
#include <QStringList>

#include <memory>

/// A zip archive that is read by its directory.
///
/// The directory at the end of the archive decides which entries there are and where they lie, so archives whose
/// writer put the sizes behind the data read like any other. Entries are unpacked into memory only; nothing is ever
/// written to disk, which is why entry names are handed out as they stand, without a check of their paths.
///
/// Archives come from strangers. The following are refused, each with a reason in errorString():
/// - an archive with more than MAXIMUM_ENTRIES entries, or with entries that share bytes of the file: it does not
///   open;
/// - an entry that unpacks to more than MAXIMUM_ENTRY_SIZE bytes or MAXIMUM_RATIO times its packed size, by what the
///   archive says or by what comes out, that is encrypted or whose data is damaged: it reads as empty, the others stay
///   readable.
///
/// Failure is in-band: an archive that cannot be opened has no entries, and every entry of it is empty.
class KELXML_EXPORT KelZIP
{
public:
    /// What an archive is opened for.
    enum OpenMode {
        Read = 1 ///< read an existing archive
    };

    /// The largest number of entries that an archive may have.
    static constexpr qint64 MAXIMUM_ENTRIES = 10000;
    /// The largest number of bytes that one entry may unpack to: 256 MiB.
    static constexpr qint64 MAXIMUM_ENTRY_SIZE = qint64(256) * 1024 * 1024;
    /// An entry may unpack to so many times its packed size, once it is larger than UNRATED_SIZE. What is made of a text
    /// has many times the text's size, and a deflate stream can have 1,000 times its own. Recorded tracks pack 3 to 13
    /// times, lists of places 15 to 40, and 140 times places that repeat the same two kilobytes of style each.
    static constexpr qint64 MAXIMUM_RATIO = 200;
    /// The number of bytes that an entry may unpack to however few it is packed in: 1 MiB.
    static constexpr qint64 UNRATED_SIZE = qint64(1024) * 1024;

    /// Opens the archive at once; isOpen() tells the outcome. The file stays open until close() or destruction.
    explicit KelZIP(const QFileInfo &file, OpenMode mode = Read);
    /// Closes the archive.
    ~KelZIP();

    KelZIP(const KelZIP &) = delete;
    KelZIP &operator=(const KelZIP &) = delete;

    [[nodiscard]] bool isOpen() const noexcept;

    /// The names of all entries, folders included, in the order of the archive's directory; empty when not open.
    [[nodiscard]] QStringList getFileNameList() const;

    /// The unpacked bytes of the entry of exactly that name, the first one where several share it. Empty when there
    /// is no such entry, when it is refused or damaged (see errorString()), and when it really is empty.
    [[nodiscard]] QByteArray fileContent(const QString &name) const;

    /// Releases the file. The archive has no entries afterwards; the last reason is kept. Closing twice does no harm.
    void close();

    /// Why the archive did not open or the last fileContent() gave nothing, in plain English; empty after a success.
    [[nodiscard]] QString errorString() const;

private:
    class Archive;
    std::unique_ptr<Archive> m_archive;
};

#endif
