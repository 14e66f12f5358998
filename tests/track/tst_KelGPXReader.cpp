// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelErrorHistory.h>
#include <KelGPXTrack.h>
#include <KelGPXTrackFile.h>
#include <KelPlainGPX.h>
#include <KelTestSupport.h>
#include <KelXMLLoader.h>
#include <KelXMLPlainCursor.h>
#include <KelXMLStreamCursor.h>

#include <QBuffer>
#include <QDir>
#include <QDomDocument>
#include <QDomElement>
#include <QFile>
#include <QFileInfo>
#include <QStringEncoder>
#include <QTemporaryDir>
#include <QtTest>

#include <random>

/// One set of reading rules, several ways to go through it: a file byte by byte where its form is plain, a file as a
/// stream, a tree through a cursor, and, as the yardstick, the rules written down once more over the tree. All must
/// agree in every bit.
///
/// KEL_RANDOM_CASES sets another number of generated documents, KEL_RANDOM_SEED another beginning.
class tst_KelGPXReader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sameByStreamAndTree_data();
    void sameByStreamAndTree();
    void sameOverGeneratedDocuments();
    void sameOverDamagedDocuments();
    void sameOverPlainDocuments();
    void sameOverDamagedPlainDocuments();
    void sameErrorsInDoubt_data();
    void sameErrorsInDoubt();
    void sameIncludesInDoubt_data();
    void sameIncludesInDoubt();
    void nothingOfAFileThatBreaksOff();
    void nothingOfAFileWithAnErrorAnywhere();
    void enclavesAreReadAsDeepAsElementsMayBe();

private:
    QTemporaryDir m_dir;
};

