// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelZIP.h"

#include <QFile>
#include <QHash>
#include <QList>

#include <algorithm>
#include <cstring>
#include <zip.h>

namespace
{

constexpr qint64 READ_BLOCK = 256 * 1024;
/// What the header before an entry's data begins with, and where in it the lengths of name and extra field stand.
constexpr char HEADER_SIGNATURE[] = {'P', 'K', 3, 4};
constexpr qint64 LENGTHS_IN_HEADER = 26;

/// The file as the zip library sees it. It remembers which bytes were asked for: that is how we learn where an entry
/// really lies, which the zip library knows but does not tell.
class ArchiveFile
{
public:
    explicit ArchiveFile(const QString &path)
        : file(path)
    {
        zip_error_init(&error);
    }

    ~ArchiveFile() { zip_error_fini(&error); }

    ArchiveFile(const ArchiveFile &) = delete;
    ArchiveFile &operator=(const ArchiveFile &) = delete;

    QString name() const { return file.fileName(); }
    bool isSpecial() const
    {
        const QFileInfo info(name());
        return info.exists() && !info.isFile();
    }
    bool open() { return file.open(QIODevice::ReadOnly | QIODevice::Unbuffered); }
    void close() { file.close(); }
    QString errorString() const { return file.errorString(); }
    qint64 size() const { return file.size(); }

    void forgetReads()
    {
        firstByteRead = -1;
        lastReadAt = -1;
    }
    /// Where the lowest of the reads since forgetReads() began; -1 without any.
    qint64 lowestRead() const { return firstByteRead; }
    /// Where the last of them began.
    qint64 latestRead() const { return lastReadAt; }

    /// Whether the header of an entry begins there. Leaves the position where the zip library wants it.
    bool hasHeaderAt(qint64 at)
    {
        const qint64 before = file.pos();
        char bytes[sizeof HEADER_SIGNATURE];
        const bool found = at >= 0 && file.seek(at) && file.read(bytes, sizeof bytes) == qint64(sizeof bytes)
            && std::memcmp(bytes, HEADER_SIGNATURE, sizeof bytes) == 0;
        file.seek(before);
        return found;
    }

    static zip_int64_t serve(void *self, void *data, zip_uint64_t length, zip_source_cmd_t command)
    {
        return static_cast<ArchiveFile *>(self)->serve(data, length, command);
    }

private:
    zip_int64_t serve(void *data, zip_uint64_t length, zip_source_cmd_t command)
    {
        switch (command) {
        case ZIP_SOURCE_SUPPORTS:
            return zip_source_make_command_bitmap(ZIP_SOURCE_OPEN, ZIP_SOURCE_READ, ZIP_SOURCE_CLOSE, ZIP_SOURCE_STAT,
                                                  ZIP_SOURCE_ERROR, ZIP_SOURCE_FREE, ZIP_SOURCE_SEEK, ZIP_SOURCE_TELL,
                                                  ZIP_SOURCE_SUPPORTS, -1);
        case ZIP_SOURCE_OPEN:
            return file.seek(0) ? 0 : fail(ZIP_ER_SEEK);
        case ZIP_SOURCE_READ:
            return read(static_cast<char *>(data), length);
        case ZIP_SOURCE_SEEK: {
            const zip_int64_t target = zip_source_seek_compute_offset(
                static_cast<zip_uint64_t>(file.pos()), static_cast<zip_uint64_t>(file.size()), data, length, &error);
            if (target < 0)
                return -1;
            return file.seek(target) ? 0 : fail(ZIP_ER_SEEK);
        }
        case ZIP_SOURCE_TELL:
            return file.pos();
        case ZIP_SOURCE_STAT: {
            zip_stat_t status;
            zip_stat_init(&status);
            status.size = static_cast<zip_uint64_t>(file.size());
            status.valid |= ZIP_STAT_SIZE;
            if (length < sizeof status)
                return fail(ZIP_ER_INVAL);
            std::memcpy(data, &status, sizeof status);
            return sizeof status;
        }
        case ZIP_SOURCE_ERROR:
            return zip_error_to_data(&error, data, length);
        case ZIP_SOURCE_CLOSE:
        case ZIP_SOURCE_FREE:
            return 0;
        default:
            return fail(ZIP_ER_OPNOTSUPP);
        }
    }

    zip_int64_t read(char *data, zip_uint64_t length)
    {
        lastReadAt = file.pos();
        firstByteRead = firstByteRead < 0 ? lastReadAt : std::min(firstByteRead, lastReadAt);
        const qint64 count = file.read(data, static_cast<qint64>(length));
        return count < 0 ? fail(ZIP_ER_READ) : count;
    }

    zip_int64_t fail(int code)
    {
        zip_error_set(&error, code, 0);
        return -1;
    }

