// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelTestArchive.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <functional>

#include <fcntl.h>
#ifdef __GLIBC__
#include <malloc.h>
#endif
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

// A sanitizer's own memory would be measured.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define KEL_SANITIZED
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer) || __has_feature(memory_sanitizer)
#define KEL_SANITIZED
#endif
#endif

namespace
{

constexpr qint64 MEGABYTE = 1000 * 1000;

// What a program may need beyond what it needs for a file of two points: ten times the file, something to begin with, and
// what is made of the file: a fixed number of bytes for each thing however few characters it has. Elements, attributes,
// comments and the like that nothing is made of are no such things.
constexpr qint64 TIMES_THE_FILE = 10;
constexpr qint64 TO_BEGIN_WITH = 10 * MEGABYTE; // promised are 100, which files of this size would not reach
constexpr qint64 MOST_OF_AN_ARCHIVE = qint64(256) * 1024 * 1024;
constexpr qint64 POINT = 220;
constexpr qint64 OUTLINE_TIMES = 4; // that, in a picture: the outline of a line that goes to and fro
constexpr qint64 TRACK = 1200; // with a segment and a point; a placemark, an enclave, a style

// Only to end what would not end by itself. Nobody measures time here.
constexpr rlim_t PROCESSOR_SECONDS = 200;

/// What became of a program that was given a file.
struct Outcome
{
    int code = -1; // -1: it did not end by itself
    QByteArray output;
    QByteArray words;   // of standard error
    qint64 memory = 0;  // at its peak, in bytes
    double seconds = 0; // of the processor
};

QByteArray contentOf(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// A child that says how much memory it took. What QProcess starts does not.
Outcome run(const QString &directory, const QStringList &arguments)
{
    const QByteArray output = (directory + QStringLiteral("/output")).toLocal8Bit();
    const QByteArray words = (directory + QStringLiteral("/words")).toLocal8Bit();
    QList<QByteArray> texts = {QByteArrayLiteral(KEL_RENDER_PROGRAM)};
    for (const QString &argument : arguments)
        texts.append(argument.toLocal8Bit());
    QList<char *> pointers;
    for (QByteArray &text : texts)
        pointers.append(text.data());
    pointers.append(nullptr);

#ifdef __GLIBC__
    ::malloc_trim(0); // a child counts its parent's memory as its own
#endif
    const pid_t child = ::fork();
    if (child == 0) {
        constexpr mode_t mode = 0600;
        ::dup2(::open("/dev/null", O_RDONLY), STDIN_FILENO);
        ::dup2(::open(output.constData(), O_WRONLY | O_CREAT | O_TRUNC, mode), STDOUT_FILENO);
        ::dup2(::open(words.constData(), O_WRONLY | O_CREAT | O_TRUNC, mode), STDERR_FILENO);
        const rlimit time = {PROCESSOR_SECONDS, PROCESSOR_SECONDS};
        const rlimit core = {0, 0};
        ::setrlimit(RLIMIT_CPU, &time);
        ::setrlimit(RLIMIT_CORE, &core);
        ::execv(pointers.first(), pointers.data());
        ::_exit(127);
    }
    Outcome outcome;
    int status = 0;
    rusage usage = {};
    if (child < 0 || ::wait4(child, &status, 0, &usage) != child)
        return outcome;
    if (WIFEXITED(status))
        outcome.code = WEXITSTATUS(status);
    outcome.memory = qint64(usage.ru_maxrss) * 1024;
    outcome.seconds = double(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec)
        + double(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
    outcome.output = contentOf(QString::fromLocal8Bit(output));
    outcome.words = contentOf(QString::fromLocal8Bit(words));
    return outcome;
}

QByteArray gpx(const QByteArray &before, const QByteArray &inTrack = {}, const QByteArray &after = {})
{
    return before + "<gpx><trk>" + inTrack + "<trkseg><trkpt lat='53' lon='8'/><trkpt lat='54' lon='9'/></trkseg></trk>" + after
        + "</gpx>";
}

QByteArray kml(const QByteArray &before, const QByteArray &inPlacemark = {}, const QByteArray &inDocument = {})
{
    return before + "<kml><Document>" + inDocument + "<Placemark>" + inPlacemark
        + "<LineString><coordinates>8,53 9,54</coordinates></LineString></Placemark></Document></kml>";
}

QByteArray attributes(int count)
{
    QByteArray text;
    for (int i = 0; i < count; ++i)
        text += " a" + QByteArray::number(i) + "=''";
    return text;
}

QByteArray laughs(int levels, const QByteArray &core)
{
    QByteArray text = "<!DOCTYPE x [<!ENTITY e0 '" + core + "'>";
    for (int i = 1; i <= levels; ++i)
        text += "<!ENTITY e" + QByteArray::number(i) + " '" + QByteArray("&e" + QByteArray::number(i - 1) + ";").repeated(10)
            + "'>";
    return text + "<!ENTITY e '&e" + QByteArray::number(levels) + ";'>]>";
}

QByteArray entity(const QByteArray &declaration)
{
    return "<!DOCTYPE x [<!ENTITY e " + declaration + ">]>";
}

QByteArray utf16(const QByteArray &text)
{
    QByteArray result;
    for (const char byte : text)
        result += QByteArray(1, byte) + '\0';
    return result;
}

QByteArray archive(const QList<KelTestArchive::Entry> &entries)
{
    return KelTestArchive::build(entries);
}

/// One entry, packed in exactly a 200th of its size: in no less may it be.
QByteArray packedAsMayBe(const QByteArray &text)
{
    constexpr qsizetype ratio = 200;
    const QByteArray wrapped = qCompress(text, 9);
    const QByteArray stream = wrapped.mid(6, wrapped.size() - 10); // without Qt's length and zlib's frame
    const QByteArray padding(qMax<qsizetype>((text.size() + ratio - 1) / ratio - stream.size(), 0), '\0');
    return archive({{.name = "doc.kml", .content = text, .deflated = true, .packed = stream + padding}});
}

QByteArray numbered(int count, const QByteArray &before, const QByteArray &after)
{
    QByteArray text;
    for (int i = 0; i < count; ++i)
        text += before + QByteArray::number(i) + after;
    return text;
}

using Make = std::function<QByteArray(int)>;

} // namespace

Q_DECLARE_METATYPE(Make)

/// Files that are made to stop, crash or fill the machine that opens them, each given to kel-render for its information and,
/// if anything comes of it, for a picture.
///
/// KEL_HOSTILE_FACTOR=10 makes the files ten times as large, and the program says what time and memory they took. No test judges
/// time; scripts/hostile.sh compares two sizes.
class tst_HostileFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void files_data();
    void files();
    void dashedLines_data();
    void dashedLines();
    void selections_data();
    void selections();
    void nothingIsWrittenBesideAnArchive();

private:
    void judge(const QString &file, const Outcome &outcome, int code, const QString &reason, qint64 made);
    void tell(qint64 size, const Outcome &outcome);

    QTemporaryDir m_dir;
    qint64 m_usualMemory = 0;
    int m_factor = 1;
};

void tst_HostileFiles::initTestCase()
{
    qputenv("XDG_CONFIG_HOME", m_dir.filePath(QStringLiteral("config")).toLocal8Bit());
    m_factor = qMax(1, qEnvironmentVariableIntValue("KEL_HOSTILE_FACTOR"));
    QFile file(m_dir.filePath(QStringLiteral("usual.gpx")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(gpx(""));
    file.close();
    const Outcome outcome = run(m_dir.path(), {file.fileName(), QStringLiteral("-o"), m_dir.filePath(QStringLiteral("map.png")),
                                             QStringLiteral("--size=300x200"), QStringLiteral("--no-map")});
    QCOMPARE(outcome.code, 0);
    m_usualMemory = outcome.memory;
}

void tst_HostileFiles::files_data()
{
    QTest::addColumn<QString>("suffix");
    QTest::addColumn<Make>("make");
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("reason"); // what has to be said; for files that are read, what must not be
    QTest::addColumn<qint64>("made"); // bytes
    QTest::addColumn<int>("drawn"); // the code for a picture

    const auto row = [](const char *name, const char *suffix, const Make &make, int code, const char *reason, qint64 made = 0,
                        int drawn = -1) {
        QTest::addRow("%s, %s", name, suffix) << QString::fromLatin1(suffix) << make << code << QString::fromLatin1(reason)
                                              << made << (drawn < 0 ? code : drawn);
    };
    constexpr int read = 0;
    constexpr int malformed = 4;
    constexpr int nothing = 6;
    constexpr const char *tooDeep = "nested more than 256 levels deep";
    constexpr const char *tooMany = "more than 1000 attributes";
    constexpr const char *tooLong = "more than 5 times as long";

    for (const char *suffix : {"gpx", "kml"}) {
        const bool isGpx = qstrcmp(suffix, "gpx") == 0;
        const auto with = [isGpx](const QByteArray &before, const QByteArray &within = {}) {
            return isGpx ? gpx(before, within) : kml(before, within);
        };
        row(
            "levels", suffix, [=](int f) { return with("", QByteArray("<a>").repeated(10000 * f)); }, malformed, tooDeep);
        row(
            "attributes", suffix, [=](int f) { return with("", "<a" + attributes(3000 * f) + "/>"); }, malformed, tooMany);
        row(
            "attributes of one name", suffix, [=](int f) { return with("", "<a" + QByteArray(" b=''").repeated(20000 * f) + "/>"); },
            malformed, tooMany);
        row(
            "long attribute", suffix, [=](int f) { return with("", "<a b='" + QByteArray(1000000 * f, 'x') + "'/>"); }, read, "");
        row(
            "long name", suffix, [=](int f) { return with("", "<" + QByteArray(100000 * f, 'x') + "/>"); }, malformed, ":1:");
        row(
            "name as long as may be", suffix, [=](int) { return with("", "<" + QByteArray(4096, 'x') + "/>"); }, read, "");
        row(
            "name longer by a character", suffix, [=](int) { return with("", "<" + QByteArray(4097, 'x') + "/>"); }, malformed, ":1:");
        row(
            "long text", suffix, [=](int f) { return with("", "<x>" + QByteArray(2000000 * f, 'x') + "</x>"); }, read, "");
        row(
            "long comment", suffix, [=](int f) { return with("<!--" + QByteArray(2000000 * f, 'x') + "-->"); }, read, "");
        row(
            "comments", suffix, [=](int f) { return with("", QByteArray("<!---->").repeated(100000 * f)); }, read, "");
        row(
            "CDATA", suffix, [=](int f) { return with("", QByteArray("<![CDATA[]]>").repeated(50000 * f)); }, read, "");
        row(
            "processing instructions", suffix, [=](int f) { return with("", QByteArray("<?a?>").repeated(100000 * f)); }, read, "");
        row(
            "empty elements", suffix, [=](int f) { return with("", QByteArray("<a/>").repeated(100000 * f)); }, read, "");
        row(
            "elements of one character", suffix, [=](int f) { return with("", QByteArray("<a>x</a>").repeated(30000 * f)); }, read, "");
        row(
            "elements of as many attributes as may be", suffix,
            [=](int f) { return with("", ("<a" + attributes(1000) + "/>").repeated(20 * f)); }, read, "");
        row(
            "long CDATA", suffix, [=](int f) { return with("", "<name><![CDATA[" + QByteArray(2000000 * f, 'x') + "]]></name>"); },
            read, "", 6 * 2 * MEGABYTE); // the name is printed
        row(
            "predefined entities", suffix, [=](int f) { return with("", "<name>" + QByteArray("&amp;").repeated(50000 * f) + "</name>"); },
            read, "");
        row(
            "as many entities as may be", suffix,
            [=](int) {
                return with("<!DOCTYPE x [" + numbered(10000, "<!ENTITY e", " 'x'>") + "]>",
                            "<name>" + numbered(10000, "&e", ";") + "</name>");
            },
            read, "");
        row(
            "entities, exponential", suffix, [=](int) { return with(laughs(9, "ha"), "<name>&e;</name>"); }, malformed, tooLong);
        row(
            "entities, exponential, of nothing", suffix, [=](int) { return with(laughs(12, ""), "<name>&e;</name>"); }, malformed,
            tooLong);
        row(
            "entities, exponential, in an attribute", suffix, [=](int) { return with(laughs(12, ""), "<a b='&e;'/>"); }, malformed,
            tooLong);
        row(
            "entities, quadratic", suffix,
            [=](int f) {
                const QByteArray references = QByteArray("&e;").repeated(2000 * f);
                return with(entity("'" + QByteArray(4000, 'x') + "'"), "<name>" + references + "</name>");
            },
            malformed, tooLong);
        row(
            "an entity of many declarations", suffix,
            [=](int) {
                return with("<!DOCTYPE x [" + QByteArray("<!ENTITY e 'xx'>").repeated(2500) + "]>",
                            "<name>" + QByteArray("&e;").repeated(1000) + "</name>");
            },
            read, "");
        row(
            "too many entities", suffix,
            [=](int f) { return with("<!DOCTYPE x [" + numbered(15000 * f, "<!ENTITY e", " 'x'>") + "]>"); }, malformed,
            "more than 10000 entities");
        row(
            "entity of a file", suffix, [=](int) { return with(entity("SYSTEM 'file:///etc/passwd'"), "<name>a&e;b</name>"); }, read,
            "root:");
        row(
            "entity of a network", suffix, [=](int) { return with(entity("SYSTEM 'http://127.0.0.1:9/x'"), "<name>a&e;b</name>"); },
            read, "127.0.0.1");
        row(
            "document type of a file", suffix, [=](int) { return with("<!DOCTYPE x SYSTEM 'file:///etc/passwd'>"); }, read, "root:");
        row(
            "parameter entities", suffix,
            [=](int f) {
                return with("<!DOCTYPE x [<!ENTITY % p '" + QByteArray(4000, ' ') + "'>" + QByteArray("%p;").repeated(1000 * f) + "]>");
            },
            malformed, "parameter entities");
        row(
            "defaults of attributes", suffix,
            [=](int f) {
                return with("<!DOCTYPE x [<!ATTLIST a b CDATA '" + QByteArray(4000, 'x') + "'>]>", QByteArray("<a/>").repeated(1000 * f));
            },
            malformed, tooLong);
        row(
            "UTF-16 without a mark", suffix, [=](int) { return utf16(with("")); }, isGpx ? read : malformed,
            isGpx ? "" : ":1:1: this is UTF-16");
        row(
            "two encodings", suffix,
            [=](int) {
                const QByteArray rest = isGpx ? utf16(with("")) : "\xff" + with("");
                return "<?xml version='1.0' encoding='UTF-16'?>" + rest;
            },
            malformed, ":1:");
        row(
            "cut off", suffix, [=](int) { return with("").chopped(3); }, malformed, ":1:");
        row(
            "nothing", suffix, [=](int) { return QByteArray(); }, malformed, "");
        row(
            "zeros", suffix, [=](int f) { return QByteArray(100000 * f, '\0'); }, malformed, "");
        row(
            "a zero", suffix, [=](int) { return with("", QByteArray("<name>a") + '\0' + "b</name>"); }, malformed, ":1:");
        row(
            "opening brackets", suffix, [=](int f) { return QByteArray(100000 * f, '<'); }, malformed, ":1:");
        row(
            "ampersands", suffix, [=](int f) { return with("", "<name>" + QByteArray(100000 * f, '&') + "</name>"); }, malformed, ":1:");
    }

    row(
        "UTF-7", "gpx", [](int) { return gpx("<?xml version='1.0' encoding='UTF-7'?>"); }, read, "");
    row(
        "an encoding that nobody knows", "gpx", [](int) { return gpx("<?xml version='1.0' encoding='x-none'?>"); }, malformed,
        "x-none");
    row(
        "half a character", "gpx", [](int f) { return QByteArray("\n").repeated(20000 * f) + gpx("", "<name>\xe2\x82</name>"); },
        malformed, "0001:17: a byte that does not belong to a text in UTF-8");
    row(
        "half a character in UTF-16", "gpx", [](int) { return utf16(gpx("")) + '<'; }, malformed, "in the middle of a character");
    row(
        "US-ASCII that is not", "gpx", [](int) { return gpx("<?xml version='1.0' encoding='US-ASCII'?>", "<name>\xff</name>"); },
        malformed, ":1:58: a byte that does not belong to a text in US-ASCII");
    row(
        "a mark that lies", "gpx", [](int) { return "\xef\xbb\xbf" + utf16(gpx("")); }, malformed, ":1:");
    row(
        "includes itself", "gpx", [](int) { return gpx("", "<include>hostile.gpx</include>"); }, read, "2 tracks");
    row(
        "includes a file of the system", "gpx", [](int) { return gpx("", "<include>../../../etc/passwd</include>"); }, read, "root:");
    row(
        "enclaves", "gpx", [](int f) { return gpx("", QByteArray("<enclaves><trk>").repeated(5000 * f)); }, malformed, tooDeep);
    row(
        "enclaves as deep as may be", "gpx",
        [](int) { return gpx("", QByteArray("<enclaves><trk>").repeated(126) + QByteArray("</trk></enclaves>").repeated(126)); }, read, "");
    row(
        "numbers", "gpx",
        [](int f) {
            return "<gpx><trk><trkseg>" + QByteArray("<trkpt lat='nan' lon='inf'><ele>1e400</ele><time>x</time></trkpt>"
                                                     "<trkpt lat='1e308' lon='-1e308'><ele>-1e308</ele></trkpt><trkpt lat='90' lon='1e9'/>")
                                              .repeated(1000 * f)
                + "</trkseg></trk></gpx>";
        },
        read, "", 3000 * POINT, nothing); // there is no such place on a map
    row(
        "compact points", "gpx",
        [](int f) {
            const QByteArray tuples = "1e308,nan,99999999999,99999999999999999999 , ,, 1 2,3\n";
            return gpx("", "<trkseg><compressedPoints>" + tuples.repeated(5000 * f) + "</compressedPoints></trkseg>");
        },
        read, "", 25000 * POINT);
    row(
        "dense compact points", "gpx",
        [](int f) {
            return gpx("", "<trkseg><compressedPoints>" + QByteArray("1,1\n").repeated(50000 * f) + "</compressedPoints></trkseg>");
        },
        read, "", 50000 * POINT);
    row(
        "points of nothing", "gpx", [](int f) { return gpx("", "<trkseg>" + QByteArray("<trkpt/>").repeated(30000 * f) + "</trkseg>"); },
        read, "", 30000 * POINT);
    row(
        "least points", "gpx",
        [](int f) { return gpx("", "<trkseg>" + QByteArray("<trkpt lat=\"1\" lon=\"1\"/>").repeated(30000 * f) + "</trkseg>"); }, read, "",
        30000 * POINT);
    row(
        "tracks", "gpx", [](int f) { return gpx("", "", QByteArray("<trk><trkseg><trkpt/></trkseg></trk>").repeated(2000 * f)); }, read,
        "", 2000 * TRACK);
    row(
        "tracks of nothing", "gpx", [](int f) { return gpx("", "", QByteArray("<trk/>").repeated(100000 * f)); }, read, "");
    row(
        "routes of nothing", "gpx", [](int f) { return gpx("", "", QByteArray("<rte/>").repeated(100000 * f)); }, read, "");
    row(
        "segments of nothing", "gpx", [](int f) { return gpx("", QByteArray("<trkseg/>").repeated(100000 * f)); }, read, "");
    row(
        "enclaves beside each other", "gpx",
        [](int f) { return gpx("", "<enclaves>" + QByteArray("<a/>").repeated(20000 * f) + "</enclaves>"); },
        read, "", 20000 * TRACK);
    row(
        "long names", "gpx",
        [](int f) {
            return gpx("", "", ("<trk><name>" + QByteArray(1000, 'n') + "</name><trkseg><trkpt/></trkseg></trk>").repeated(200 * f));
        },
        read, "", 200 * TRACK);

    row(
        "truncated UTF-8", "kml", [](int) { return kml("", "<name>\xe2\x82</name>"); }, read, "malformed");
    row(
        "placemarks", "kml", [](int f) { return kml("", "", QByteArray("<Placemark/>").repeated(20000 * f)); }, read, "", 20000 * TRACK);
    row(
        "nothing but placemarks of nothing", "kml",
        [](int f) { return "<kml><Document>" + QByteArray("<Placemark/>").repeated(20000 * f) + "</Document></kml>"; }, nothing,
        "no placemark has coordinates", 20000 * TRACK);
    row(
        "folders", "kml", [](int f) { return kml("", "", QByteArray("<Folder>").repeated(10000 * f)); }, malformed, tooDeep);
    row(
        "folders beside each other", "kml", [](int f) { return kml("", "", QByteArray("<Folder></Folder>").repeated(20000 * f)); }, read,
        "");
    row(
        "styles", "kml", [](int f) { return kml("", "<styleUrl>#a1</styleUrl>", numbered(5000 * f, "<Style id='a", "'/>")); }, read, "",
        5000 * TRACK);
    row(
        "styles in a circle", "kml",
        [](int) {
            return kml("", "<styleUrl>#a</styleUrl>",
                       "<StyleMap id='a'><Pair><key>normal</key><styleUrl>#b</styleUrl></Pair></StyleMap>"
                       "<StyleMap id='b'><Pair><key>normal</key><styleUrl>#a</styleUrl></Pair></StyleMap>"
                       "<Style id='a'><styleUrl>#a</styleUrl></Style>");
        },
        read, "");
    row(
        "coordinates", "kml",
        [](int f) {
            return "<kml><Document><Placemark><LineString><coordinates>" + QByteArray("8.5,53.25 ").repeated(50000 * f)
                + "</coordinates></LineString></Placemark></Document></kml>";
        },
        read, "", 50000 * POINT);
    row(
        "dense coordinates", "kml",
        [](int f) {
            return "<kml><Document><Placemark><LineString><coordinates>" + QByteArray("1,1 ").repeated(130000 * f)
                + "</coordinates></LineString></Placemark></Document></kml>";
        },
        read, "", 130000 * POINT);
    row(
        "long texts", "kml",
        [](int f) {
            const QByteArray text(1000, 'n');
            const QByteArray placemark = "<Placemark><name>" + text + "</name><description>" + text + "</description></Placemark>";
            return kml("", "", placemark.repeated(300 * f));
        },
        read, "", 300 * TRACK);
    row(
        "coordinates of one number", "kml",
        [](int f) {
            return "<kml><Document><Placemark><Point><coordinates>" + QByteArray("8 ").repeated(50000 * f)
                + "</coordinates></Point></Placemark></Document></kml>";
        },
        read, "", 50000 * POINT);
    row(
        "coordinates beyond all", "kml",
        [](int) {
            return "<kml><Document><Placemark><LineString><coordinates>1e308,1e308 -1e308,nan inf,-inf "
                   "1e400,90</coordinates></LineString></Placemark></Document></kml>";
        },
        read, "", 0, nothing);
    row(
        "widths", "kml",
        [](int) {
            return kml("", "<styleUrl>#a</styleUrl>",
                       "<Style id='a'><LineStyle><width>1e308</width><color>zzzzzzzz</color></LineStyle></Style>"
                       "<Style id='b'><LineStyle><width>nan</width></LineStyle></Style>");
        },
        read, "");

    row(
        "an archive of zeros", "kmz",
        [](int) {
            const QByteArray zeros = KelTestArchive::deflatedZeros(MOST_OF_AN_ARCHIVE + 1);
            return archive({{.name = "doc.kml", .content = "", .deflated = true, .packed = zeros, .claimedSize = 100}});
        },
        malformed,
        "unpacks to more than", MOST_OF_AN_ARCHIVE);
    // What counts of an archive is what it unpacks to.
    row(
        "an archive of empty elements", "kmz",
        [](int f) { return packedAsMayBe(kml("", QByteArray("<a/>").repeated(250000 * f))); }, read, "", TIMES_THE_FILE * MEGABYTE);
    row(
        "an archive of text", "kmz", [](int f) { return packedAsMayBe(kml("", "<x>" + QByteArray(5000000 * f, 'x') + "</x>")); }, read, "",
        TIMES_THE_FILE * 5 * MEGABYTE);
    row(
        "an archive of dense coordinates", "kmz",
        [](int f) {
            return packedAsMayBe("<kml><Document><Placemark><LineString><coordinates>" + QByteArray("1,1 ").repeated(300000 * f)
                                 + "</coordinates></LineString></Placemark></Document></kml>");
        },
        read, "", TIMES_THE_FILE * 1200000 + 300000 * POINT);
    row(
        "an archive of placemarks of nothing", "kmz",
        [](int f) { return packedAsMayBe(kml("", "", QByteArray("<Placemark/>").repeated(100000 * f))); }, read, "",
        TIMES_THE_FILE * 1200000 + 100000 * TRACK);
    // Nothing is made of these.
    row(
        "an archive of a million placemarks of nothing", "kmz",
        [](int f) {
            const QByteArray text = kml("", "", QByteArray("<Placemark/>").repeated(1000000 * f));
            return archive({{.name = "doc.kml", .content = text, .deflated = true}});
        },
        malformed, "unpacks to more than 200 times its size");
    row(
        "an archive of a million points that denies it", "kmz",
        [](int f) {
            const QByteArray text = "<kml><Document><Placemark><coordinates>" + QByteArray("1,1 ").repeated(1000000 * f);
            return archive({{.name = "doc.kml", .content = text, .deflated = true, .claimedSize = 100}});
        },
        malformed, "unpacks to more than 200 times its size", 2 * MEGABYTE); // what came out until then
    row(
        "entries that share their data", "kmz",
        [](int) { return archive({{.name = "a.kml", .content = kml("")}, {.name = "b.kml", .content = kml(""), .sharesDataOf = 0}}); },
        malformed, "overlap");
    row(
        "an archive that is none", "kmz", [](int) { return QByteArray("PK\3\4") + QByteArray(1000, 'x'); }, malformed, "");
    row(
        "an archive of an archive", "kmz",
        [](int) {
            const QByteArray inner = archive({{.name = "doc.kml", .content = kml("")}});
            return archive({{.name = "a.kmz", .content = inner}});
        },
        nothing, "no .kml entry");
    row(
        "levels in an archive", "kmz",
        [](int f) { return packedAsMayBe(kml("", QByteArray("<a>").repeated(10000 * f))); }, malformed, tooDeep);
}

/// For scripts/hostile.sh.
void tst_HostileFiles::tell(qint64 size, const Outcome &outcome)
{
    if (qEnvironmentVariableIsSet("KEL_HOSTILE_FACTOR")) {
        qInfo("%.3f MB: %.2f s, %.1f MB", double(size) / MEGABYTE, outcome.seconds,
              double(outcome.memory - m_usualMemory) / MEGABYTE);
    }
}

void tst_HostileFiles::judge(const QString &file, const Outcome &outcome, int code, const QString &reason, qint64 made)
{
    QVERIFY2(outcome.code >= 0, "the program crashed or did not come to an end");
    QVERIFY2(outcome.code == code,
             qPrintable(QStringLiteral("exit code %1: %2").arg(outcome.code).arg(QString::fromUtf8(outcome.words.left(500)))));
    if (code != 0) {
        // Who is told has to be able to find it.
        QVERIFY2(outcome.words.contains(QFileInfo(file).fileName().toUtf8()), outcome.words.left(500).constData());
        QVERIFY2(outcome.words.contains(reason.toUtf8()), outcome.words.left(500).constData());
        QVERIFY2(outcome.words.size() < 2000, outcome.words.left(500).constData());
    } else if (!reason.isEmpty()) {
        QVERIFY2(!outcome.words.contains(reason.toUtf8()), outcome.words.left(500).constData());
        QVERIFY(!outcome.output.contains(reason.toUtf8()));
    }
    const qint64 size = QFileInfo(file).size();
    tell(size, outcome);
#ifndef KEL_SANITIZED
    const qint64 grown = outcome.memory - m_usualMemory;
    const qint64 allowed = TO_BEGIN_WITH + TIMES_THE_FILE * size + made * m_factor;
    QVERIFY2(grown <= allowed, qPrintable(QStringLiteral("%1 MB").arg(grown / MEGABYTE)));
#else
    Q_UNUSED(made);
#endif
}

void tst_HostileFiles::files()
{
    QFETCH(QString, suffix);
    QFETCH(Make, make);
    QFETCH(int, code);
    QFETCH(QString, reason);
    QFETCH(qint64, made);
    QFETCH(int, drawn);
    const QString name = m_dir.filePath(QStringLiteral("hostile.") + suffix);
    {
        // Freed before the child starts, which would count it as its own.
        const QByteArray content = make(m_factor);
        QFile file(name);
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        QCOMPARE(file.write(content), content.size());
    }
    judge(name, run(m_dir.path(), {name, QStringLiteral("--info")}), code, reason, made);
    // Where nothing is made of what is hostile there is nothing new to draw.
    if (QTest::currentTestFailed() || (made == 0 && drawn == code && m_factor == 1))
        return;
    const QString picture = m_dir.filePath(QStringLiteral("map.png"));
    QFile::remove(picture);
    const Outcome outcome = run(m_dir.path(), {name, QStringLiteral("-o"), picture, QStringLiteral("--size=300x200"),
                                               QStringLiteral("--no-map")});
    judge(name, outcome, drawn, drawn == code ? reason : QString(),
          OUTLINE_TIMES * made);
    if (!QTest::currentTestFailed())
        QCOMPARE(QFileInfo::exists(picture), drawn == 0);
}

void tst_HostileFiles::dashedLines_data()
{
    QTest::addColumn<QString>("penStyle");
    for (const char *style : {"dash", "dot", "dash-dot", "dash-dot-dot"})
        QTest::newRow(style) << QString::fromLatin1(style);
}

// Each line right across the picture has a great many dashes, of which none may stay in memory.
void tst_HostileFiles::dashedLines()
{
    QFETCH(QString, penStyle);
    const int points = 10000 * m_factor;
    const QString name = m_dir.filePath(QStringLiteral("dashes.gpx"));
    {
        QByteArray zigzag;
        for (int i = 0; i < points; ++i)
            zigzag += "<trkpt lat='" + QByteArray::number(50 + double(i) / points) + "' lon='" + (i % 2 == 0 ? "8" : "9") + "'/>";
        QFile file(name);
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write("<gpx><trk><trkseg>" + zigzag + "</trkseg></trk></gpx>");
    }
    const QString picture = m_dir.filePath(QStringLiteral("map.png"));
    QFile::remove(picture);
    QStringList arguments{name, QStringLiteral("-o"), picture, QStringLiteral("--size=300x200"), QStringLiteral("--no-map")};
    arguments << QStringLiteral("--shape=linestring") << QStringLiteral("--pen-style=") + penStyle << QStringLiteral("--line-width=2");
    const Outcome outcome = run(m_dir.path(), arguments);
    judge(name, outcome, 0, QString(), OUTLINE_TIMES * POINT * 10000);
    if (!QTest::currentTestFailed())
        QVERIFY(QFileInfo::exists(picture));
}

void tst_HostileFiles::selections_data()
{
    QTest::addColumn<Make>("rows");
    QTest::addColumn<QByteArray>("track"); // what the file a.gps in the selection's folder holds
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("reason");
    QTest::addColumn<qint64>("made");
    QTest::addColumn<int>("drawn");

    constexpr int read = 0;
    constexpr int missing = 3;
    constexpr int malformed = 4;
    const QByteArray usual = gpx("");
    const auto row = [usual](const char *name, const Make &rows, int code, const char *reason, qint64 made = 0, int drawn = -1) {
        QTest::newRow(name) << rows << usual << code << QString::fromLatin1(reason) << made << (drawn < 0 ? code : drawn);
    };
    const auto track = [](const QByteArray &include, const QByteArray &style = {}, const QByteArray &attributes = {}) {
        return "<configuredTrack" + attributes + ">" + style + "<trk><include>" + include + "</include></trk></configuredTrack>";
    };
    const auto oneTrack = [=](const QByteArray &style, const QByteArray &attributes = {}) {
        return [=](int) { return track("a.gps", style, attributes); };
    };

    row(
        "names itself", [=](int) { return track("../hostile.xml"); }, malformed, "\"../hostile.xml\"");
    row(
        "names a file of the system", [=](int) { return track("../../../../../../../etc/passwd"); }, malformed, "passwd\"");
    row(
        "names a device", [=](int) { return track("/dev/zero"); }, malformed, "\"/dev/zero\"");
    row(
        "names a folder", [=](int) { return track(".."); }, malformed, "\"..\"");
    row(
        "names what is not there", [=](int) { return track("b.gps"); }, missing, "b.gps is missing");
    row(
        "holds a track beside its file's name",
        [](int) { return "<configuredTrack>" + gpx("", "<include>a.gps</include>").mid(5).chopped(6) + "</configuredTrack>"; },
        malformed, "more than the name");

    row(
        "levels", [](int f) { return QByteArray("<a>").repeated(100000 * f); }, malformed, "nested more than 256");
    row(
        "levels as many as may be", // two are around them
        [=](int) { return QByteArray("<a>").repeated(254) + QByteArray("</a>").repeated(254) + track("a.gps"); }, read, "");
    row(
        "one level more", [=](int) { return QByteArray("<a>").repeated(255) + QByteArray("</a>").repeated(255) + track("a.gps"); },
        malformed, "nested more than 256");
    row(
        "attributes", [](int f) { return "<configuredTrack" + attributes(30000 * f) + "/>"; }, malformed, "more than 1000 attributes");
    row("attributes as many as may be", oneTrack("", attributes(1000)), read, "");
    row("one attribute more", oneTrack("", attributes(1001)), malformed, "more than 1000 attributes");
    row("an entity that nobody knows", oneTrack("&e;"), malformed, "'e'");
    row("half a character", oneTrack("<x>\xe2\x82</x>"), malformed, ":1:42: a byte that does not belong to a text in UTF-8");

    for (const char *number : {"1e9", "-1e9", "1e308", "1e400", "nan", "inf", "99999999999999999999", "x"}) {
        const QByteArray value(number);
        row(qPrintable(QStringLiteral("widths of %1").arg(QLatin1String(number))),
            oneTrack("<pensize>" + value + "</pensize><halosize>" + value + "</halosize><displayOptions>stroke,fill</displayOptions>"),
            read, "");
        row(qPrintable(QStringLiteral("smoothing of %1").arg(QLatin1String(number))),
            oneTrack("", " smoothing='" + value + "' smoothingSteps='" + value + "'"), read, "");
        row(
            qPrintable(QStringLiteral("cropping of %1").arg(QLatin1String(number))),
            [=](int) { return "<croppingOpacity>" + value + "</croppingOpacity>" + track("a.gps"); }, read, "");
    }
    row("smoothing of the greatest number", oneTrack("", " smoothing='2147483647' smoothingSteps='2147483647'"), read, "");
    row("smoothing of the least number", oneTrack("", " smoothing='-2147483648' smoothingSteps='-2147483648'"), read, "");
    for (const char *color : {"#", "#zzzzzzzz", "#ffffffffffffffff", "#-1-1-1-1", "99999999999999999999"}) {
        const QByteArray value(color);
        row(qPrintable(QStringLiteral("colours of %1").arg(QLatin1String(color))),
            oneTrack("<color>" + value + "</color><fillcolor>" + value + "</fillcolor>"), read, "");
    }
    row(
        "a long text", [=](int f) { return track("a.gps", "<pensize>" + QByteArray(1000000 * f, '9') + "</pensize>"); }, read, "");

    // A tree takes 800 bytes for an element.
    row(
        "rows of one file", [=](int f) { return track("a.gps").repeated(2000 * f); }, read, "", 2000 * (TRACK + 4 * 800));
    row(
        "rows of nothing", [=](int f) { return track("a.gps") + QByteArray("<configuredTrack/>").repeated(10000 * f); }, read, "",
        10000 * (TRACK + 800));

    QTest::newRow("enclaves") << Make(oneTrack("")) << gpx("", QByteArray("<enclaves><trk>").repeated(5000)) << malformed
                              << QStringLiteral("nested more than 256 levels deep") << qint64(0) << malformed;
    const QByteArray enclaves = QByteArray("<enclaves><trk>").repeated(126) + QByteArray("</trk></enclaves>").repeated(126);
    QTest::newRow("enclaves as deep as may be")
        << Make(oneTrack("")) << gpx("", enclaves) << read << QString() << qint64(0) << read;
    QTest::newRow("a track file that includes another")
        << Make(oneTrack("")) << gpx("", "<include>../hostile.xml</include>") << read << QString() << qint64(0) << read;
}

void tst_HostileFiles::selections()
{
    QFETCH(Make, rows);
    QFETCH(QByteArray, track);
    QFETCH(int, code);
    QFETCH(QString, reason);
    QFETCH(qint64, made);
    QFETCH(int, drawn);
    const QString folder = m_dir.filePath(QStringLiteral("hostile.tracks"));
    QVERIFY(QDir(m_dir.path()).mkpath(folder));
    const QString name = m_dir.filePath(QStringLiteral("hostile.xml"));
    QVERIFY(KelTestArchive::write(folder + QStringLiteral("/a.gps"), track));
    QVERIFY(KelTestArchive::write(name, "<kelTracks><gpxtrack>" + rows(m_factor) + "</gpxtrack></kelTracks>"));
    const QString selection = QStringLiteral("--selection");
    const Outcome information = run(m_dir.path(), {selection, name, QStringLiteral("--info")});
    judge(name, information, code, reason, made);
    if (QTest::currentTestFailed())
        return;
    QVERIFY(!information.words.contains("root:") && !information.output.contains("root:"));
    const QString picture = m_dir.filePath(QStringLiteral("map.png"));
    QFile::remove(picture);
    const Outcome outcome =
        run(m_dir.path(), {selection, name, QStringLiteral("-o"), picture, QStringLiteral("--size=300x200"), QStringLiteral("--no-map")});
    judge(name, outcome, drawn, drawn == code ? reason : QString(), OUTLINE_TIMES * made);
    if (!QTest::currentTestFailed())
        QCOMPARE(QFileInfo::exists(picture), drawn == 0);
}

void tst_HostileFiles::nothingIsWrittenBesideAnArchive()
{
    QTemporaryDir inner(m_dir.filePath(QStringLiteral("inner-XXXXXX")));
    const QString name = inner.filePath(QStringLiteral("hostile.kmz"));
    {
        QFile file(name);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(archive({{.name = "../../escaped.kml", .content = kml("")}, {.name = "/tmp/escaped.kml", .content = kml("")}}));
    }
    const Outcome outcome = run(m_dir.path(), {name, QStringLiteral("--info")});
    QCOMPARE(outcome.code, 0);
    QCOMPARE(QDir(inner.path()).entryList(QDir::Files), QStringList{QStringLiteral("hostile.kmz")});
    QVERIFY(!QFileInfo::exists(m_dir.filePath(QStringLiteral("escaped.kml"))));
}

QTEST_GUILESS_MAIN(tst_HostileFiles)
#include "tst_HostileFiles.moc"