namespace
{

// Documents.

const QByteArray extension = "<extensions><gpxx:RoutePointExtension><gpxx:rpt lat='1.5' lon='2.5'/>"
                             "<gpxx:rpt lat='3.5' lon='4.5'><ele>7</ele></gpxx:rpt></gpxx:RoutePointExtension>"
                             "</extensions>";

template<typename Range>
const auto &pick(std::mt19937 &random, const Range &range)
{
    return range[random() % std::size(range)];
}

/// Texts of all kinds, in all the ways in which XML writes text.
QByteArray text(std::mt19937 &random)
{
    static const QByteArray texts[] = {"", " ", "name", " a b ", "&amp;", "&#32;", "&#160;", "<![CDATA[ ]]>",
                                       "<![CDATA[<x>]]>", "a<!-- c -->b", " <!-- c --> ", "<b>n</b>", "&e;",
                                       "\xc3\xa4", "\xf0\x9f\x9a\xb2", "<?p i?>", "12.7", "-3", "auto", "polygon",
                                       "2023-11-14T22:13:20Z", "2023-11-14T22:13:20.123Z", "2023-11-14"};
    return pick(random, texts) + (random() % 3 ? QByteArray() : pick(random, texts));
}

QByteArray leaf(std::mt19937 &random, const QByteArray &name)
{
    return "<" + name + ">" + text(random) + "</" + name + ">";
}

QByteArray point(std::mt19937 &random)
{
    static const QByteArray coordinates[] = {" lat='53.14375' lon='8.21'", " lon='-8.2' lat='1e1'", " lat=''", "",
                                             " lat='north' lon=' 5 '", " lat='0' lon='0'",
                                             " lat='53.123456789012345678' lon='1e400'"};
    static const QByteArray names[] = {"ele", "time", "desc", "ele", "time", "extensions", "sym"};
    QByteArray xml = "<trkpt" + pick(random, coordinates) + ">";
    for (uint n = random() % 4; n > 0; --n)
        xml += leaf(random, pick(random, names));
    return xml + "</trkpt>";
}

QByteArray segment(std::mt19937 &random, const QByteArray &name)
{
    static const QByteArray tuples[] = {"8.5,53.1", "8.5,53.1,12,1700000000", "0,0", " ", "\n", "7.,50.25,3",
                                        "8.123456789,53.987654321", "<!-- c -->", "<![CDATA[ ]]>", "here,there",
                                        "1,2,3,4,5", "&#32;", "-8.5,-53.1,-4", "12345678,1"};
    QByteArray xml = "<" + name + (random() % 2 ? " lat='9' lon='9'>" : ">");
    for (uint n = random() % 5; n > 0; --n) {
        switch (random() % 6) {
        case 0:
            xml += extension;
            break;
        case 1:
            xml += "<extensions>" + leaf(random, "x") + "</extensions>" + extension;
            break;
        case 2:
            xml += "<compressedPoints>";
            for (uint tuple = random() % 8; tuple > 0; --tuple)
                xml += pick(random, tuples) + (random() % 4 ? " " : "");
            xml += "</compressedPoints>";
            break;
        case 3:
            xml += leaf(random, "cmt");
            break;
        default:
            xml += point(random);
        }
    }
    return xml + "</" + name + ">";
}

QByteArray track(std::mt19937 &random, const QByteArray &name, int depth)
{
    QByteArray xml = "<" + name + ">";
    for (uint n = random() % 6; n > 0; --n) {
        switch (random() % 9) {
        case 0:
            xml += leaf(random, "name");
            break;
        case 1:
            xml += leaf(random, "desc");
            break;
        case 2:
            xml += leaf(random, "shape");
            break;
        case 3:
            xml += leaf(random, random() % 2 ? "include" : "link");
            break;
        case 4:
            if (depth < 3) {
                xml += "<enclaves>";
                for (uint enclave = random() % 3; enclave > 0; --enclave)
                    xml += track(random, random() % 2 ? "trk" : "lake", depth + 1);
                xml += "</enclaves>";
            }
            break;
        case 5:
            xml += segment(random, "rtept");
            break;
        default:
            xml += segment(random, "trkseg");
        }
        if (random() % 4 == 0)
            xml += "\n  ";
    }
    return xml + "</" + name + ">";
}

QByteArray document(std::mt19937 &random)
{
    QByteArray xml = "<!DOCTYPE gpx [<!ENTITY e 'x <b>y</b> 8,9 '>]><gpx>";
    for (uint n = random() % 6; n > 0; --n)
        xml += random() % 5 == 0 ? leaf(random, "wpt") : track(random, random() % 3 ? "trk" : "rte", 0);
    return xml + "</gpx>";
}

/// The same in the form that is read byte by byte, as devices indent it.
QByteArray plainDocument(std::mt19937 &random)
{
    QByteArray xml = document(random);
    xml.remove(0, xml.indexOf("<gpx>"));
    xml.replace("&e;", "x&#x79;").replace("<![CDATA[ ]]>", " \n").replace("<![CDATA[<x>]]>", "&lt;x&gt;");
    xml.replace("<?p i?>", "");
    if (random() % 2)
        xml.replace("><trk", random() % 2 ? ">\n  <trk" : ">\r\n\t<trk");
    if (random() % 2)
        xml.replace("\"", "'");
    static const QByteArray prologs[] = {"", "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n", "\xef\xbb\xbf",
                                         "<?xml version='1.0' encoding='utf-8' standalone='no' ?><!-- c -->"};
    return pick(random, prologs) + xml + (random() % 2 ? "\n" : "");
}

void damage(QByteArray &xml, std::mt19937 &random)
{
    static const char telling[] = "<>/='\"&;#]-!? \n\r\tax:.1\0\x80\xc3\xe2\xf0\xff";
    const int at = int(random() % uint(xml.size()));
    switch (random() % 6) {
    case 0:
        xml.truncate(at);
        break;
    case 1:
        xml.remove(at, int(1 + random() % 3));
        break;
    case 2:
        xml[at] = char(random() % 256);
        break;
    case 3:
        xml[at] = char(xml.at(at) ^ char(1 << random() % 8));
        break;
    case 4:
        xml.insert(at, telling[random() % (sizeof(telling) - 1)]);
        break;
    default:
        xml.insert(at, xml.mid(int(random() % uint(xml.size())), int(random() % 20)));
    }
}

bool isPlain(const QByteArray &xml)
{
    QBuffer buffer;
    buffer.setData(xml);
    buffer.open(QIODevice::ReadOnly);
    return KelXMLPlainCursor(&buffer).finish();
}

/// What the stream has to say about a text.
QString errorOf(const QByteArray &xml)
{
    QBuffer buffer;
    buffer.setData(xml);
    buffer.open(QIODevice::ReadOnly);
    KelXMLStreamCursor cursor(&buffer);
    if (cursor.finish())
        return QString();
    return QStringLiteral("%1:%2: %3").arg(cursor.errorLine()).arg(cursor.errorColumn()).arg(cursor.errorString());
}

} // namespace

