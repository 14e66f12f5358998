// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

// GPX, read byte by byte where it is plain, as a stream, as a tree through a cursor and as a tree by the plain rules:
// all have the same opinion on whether it is well formed, and the same tracks to the last bit.

#include "KelFuzz.h"

#include <KelErrorHistory.h>
#include <KelGPXTrackFile.h>
#include <KelPlainGPX.h>
#include <KelXMLDomCursor.h>
#include <KelXMLLoader.h>
#include <KelXMLPlainCursor.h>
#include <KelXMLStreamCursor.h>

#include <QBuffer>
#include <QDomDocument>
#include <QFileInfo>
#include <QString>
#include <QStringList>

#include <sys/mman.h>
#include <unistd.h>

namespace
{

constexpr qsizetype SMALL_BLOCK = KelXMLPlainCursor::MINIMUM_BLOCK_SIZE;
constexpr qsizetype LARGEST_WITH_PLACES = 2000; // the plain cursor counts lines from the start each time

QFileInfo fileOf(int descriptor)
{
    return QFileInfo(QStringLiteral("/proc/self/fd/%1").arg(descriptor));
}

/// A file that is never on a disk. It is read byte by byte where it is plain, and again as a stream where it is not.
class MemoryFile
{
public:
    explicit MemoryFile(const QByteArray &content)
        : m_descriptor(memfd_create("walk", 0))
    {
        KelFuzz::check(write(m_descriptor, content.constData(), std::size_t(content.size())) == content.size(),
                       "a file in memory can be filled");
    }
    ~MemoryFile() { close(m_descriptor); }
    Q_DISABLE_COPY(MemoryFile)

    [[nodiscard]] QFileInfo info() const { return fileOf(m_descriptor); }

private:
    int m_descriptor;
};

/// A pipe holds more than the longest input. It cannot be read twice, hence it is read as a stream in any case.
class Pipe
{
public:
    explicit Pipe(const QByteArray &content)
    {
        int ends[2];
        KelFuzz::check(pipe(ends) == 0, "a pipe can be made");
        m_descriptor = ends[0];
        KelFuzz::check(write(ends[1], content.constData(), std::size_t(content.size())) == content.size(),
                       "a pipe can be filled");
        close(ends[1]);
    }
    ~Pipe() { close(m_descriptor); }
    Q_DISABLE_COPY(Pipe)

    [[nodiscard]] QFileInfo info() const { return fileOf(m_descriptor); }

private:
    int m_descriptor;
};

/// Goes through a document in a way that depends on nothing but the document, and writes down everything that the
/// cursor says: attributes, texts and values of some elements, children of others, not always all of them.
class Walk
{
public:
    explicit Walk(bool withPlaces)
        : m_withPlaces(withPlaces)
    {
    }

    QString over(KelXMLCursor &root)
    {
        visit(root);
        return m_log;
    }

private:
    enum Way { Text,
               Number,
               Time,
               Nothing,
               FirstChild,
               AllChildren };

    void visit(KelXMLCursor &element)
    {
        note(element.name().toString());
        if (m_withPlaces)
            note(QStringLiteral("%1:%2").arg(element.line()).arg(element.column()));
        for (const QStringView name : {QStringView(u"lat"), QStringView(u"lon"), QStringView(u"a"), QStringView(u"x:y")}) {
            const QString value = element.attribute(name);
            note(value.isNull() ? QStringLiteral("null") : value);
            note(QString::number(element.attributeDouble(name, 7.25), 'g', 17));
        }
        follow(element, way(element.name()));
    }

    void follow(KelXMLCursor &element, Way way)
    {
        switch (way) {
        case Text:
            note(element.text());
            return;
        case Number:
            note(QString::number(element.textDouble(), 'g', 17));
            return;
        case Time:
            note(element.textDateTime().toString(Qt::ISODateWithMs));
            return;
        case Nothing:
            return;
        case FirstChild:
            if (element.nextChild())
                visit(element.child());
            if (element.nextChild()) // skips the rest of the first, and everything of the second
                note(QStringLiteral("more"));
            return;
        case AllChildren:
            while (element.nextChild())
                visit(element.child());
            note(QStringLiteral("end"));
        }
    }

    Way way(QStringView name)
    {
        ++m_elements;
        if (name == u"ele")
            return Number;
        if (name == u"time")
            return Time;
        if (name.size() == 1)
            return Way((name.front().unicode() + m_elements) % 5);
        return name == u"name" || name == u"desc" ? Text : AllChildren;
    }

    void note(const QString &text)
    {
        m_log += text;
        m_log += QLatin1Char('\n');
    }

    QString m_log;
    uint m_elements = 0;
    bool m_withPlaces;
};

struct Reading
{
    QString log;
    bool isComplete;
};

template<typename Cursor, typename... More>
Reading walk(const QByteArray &xml, bool withPlaces, More... more)
{
    QBuffer buffer;
    buffer.setData(xml);
    buffer.open(QIODevice::ReadOnly);
    Cursor root(&buffer, more...);
    const QString log = Walk(withPlaces).over(root);
    return {log, root.finish()};
}

void compareFile(const QFileInfo &info, const QDomElement &root, const char *rule)
{
    KelErrorHistory errors;
    const KelGPXTrackFile file(info, &errors);
    KelFuzz::compare(KelPlainGPX::describe(file.tracks()), KelPlainGPX::describe(KelPlainGPX::readTracks(root, info.baseName())), rule);
    KelFuzz::check(errors.isEmpty() == !root.isNull(), "an error is reported for what is not well formed, and only then");
}

void compareTracks(const QByteArray &xml, const QDomElement &root)
{
    const MemoryFile file(xml);
    compareFile(file.info(), root, "a file gives the tracks of the plain rules");
    const Pipe pipe(xml);
    compareFile(pipe.info(), root, "a stream gives the tracks of the plain rules");

    int counter = 0;
    const QFileInfo info = file.info();
    const KelGPXTrackFile none{QFileInfo()};
    QList<KelGPXTrack> tracks = none.readTracks(root, QStringLiteral("trk"), counter, info);
    tracks += none.readTracks(root, QStringLiteral("rte"), counter, info);
    KelFuzz::compare(KelPlainGPX::describe(tracks), KelPlainGPX::describe(KelPlainGPX::readTracks(root, info.baseName())),
                     "a tree gives the tracks of the plain rules");
}

void compareWalks(const QByteArray &xml, const QDomElement &root)
{
    const bool withPlaces = xml.size() <= LARGEST_WITH_PLACES;
    const Reading stream = walk<KelXMLStreamCursor>(xml, withPlaces);
    KelFuzz::check(stream.isComplete == !root.isNull(), "stream and tree agree, whatever is read");
    if (root.isNull())
        return;

    KelXMLDomCursor tree(root);
    const bool placesInTree = false; // after entities the tree counts otherwise
    KelFuzz::compare(walk<KelXMLStreamCursor>(xml, placesInTree).log, Walk(placesInTree).over(tree),
                     "stream and tree say the same");
    for (const qsizetype blockSize : {SMALL_BLOCK, KelXMLPlainCursor::BLOCK_SIZE}) {
        const Reading plain = walk<KelXMLPlainCursor>(xml, withPlaces, blockSize);
        if (plain.isComplete)
            KelFuzz::compare(plain.log, stream.log, "stream and plain form say the same");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray xml = KelFuzz::bytes(data, size);
    QDomDocument document;
    KelXMLLoader::setContent(document, xml);
    const QDomElement root = document.documentElement();
    compareTracks(xml, root);
    compareWalks(xml, root);
    return 0;
}