    QFile file;
    zip_error_t error;
    qint64 firstByteRead = -1;
    qint64 lastReadAt = -1;
};

QString entryFailure(zip_error_t *error)
{
    if (zip_error_code_zip(error) == ZIP_ER_INVAL)
        return QStringLiteral("the archive ends before the place where it should be");
    return QString::fromUtf8(zip_error_strerror(error));
}

QString openFailure(zip_error_t *error)
{
    if (zip_error_code_zip(error) == ZIP_ER_NOZIP)
        return QStringLiteral("not a zip archive, or its end is missing");
    // It says so of sizes and offsets that the directory promises in a 64-bit form and does not give.
    if (zip_error_code_zip(error) == ZIP_ER_NOENT)
        return QStringLiteral("the archive's directory is damaged: a size or an offset is missing");
    return QString::fromUtf8(zip_error_strerror(error));
}

} // namespace

class KelZIP::Archive
{
public:
    explicit Archive(const QString &path)
        : file(path)
    {
    }

    ~Archive() { close(); }

    Archive(const Archive &) = delete;
    Archive &operator=(const Archive &) = delete;

    void open();
    void close();
    QByteArray content(const QString &name);

    QStringList names;
    QString reason;
    zip_t *zip = nullptr;

private:
    /// The bytes of the archive that an entry takes up, the end exclusive.
    struct Extent {
        qint64 begin;
        qint64 end;
        qsizetype entry;
    };

    bool openLibrary();
    bool readDirectory();
    bool entriesAreApart();
    bool locate(qsizetype entry, Extent &extent);
    qint64 largestSize(const zip_stat_t &status) const;
    QByteArray unpack(zip_file_t *entry, const QString &name, qint64 largest);
    QByteArray refuseSize(const QString &name, qint64 largest);
    QByteArray refuse(const QString &why)
    {
        reason = why;
        return QByteArray();
    }

    ArchiveFile file;
    QHash<QString, qsizetype> indexOf;
};

void KelZIP::Archive::open()
{
    if (file.name().isEmpty()) {
        reason = QStringLiteral("no file name");
        return;
    }
    // A pipe or a device could keep us waiting for ever.
    if (file.isSpecial()) {
        reason = QStringLiteral("not a regular file");
        return;
    }
    if (!file.open()) {
        reason = file.errorString();
        return;
    }
    // The zip library takes an empty file for an empty archive.
    if (file.size() == 0) {
        reason = QStringLiteral("the file is empty");
        file.close();
        return;
    }
    if (!openLibrary() || !readDirectory() || !entriesAreApart())
        close();
}

bool KelZIP::Archive::openLibrary()
{
    zip_error_t error;
    zip_error_init(&error);
    zip_source_t *source = zip_source_function_create(&ArchiveFile::serve, &file, &error);
    // No strict consistency check: it also refuses the harmless differences between an entry's own header and the
    // directory that common writers leave.
    if (source)
        zip = zip_open_from_source(source, ZIP_RDONLY, &error);
    if (!zip) {
        reason = openFailure(&error);
        zip_source_free(source);
    }
    zip_error_fini(&error);
    return zip != nullptr;
}

bool KelZIP::Archive::readDirectory()
{
    const qint64 count = zip_get_num_entries(zip, 0);
    if (count > MAXIMUM_ENTRIES) {
        reason = QStringLiteral("the archive has %1 entries, more than the %2 that are accepted")
                     .arg(count)
                     .arg(MAXIMUM_ENTRIES);
        return false;
    }
    names.reserve(count);
    for (qint64 i = 0; i < count; ++i) {
        const QString name = QString::fromUtf8(zip_get_name(zip, static_cast<zip_uint64_t>(i), ZIP_FL_ENC_GUESS));
        if (!indexOf.contains(name))
            indexOf.insert(name, i);
        names.append(name);
    }
    return true;
}

// Entries that share their bytes are how a small archive unpacks to thousands of large files; no honest writer
// makes them.
bool KelZIP::Archive::entriesAreApart()
{
    QList<Extent> extents;
    extents.reserve(names.size());
    for (qsizetype i = 0; i < names.size(); ++i) {
        Extent extent;
        // An entry that cannot be located cannot be read either: no reason to refuse the others.
        if (locate(i, extent))
            extents.append(extent);
    }
    std::sort(extents.begin(), extents.end(), [](const Extent &a, const Extent &b) {
        return a.begin != b.begin ? a.begin < b.begin : a.entry < b.entry;
    });
    for (qsizetype i = 1; i < extents.size(); ++i) {
        if (extents.at(i).begin < extents.at(i - 1).end) {
            reason = QStringLiteral("the entries \"%1\" and \"%2\" overlap")
                         .arg(names.at(extents.at(i - 1).entry), names.at(extents.at(i).entry));
            return false;
        }
    }
    return true;
}

// Opening an entry makes the zip library look at the entry's own header (or only at the lengths in it), reading its
// first packed byte at its data.
bool KelZIP::Archive::locate(qsizetype entry, Extent &extent)
{
    const auto index = static_cast<zip_uint64_t>(entry);
    zip_stat_t status;
    if (zip_stat_index(zip, index, 0, &status) < 0 || !(status.valid & ZIP_STAT_COMP_SIZE))
        return false;

    file.forgetReads();
    zip_file_t *packed = zip_fopen_index(zip, index, ZIP_FL_COMPRESSED | ZIP_FL_ENCRYPTED);
    if (!packed)
        return false;
    char byte;
    const bool readable = zip_fread(packed, &byte, 1) >= 0;
    zip_fclose(packed);
    if (!readable || file.lowestRead() < 0)
        return false;
    const qint64 header = file.lowestRead() - LENGTHS_IN_HEADER;
    extent.begin = file.hasHeaderAt(header) ? header : file.lowestRead();
    extent.end = file.latestRead() + static_cast<qint64>(std::min<zip_uint64_t>(status.comp_size, file.size()));
    extent.entry = entry;
    return true;
}