namespace
{

struct Outcome
{
    QStringList byStream;
    QStringList byTree;
    QStringList plain;
    QString error; // of the file
    bool wellFormed = false;
};

Outcome readAll(const QTemporaryDir &dir, const QByteArray &xml)
{
    const QFileInfo info(dir.filePath(QStringLiteral("walk.gpx")));
    QFile file(info.filePath());
    file.remove(); // some file systems wait for the disk when a file is written over
    if (!file.open(QIODevice::WriteOnly) || file.write(xml) != xml.size())
        qFatal("cannot write %s", qPrintable(info.filePath()));
    file.close();

    Outcome outcome;
    KelErrorHistory errors;
    const KelGPXTrackFile streamed(info, &errors);
    outcome.byStream = KelPlainGPX::describe(streamed.tracks());
    for (const KelErrorHistory::Entry &entry : errors.entries())
        outcome.error += QStringLiteral("%1:%2: %3").arg(entry.line).arg(entry.column).arg(entry.message);

    const QDomElement root = KelXMLLoader::loadDocumentElement(info);
    outcome.wellFormed = !root.isNull();
    int counter = 0;
    QList<KelGPXTrack> tracks = streamed.readTracks(root, QStringLiteral("trk"), counter, info);
    tracks += streamed.readTracks(root, QStringLiteral("rte"), counter, info);
    outcome.byTree = KelPlainGPX::describe(tracks);
    outcome.plain = KelPlainGPX::describe(KelPlainGPX::readTracks(root, QStringLiteral("walk")));
    return outcome;
}

} // namespace

void tst_KelGPXReader::sameByStreamAndTree_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<int>("tracks");

    const QByteArray points = "<trkseg><trkpt lat='53.1' lon='8.2'><ele>3.5</ele></trkpt></trkseg>";
    const QByteArray one = "<gpx><trk>" + points + "</trk></gpx>";
    const auto row = [](const char *name, const QByteArray &xml, int tracks) { QTest::newRow(name) << xml << tracks; };
    row("one track", one, 1);
    row("any root", QByteArray(one).replace("gpx>", "anything>"), 1);
    row("routes between tracks",
        "<gpx><rte>" + points + "</rte><trk>" + points + "</trk><rte><rtept>" + extension + "</rtept></rte><trk>"
            + points + "</trk></gpx>",
        4);
    row("tracks deeper down do not count", "<gpx><x><trk>" + points + "</trk></x></gpx>", 0);
    row("the root itself is no track", "<trk>" + points + "</trk>", 0);
    row("prefixed names are other names", "<g:gpx><g:trk>" + points + "</g:trk></g:gpx>", 0);
    row("undeclared prefixes", "<g:gpx><trk>" + points + "<x:y/></trk></g:gpx>", 1);
    row("declared namespaces",
        "<gpx xmlns='http://www.topografix.com/GPX/1/1' xmlns:gpxx='urn:g'><rte><rtept>" + extension
            + "</rtept></rte></gpx>",
        1);
    row("internal entities",
        "<!DOCTYPE gpx [<!ENTITY p '8.2,53.1'><!ENTITY s '<trkseg><compressedPoints>&p; 1,2</compressedPoints>"
        "</trkseg>'>]><gpx><trk><name>&p;</name>&s;</trk></gpx>",
        1);
    row("unknown entity with an external document type",
        "<!DOCTYPE gpx SYSTEM 'gpx.dtd'><gpx><trk><name>a&b;c</name>" + points + "</trk></gpx>", 1);
    row("two document types", "<!DOCTYPE gpx><!DOCTYPE gpx>" + one, 0);
    row("CDATA and comments in values",
        "<gpx><trk><name><![CDATA[ <&> ]]></name><trkseg><trkpt lat='1' lon='2'><ele>1<!-- -->2</ele>"
        "<desc> <!-- --> </desc><time><![CDATA[2023-11-14T]]>22:13:20Z</time></trkpt></trkseg></trk></gpx>",
        1);
    row("byte order mark", "\xef\xbb\xbf" + one, 1);
    const QByteArray umlaut = "<gpx><trk><name>\xe4</name>" + points + "</trk></gpx>"; // in Latin-1
    row("Latin-1", "<?xml version='1.0' encoding='ISO-8859-1'?>" + umlaut, 1);
    row("Latin-1 that claims to be UTF-8", "<?xml version='1.0' encoding='UTF-8'?>" + umlaut, 0);
    for (const auto encoding : {QStringConverter::Utf16LE, QStringConverter::Utf16BE}) {
        QStringEncoder encoder(encoding, QStringConverter::Flag::WriteBom);
        const QByteArray bytes = encoder(QStringLiteral("<gpx><trk><name>\u20ac</name>") + QString::fromUtf8(points)
                                         + QStringLiteral("</trk></gpx>"));
        QTest::addRow("UTF-16 %s endian", encoding == QStringConverter::Utf16LE ? "little" : "big") << bytes << 1;
    }
    row("empty file", QByteArray(), 0);
    row("no XML", QByteArray("53.1 8.2\n53.2 8.3\n"), 0);
    row("binary", QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16), 0);
    row("two roots", one + one, 0);
}

