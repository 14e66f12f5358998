// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

// KMZ archives. The first byte says whether the rest is the archive as it is or tells what to put into one that is
// well made but for the faults that it is told to have. Of an honest archive the first KML entry is read.

#include "KelFuzz.h"
#include "KelFuzzReader.h"

#include <KelGPXConfiguredTrackList.h>
#include <KelTestArchive.h>
#include <KelTrackSelectionFactoryKmlFile.h>
#include <KelZIP.h>

#include <QDir>
#include <QFileInfo>
#include <QString>
#include <QTemporaryDir>

#include <algorithm>

namespace
{

constexpr int MOST_ENTRIES = 6;
constexpr std::size_t LARGEST_CONTENT = 300;

/// Everything that the archive is good for: whatever it holds, each step comes to an end.
QString readEverything(const QFileInfo &info)
{
    {
        KelZIP zip(info, KelZIP::Read);
        const QStringList names = zip.getFileNameList();
        qint64 size = 0;
        for (const QString &name : names)
            size += zip.fileContent(name).size();
        KelFuzz::check(zip.isOpen() || (names.isEmpty() && size == 0), "nothing comes out of an archive that cannot be opened");
        KelFuzz::check(zip.isOpen() || !zip.errorString().isEmpty(), "there is a reason why an archive cannot be opened");
    }
    const KelTrackSelectionFactoryKmlFile factory;
    const QString text = factory.readFile(info);
    const KelGPXConfiguredTrackList list = factory.createConfiguredTrackList(info);
    KelFuzz::check(!text.isEmpty() || list.tracks().isEmpty(), "no tracks without a text");
    return text;
}

struct Made
{
    QList<KelTestArchive::Entry> entries;
    bool isHonest = true;
};

void addFaults(KelFuzzReader &reader, KelTestArchive::Entry &entry, qsizetype number)
{
    switch (reader.below(6)) {
    case 0:
        entry.encryptedFlag = true;
        break;
    case 1:
        entry.packed = reader.bytes(LARGEST_CONTENT);
        entry.packed.append('\0'); // never null
        break;
    case 2:
        entry.claimedSize = reader.flag() ? reader.byte() : reader.int32() & 0x7fffffff;
        break;
    case 3:
        entry.sharesDataOf = number > 0 ? int(reader.below(int(number))) : -1;
        break;
    case 4:
        entry.extraPackedSize = reader.int16();
        break;
    default:
        entry.wrongChecksum = true;
    }
}

Made makeEntries(KelFuzzReader &reader)
{
    static const QByteArray names[] = {"doc.kml", "a.kml", "b.KML", "c.txt", "d/", "d/e.kml", ".kml", "kml"};
    Made made;
    for (int count = reader.below(MOST_ENTRIES); count > 0; --count) {
        KelTestArchive::Entry entry;
        const int flags = reader.byte();
        entry.name = names[flags & 7];
        const int repeats = reader.below(8) == 0 ? reader.byte() : 1;
        entry.content = reader.bytes(std::size_t(reader.byte())).repeated(repeats);
        if (entry.name.endsWith('/'))
            entry.content.clear();
        entry.deflated = (flags & 8) != 0;
        entry.sizesBehindData = (flags & 16) != 0;
        const auto isSame = [&entry](const KelTestArchive::Entry &other) { return other.name == entry.name; };
        if (std::any_of(made.entries.cbegin(), made.entries.cend(), isSame))
            made.isHonest = false;
        if ((flags & 0xe0) == 0xe0) {
            addFaults(reader, entry, made.entries.size());
            made.isHonest = false;
        }
        made.entries.append(entry);
    }
    return made;
}

QString firstKml(const QList<KelTestArchive::Entry> &entries)
{
    for (const KelTestArchive::Entry &entry : entries) {
        if (entry.name.endsWith(".kml"))
            return QString::fromUtf8(entry.content);
    }
    return QString();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    // In memory where there is such a place.
    static const QString memory = QStringLiteral("/dev/shm");
    static const QTemporaryDir folder((QFileInfo(memory).isWritable() ? memory : QDir::tempPath())
                                      + QStringLiteral("/fuzz_kmz_XXXXXX"));
    static const QFileInfo info(folder.filePath(QStringLiteral("fuzz.kmz")));

    KelFuzzReader reader(data, size);
    if ((reader.byte() & 1) != 0) {
        KelTestArchive::write(info.filePath(), reader.rest());
        readEverything(info);
        return 0;
    }
    const Made made = makeEntries(reader);
    QByteArray archive = KelTestArchive::build(made.entries);
    bool isDamaged = false;
    for (int damages = reader.below(4); damages > 0 && !archive.isEmpty(); --damages, isDamaged = true)
        archive[reader.below(int(archive.size()))] = char(reader.byte());
    KelTestArchive::write(info.filePath(), archive);
    const QString text = readEverything(info);
    if (made.isHonest && !isDamaged)
        KelFuzz::compare(text, firstKml(made.entries), "the first KML entry is read");
    return 0;
}