void KelZIP::Archive::close()
{
    // Nothing was changed, so there is nothing that could fail to be written.
    if (zip)
        zip_discard(zip);
    zip = nullptr;
    file.close();
    names.clear();
    indexOf.clear();
}

QByteArray KelZIP::Archive::content(const QString &name)
{
    reason.clear();
    if (!zip)
        return refuse(QStringLiteral("the archive is not open"));
    const auto found = indexOf.constFind(name);
    if (found == indexOf.constEnd())
        return refuse(QStringLiteral("the archive has no entry \"%1\"").arg(name));

    const auto index = static_cast<zip_uint64_t>(found.value());
    zip_stat_t status;
    zip_stat_init(&status);
    if (zip_stat_index(zip, index, 0, &status) < 0)
        return refuse(QStringLiteral("the entry \"%1\" is damaged").arg(name));
    if ((status.valid & ZIP_STAT_ENCRYPTION_METHOD) && status.encryption_method != ZIP_EM_NONE)
        return refuse(QStringLiteral("the entry \"%1\" is encrypted").arg(name));
    const qint64 largest = largestSize(status);
    if ((status.valid & ZIP_STAT_SIZE) && status.size > static_cast<zip_uint64_t>(largest))
        return refuseSize(name, largest);

    zip_file_t *entry = zip_fopen_index(zip, index, 0);
    if (!entry) {
        return refuse(QStringLiteral("the entry \"%1\" cannot be read: %2")
                          .arg(name, entryFailure(zip_get_error(zip))));
    }
    const QByteArray bytes = unpack(entry, name, largest);
    zip_fclose(entry);
    return bytes;
}

/// How many bytes may come out of an entry. Of the packed bytes that it claims, only those count that the file has.
qint64 KelZIP::Archive::largestSize(const zip_stat_t &status) const
{
    const auto fileSize = static_cast<zip_uint64_t>(file.size());
    const auto packed = static_cast<qint64>((status.valid & ZIP_STAT_COMP_SIZE) ? std::min(status.comp_size, fileSize) : 0);
    return packed > MAXIMUM_ENTRY_SIZE / MAXIMUM_RATIO ? MAXIMUM_ENTRY_SIZE : std::max(packed * MAXIMUM_RATIO, UNRATED_SIZE);
}

QByteArray KelZIP::Archive::refuseSize(const QString &name, qint64 largest)
{
    if (largest < MAXIMUM_ENTRY_SIZE)
        return refuse(QStringLiteral("the entry \"%1\" unpacks to more than %2 times its size").arg(name).arg(MAXIMUM_RATIO));
    return refuse(QStringLiteral("the entry \"%1\" unpacks to more than %2 MiB")
                      .arg(name, QString::number(MAXIMUM_ENTRY_SIZE / (1024 * 1024))));
}

// A size that is claimed to be small is no more than a hint; what counts then is what comes out.
QByteArray KelZIP::Archive::unpack(zip_file_t *entry, const QString &name, qint64 largest)
{
    QByteArray bytes;
    qint64 size = 0;
    while (true) {
        // One byte more than allowed, to tell "just as much" from "too much".
        const qint64 wanted = std::min(READ_BLOCK, largest + 1 - size);
        if (bytes.size() < size + wanted)
            bytes.resize(std::min(std::max(size + wanted, 2 * size), largest + 1));
        const qint64 count = zip_fread(entry, bytes.data() + size, static_cast<zip_uint64_t>(wanted));
        if (count < 0) {
            return refuse(QStringLiteral("the entry \"%1\" is damaged: %2")
                              .arg(name, QString::fromUtf8(zip_error_strerror(zip_file_get_error(entry)))));
        }
        if (count == 0)
            break;
        size += count;
        if (size > largest)
            return refuseSize(name, largest);
    }
    bytes.resize(size);
    bytes.squeeze();
    return bytes;
}

KelZIP::KelZIP(const QFileInfo &file, OpenMode mode)
    : m_archive(std::make_unique<Archive>(file.filePath()))
{
    if (mode == Read)
        m_archive->open();
    else
        m_archive->reason = QStringLiteral("archives can only be read");
}

KelZIP::~KelZIP() = default;

bool KelZIP::isOpen() const noexcept
{
    return m_archive->zip != nullptr;
}

QStringList KelZIP::getFileNameList() const
{
    return m_archive->names;
}

QByteArray KelZIP::fileContent(const QString &name) const
{
    return m_archive->content(name);
}

void KelZIP::close()
{
    m_archive->close();
}

QString KelZIP::errorString() const
{
    return m_archive->reason;
}