void tst_KelGPXReader::sameByStreamAndTree()
{
    QFETCH(QByteArray, xml);
    QFETCH(int, tracks);
    const Outcome outcome = readAll(m_dir, xml);
    QCOMPARE(outcome.byStream, outcome.plain);
    QCOMPARE(outcome.byTree, outcome.plain);
    // A track without points is not in the list; "rte" with "trkseg" is one with points.
    QCOMPARE(outcome.byStream.size(), tracks);
}

void tst_KelGPXReader::sameOverGeneratedDocuments()
{
    std::mt19937 random(KelTestSupport::randomSeed(6));
    const int count = KelTestSupport::randomCases(1500);
    int tracks = 0;
    for (int i = 0; i < count; ++i) {
        const QByteArray xml = document(random);
        const Outcome outcome = readAll(m_dir, xml);
        QVERIFY2(outcome.wellFormed, xml.constData());
        QVERIFY2(outcome.byStream == outcome.plain, xml.constData());
        QVERIFY2(outcome.byTree == outcome.plain, xml.constData());
        tracks += int(outcome.plain.size());
    }
    QVERIFY2(tracks > count / 2, qPrintable(QString::number(tracks))); // else this tests nothing
}

void tst_KelGPXReader::sameOverDamagedDocuments()
{
    std::mt19937 random(KelTestSupport::randomSeed(7));
    const int count = KelTestSupport::randomCases(1500);
    int malformed = 0;
    for (int i = 0; i < count; ++i) {
        QByteArray xml = document(random);
        switch (random() % 4) {
        case 0:
            xml.truncate(int(random() % uint(xml.size())));
            break;
        case 1:
            xml.remove(int(random() % uint(xml.size())), int(1 + random() % 3));
            break;
        case 2:
            xml[int(random() % uint(xml.size()))] = char(random() % 256);
            break;
        default: {
            const int from = int(random() % uint(xml.size()));
            xml.insert(int(random() % uint(xml.size())), xml.mid(from, int(random() % 20)));
        }
        }
        const Outcome outcome = readAll(m_dir, xml);
        QVERIFY2(outcome.byStream == outcome.plain, xml.constData());
        QVERIFY2(outcome.byTree == outcome.plain, xml.constData());
        malformed += outcome.wellFormed ? 0 : 1;
    }
    QVERIFY2(malformed > count / 5, qPrintable(QString::number(malformed)));
}

void tst_KelGPXReader::sameOverPlainDocuments()
{
    std::mt19937 random(KelTestSupport::randomSeed(8));
    const int count = KelTestSupport::randomCases(3000);
    int tracks = 0;
    for (int i = 0; i < count; ++i) {
        const QByteArray xml = plainDocument(random);
        QVERIFY2(isPlain(xml), xml.constData());
        const Outcome outcome = readAll(m_dir, xml);
        QVERIFY2(outcome.wellFormed && outcome.error.isEmpty(), xml.constData());
        QVERIFY2(outcome.byStream == outcome.plain, xml.constData());
        tracks += int(outcome.plain.size());
    }
    QVERIFY2(tracks > count / 2, qPrintable(QString::number(tracks)));
}

void tst_KelGPXReader::sameOverDamagedPlainDocuments()
{
    std::mt19937 random(KelTestSupport::randomSeed(9));
    const int count = KelTestSupport::randomCases(5000);
    int plain = 0;
    int malformed = 0;
    for (int i = 0; i < count; ++i) {
        QByteArray xml = plainDocument(random);
        damage(xml, random);
        const Outcome outcome = readAll(m_dir, xml);
        QVERIFY2(outcome.byStream == outcome.plain, xml.constData());
        QVERIFY2(outcome.error == errorOf(xml), xml.toPercentEncoding(" <>/='\"").constData());
        QVERIFY2(outcome.error.isEmpty() == outcome.wellFormed, xml.constData());
        plain += isPlain(xml) ? 1 : 0;
        malformed += outcome.wellFormed ? 0 : 1;
    }
    QVERIFY2(plain > count / 20, qPrintable(QString::number(plain)));
    QVERIFY2(malformed > count / 5, qPrintable(QString::number(malformed)));
}

void tst_KelGPXReader::sameErrorsInDoubt_data()
{
    QTest::addColumn<QByteArray>("odd"); // between a track and a route
    QTest::addColumn<QString>("error");

    QTest::newRow("nothing odd") << QByteArray() << QString();
    QTest::newRow("CDATA") << QByteArray("<x><![CDATA[<]]></x>") << QString();
    QTest::newRow("processing instruction") << QByteArray("<?p i?>") << QString();
    QTest::newRow("end tag too many") << QByteArray("</x>") << "3:4: Opening and ending tag mismatch.";
    QTest::newRow("unknown entity") << QByteArray("<x>&e;</x>") << "3:6: Entity 'e' not declared.";
    QTest::newRow("the same attribute twice") << QByteArray("<x a='1' a='2'/>") << "3:16: Attribute 'a' redefined.";
    // Looking for more behind the end must not move the place.
    QTest::newRow("broken off in a comment") << QByteArray("<x><!-- c -\r>") << "3:84: Premature end of document.";
}

void tst_KelGPXReader::sameErrorsInDoubt()
{
    QFETCH(QByteArray, odd);
    QFETCH(QString, error);
    const QByteArray points = "<trkseg><trkpt lat='53.1' lon='8.2'><ele>3.5</ele></trkpt></trkseg>";
    const QByteArray xml = "<gpx>\n<trk>" + points + "</trk>\n" + odd + "\n<rte>" + points + "</rte></gpx>";
    QCOMPARE(isPlain(xml), odd.isEmpty());
    const Outcome outcome = readAll(m_dir, xml);
    QCOMPARE(outcome.error, error);
    QDomDocument document;
    QString message;
    int line = 0;
    int column = 0;
    if (!document.setContent(xml, false, &message, &line, &column))
        QCOMPARE(outcome.error, QStringLiteral("%1:%2: %3").arg(line).arg(column).arg(message));
    QCOMPARE(outcome.byStream, outcome.plain);
    QCOMPARE(outcome.byStream.size(), error.isEmpty() ? 2 : 0);
}

void tst_KelGPXReader::sameIncludesInDoubt_data()
{
    QTest::addColumn<QByteArray>("odd"); // behind the included track
    QTest::addColumn<int>("segments");

    QTest::newRow("nothing odd") << QByteArray() << 2;
    QTest::newRow("CDATA") << QByteArray("<x><![CDATA[<]]></x>") << 2; // merged once, although read twice
    QTest::newRow("malformed") << QByteArray("</x>") << 1;
}

void tst_KelGPXReader::sameIncludesInDoubt()
{
    QFETCH(QByteArray, odd);
    QFETCH(int, segments);
    const QTemporaryDir dir;
    QFile file(dir.filePath("a.gpx"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("<gpx><trk><name>included</name><trkseg><trkpt lat='1' lon='2'/></trkseg></trk>" + odd + "</gpx>");
    file.close();
    QDomDocument document;
    QVERIFY(KelXMLLoader::setContent(document, QByteArray("<trk><trkseg><trkpt lat='3' lon='4'/></trkseg>"
                                                          "<include>a.gpx</include></trk>")));
    const KelGPXTrack track(document.documentElement(), QDir(dir.path()));
    QCOMPARE(track.segments().size(), segments);
    QCOMPARE(track.segments().first().toKml(), "4.,3.");
    QCOMPARE(track.name(), segments == 2 ? "included" : "");
}

void tst_KelGPXReader::nothingOfAFileThatBreaksOff()
{
    const QByteArray xml = "<?xml version='1.0'?><gpx><trk><name>n</name><trkseg><trkpt lat='1' lon='2'/></trkseg>"
                           "</trk><rte><rtept>" + extension + "</rtept></rte></gpx>";
    QCOMPARE(readAll(m_dir, xml).byStream.size(), 2);
    for (int length = 0; length < xml.size(); ++length) {
        const QStringList tracks = readAll(m_dir, xml.left(length)).byStream;
        QVERIFY2(tracks.isEmpty(), xml.left(length).constData());
    }
}

void tst_KelGPXReader::nothingOfAFileWithAnErrorAnywhere()
{
    const QByteArray xml = "<gpx><trk><name>n</name><trkseg><trkpt lat='1' lon='2'/></trkseg></trk><wpt>x</wpt>"
                           "</gpx>\n";
    QCOMPARE(readAll(m_dir, xml).byStream.size(), 1);
    for (int at = 0; at <= xml.size(); ++at) {
        const QByteArray damaged = QByteArray(xml).insert(at, "</q>");
        const Outcome outcome = readAll(m_dir, damaged);
        QCOMPARE(outcome.byStream, outcome.byTree);
        QVERIFY2(outcome.byStream.isEmpty(), damaged.constData());
    }
}

void tst_KelGPXReader::enclavesAreReadAsDeepAsElementsMayBe()
{
    const auto nested = [](int levels) {
        return "<gpx><trk><trkseg><trkpt lat='1' lon='2'/></trkseg>" + QByteArray("<enclaves><trk>").repeated(levels)
            + QByteArray("</trk></enclaves>").repeated(levels) + "<name>survivor</name></trk></gpx>";
    };
    for (const int levels : {119, 120, 121, 126, 127}) {
        readAll(m_dir, nested(levels)); // writes the file
        const KelGPXTrackFile file(QFileInfo(m_dir.filePath("walk.gpx")));
        QCOMPARE(file.tracks().size(), 1);
        QCOMPARE(file.tracks().first().name(), "survivor");
        int depth = 0;
        for (KelGPXTrack t = file.tracks().first(); !t.enclaves().isEmpty(); t = t.enclaves().first())
            ++depth;
        QCOMPARE(depth, levels);
    }
    // Deeper than elements may be: malformed.
    for (const int levels : {128, 130, 100000}) {
        const Outcome outcome = readAll(m_dir, nested(levels));
        QVERIFY(!outcome.wellFormed);
        QVERIFY(outcome.byStream.isEmpty());
    }
}

QTEST_GUILESS_MAIN(tst_KelGPXReader)
#include "tst_KelGPXReader.moc"
