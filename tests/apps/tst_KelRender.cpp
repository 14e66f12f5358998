// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelTestArchive.h>

#include <QBuffer>
#include <QColor>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QProcessEnvironment>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <QXmlStreamReader>
#include <QtTest>

#include <cmath>
#include <memory>
#include <utility>

#include <sys/stat.h>
#include <unistd.h>

/// kel-render as its users meet it: started as a program, judged by its exit code, its words and its files.
class tst_KelRender : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void helpNamesOptionsAndExitCodes();
    void versionIsPrinted();
    void manualPageNamesEveryOption();
    void helpThatCannotBePrinted();
    void wrongUse_data();
    void wrongUse();
    void unreadableInput_data();
    void unreadableInput();
    void filesCutOffAnywhere_data();
    void filesCutOffAnywhere();
    void pipesAreNoInputs();
    void pipesAreNoStores();
    void foldersThatMayNotBeEntered();
    void filesWithoutTracksAreExplained_data();
    void filesWithoutTracksAreExplained();
    void unwritableOutput_data();
    void unwritableOutput();
    void fileSizeLimitKeepsTheFormerFile();
    void readOnlyFileIsNotReplaced();
    void failingInputKeepsTheFormerFile();
    void formerFileIsReplacedAsAWhole();
    void linkedOutputStaysALink();
    void inputsAreNeverReplaced_data();
    void inputsAreNeverReplaced();
    void resultsBesideInputs_data();
    void resultsBesideInputs();
    void pictureInAReadOnlyFolder();
    void keepGoingDrawsTheRest();

    void formats_data();
    void formats();
    void formatOptionOverridesTheSuffix();
    void standardOutputGetsThePicture();
    void readerOfThePictureMayGoAway();
    void closedStandardStreams();
    void noDisplayIsNeeded();
    void pictureIsTheSameAtEveryDesk();
    void everyFileIsMentionedOnce();
    void quietSaysNothing();
    void noProgressInAPipe();
    void lineBreaksInFileNamesStayInOneLine();
    void namesAreNotObeyedByTerminals();
    void namesThatAreNoText_data();
    void namesThatAreNoText();
    void replacementCharactersAreText();

    void landAndSea();
    void darkMap();
    void trackLiesWhereItBelongs();
    void paddingLeavesTheBorderFree();
    void marginsLeaveRoomForTracks_data();
    void marginsLeaveRoomForTracks();
    void widestLinesShowTheMap_data();
    void widestLinesShowTheMap();
    void singleTrackHasTheUsersColor();
    void severalTracksHaveColorsOfTheirOwn();
    void storedDefaultStyleIsUsed();
    void dateLineFlightIsUnbroken();
    void boundsAcrossTheDateLine();
    void tracksOutsideThePictureAreTold_data();
    void tracksOutsideThePictureAreTold();
    void tracksBeyondTheMapAreTold_data();
    void tracksBeyondTheMapAreTold();
    void singlePlaceGetsSurroundings();
    void tracksAllAroundTheGlobe();
    void farAwayPointsDoNoHarm_data();
    void farAwayPointsDoNoHarm();

    void lineWidthGrowsWithTheScaleFactor();
    void dashesLeaveGaps();
    void polygonIsFilledAroundItsEnclave();
    void haloSurroundsTheTrack();
    void cropFadesTheMap_data();
    void cropFadesTheMap();
    void noMapIsTransparent();
    void jpegHasAWhiteGround();
    void overlaysCanBeLeftOut();
    void scaleBarHasTheRightLength();
    void vectorsHoldPaths();
    void largestPictureIsPossible();
    void extremePicturesAreDrawn_data();
    void extremePicturesAreDrawn();

    void ownMapPicture();
    void ownMapPictureMayBeBad_data();
    void ownMapPictureMayBeBad();
    void ownMapPictureMayBeCutOff();

    void infoTellsEverything();
    void infoOfAFlightTakesTheShortWay();
    void infoOfAWideTrackIsExact();
    void infoTellsTheTimesOfStoredTracks();
    void hugeFile();
    void exportSingleTrack();
    void exportSeveralTracks();
    void exportThatFails();
    void selectionRoundTrip();
    void selectionInTheWorkingDirectory();
    void selectionWithMissingTrack();
    void selectionWithDamagedTrack_data();
    void selectionWithDamagedTrack();
    void selectionWithManyMissingTracks_data();
    void selectionWithManyMissingTracks();
    void restOfASelection();
    void selectionThatIsNone_data();
    void selectionThatIsNone();
    void selectionThatCannotBeSaved();

    void beelinePlaces_data();
    void beelinePlaces();
    void beelineBetweenNoPlaces_data();
    void beelineBetweenNoPlaces();
    void beelineThatLacksAPlace();
    void beelineNames();
    void beelineCrossesTheDateLine();
    void kmlStylesAreKept();
    void kmzDrawsTheSameAsKml();
    void exampleTracksAllDraw();

private:
    struct Result
    {
        int code = -1;
        QByteArray out;
        QString err;

        [[nodiscard]] QStringList lines() const { return err.split(QLatin1Char('\n'), Qt::SkipEmptyParts); }
    };

    [[nodiscard]] Result run(const QStringList &arguments, const QString &redirectOutput = QString()) const;
    [[nodiscard]] Result runProgram(const QString &program, const QStringList &arguments,
                                    const QString &redirectOutput = QString()) const;
    [[nodiscard]] QString path(const QString &name) const { return m_dir->filePath(name); }
    [[nodiscard]] bool runAsNobody();
    QString write(const QString &name, const QByteArray &content) const;
    QString writeTrack(const QString &name, const QByteArray &points, const QByteArray &title = "Track") const;
    [[nodiscard]] QImage picture(const QStringList &arguments) const;
    [[nodiscard]] static QByteArray contentOf(const QString &fileName);
    [[nodiscard]] static QString example(const QString &name)
    {
        return QStringLiteral(KEL_EXAMPLES_DIR "/tracks/") + name;
    }

    std::unique_ptr<QTemporaryDir> m_dir;
    bool m_asNobody = false;
    QProcessEnvironment m_environment;
};

namespace
{

constexpr uid_t NOBODY = 65534;

const QColor SEA(0xc6, 0xdb, 0xe6);
const QColor LAND(0xf5, 0xf2, 0xea);
constexpr int GRATICULE = 40; // how far a line of the graticule changes the colour of the sea
const QColor DEFAULT_LINE(255, 145, 0);

/// A straight line along the equator, far from any coast, and bounds that show it 10 pixels to the degree.
const QByteArray EQUATOR = "0,-30 0,-10";
const QStringList EQUATOR_VIEW = {"--bounds=-5,-40,5,0", "--size=400x101", "--no-scale", "--no-attribution"};

int rowsOfColor(const QImage &image, int column, const QColor &color)
{
    int rows = 0;
    for (int y = 0; y < image.height(); ++y)
        rows += image.pixelColor(column, y) == color ? 1 : 0;
    return rows;
}

/// 32,768 pixels in one row, of which nobody sees any.
QByteArray tooWidePicture()
{
    QImage image(32768, 1, QImage::Format_Mono);
    image.fill(0);
    QBuffer buffer;
    image.save(&buffer, "PNG");
    return buffer.data();
}

bool near(const QColor &a, const QColor &b, int tolerance = 6)
{
    return std::abs(a.red() - b.red()) <= tolerance && std::abs(a.green() - b.green()) <= tolerance
        && std::abs(a.blue() - b.blue()) <= tolerance;
}

} // namespace

void tst_KelRender::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
    m_asNobody = false;
    m_environment = QProcessEnvironment::systemEnvironment();
    for (const char *name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        m_environment.remove(QString::fromLatin1(name));
    m_environment.insert("XDG_CONFIG_HOME", m_dir->filePath("config"));
    // The search for leaks itself crashes in programs that have written a JPEG picture and no text.
    m_environment.insert("ASAN_OPTIONS", "detect_leaks=0");
}

tst_KelRender::Result tst_KelRender::run(const QStringList &arguments, const QString &redirectOutput) const
{
    return runProgram(QStringLiteral(KEL_RENDER_PROGRAM), arguments, redirectOutput);
}

tst_KelRender::Result tst_KelRender::runProgram(const QString &program, const QStringList &arguments,
                                                const QString &redirectOutput) const
{
    QProcess process;
    process.setProcessEnvironment(m_environment);
    process.setWorkingDirectory(m_dir->path());
    process.setStandardInputFile(QProcess::nullDevice());
    if (!redirectOutput.isEmpty())
        process.setStandardOutputFile(redirectOutput);
    if (m_asNobody) {
        process.setChildProcessModifier([] {
            if (::setresuid(NOBODY, NOBODY, NOBODY) != 0)
                ::_exit(1);
        });
    }
    process.start(program, arguments);
    if (!process.waitForFinished(120000))
        return {};
    Result result;
    result.code = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : 1000;
    result.out = process.readAllStandardOutput();
    result.err = QString::fromUtf8(process.readAllStandardError());
    return result;
}

/// The superuser meets no access rights: from now on the program runs without that user's, and its folder is given away.
/// False where the program itself is out of reach then.
bool tst_KelRender::runAsNobody()
{
    if (::geteuid() != 0)
        return true;
    QStringList all{m_dir->path()};
    QDirIterator below(m_dir->path(), QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
    while (below.hasNext())
        all.append(below.next());
    for (const QString &name : std::as_const(all)) {
        if (::lchown(QFile::encodeName(name).constData(), NOBODY, NOBODY) != 0)
            return false;
    }
    m_asNobody = true;
    return run({"--version"}).code == 0;
}

QString tst_KelRender::write(const QString &name, const QByteArray &content) const
{
    QFile file(path(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("the test's own file %s could not be written", qPrintable(name));
    return file.fileName();
}

/// A GPX file with one track through "lat,lon lat,lon ...".
QString tst_KelRender::writeTrack(const QString &name, const QByteArray &points, const QByteArray &title) const
{
    QByteArray xml = "<gpx><trk><name>" + title + "</name><trkseg>";
    for (const QByteArray &point : points.split(' ')) {
        const QList<QByteArray> pair = point.split(',');
        xml += "<trkpt lat=\"" + pair.at(0) + "\" lon=\"" + pair.at(1) + "\"/>";
    }
    return write(name, xml + "</trkseg></trk></gpx>");
}

QByteArray tst_KelRender::contentOf(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// The picture that these arguments give.
QImage tst_KelRender::picture(const QStringList &arguments) const
{
    const QString file = path("picture.png");
    const Result result = run(arguments + QStringList{"-o", file});
    if (result.code != 0)
        qWarning("exit code %d: %s", result.code, qPrintable(result.err));
    return QImage(file).convertToFormat(QImage::Format_ARGB32);
}

// ---------------------------------------------------------------------------------------------------- what it says

void tst_KelRender::helpNamesOptionsAndExitCodes()
{
    const Result result = run({"--help"});
    QCOMPARE(result.code, 0);
    QVERIFY(result.err.isEmpty());
    for (const char *text : {"--output", "--size", "--beeline", "--save-selection", "--crop", "Exit codes:", "  7  "})
        QVERIFY2(result.out.contains(text), text);
    const QList<QByteArray> lines = result.out.split('\n');
    for (const QByteArray &line : lines)
        QVERIFY2(QString::fromUtf8(line).size() <= 120, line.constData());
}

void tst_KelRender::versionIsPrinted()
{
    const Result result = run({"--version"});
    QCOMPARE(result.code, 0);
    QVERIFY(QRegularExpression("^kel-render \\d+\\.\\d+\\.\\d+\n$").match(QString::fromUtf8(result.out)).hasMatch());
}

void tst_KelRender::manualPageNamesEveryOption()
{
    QString manual = QString::fromUtf8(contentOf(QStringLiteral(KEL_EXAMPLES_DIR "/../docs/man/kel-render.1")));
    QVERIFY(!manual.isEmpty());
    manual.remove(QLatin1Char('\\'));
    const QString help = QString::fromUtf8(run({"--help"}).out);
    const QRegularExpression option("^ +(?:-\\w, |    )--([a-z-]+)", QRegularExpression::MultilineOption);
    int count = 0;
    for (auto matches = option.globalMatch(help); matches.hasNext(); ++count) {
        const QString name = "--" + matches.next().captured(1);
        QVERIFY2(manual.contains(name), qPrintable(name));
    }
    QVERIFY(count > 30);
    for (int code = 0; code <= 7; ++code)
        QVERIFY(manual.contains(QStringLiteral(".B %1\n").arg(code)));
}

void tst_KelRender::helpThatCannotBePrinted()
{
    for (const char *option : {"--help", "--version"}) {
        const Result result = run({QString::fromLatin1(option)}, "/dev/full");
        QCOMPARE(result.code, 7);
        QCOMPARE(result.lines().size(), 1);
        QVERIFY2(result.err.contains(QLatin1String("standard output: ")), qPrintable(result.err));
    }
}

void tst_KelRender::wrongUse_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("message");

    const auto row = [](const char *name, const QString &arguments, const QString &message) {
        QTest::newRow(name) << (arguments.isEmpty() ? QStringList() : arguments.split(QLatin1Char('|'))) << message;
    };
    row("nothing at all", QString(), "no tracks named");
    row("no result", "track.gpx", "no result named");
    row("no input", "-o|out.png", "no tracks named");
    row("unknown option", "track.gpx|-o|out.png|--frobnicate", "frobnicate");
    row("option without its value", "track.gpx|-o", "--help");
    row("option of the toolkit", "track.gpx|-o|out.png|-platform|xcb", "Unknown option");
    row("switch with a value", "track.gpx|-o|out.png|--no-map=1", "no-map");
    row("empty name of an input", "track.gpx||-o|out.png", "the name of an input is empty");
    row("empty name of a picture", "track.gpx|-o|", "--output needs the name of a file");
    row("empty name of an export", "track.gpx|-o|out.png|--export=", "--export needs the name of a file");
    row("empty name of a selection", "track.gpx|-o|out.png|--selection=", "--selection needs the name of a file");
    row("empty name of a map", "track.gpx|-o|out.png|--map=", "--map needs the name of a file");
    row("empty name of a stored selection", "track.gpx|-o|out.png|--save-selection=",
        "--save-selection needs the name of a file");
    row("two pictures", "track.gpx|-o|out.png|-o|b.png", "--output is given 2 times");
    row("two selections", "--selection|a.xml|--selection|b.xml|-o|out.png", "--selection is given 2 times");
    row("selection to standard output", "track.gpx|--save-selection|-", "name a file");
    row("empty size", "track.gpx|-o|out.png|--size=", "--size \"\" is not a size");
    row("empty colour", "track.gpx|-o|out.png|--line-color=", "--line-color \"\" is not a colour");
    row("unknown format", "track.gpx|-o|out.png|--format|bmp", "use one of png, jpg, webp, pdf, svg");
    row("size without height", "track.gpx|-o|out.png|--size|400", "--size 400");
    row("size of letters", "track.gpx|-o|out.png|--size|axb", "1600x1000");
    row("size too small", "track.gpx|-o|out.png|--size|15x400", "16 to");
    row("size too wide", "track.gpx|-o|out.png|--size|32768x16", "32767");
    row("size too wide for WebP", "track.gpx|-o|out.webp|--size|16384x16", "16383");
    row("size too large as a whole", "track.gpx|-o|out.png|--size|20000x20000", "100 million");
    row("size beyond all numbers", "track.gpx|-o|out.png|--size|99999999999x10", "--size");
    row("scale factor 0", "track.gpx|-o|out.png|--scale-factor|0", "--scale-factor 0");
    row("scale factor that is no number", "track.gpx|-o|out.png|--scale-factor|nan", "0.05 to 20");
    row("negative padding", "track.gpx|-o|out.png|--padding=-1", "--padding -1");
    row("bounds of three numbers", "track.gpx|-o|out.png|--bounds|1,2,3", "SOUTH,WEST,NORTH,EAST");
    row("bounds upside down", "track.gpx|-o|out.png|--bounds|10,0,5,10", "south below north");
    row("bounds without width", "track.gpx|-o|out.png|--bounds|0,5,10,5", "--bounds");
    row("bounds without width at the date line", "track.gpx|-o|out.png|--bounds|0,180,10,-180", "--bounds");
    row("map bounds without width at the date line", "track.gpx|-o|out.png|--map|m.png|--map-bounds|0,180,10,-180",
        "--map-bounds");
    row("bounds off the globe", "track.gpx|-o|out.png|--bounds|0,0,10,181", "--bounds");
    row("bounds beyond the pole", "track.gpx|-o|out.png|--bounds|0,0,91,10", "--bounds");
    row("bounds above Mercator's edge", "track.gpx|-o|out.png|--bounds|86,0,89,10", "--bounds");
    row("an area of millimetres", "track.gpx|-o|out.png|--bounds|1,1,1.0000001,1.0000001|--size|20000x100",
        "too small");
    row("a tower of worlds", "track.gpx|-o|out.png|--bounds|-85,-180,85,180|--size|100x1200", "too far beyond the poles");
    row("a tower around the track", "track.gpx|-o|out.svg|--size|16x32767", "too far beyond the poles");
    row("a tower without a map", "track.gpx|-o|out.png|--no-map|--size|16x32767", "too far beyond the poles");
    row("a row of worlds", "track.gpx|-o|out.png|--bounds|-85,-180,85,180|--size|32767x16", "more than 100 times");
    row("colour", "track.gpx|-o|out.png|--line-color|reddish", "reddish is not a colour");
    row("line width", "track.gpx|-o|out.png|--line-width|thick", "--line-width thick");
    row("pen style", "track.gpx|-o|out.png|--pen-style|wavy", "dash-dot-dot");
    row("display options", "track.gpx|-o|out.png|--display-options|stroke,glow", "--display-options stroke,glow");
    row("marker", "track.gpx|-o|out.png|--marker|heart", "--marker heart");
    row("shape", "track.gpx|-o|out.png|--shape|blob", "--shape blob");
    row("smoothing above 100", "track.gpx|-o|out.png|--smoothing|101", "--smoothing 101");
    row("smoothing in no piece", "track.gpx|-o|out.png|--smoothing-steps|0", "--smoothing-steps 0");
    row("crop above 255", "track.gpx|-o|out.png|--crop|256", "--crop 256");
    row("crop above 100 percent", "track.gpx|-o|out.png|--crop|101%", "--crop 101%");
    row("quality", "track.gpx|-o|out.jpg|--quality|0", "--quality 0");
    row("map without its bounds", "track.gpx|-o|out.png|--map|map.png", "--map-bounds");
    row("map bounds without a map", "track.gpx|-o|out.png|--map-bounds|0,0,1,1", "--map ");
    row("map and no map", "track.gpx|-o|out.png|--map|m.png|--map-bounds|0,0,1,1|--no-map", "contradict");
    row("two things on standard output", "track.gpx|-o|-|--info", "standard output");
    row("beeline to nowhere", "-o|out.png|--beeline|Sydney", "--beeline needs two places");
    row("beeline between no places", "-o|out.png|--beeline|Sydney|Atlantis", "\"Atlantis\" is no place");
    row("beeline off the globe", "-o|out.png|--beeline|Sydney|N91 E0", "\"N91 E0\" is no place");
    row("beeline as one word", "-o|out.png|--beeline=Sydney|LA", "--beeline needs two places");
    row("attribution with a control character", QStringLiteral("track.gpx|-o|out.svg|--attribution|a\x01"), "control character");
    row("attribution with half a character", "track.gpx|-o|out.svg|--attribution|a" + QString(QChar(0xfffe)), "control character");
    const QString endless(100'000, QLatin1Char('9'));
    row("endless size", "track.gpx|-o|out.png|--size|" + endless, "--size 999");
    row("endless sides", "track.gpx|-o|out.png|--size|" + QString(100'000, '0') + "1x1", "--size 000");
    row("endless colour", "track.gpx|-o|out.png|--line-color|" + endless, "is not a colour");
    row("endless marker", "track.gpx|-o|out.png|--marker|disk" + QString(",disk").repeated(20'000) + ",heart", "--marker disk,");
    row("endless option", "track.gpx|-o|out.png|--" + endless, "--help");
    row("endless place", "-o|out.png|--beeline|Sydney|" + endless, "is no place");
    row("name before any beeline", "-o|out.png|--name|x|--beeline|LA|Sydney", "put the --beeline first");
}

void tst_KelRender::wrongUse()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, message);

    writeTrack("track.gpx", EQUATOR);
    const Result result = run(QStringList{"--quiet"} + arguments);
    QCOMPARE(result.code, 2);
    QCOMPARE(result.lines().size(), 1);
    QVERIFY2(result.err.startsWith(QLatin1String("kel-render: ")), qPrintable(result.err));
    QVERIFY2(result.err.contains(message), qPrintable(result.err));
    QVERIFY2(result.err.size() < 500, qPrintable(result.err.left(500)));
    QVERIFY(result.out.isEmpty());
    QVERIFY(!QFileInfo::exists(path("out.png")));
}

void tst_KelRender::unreadableInput_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content"); // null: no such file
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("message");

    QTest::newRow("missing") << "a.gpx" << QByteArray() << 3 << "a.gpx: no such file or folder";
    QTest::newRow("missing folder") << "none/a.gpx" << QByteArray() << 3 << "none/a.gpx: no such file";
    QTest::newRow("empty GPX") << "a.gpx" << QByteArray("") << 4 << "a.gpx: the file is empty";
    QTest::newRow("empty KML") << "a.kml" << QByteArray("") << 4 << "a.kml: the file is empty";
    QTest::newRow("empty KMZ") << "a.kmz" << QByteArray("") << 4 << "a.kmz: the file is empty";
    QTest::newRow("truncated GPX") << "a.gpx" << QByteArray("<gpx>\n<trk>\n<trkseg><trkpt lat=\"1\" lon=\"2\"/>\n") << 4
                                   << "a.gpx:";
    QTest::newRow("tags that do not match") << "a.gpx" << QByteArray("<gpx>\n  <trk></rte>\n</gpx>") << 4 << "a.gpx:2:";
    QTest::newRow("truncated KML") << "a.kml" << QByteArray("<kml>\n<Document>\n<Placemark>\n") << 4 << "a.kml:";
    QTest::newRow("binary GPX") << "a.gpx" << QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0\0\xff\xfe", 20) << 4
                                << "a.gpx:1:";
    QTest::newRow("cut off behind a line") << "a.gpx" << QByteArray("<gpx>\n") << 4 << "a.gpx:2:1: ";
    QTest::newRow("cut off within a line") << "a.gpx" << QByteArray("<gpx>\n<trk") << 4 << "a.gpx:2:4: ";
    QTest::newRow("KML cut off") << "a.kml" << QByteArray("<kml>\n<Doc") << 4 << "a.kml:2:4: ";
    const QByteArray deep = QByteArray("<Folder>").repeated(200000) + QByteArray("</Folder>").repeated(200000);
    QTest::newRow("GPX nested too deep")
        << "a.gpx" << QByteArray("<gpx>" + deep + "</gpx>") << 4 << "levels deep";
    QTest::newRow("KML nested too deep")
        << "a.kml" << QByteArray("<kml>" + deep + "</kml>") << 4 << "levels deep";
    const auto archive = [](const QByteArray &kml) {
        KelTestArchive::Entry entry;
        entry.name = "doc.kml";
        entry.content = kml;
        return entry;
    };
    KelTestArchive::Entry damaged = archive("<kml><Document/></kml>");
    damaged.wrongChecksum = true;
    KelTestArchive::Entry encrypted = archive("<kml><Document/></kml>");
    encrypted.encryptedFlag = true;
    KelTestArchive::Entry bomb = archive({});
    bomb.packed = KelTestArchive::deflatedZeros(qint64(257) << 20);
    QTest::newRow("damaged KML in a KMZ") << "a.kmz" << KelTestArchive::build({damaged}) << 4 << "is damaged";
    QTest::newRow("encrypted KML in a KMZ") << "a.kmz" << KelTestArchive::build({encrypted}) << 4 << "is encrypted";
    QTest::newRow("KML that unpacks to too much") << "a.kmz" << KelTestArchive::build({bomb}) << 4 << "256 MiB";
    QTest::newRow("empty KML in a KMZ") << "a.kmz" << KelTestArchive::build({archive({})}) << 4 << "is empty";
    QTest::newRow("KML cut off in a KMZ")
        << "a.kmz" << KelTestArchive::build({archive("<kml>\n<Doc")}) << 4 << "a.kmz:2:4: ";
    QTest::newRow("KMZ that is no archive") << "a.kmz" << QByteArray("PK\x03\x04 and no more") << 4 << "a.kmz: ";
    QTest::newRow("another kind of file") << "a.txt" << QByteArray("text") << 5 << "use *.gpx, *.kml, *.kmz";
    QTest::newRow("no suffix") << "track" << QByteArray("<gpx/>") << 5 << "track: not a kind of file";
}

void tst_KelRender::unreadableInput()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    QFETCH(int, code);
    QFETCH(QString, message);

    if (!content.isNull())
        write(name, content);
    const Result result = run({name, "-o", "out.png"});
    QCOMPARE(result.code, code);
    QCOMPARE(result.lines().size(), 1);
    QVERIFY2(result.err.contains(message), qPrintable(result.err));
    QVERIFY(!QFileInfo::exists(path("out.png")));
    if (name.endsWith(QLatin1String(".gpx")) && code == 4 && !content.isEmpty()) {
        const QRegularExpression place("^kel-render: a\\.gpx:[1-9]\\d*:[1-9]\\d*: \\S");
        QVERIFY2(place.match(result.err).hasMatch(), qPrintable(result.err));
    }
}

void tst_KelRender::filesCutOffAnywhere_data()
{
    QTest::addColumn<QString>("name");

    for (const char *name : {"city-walk.gpx", "planned-route.gpx", "tour.kml", "tour.kmz"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

/// Never a part of a track, never a crash: one line.
void tst_KelRender::filesCutOffAnywhere()
{
    QFETCH(QString, name);

    const QByteArray whole = contentOf(example(name)).trimmed();
    QVERIFY(whole.size() > 1000);
    const bool archive = name.endsWith(QLatin1String("kmz"));
    const QRegularExpression line(archive ? "^kel-render: cut-tour\\.kmz: \\S.*\n$"
                                          : "^kel-render: cut-[a-z-]+\\.[a-z]+:[1-9]\\d*:[1-9]\\d*: \\S.*\n$");
    for (const double part : {0.0005, 0.003, 0.02, 0.1, 0.3, 0.55, 0.8, 0.999}) {
        write("cut-" + name, whole.left(std::max(1, static_cast<int>(whole.size() * part))));
        const Result result = run({"cut-" + name, "-o", "out.png"});
        QCOMPARE(result.code, 4);
        QVERIFY2(line.match(result.err).hasMatch(), qPrintable(result.err));
    }
    QVERIFY(!QFileInfo::exists(path("out.png")));
}

void tst_KelRender::pipesAreNoInputs()
{
    writeTrack("track.gpx", EQUATOR);
    QCOMPARE(::mkfifo(QFile::encodeName(path("pipe.gpx")).constData(), 0600), 0);
    const Result track = run({"pipe.gpx", "-o", "out.png"});
    QCOMPARE(track.code, 3);
    QCOMPARE(track.lines().size(), 1);
    QVERIFY2(track.err.contains(QLatin1String("pipe.gpx: cannot be read: a pipe")), qPrintable(track.err));
    for (const QStringList &arguments :
         {QStringList{"--map=pipe.gpx", "--map-bounds=0,0,1,1"}, QStringList{"--selection=pipe.gpx"}}) {
        const Result result = run(arguments + QStringList{"track.gpx", "-q", "-o", "out.png"});
        QCOMPARE(result.code, 3);
        QCOMPARE(result.lines().size(), 1);
        QVERIFY2(result.err.contains(QLatin1String("pipe.gpx: ")), qPrintable(result.err));
    }
}

void tst_KelRender::pipesAreNoStores()
{
    writeTrack("track.gpx", EQUATOR);
    QCOMPARE(::mkfifo(QFile::encodeName(path("pipe.xml")).constData(), 0600), 0);
    const Result selection = run({"track.gpx", "-q", "--save-selection=pipe.xml"});
    QCOMPARE(selection.code, 7);
    QCOMPARE(selection.lines().size(), 1);
    QVERIFY2(selection.err.contains(QLatin1String("pipe.xml: the selection was not saved: this is a pipe")),
             qPrintable(selection.err));
    QVERIFY(!QFileInfo::exists(path("pipe.tracks")));

    QVERIFY(QDir(m_dir->path()).mkpath("config/Kel"));
    const QString settings = path("config/Kel/KelGeoLocation.conf");
    QCOMPARE(::mkfifo(QFile::encodeName(settings).constData(), 0600), 0);
    const Result picture = run({"track.gpx", "-q", "-o", "out.png"});
    QCOMPARE(picture.code, 0);
    QCOMPARE(picture.lines(), QStringList("kel-render: warning: " + settings + ": the settings are not read: this is no file"));
    QVERIFY(!QImage(path("out.png")).isNull());
}

void tst_KelRender::foldersThatMayNotBeEntered()
{
    QVERIFY(QDir(m_dir->path()).mkdir("closed"));
    writeTrack("closed/track.gpx", EQUATOR);
    QFile closed(path("closed"));
    QVERIFY(closed.setPermissions(QFile::Permissions()));
    if (!runAsNobody())
        QSKIP("nobody but the superuser may run the program");
    const Result file = run({"closed/track.gpx", "-o", "out.png"});
    const Result folder = run({"closed", "-o", "out.png"});
    QVERIFY(closed.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    QCOMPARE(file.code, 3);
    QVERIFY2(file.err.contains(QLatin1String("permissions")), qPrintable(file.err));
    QCOMPARE(folder.code, 3);
    QVERIFY2(folder.err.contains(QLatin1String("permissions")), qPrintable(folder.err));
}

void tst_KelRender::filesWithoutTracksAreExplained_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("message");

    QTest::newRow("only waypoints") << "a.gpx" << QByteArray("<gpx><wpt lat=\"1\" lon=\"2\"/></gpx>") << "waypoints";
    QTest::newRow("plain route points") << "a.gpx" << QByteArray("<gpx><rte><rtept lat=\"1\" lon=\"2\"/></rte></gpx>")
                                        << "plain route points";
    QTest::newRow("tracks without points") << "a.gpx" << QByteArray("<gpx><trk><trkseg/></trk></gpx>") << "points";
    QTest::newRow("nothing in it") << "a.gpx" << QByteArray("<gpx/>") << "no tracks";
    QTest::newRow("not GPX at all") << "a.gpx" << QByteArray("<html><body/></html>") << "html";
    KelTestArchive::Entry text;
    text.name = "readme.txt";
    text.content = "no KML";
    QTest::newRow("archive without KML") << "a.kmz" << KelTestArchive::build({text}) << "no .kml entry";
    QTest::newRow("no Document")
        << "a.kml" << QByteArray("<kml><Placemark><Point><coordinates>1,2</coordinates></Point></Placemark></kml>")
        << "Document";
    QTest::newRow("no placemarks") << "a.kml" << QByteArray("<kml><Document/></kml>") << "no placemarks";
    QTest::newRow("placemarks without coordinates")
        << "a.kml" << QByteArray("<kml><Document><Placemark/></Document></kml>") << "coordinates";
}

void tst_KelRender::filesWithoutTracksAreExplained()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    QFETCH(QString, message);

    write(name, content);
    const Result alone = run({name, "-o", "out.png"});
    QCOMPARE(alone.code, 6);
    QCOMPARE(alone.lines().size(), 2);
    QVERIFY2(alone.lines().at(0).startsWith(QStringLiteral("kel-render: warning: %1: 0 tracks: ").arg(name)),
             qPrintable(alone.err));
    QVERIFY2(alone.lines().at(0).contains(message), qPrintable(alone.err));
    QVERIFY2(alone.lines().at(1).contains(QLatin1String("nothing to draw")), qPrintable(alone.err));
    QVERIFY(!QFileInfo::exists(path("out.png")));

    // Beside a file with tracks it is no more than a warning.
    const Result beside = run({name, writeTrack("b.gpx", EQUATOR), "-o", "out.png"});
    QCOMPARE(beside.code, 0);
    QVERIFY(beside.err.contains(message));
    QVERIFY(QFileInfo::exists(path("out.png")));
}

void tst_KelRender::unwritableOutput_data()
{
    QTest::addColumn<QString>("target");
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("message");

    QTest::newRow("unknown suffix") << "out.gif" << 5 << "out.gif: a .gif file cannot be written";
    QTest::newRow("no suffix") << "out" << 5 << "the name has no suffix";
    QTest::newRow("missing folder") << "none/out.png" << 7 << "create the folder first";
    QTest::newRow("a file where a folder should be") << "track.gpx/out.png" << 7 << "track.gpx/out.png";
    QTest::newRow("a folder") << "folder.png" << 7 << "this is a folder";
    QTest::newRow("full device") << "/dev/full" << 7 << "free some space";
}

void tst_KelRender::unwritableOutput()
{
    QFETCH(QString, target);
    QFETCH(int, code);
    QFETCH(QString, message);

    const QString track = writeTrack("track.gpx", EQUATOR);
    const QByteArray before = contentOf(track);
    QVERIFY(QDir(m_dir->path()).mkdir("folder.png"));
    QStringList arguments{track, "-q", "-o", target};
    if (target.startsWith(QLatin1String("/dev")))
        arguments << "--format"
                  << "png";
    const Result result = run(arguments);
    QCOMPARE(result.code, code);
    QCOMPARE(result.lines().size(), 1);
    QVERIFY2(result.err.contains(message), qPrintable(result.err));
    QCOMPARE(contentOf(track), before);
    QCOMPARE(QDir(m_dir->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             (QStringList{"folder.png", "track.gpx"}));
}

void tst_KelRender::fileSizeLimitKeepsTheFormerFile()
{
    writeTrack("track.gpx", EQUATOR);
    write("out.png", "the former picture");
    // The shell's limit is in blocks of 1024 bytes; the picture is larger, the scratch files of a build with sanitizers
    // are not.
    const Result result = runProgram(
        "/bin/bash", {"-c", "ulimit -f 1; exec \"$0\" track.gpx -q -o out.png", QStringLiteral(KEL_RENDER_PROGRAM)});
    QCOMPARE(result.code, 7);
    QCOMPARE(result.lines().size(), 1);
    QVERIFY2(result.err.contains(QLatin1String("ulimit")), qPrintable(result.err));
    QCOMPARE(contentOf(path("out.png")), QByteArray("the former picture"));
    QCOMPARE(QDir(m_dir->path()).entryList(QDir::Files | QDir::Hidden).size(), 2);
}

void tst_KelRender::readOnlyFileIsNotReplaced()
{
    writeTrack("track.gpx", EQUATOR);
    QFile file(write("out.png", "kept"));
    QVERIFY(file.setPermissions(QFile::ReadOwner));
    if (!runAsNobody())
        QSKIP("nobody but the superuser may run the program");
    const Result result = run({"track.gpx", "-q", "-o", "out.png"});
    QCOMPARE(result.code, 7);
    QCOMPARE(contentOf(file.fileName()), QByteArray("kept"));
}

void tst_KelRender::failingInputKeepsTheFormerFile()
{
    write("out.png", "the former picture");
    writeTrack("good.gpx", EQUATOR);
    write("bad.gpx", "<gpx>");
    const Result result = run({"good.gpx", "bad.gpx", "-o", "out.png"});
    QCOMPARE(result.code, 4);
    QCOMPARE(contentOf(path("out.png")), QByteArray("the former picture"));
}

void tst_KelRender::formerFileIsReplacedAsAWhole()
{
    QFile former(write("out.png", QByteArray(1000000, 'x')));
    QVERIFY(former.setPermissions(QFile::ReadOwner | QFile::WriteOwner));
    QVERIFY(!picture({writeTrack("track.gpx", EQUATOR)}).isNull());
    const Result result = run({"track.gpx", "-o", "out.png"});
    QCOMPARE(result.code, 0);
    QVERIFY(contentOf(former.fileName()) == contentOf(path("picture.png")));
    // With the permissions that the user had given it.
    QVERIFY(!(QFileInfo(former.fileName()).permissions() & (QFile::ReadGroup | QFile::ReadOther)));
}

void tst_KelRender::linkedOutputStaysALink()
{
    QVERIFY(QDir(m_dir->path()).mkdir("real"));
    const QString real = write("real/out.png", "former");
    QVERIFY(QFile::link(real, path("out.png")));
    QCOMPARE(run({writeTrack("track.gpx", EQUATOR), "-o", "out.png"}).code, 0);
    QVERIFY(QFileInfo(path("out.png")).isSymLink());
    QVERIFY(!QImage(real).isNull());
}

void tst_KelRender::inputsAreNeverReplaced_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QString>("kept");

    QTest::newRow("picture over a track") << "track.gpx -o track.gpx --format svg" << "track.gpx";
    QTest::newRow("by another name") << "track.gpx -o ./folder/../track.gpx --format svg" << "track.gpx";
    QTest::newRow("over a link to a track") << "track.gpx -o link.svg" << "track.gpx";
    QTest::newRow("over a track of a folder") << "folder -o folder/track.gpx --format png" << "folder/track.gpx";
    QTest::newRow("picture over the own map")
        << "track.gpx --map map.png --map-bounds -5,-40,5,0 -o map.png" << "map.png";
    QTest::newRow("picture over the selection") << "--selection trip.xml -o trip.xml --format svg" << "trip.xml";
    QTest::newRow("selection over a track") << "track.gpx --save-selection track.gpx" << "track.gpx";
    QTest::newRow("selection over the own map")
        << "track.gpx --map map.png --map-bounds -5,-40,5,0 --save-selection map.png" << "map.png";
    QTest::newRow("picture and selection") << "track.gpx -o new.svg --save-selection ./new.svg" << "new.svg";
    QTest::newRow("picture and export") << "track.gpx -o new.gpx --format png --export new.gpx" << "new.gpx";
    QTest::newRow("selection and export") << "track.gpx --save-selection new.gpx --export new.gpx" << "new.gpx";
    QTest::newRow("export over its track") << "track.gpx --export track.gpx" << "track.gpx";
    QTest::newRow("export over a file of waypoints") << "places.gpx track.gpx --export places.gpx" << "places.gpx";
    QTest::newRow("export over a broken file") << "broken.gpx track.gpx -k --export broken.gpx" << "broken.gpx";
    QTest::newRow("export of a beeline over a broken file")
        << "broken.gpx -k --beeline Sydney Honolulu --export broken.gpx" << "broken.gpx";
    QTest::newRow("picture over a broken file") << "broken.gpx track.gpx -k -o broken.gpx --format png" << "broken.gpx";
    QTest::newRow("selection over a broken file") << "broken.gpx track.gpx -k --save-selection broken.gpx" << "broken.gpx";
    QTest::newRow("several exports over a track") << "track.gpx folder --export track.gpx" << "track.gpx";
    QTest::newRow("export over a track of a folder") << "folder --export ./folder/track.gpx" << "folder/track.gpx";
    QTest::newRow("up and down behind a link") << "track.gpx --export up/../track.gpx" << "track.gpx";
    QTest::newRow("input behind a link") << "up/../track.gpx --export folder/track.gpx" << "folder/track.gpx";
    QTest::newRow("export over a link to a track") << "track.gpx --export link.gpx" << "track.gpx";
    QTest::newRow("export over a second name of a track") << "track.gpx --export second.gpx" << "track.gpx";
    QTest::newRow("input by a link") << "link.gpx --export track.gpx" << "track.gpx";
    QTest::newRow("export over the selection") << "--selection trip.gpx --export trip.gpx" << "trip.gpx";
    QTest::newRow("export over the own map")
        << "track.gpx --map map.gpx --map-bounds -5,-40,5,0 --export map.gpx" << "map.gpx";
    QTest::newRow("selection over a link to the selection") << "--selection trip.xml --save-selection link.xml" << "trip.xml";
    QTest::newRow("picture over a stored track") << "--selection trip.xml -o trip.tracks/track.gps --format png"
                                                 << "trip.tracks/track.gps";
    QTest::newRow("picture over a second name of a stored track") << "--selection trip.xml -o stored.png"
                                                                  << "trip.tracks/track.gps";
    QTest::newRow("export among stored tracks") << "--selection trip.xml --export trip.tracks/new.gpx"
                                                << "trip.tracks/track.gps";
    QTest::newRow("picture among tracks that are about to be stored")
        << "track.gpx --save-selection new.xml -o new.tracks/track.gps --format png" << "track.gpx";
}

void tst_KelRender::inputsAreNeverReplaced()
{
    QFETCH(QString, arguments);
    QFETCH(QString, kept);

    QVERIFY(QDir(m_dir->path()).mkdir("folder"));
    writeTrack("track.gpx", EQUATOR);
    writeTrack("folder/track.gpx", EQUATOR);
    QVERIFY(QFile::link(path("track.gpx"), path("link.svg")));
    QVERIFY(QFile::link(path("track.gpx"), path("link.gpx")));
    QVERIFY(QDir(m_dir->path()).mkpath("folder/inner"));
    QVERIFY(QFile::link(path("folder/inner"), path("up")));
    write("places.gpx", "<gpx><wpt lat=\"1\" lon=\"2\"><name>precious</name></wpt></gpx>");
    write("broken.gpx", "<gpx><trk><name>precious</name><trkseg>");
    for (const char *selection : {"trip.xml", "trip.gpx"})
        QCOMPARE(run({"track.gpx", "--save-selection", selection, "-q"}).code, 0);
    QVERIFY(QFile::link(path("trip.xml"), path("link.xml")));
    for (const auto &[former, second] : {std::pair("track.gpx", "second.gpx"), std::pair("trip.tracks/track.gps", "stored.png")})
        QCOMPARE(::link(path(former).toLocal8Bit().constData(), path(second).toLocal8Bit().constData()), 0);
    QImage map(40, 10, QImage::Format_RGB32);
    map.fill(Qt::green);
    QVERIFY(map.save(path("map.png")));
    QVERIFY(QFile::copy(path("map.png"), path("map.gpx")));

    const auto files = [this] {
        QStringList names;
        QDirIterator below(m_dir->path(), QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
        while (below.hasNext())
            names.append(below.next());
        names.sort();
        return names;
    };
    const QStringList filesBefore = files();
    const QByteArray before = contentOf(path(kept));
    const Result result = run(arguments.split(QLatin1Char(' ')) + QStringList{"-q"});
    QCOMPARE(result.code, 2);
    QCOMPARE(result.lines().size(), 1);
    QVERIFY2(result.err.contains(QLatin1String("nothing was written")), qPrintable(result.err));
    QCOMPARE(contentOf(path(kept)), before);
    QCOMPARE(files(), filesBefore);
}

/// What the check of names must not forbid.
void tst_KelRender::resultsBesideInputs_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QString>("written");

    QTest::newRow("export beside its track") << "track.gpx --export new.gpx" << "new.gpx";
    QTest::newRow("the same name in another folder") << "track.gpx --export folder/track.gpx" << "folder/track.gpx";
    QTest::newRow("a file of the folder that is none of tracks") << "folder -o folder/track.png" << "folder/track.png";
    QTest::newRow("all results") << "track.gpx --export new.gpx --save-selection new.xml -o new.png" << "new.png";
    QTest::newRow("selection over itself") << "--selection trip.xml --save-selection trip.xml" << "trip.xml";
    QTest::newRow("selection over itself by another name")
        << "--selection trip.xml --save-selection folder/../trip.xml" << "trip.xml";
    QTest::newRow("numbered exports around the other results")
        << "track.gpx folder --export new.gpx --save-selection new_2.gpx" << "new_3.gpx";
}

void tst_KelRender::resultsBesideInputs()
{
    QFETCH(QString, arguments);
    QFETCH(QString, written);

    QVERIFY(QDir(m_dir->path()).mkdir("folder"));
    const QByteArray track = contentOf(writeTrack("track.gpx", EQUATOR));
    writeTrack("folder/own.gpx", EQUATOR);
    QCOMPARE(run({"track.gpx", "--save-selection=trip.xml", "-q"}).code, 0);
    const Result result = run(arguments.split(QLatin1Char(' ')) + QStringList{"-q"});
    QCOMPARE(result.err, QString());
    QCOMPARE(result.code, 0);
    QVERIFY(QFileInfo::exists(path(written)));
    QCOMPARE(contentOf(path("track.gpx")), track);
    if (QFileInfo::exists(path("new_2.gpx")))
        QVERIFY(contentOf(path("new_2.gpx")).contains("kelTracks"));
}

void tst_KelRender::pictureInAReadOnlyFolder()
{
    writeTrack("track.gpx", EQUATOR);
    QVERIFY(QDir(m_dir->path()).mkdir("closed"));
    QFile closed(path("closed"));
    QVERIFY(closed.setPermissions(QFile::ReadOwner | QFile::ExeOwner));
    if (!runAsNobody())
        QSKIP("nobody but the superuser may run the program");
    for (const QStringList &arguments : {QStringList{"-o", "closed/out.png"}, QStringList{"--export", "closed/out.gpx"},
                                         QStringList{"--save-selection", "closed/out.xml"}}) {
        const Result result = run(QStringList{"track.gpx", "-q"} + arguments);
        QCOMPARE(result.code, 7);
        QCOMPARE(result.lines().size(), 1);
    }
    QVERIFY(closed.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
}

void tst_KelRender::keepGoingDrawsTheRest()
{
    writeTrack("good.gpx", EQUATOR);
    write("bad.gpx", "<gpx>");
    const Result result = run({"bad.gpx", "missing.gpx", "good.gpx", "-k", "-o", "out.png"});
    QCOMPARE(result.code, 4); // the first failure
    QCOMPARE(result.lines().size(), 3);
    QVERIFY(!QImage(path("out.png")).isNull());
}

// ------------------------------------------------------------------------------------------------- kinds of output

void tst_KelRender::formats_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("magic");

    QTest::newRow("PNG") << "out.png" << QByteArray("\x89PNG");
    QTest::newRow("suffix in capitals") << "OUT.PNG" << QByteArray("\x89PNG");
    QTest::newRow("JPEG") << "out.jpg" << QByteArray("\xff\xd8\xff");
    QTest::newRow("JPEG, long suffix") << "out.jpeg" << QByteArray("\xff\xd8\xff");
    QTest::newRow("WebP") << "out.webp" << QByteArray("RIFF");
    QTest::newRow("PDF") << "out.pdf" << QByteArray("%PDF-");
    QTest::newRow("SVG") << "out.svg" << QByteArray("<?xml");
}

void tst_KelRender::formats()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, magic);

    const Result result = run({writeTrack("track.gpx", EQUATOR), "-o", name, "-s", "300x200"});
    QCOMPARE(result.code, 0);
    QVERIFY(contentOf(path(name)).startsWith(magic));
    if (!name.endsWith(QLatin1String("pdf")) && !name.endsWith(QLatin1String("svg")))
        QCOMPARE(QImage(path(name)).size(), QSize(300, 200));
}

void tst_KelRender::formatOptionOverridesTheSuffix()
{
    writeTrack("track.gpx", EQUATOR);
    QCOMPARE(run({"track.gpx", "-o", "out.dat", "--format", "JPG"}).code, 0);
    QVERIFY(contentOf(path("out.dat")).startsWith("\xff\xd8\xff"));
}

void tst_KelRender::standardOutputGetsThePicture()
{
    writeTrack("track.gpx", EQUATOR);
    const Result png = run({"track.gpx", "-o", "-", "-s", "64x48"});
    QCOMPARE(png.code, 0);
    QCOMPARE(QImage::fromData(png.out, "PNG").size(), QSize(64, 48));
    QCOMPARE(png.lines().size(), 1); // the note about the file, and it is not in the picture

    const Result svg = run({"track.gpx", "-o", "-", "--format=svg"});
    QCOMPARE(svg.code, 0);
    QVERIFY(svg.out.contains("<svg"));

    const Result full = run({"track.gpx", "-q", "-o", "-"}, "/dev/full");
    QCOMPARE(full.code, 7);
    QVERIFY(full.err.contains(QLatin1String("standard output")));
}

void tst_KelRender::readerOfThePictureMayGoAway()
{
    writeTrack("track.gpx", EQUATOR);
    // Far more than a pipe holds, so that the end of the reader is seen.
    const Result result = runProgram(
        "/bin/bash",
        {"-c", "\"$0\" track.gpx -q --bounds=-80,-180,80,180 -s 1600x1000 -o - | true; exit ${PIPESTATUS[0]}",
         QStringLiteral(KEL_RENDER_PROGRAM)});
    QCOMPARE(result.code, 7);
    QCOMPARE(result.lines().size(), 1);
    QVERIFY2(result.err.contains(QLatin1String("standard output: ")), qPrintable(result.err));
}

void tst_KelRender::closedStandardStreams()
{
    writeTrack("track.gpx", EQUATOR);
    const auto shell = [this](const QString &command) {
        return runProgram("/bin/sh", {"-c", "exec \"$0\" " + command, QStringLiteral(KEL_RENDER_PROGRAM)});
    };
    for (const char *command : {"track.gpx -q -o - >&-", "track.gpx -q --info >&-", "--help >&-"}) {
        const Result result = shell(QString::fromLatin1(command));
        QCOMPARE(result.code, 7);
        QCOMPARE(result.lines().size(), 1);
        QVERIFY2(result.err.contains(QLatin1String("standard output: ")), qPrintable(result.err));
    }
    // What is said does not end up in the picture.
    const QImage image = picture({"track.gpx"});
    QCOMPARE(shell("track.gpx missing.gpx -k -o closed.png <&- >&- 2>&-").code, 3);
    QVERIFY(!image.isNull());
    QVERIFY(QImage(path("closed.png")).convertToFormat(QImage::Format_ARGB32) == image);
}

void tst_KelRender::noDisplayIsNeeded()
{
    QVERIFY(!m_environment.contains("DISPLAY"));
    QVERIFY(!m_environment.contains("QT_QPA_PLATFORM"));
    const QString track = writeTrack("track.gpx", EQUATOR);
    QVERIFY(!picture({track}).isNull());
    // Nor does a broken one do harm.
    m_environment.insert("DISPLAY", ":4711");
    m_environment.insert("WAYLAND_DISPLAY", "nowhere");
    QVERIFY(!picture({track}).isNull());
    for (const char *platform : {"xcb", "wayland", "nonsense"}) {
        m_environment.insert("QT_QPA_PLATFORM", QString::fromLatin1(platform));
        QVERIFY2(!picture({track}).isNull(), platform);
    }
}

void tst_KelRender::pictureIsTheSameAtEveryDesk()
{
    const QString track = writeTrack("track.gpx", EQUATOR);
    const QImage image = picture({track, "-s", "600x400"});
    QVERIFY(!image.isNull());
    for (const auto &[name, value] : {std::pair("QT_SCALE_FACTOR", "2"), std::pair("QT_FONT_DPI", "192"),
                                      std::pair("QT_SCREEN_SCALE_FACTORS", "3"), std::pair("LC_ALL", "de_DE.UTF-8")}) {
        m_environment.insert(QString::fromLatin1(name), QString::fromLatin1(value));
        QVERIFY2(picture({track, "-s", "600x400"}) == image, name);
    }
}

void tst_KelRender::everyFileIsMentionedOnce()
{
    QVERIFY(QDir(m_dir->path()).mkdir("tracks"));
    writeTrack("tracks/b.GPX", EQUATOR);
    writeTrack("tracks/a.gpx", EQUATOR);
    write("tracks/notes.txt", "not a track");
    write(
        "tracks/c.kml",
        "<kml><Document><Placemark><LineString><coordinates>1,2 3,4</coordinates></LineString></Placemark>"
        "<Placemark><LineString><coordinates>1,2 3,4</coordinates></LineString></Placemark><Placemark/>"
        "</Document></kml>");
    const Result result = run({"tracks", "-o", "out.png"});
    QCOMPARE(result.code, 0);
    QCOMPARE(result.lines(),
             (QStringList{"kel-render: tracks/a.gpx: 1 track", "kel-render: tracks/b.GPX: 1 track",
                          "kel-render: tracks/c.kml: 2 tracks; 1 placemark without coordinates left out"}));

    QVERIFY(QDir(m_dir->path()).mkdir("empty"));
    const Result empty = run({"empty/", "-o", "out.png"});
    QCOMPARE(empty.code, 6);
    QVERIFY(empty.err.contains(QLatin1String("warning: empty/: no track files in this folder (*.gpx, *.kml, *.kmz)")));
}

void tst_KelRender::quietSaysNothing()
{
    const Result result = run({writeTrack("track.gpx", EQUATOR), "--quiet", "-o", "out.png"});
    QCOMPARE(result.code, 0);
    QCOMPARE(result.err, QString());
    QCOMPARE(result.out, QByteArray());
}

void tst_KelRender::noProgressInAPipe()
{
    const Result result = run({example(QString()), "-o", "out.png"});
    QCOMPARE(result.code, 0);
    QVERIFY(!result.err.contains(QLatin1Char('\r')));
    QVERIFY(!result.err.contains(QLatin1Char('\x1b')));
}

void tst_KelRender::lineBreaksInFileNamesStayInOneLine()
{
    const Result result = run({"a\nb\x1b[2J.gpx", "-o", "out.png"});
    QCOMPARE(result.code, 3);
    QCOMPARE(result.lines().size(), 1);
    QVERIFY(result.err.contains(QLatin1String("a?b?[2J.gpx")));
}

void tst_KelRender::namesAreNotObeyedByTerminals()
{
    // A command of a terminal, a mark that turns the direction around, and a line break that only some know.
    const QString evil = QStringLiteral("A\u009b31mB\u202eC\u2028D\u007fE");
    const QByteArray track = "<gpx><trk><name>" + evil.toUtf8()
        + "</name><trkseg><trkpt lat='0' lon='1'/><trkpt lat='0' lon='2'/></trkseg></trk></gpx>";
    write("named.gpx", track);
    const Result info = run({"named.gpx", "--info"});
    QVERIFY2(info.out.startsWith("name:     A?31mB?C D?E\n"), info.out.constData());
    const Result exported = run({"named.gpx", "--export", "out.gpx"});
    QVERIFY2(exported.err.contains(QLatin1String("exported \"A?31mB?C?D?E\"")), qPrintable(exported.err));

    const Result report = run({"named.gpx", "--report", "json"});
    QVERIFY2(report.out.contains("\"A\\u009b31mB\\u202eC\\u2028D\\u007fE\""), report.out.constData());
    QCOMPARE(QJsonDocument::fromJson(report.out).object().value("tracks").toArray().at(0).toObject().value("name").toString(), evil);

    // The name of the file, where the track has none; and that of a beeline.
    const QString fileName = QStringLiteral("n\x1b[31m\x07\u202e.gpx");
    writeTrack(fileName, EQUATOR, "");
    const Result file = run({fileName, "--info"});
    QVERIFY2(file.out.startsWith("name:     n?[31m?? 1\n"), file.out.constData());
    QVERIFY2(file.err.contains(QLatin1String("n?[31m??.gpx: 1 track")), qPrintable(file.err));
    const Result beeline = run({"--beeline", "Sydney", "LA", "--name", QStringLiteral("a\x1b[31m\u2066"), "--info"});
    QVERIFY2(beeline.out.startsWith("name:     a?[31m?\n"), beeline.out.constData());
}

void tst_KelRender::namesThatAreNoText_data()
{
    QTest::addColumn<QString>("command"); // $0 is the program
    QTest::addColumn<int>("code");

    QTest::newRow("picture") << "\"$0\" track.gpx -q -o $'o\\xff.png'" << 2;
    QTest::newRow("picture, joined") << "\"$0\" track.gpx -q -o$'o\\xff.png'" << 2;
    QTest::newRow("export") << "\"$0\" track.gpx -q --export=$'o\\xff.gpx'" << 2;
    QTest::newRow("selection to be saved") << "\"$0\" track.gpx -q --save-selection $'o\\xff.xml'" << 2;
    QTest::newRow("selection") << "\"$0\" --selection $'o\\xff.xml' -q --info" << 3;
    QTest::newRow("map") << "\"$0\" track.gpx -q --map $'o\\xff.png' --map-bounds -5,-40,5,0 -o new.png" << 3;
    QTest::newRow("track") << "cp track.gpx $'o\\xff.gpx'; \"$0\" $'o\\xff.gpx' -q --info" << 3;
    QTest::newRow("track of a folder")
        << "mkdir folder; cp track.gpx $'folder/o\\xff.gpx'; \"$0\" folder -q --info" << 3;
}

void tst_KelRender::namesThatAreNoText()
{
    QFETCH(QString, command);
    QFETCH(int, code);
    if (!QFile::exists("/bin/bash"))
        QSKIP("there is no bash");
    writeTrack("track.gpx", EQUATOR);
    // Qt does not see these files, and so does not remove them.
    const auto cleanUp = qScopeGuard([this] { static_cast<void>(runProgram("/bin/bash", {"-c", "rm -rf ./*"})); });
    const Result result = runProgram("/bin/bash", {"-c", command, QStringLiteral(KEL_RENDER_PROGRAM)});
    QCOMPARE(result.code, code);
    QCOMPARE(result.lines().size(), 1);
    QVERIFY2(result.err.contains(QLatin1String("UTF-8")), qPrintable(result.err));
    const QStringList names = QString::fromUtf8(runProgram("/bin/ls", {"-A"}).out).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    QVERIFY2(names.filter(".xml").isEmpty() && names.filter(".png").isEmpty(), qPrintable(names.join(' ')));
    QCOMPARE(names.filter(".gpx").size(), command.startsWith(QLatin1String("cp")) ? 2 : 1);
}

/// It may well be that somebody has such a name; it is text.
void tst_KelRender::replacementCharactersAreText()
{
    const QString name = QStringLiteral("o\ufffd.png");
    QCOMPARE(run({writeTrack(QStringLiteral("o\ufffd.gpx"), EQUATOR), "-q", "-o", name}).code, 0);
    QVERIFY(!QImage(path(name)).isNull());
}

// -------------------------------------------------------------------------------------------- map, tracks and area

void tst_KelRender::landAndSea()
{
    // The whole world, 4 pixels to the degree.
    const QString track = writeTrack("track.gpx", EQUATOR);
    const QImage image = picture({track, "--bounds=-85,-180,85,180", "--size=1440x1440", "--line-width=1"});
    const auto at = [&](double longitude, int y) {
        return image.pixelColor(static_cast<int>((longitude + 180) * 4) + 2, y);
    };
    const int equator = 720;
    QVERIFY(near(at(25, equator + 12), LAND));  // Congo, 3° south
    QVERIFY(near(at(-60, equator + 12), LAND)); // Amazon
    QVERIFY(near(at(-140, equator + 12), SEA)); // Pacific
    QVERIFY(near(at(75, equator + 12), SEA));   // Indian Ocean
}

void tst_KelRender::darkMap()
{
    const QString track = writeTrack("track.gpx", EQUATOR);
    const QImage image = picture(QStringList{track, "--dark"} + EQUATOR_VIEW);
    QCOMPARE(image.pixelColor(30, 30).lightness() < 60, true);
    QCOMPARE(image.pixelColor(200, 50), DEFAULT_LINE);
}

void tst_KelRender::trackLiesWhereItBelongs()
{
    const QImage image = picture(QStringList{writeTrack("track.gpx", EQUATOR), "--line-color=red", "--line-width=4"}
                                 + EQUATOR_VIEW);
    QCOMPARE(image.size(), QSize(400, 101));
    // From 30° to 10° west is from x = 100 to x = 300; the line's ends are round and 2 pixels long.
    for (int x = 100; x < 300; ++x)
        QCOMPARE(image.pixelColor(x, 50), QColor(Qt::red));
    QVERIFY(near(image.pixelColor(95, 50), SEA, GRATICULE));
    QVERIFY(near(image.pixelColor(305, 50), SEA, GRATICULE));
    QVERIFY(near(image.pixelColor(205, 40), SEA, 16));
    QCOMPARE(rowsOfColor(image, 203, Qt::red), 3); // 4 pixels wide, half a pixel on either side shared with the sea
}

void tst_KelRender::paddingLeavesTheBorderFree()
{
    const QString track = writeTrack("track.gpx", "0,-30 2,-20 0,-10");
    const auto columns = [&](const QString &padding) {
        const QImage image = picture({track, "--padding", padding, "--size=400x300", "--line-color=red",
                                      "--line-width=2", "--no-scale", "--no-attribution"});
        int first = -1;
        int last = -1;
        for (int x = 0; x < image.width(); ++x) {
            if (rowsOfColor(image, x, Qt::red) == 0)
                continue;
            first = first < 0 ? x : first;
            last = x;
        }
        return std::make_pair(first, last);
    };
    const auto [first, last] = columns("25");
    QVERIFY2(std::abs(first - 100) <= 2 && std::abs(last - 299) <= 2,
             qPrintable(QStringLiteral("%1 %2").arg(first).arg(last)));
    const auto [edge, otherEdge] = columns("0");
    QVERIFY2(edge <= 2 && otherEdge >= 397, qPrintable(QStringLiteral("%1 %2").arg(edge).arg(otherEdge)));
}

void tst_KelRender::marginsLeaveRoomForTracks_data()
{
    QTest::addColumn<QString>("kmlWidth"); // empty: no style
    QTest::addColumn<QStringList>("style");
    QTest::addColumn<double>("top");
    QTest::addColumn<double>("bottom");
    const auto row = [](const char *name, const char *kmlWidth, const QStringList &style, double top, double bottom) {
        QTest::newRow(name) << QString::fromLatin1(kmlWidth) << style << top << bottom;
    };

    // 1000 pixels high: above the track are a padding of 80 and half a line. Below it are the same, or the overlays'
    // 31 pixels and half a line.
    row("default line", "", {}, 85, 915);
    row("overlays need more than the padding", "", {"--padding=1"}, 15, 1000 - 36);
    row("no overlays", "", {"--padding=1", "--no-scale", "--no-attribution"}, 15, 985);
    row("line of a style", "30", {}, 170, 830); // six pixels to one of KML
    row("a halo is drawn", "30", {"--halo-width=100"}, 220, 780);
    row("a halo is kept clear", "30", {"--crop=50"}, 350, 650); // twice the line
    row("a halo has no map to be kept clear of", "30", {"--crop=50", "--no-map"}, 170, 830);
    row("more than a tenth is left", "", {"--line-width=738"}, 449, 551);
    row("a tenth is left", "", {"--line-width=740"}, 450, 550);
    row("less would be left", "", {"--line-width=742"}, 450, 550);
    row("overlays below, more than a tenth is left", "", {"--padding=0", "--line-width=866"}, 433, 536);
    row("overlays below, less would be left", "", {"--padding=0", "--line-width=872"}, 436, 536);
    row("widest line", "", {"--line-width=1000"}, 450, 550);
    row("widest line, largest factor", "", {"--line-width=1000", "--scale-factor=20"}, 450, 550);
    row("widest line, largest padding", "", {"--line-width=1000", "--padding=45", "--scale-factor=20"}, 450, 550);
    row("widest halo", "", {"--halo-width=1000"}, 450, 550);
    row("line of a style as wide as the picture", "170", {}, 450, 550);
    row("line of a style beyond every picture", "2147483648", {}, 450, 550);
}

void tst_KelRender::marginsLeaveRoomForTracks()
{
    QFETCH(QString, kmlWidth);
    QFETCH(QStringList, style);
    QFETCH(double, top);
    QFETCH(double, bottom);

    const QByteArray look = kmlWidth.isEmpty() ? QByteArray()
                                               : "<Style id=\"a\"><LineStyle><color>ff0000ff</color><width>"
            + kmlWidth.toLatin1() + "</width></LineStyle></Style>";
    const QString track = write("track.kml",
                                "<kml><Document>" + look
                                    + "<Placemark><styleUrl>#a</styleUrl><LineString><coordinates>8,-1 9,1</coordinates>"
                                      "</LineString></Placemark></Document></kml>");
    const Result result = run(QStringList{track, "-q", "-o", "out.svg", "--size=1600x1000"} + style);
    QCOMPARE(result.code, 0);
    QCOMPARE(result.err, QString());
    const QByteArray svg = contentOf(path("out.svg"));
    QVERIFY(!svg.contains("nan"));

    static const QRegularExpression line("d=\"M([-.0-9]+),([-.0-9]+) L([-.0-9]+),([-.0-9]+)\"");
    const QRegularExpressionMatch match = line.match(QString::fromUtf8(svg));
    QVERIFY(match.hasMatch());
    QVERIFY2(std::abs(match.captured(4).toDouble() - top) < 0.1, qPrintable(match.captured()));
    QVERIFY2(std::abs(match.captured(2).toDouble() - bottom) < 0.1, qPrintable(match.captured()));
    QVERIFY(match.captured(1).toDouble() > 0 && match.captured(3).toDouble() < 1600);
}

void tst_KelRender::widestLinesShowTheMap_data()
{
    QTest::addColumn<QByteArray>("coordinates");
    QTest::addColumn<QByteArray>("size");
    QTest::addColumn<QPoint>("beside"); // a pixel of land or sea that the line leaves free
    QTest::addColumn<QColor>("color");

    QTest::newRow("half a continent") << QByteArray("-5,40 25,60") << QByteArray("1600x1000") << QPoint(1500, 500) << LAND;
    QTest::newRow("a county") << QByteArray("8,53 9,54") << QByteArray("1600x1000") << QPoint(1400, 900) << LAND;
    QTest::newRow("a county, in print") << QByteArray("8,53 9,54") << QByteArray("4000x2500") << QPoint(3500, 2200) << LAND;
    QTest::newRow("a sea") << QByteArray("-30,-30 -20,-20") << QByteArray("1600x1000") << QPoint(300, 900) << SEA;
}

void tst_KelRender::widestLinesShowTheMap()
{
    QFETCH(QByteArray, coordinates);
    QFETCH(QByteArray, size);
    QFETCH(QPoint, beside);
    QFETCH(QColor, color);

    // 600 pixels wide.
    const QString track =
        write("track.kml",
              "<kml><Document><Style id=\"a\"><LineStyle><color>ff0000ff</color><width>100</width></LineStyle></Style>"
              "<Placemark><styleUrl>#a</styleUrl><LineString><coordinates>"
                  + coordinates + "</coordinates></LineString></Placemark></Document></kml>");
    const Result result = run({track, "-q", "-o", "out.png", "--size=" + size});
    QCOMPARE(result.code, 0);
    QCOMPARE(result.err, QString());
    const QImage image(path("out.png"));
    QCOMPARE(image.pixelColor(image.rect().center()), QColor(Qt::red));
    QVERIFY2(near(image.pixelColor(beside), color), qPrintable(image.pixelColor(beside).name()));
}

void tst_KelRender::singleTrackHasTheUsersColor()
{
    const QImage image = picture(QStringList{writeTrack("track.gpx", EQUATOR)} + EQUATOR_VIEW);
    QCOMPARE(image.pixelColor(200, 50), DEFAULT_LINE);
    QCOMPARE(rowsOfColor(image, 203, DEFAULT_LINE), 9); // 10 pixels wide
}

void tst_KelRender::severalTracksHaveColorsOfTheirOwn()
{
    QStringList arguments;
    for (int i = 0; i < 12; ++i)
        arguments << writeTrack(QStringLiteral("track%1.gpx").arg(i),
                                QByteArray::number(4.2 - 0.7 * i) + ",-30 " + QByteArray::number(4.2 - 0.7 * i)
                                    + ",-10");
    arguments << "--line-width=4";
    const QImage image = picture(arguments + EQUATOR_VIEW);
    QSet<QRgb> colors;
    for (int i = 0; i < 12; ++i) {
        const QColor color = image.pixelColor(203, static_cast<int>(std::lround(50.5 - 10 * (4.2 - 0.7 * i))));
        QVERIFY(!near(color, SEA, 60));
        colors.insert(color.rgb());
    }
    QCOMPARE(colors.size(), 12);
}

void tst_KelRender::storedDefaultStyleIsUsed()
{
    QVERIFY(QDir(m_dir->path()).mkpath("config/Kel"));
    write(
        "config/Kel/KelGeoLocation.conf",
        "[General]\ndefaultTrackConfiguration=\"<config smoothing=\\\"100\\\" smoothingSteps=\\\"1\\\">"
        "<pensize>20</pensize><color>#ff0000ff</color>"
        "<fillcolor>#ff0000ff</fillcolor><halosize>0</halosize><displayOptions>stroke</displayOptions></config>\"\n");
    const QImage image = picture(QStringList{writeTrack("track.gpx", EQUATOR)} + EQUATOR_VIEW);
    QCOMPARE(image.pixelColor(200, 50), QColor(Qt::blue));
    QCOMPARE(rowsOfColor(image, 203, Qt::blue), 19);
}

void tst_KelRender::dateLineFlightIsUnbroken()
{
    const QImage image = picture({example("date-line-flight.gpx"), "--line-color=red", "--line-width=3",
                                  "--size=800x500", "--no-scale", "--no-attribution"});
    // One run of columns, without a gap, and high enough to fill the picture within its padding.
    int first = -1;
    int last = -1;
    for (int x = 0; x < image.width(); ++x) {
        if (rowsOfColor(image, x, Qt::red) == 0)
            continue;
        QVERIFY2(first < 0 || last == x - 1, qPrintable(QStringLiteral("a gap from %1 to %2").arg(last).arg(x)));
        first = first < 0 ? x : first;
        last = x;
    }
    QVERIFY(first > 0 && last < image.width() - 1);
    int rows = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = first; x <= last; ++x) {
            if (image.pixelColor(x, y) == QColor(Qt::red)) {
                ++rows;
                break;
            }
        }
    }
    QVERIFY2(rows > 400, qPrintable(QString::number(rows)));
}

void tst_KelRender::boundsAcrossTheDateLine()
{
    const QImage image = picture({writeTrack("track.gpx", "0,170 0,-170"), "--bounds=-5,160,5,-160", "--size=400x101",
                                  "--line-color=red", "--no-scale", "--no-attribution"});
    for (int x = 100; x < 300; ++x)
        QCOMPARE(image.pixelColor(x, 50), QColor(Qt::red));
    QVERIFY(near(image.pixelColor(85, 50), SEA, GRATICULE));
    QVERIFY(near(image.pixelColor(315, 50), SEA, GRATICULE));
}

void tst_KelRender::tracksOutsideThePictureAreTold_data()
{
    QTest::addColumn<QByteArray>("points");
    QTest::addColumn<QString>("bounds");
    QTest::addColumn<bool>("told");

    // The size fits the bounds: 10 by 10 degrees about the equator are nearly a square.
    QTest::newRow("within") << QByteArray("1,1 2,2") << "-5,-5,5,5" << false;
    QTest::newRow("all around") << QByteArray("-60,-60 60,60") << "-5,-5,5,5" << false;
    QTest::newRow("north of it") << QByteArray("6,1 7,2") << "-5,-5,5,5" << true;
    QTest::newRow("south of it") << QByteArray("-6,1 -7,2") << "-5,-5,5,5" << true;
    QTest::newRow("west of it") << QByteArray("1,-6 2,-7") << "-5,-5,5,5" << true;
    QTest::newRow("east of it") << QByteArray("1,6 2,7") << "-5,-5,5,5" << true;
    QTest::newRow("across the date line") << QByteArray("1,-178 2,-176") << "-5,175,5,-175" << false;
    QTest::newRow("on the other side of the date line") << QByteArray("1,178 2,176") << "-5,175,5,-175" << false;
    QTest::newRow("track across the date line") << QByteArray("1,170 2,-170") << "-5,-179,5,-171" << false;
    QTest::newRow("beyond a track across the date line") << QByteArray("1,170 2,-170") << "-5,-168,5,-158" << true;
}

void tst_KelRender::tracksOutsideThePictureAreTold()
{
    QFETCH(QByteArray, points);
    QFETCH(QString, bounds);
    QFETCH(bool, told);

    const Result result =
        run({writeTrack("track.gpx", points), "-q", "-s", "300x300", "--bounds=" + bounds, "-o", "out.png"});
    QCOMPARE(result.code, 0);
    const QString warning("kel-render: warning: no track lies within the picture; check --bounds\n");
    QCOMPARE(result.err, told ? warning : QString());
    QVERIFY(QFileInfo::exists(path("out.png")));
}

void tst_KelRender::tracksBeyondTheMapAreTold_data()
{
    QTest::addColumn<QByteArray>("points");
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("warning");

    const QString none;
    const QString beyond(": the map ends at 85 degrees north and south");
    const QString bounds("; check --bounds");
    const QString mapBounds("; check --map-bounds");
    const QStringList ownMap{"--map=map.png", "--map-bounds=-5,-40,5,0"};
    QTest::newRow("near the pole") << QByteArray("86,1 87,2") << QStringList() << beyond;
    QTest::newRow("near the south pole") << QByteArray("-86,1 -87,2") << QStringList() << beyond;
    QTest::newRow("at the pole") << QByteArray("90,1 90,2") << QStringList() << beyond;
    QTest::newRow("near the pole, without a map") << QByteArray("86,1 87,2") << QStringList("--no-map") << beyond;
    QTest::newRow("into the map") << QByteArray("85,1 87,2") << QStringList() << none;
    QTest::newRow("over the whole map") << QByteArray("-87,1 87,2") << QStringList() << none;
    QTest::newRow("near the pole, with an area") << QByteArray("86,1 87,2") << QStringList("--bounds=80,0,85,3") << bounds;
    QTest::newRow("beside an own map") << QByteArray("6,-30 7,-20") << ownMap << mapBounds;
    QTest::newRow("on an own map") << QByteArray("2,-30 3,-20") << ownMap << none;
    QTest::newRow("beside an area of an own map")
        << QByteArray("2,-30 3,-20") << (ownMap + QStringList("--bounds=-5,10,5,20")) << bounds;
}

void tst_KelRender::tracksBeyondTheMapAreTold()
{
    QFETCH(QByteArray, points);
    QFETCH(QStringList, options);
    QFETCH(QString, warning);

    QImage map(400, 100, QImage::Format_RGB32);
    map.fill(Qt::green);
    QVERIFY(map.save(path("map.png")));
    const Result result = run(QStringList{writeTrack("track.gpx", points), "-q", "-s", "400x100", "-o", "out.png"} + options);
    QCOMPARE(result.code, 0);
    QCOMPARE(result.err,
             warning.isNull() ? QString() : "kel-render: warning: no track lies within the picture" + warning + "\n");
    QVERIFY(QFileInfo::exists(path("out.png")));
}

void tst_KelRender::singlePlaceGetsSurroundings()
{
    const QString place = write(
        "place.kml",
        "<kml><Document><Placemark><Point><coordinates>-20,-20</coordinates></Point></Placemark></Document></kml>");
    const QImage image = picture({place, "--size=300x300", "--no-scale", "--no-attribution"});
    QVERIFY(near(image.pixelColor(20, 150), SEA, 16));
    // A disk without filling, 20 pixels across, drawn with a pen of 10 pixels.
    QCOMPARE(image.pixelColor(150 + 10, 150), DEFAULT_LINE);
    QCOMPARE(image.pixelColor(150, 150 - 10), DEFAULT_LINE);
    QVERIFY(near(image.pixelColor(150 + 20, 150), SEA, 16));
}

void tst_KelRender::tracksAllAroundTheGlobe()
{
    // Fiji, Alaska, Brazil and Greenwich: the picture is not cut through the flight over the date line.
    const QString flight = writeTrack("flight.gpx", "-17,178 0,-170 60,-150");
    const QString brazil = writeTrack("brazil.gpx", "-10,-60 -5,-40");
    const QString europe = writeTrack("europe.gpx", "50,0 52,5");
    const QImage image = picture({flight, brazil, europe, "--size=800x500", "--line-color=red", "--line-width=3",
                                  "--no-scale", "--no-attribution"});
    int runs = 0;
    bool inside = false;
    for (int x = 0; x < image.width(); ++x) {
        const bool now = rowsOfColor(image, x, Qt::red) > 0;
        runs += now && !inside ? 1 : 0;
        inside = now;
    }
    QCOMPARE(runs, 3);
}

void tst_KelRender::farAwayPointsDoNoHarm_data()
{
    QTest::addColumn<QString>("style");
    QTest::newRow("solid") << "--pen-style=solid";
    QTest::newRow("dashed") << "--pen-style=dash";
    QTest::newRow("with a halo") << "--halo-width=3";
    QTest::newRow("arrow") << "--marker=arrow";
}

void tst_KelRender::farAwayPointsDoNoHarm()
{
    QFETCH(QString, style);
    // A line around half the world, seen through a window of 100 metres.
    const QString track = writeTrack("track.gpx", "0,-60 0,0.001 0,60 10,120");
    const QImage image = picture({track, "--bounds=-0.0005,0,0.0005,0.002", "--size=400x200", "--line-color=red", style,
                                  "--no-scale", "--no-attribution"});
    QCOMPARE(image.size(), QSize(400, 200));
    QVERIFY(near(image.pixelColor(203, 20), SEA, 16));
    int red = 0;
    for (int x = 0; x < 400; ++x)
        red += image.pixelColor(x, 100) == QColor(Qt::red) ? 1 : 0;
    QVERIFY2(red > 150, qPrintable(QString::number(red)));
}

// ----------------------------------------------------------------------------------------------------------- style

void tst_KelRender::lineWidthGrowsWithTheScaleFactor()
{
    const QString track = writeTrack("track.gpx", EQUATOR);
    const QStringList look = QStringList{track, "--line-color=red", "--line-width=8"} + EQUATOR_VIEW;
    QCOMPARE(rowsOfColor(picture(look), 203, Qt::red), 7);
    QCOMPARE(rowsOfColor(picture(look + QStringList{"--scale-factor=3"}), 203, Qt::red), 23);
}

void tst_KelRender::dashesLeaveGaps()
{
    const QString track = writeTrack("track.gpx", EQUATOR);
    const QImage image = picture(QStringList{track, "--pen-style=dash", "--line-width=4", "--line-color=red"}
                                 + EQUATOR_VIEW);
    int red = 0;
    int sea = 0;
    for (int x = 105; x < 295; ++x) {
        red += image.pixelColor(x, 50) == QColor(Qt::red) ? 1 : 0;
        sea += near(image.pixelColor(x, 50), SEA, GRATICULE) ? 1 : 0;
    }
    QVERIFY(red > 60);
    QVERIFY(sea > 10);
}

void tst_KelRender::polygonIsFilledAroundItsEnclave()
{
    const QString file = write(
        "area.gpx",
        "<gpx><trk><shape>polygon</shape><trkseg><trkpt lat=\"-4\" lon=\"-30\"/>"
        "<trkpt lat=\"4\" lon=\"-30\"/><trkpt lat=\"4\" lon=\"-10\"/>"
        "<trkpt lat=\"-4\" lon=\"-10\"/><trkpt lat=\"-4\" lon=\"-30\"/></trkseg><enclaves><trk>"
        "<shape>polygon</shape><trkseg>"
        "<trkpt lat=\"-2\" lon=\"-25\"/><trkpt lat=\"2\" lon=\"-25\"/><trkpt lat=\"2\" lon=\"-15\"/>"
        "<trkpt lat=\"-2\" lon=\"-15\"/>"
        "<trkpt lat=\"-2\" lon=\"-25\"/></trkseg></trk></enclaves></trk></gpx>");
    const QStringList look = QStringList{file, "--line-color=red", "--fill-color=blue", "--line-width=2"}
        + EQUATOR_VIEW;
    const QImage filled = picture(look + QStringList{"--display-options=stroke,fill"});
    QCOMPARE(filled.pixelColor(110, 50), QColor(Qt::blue));
    QCOMPARE(filled.pixelColor(203, 20), QColor(Qt::blue));
    QVERIFY(near(filled.pixelColor(203, 45), SEA, 16)); // the enclave
    QVERIFY(near(filled.pixelColor(90, 45), SEA, 16));
    const QImage outlined = picture(look);
    QVERIFY(near(outlined.pixelColor(110, 45), SEA, 16));
    QCOMPARE(outlined.pixelColor(100, 45), QColor(Qt::red));
}

void tst_KelRender::haloSurroundsTheTrack()
{
    const QString track = writeTrack("track.gpx", EQUATOR);
    const QImage image = picture(QStringList{track, "--halo-width=12", "--line-width=4", "--line-color=red"}
                                 + EQUATOR_VIEW);
    QCOMPARE(image.pixelColor(203, 50), QColor(Qt::red));
    QVERIFY(image.pixelColor(203, 45).lightness() > 240);
    QVERIFY(near(image.pixelColor(203, 38), SEA, 16));
}

void tst_KelRender::cropFadesTheMap_data()
{
    QTest::addColumn<QString>("opacity");
    QTest::addColumn<int>("alpha");

    QTest::newRow("map gone") << "0" << 0;
    QTest::newRow("faded") << "100" << 100;
    QTest::newRow("percent") << "40%" << 102;
    QTest::newRow("unchanged") << "255" << 255;
}

void tst_KelRender::cropFadesTheMap()
{
    QFETCH(QString, opacity);
    QFETCH(int, alpha);

    const QString track = writeTrack("track.gpx", EQUATOR);
    const QImage image = picture(
        QStringList{track, "--crop", opacity, "--line-width=4", "--halo-width=20", "--line-color=red"} + EQUATOR_VIEW);
    QCOMPARE(image.pixelColor(30, 20).alpha(), alpha);
    QCOMPARE(image.pixelColor(203, 50), QColor(Qt::red));
    QCOMPARE(image.pixelColor(203, 42).alpha(), 255); // within the halo
}

void tst_KelRender::noMapIsTransparent()
{
    const QString track = writeTrack("track.gpx", EQUATOR);
    const QImage image = picture(QStringList{track, "--no-map", "--crop=10", "--line-color=red"} + EQUATOR_VIEW);
    QCOMPARE(image.pixelColor(30, 20).alpha(), 0);
    QCOMPARE(image.pixelColor(203, 50), QColor(Qt::red));
}

void tst_KelRender::jpegHasAWhiteGround()
{
    const QString track = writeTrack("track.gpx", EQUATOR);
    QCOMPARE(run(QStringList{track, "--no-map", "-o", "out.jpg"} + EQUATOR_VIEW).code, 0);
    QVERIFY(near(QImage(path("out.jpg")).pixelColor(30, 20), Qt::white));
}

void tst_KelRender::overlaysCanBeLeftOut()
{
    const QString track = writeTrack("track.gpx", "0,-30 3,-10");
    const QStringList view{track, "--size=800x500"};
    const auto differs = [](const QImage &a, const QImage &b, const QRect &area) {
        return a.copy(area) != b.copy(area);
    };
    const QStringList bounds{"--bounds=-10,-40,10,0"};
    const QImage all = picture(view + bounds);
    const QImage noScale = picture(view + bounds + QStringList{"--no-scale"});
    const QImage noCredit = picture(view + bounds + QStringList{"--no-attribution"});
    const QRect left(0, 400, 400, 100);
    const QRect right(400, 400, 400, 100);
    QVERIFY(differs(all, noScale, left));
    QVERIFY(!differs(all, noScale, right));
    QVERIFY(differs(all, noCredit, right));
    QVERIFY(!differs(all, noCredit, left));
}

void tst_KelRender::scaleBarHasTheRightLength()
{
    // 1000 pixels for 2 degrees at the equator: 222.355 km, 4.497 pixels to the kilometre. The longest bar of the
    // series 1, 2.5, 5 within 150 pixels is 25 km, 112.4 pixels.
    const QString track = writeTrack("track.gpx", "0.1,-21 0.2,-20");
    const QImage image = picture({track, "--bounds=-0.5,-21,0.5,-19", "--size=1000x500", "--no-attribution"});
    int longest = 0;
    for (int y = 460; y < 500; ++y) {
        int length = 0;
        for (int x = 0; x < 300; ++x) {
            length = image.pixelColor(x, y).lightness() < 170 ? length + 1 : 0;
            longest = std::max(longest, length);
        }
    }
    QVERIFY2(std::abs(longest - 112) <= 2, qPrintable(QString::number(longest)));
}

void tst_KelRender::vectorsHoldPaths()
{
    const QString track = writeTrack("track.gpx", EQUATOR);
    QCOMPARE(run({track, "--line-color=#010203", "-o", "out.svg", "-s", "640x400"}).code, 0);
    const QByteArray svg = contentOf(path("out.svg"));
    QXmlStreamReader reader(svg);
    int paths = 0;
    int images = 0;
    while (!reader.atEnd()) {
        reader.readNext();
        if (!reader.isStartElement())
            continue;
        if (reader.name() == QLatin1String("svg"))
            QCOMPARE(reader.attributes().value(QLatin1String("viewBox")).toString(), "0 0 640 400");
        paths += reader.name() == QLatin1String("path") || reader.name() == QLatin1String("polyline") ? 1 : 0;
        images += reader.name() == QLatin1String("image") ? 1 : 0;
    }
    QVERIFY2(!reader.hasError(), qPrintable(reader.errorString()));
    QVERIFY(paths > 5);
    QCOMPARE(images, 0);
    QVERIFY(svg.contains("#010203"));
    QVERIFY(svg.contains("Made with Natural Earth."));

    QCOMPARE(run({track, "-o", "out.pdf", "-s", "640x400"}).code, 0);
    const QByteArray pdf = contentOf(path("out.pdf"));
    QVERIFY(pdf.contains("/MediaBox [0 0 480 300]") || pdf.contains("/MediaBox [0 0 480.000000 300.000000]"));
    QVERIFY(!pdf.contains("/Subtype /Image"));
}

void tst_KelRender::largestPictureIsPossible()
{
    const QString track = writeTrack("track.gpx", EQUATOR);
    QCOMPARE(run({track, "-o", "out.png", "--size=32767x64"}).code, 0);
    QCOMPARE(QImage(path("out.png")).size(), QSize(32767, 64));
    QCOMPARE(run({track, "-o", "out.png", "--size=16x16"}).code, 0);
    QCOMPARE(QImage(path("out.png")).size(), QSize(16, 16));
}

void tst_KelRender::extremePicturesAreDrawn_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QPoint>("sahara");  // 18° north, 10° east, on some copy of the world
    QTest::addColumn<QPoint>("pacific"); // 18° south, 100° west

    const QString world("--bounds=-85,-180,85,180");
    QTest::newRow("a row of worlds") << QStringList{world} << QSize(8000, 80) << QPoint(470, 36) << QPoint(7910, 44);
    QTest::newRow("a row of worlds, largest factor")
        << QStringList{world, "--scale-factor=20"} << QSize(4000, 40) << QPoint(2001, 18) << QPoint(1989, 22);
    QTest::newRow("a row of worlds, lines of hardly more than a pixel")
        << QStringList{world, "--scale-factor=1.12"} << QSize(4000, 40) << QPoint(2001, 18) << QPoint(1989, 22);
    QTest::newRow("largest factor") << QStringList{world, "--scale-factor=20"} << QSize(1600, 1000) << QPoint(828, 449)
                                    << QPoint(523, 551);
    QTest::newRow("a tower of worlds") << QStringList{world} << QSize(100, 1000) << QPoint(53, 495) << QPoint(22, 505);
}

void tst_KelRender::extremePicturesAreDrawn()
{
    QFETCH(QStringList, options);
    QFETCH(QSize, size);
    QFETCH(QPoint, sahara);
    QFETCH(QPoint, pacific);

    // The line is too short to be seen, and there is no marker that hides the map.
    const QString track = writeTrack("track.gpx", "0,-30 0,-30.0001");
    const QImage image = picture(QStringList{track, "--size", QStringLiteral("%1x%2").arg(size.width()).arg(size.height()),
                                             "--no-scale", "--no-attribution", "--display-options=fill", "--fill-color=#00000000"}
                                 + options);
    QCOMPARE(image.size(), size);
    // Land is warmer than the sea, also below the wide lines of the graticule.
    const QColor land = image.pixelColor(sahara);
    const QColor sea = image.pixelColor(pacific);
    QVERIFY2(land.red() - land.blue() > sea.red() - sea.blue() + 10, qPrintable(land.name() + " " + sea.name()));
}

// --------------------------------------------------------------------------------------------------------- own map

void tst_KelRender::ownMapPicture()
{
    // Green in the west, yellow in the east, one degree for ten pixels.
    QImage map(400, 100, QImage::Format_RGB32);
    map.fill(Qt::green);
    for (int y = 0; y < 100; ++y) {
        for (int x = 200; x < 400; ++x)
            map.setPixelColor(x, y, Qt::yellow);
    }
    QVERIFY(map.save(path("map.png")));
    const QString track = writeTrack("track.gpx", "0,-38 0,-30");
    const QStringList look{track,        "--map=map.png",   "--map-bounds=-5,-40,5,0", "--line-color=red",
                           "--no-scale", "--no-attribution"};

    const QImage same = picture(look);
    QCOMPARE(same.size(), QSize(400, 100));
    QCOMPARE(same.pixelColor(10, 10), QColor(Qt::green));
    QCOMPARE(same.pixelColor(390, 10), QColor(Qt::yellow));
    QCOMPARE(same.pixelColor(50, 50), QColor(Qt::red));

    // A window that reaches beyond the picture's edges.
    const QImage window = picture(look + QStringList{"--bounds=-5,-20,5,20", "--size=400x100"});
    QCOMPARE(window.pixelColor(10, 50), QColor(Qt::yellow));
    QCOMPARE(window.pixelColor(190, 50), QColor(Qt::yellow));
    QVERIFY(near(window.pixelColor(210, 50), QColor(0xe4, 0xe4, 0xe4)));

    // Not the credit of a map that is not shown.
    QCOMPARE(run(look.mid(0, 4) + QStringList{"-o", "out.svg"}).code, 0);
    const QByteArray svg = contentOf(path("out.svg"));
    QVERIFY(svg.contains("OpenStreetMap.org"));
    QVERIFY(!svg.contains("Natural Earth"));
    QCOMPARE(run(look.mid(0, 4) + QStringList{"--attribution=My own survey", "-o", "out.svg"}).code, 0);
    QVERIFY(contentOf(path("out.svg")).contains("My own survey"));
}

void tst_KelRender::ownMapPictureMayBeBad_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("code");

    QTest::newRow("missing") << QByteArray() << 3;
    QTest::newRow("no picture") << QByteArray("just text") << 5;
    QTest::newRow("drawing that names a file") << QByteArray(
        "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' width='9' height='9'>"
        "<image width='9' height='9' xlink:href='pipe.png'/></svg>") << 5;
    QTest::newRow("too large") << tooWidePicture() << 4;
    QTest::newRow("truncated PNG") << QByteArray::fromHex("89504e470d0a1a0a0000000d4948445200000010000000100806000000")
                                   << 4;
}

void tst_KelRender::ownMapPictureMayBeBad()
{
    QFETCH(QByteArray, content);
    QFETCH(int, code);

    if (!content.isNull())
        write("map.png", content);
    QCOMPARE(::mkfifo(path("pipe.png").toLocal8Bit().constData(), 0600), 0); // whoever opens it waits for ever
    const Result result = run(
        {writeTrack("track.gpx", EQUATOR), "-q", "--map=map.png", "--map-bounds=-5,-40,5,0", "-o", "out.png"});
    QCOMPARE(result.code, code);
    QCOMPARE(result.lines().size(), 1);
    QVERIFY(result.err.contains(QLatin1String("map.png: the map picture")));
}

void tst_KelRender::ownMapPictureMayBeCutOff()
{
    QImage map(400, 100, QImage::Format_RGB32);
    for (int y = 0; y < map.height(); ++y) {
        for (int x = 0; x < map.width(); ++x)
            map.setPixel(x, y, qRgb(x * y % 256, x % 256, y));
    }
    QVERIFY(map.save(path("whole.jpg")));
    const QByteArray whole = contentOf(path("whole.jpg"));
    write("cut.jpg", whole.left(whole.size() / 2));
    const QString track = writeTrack("track.gpx", "0,-38 0,-30");
    const QStringList look{track, "-q", "--map-bounds=-5,-40,5,0", "-o", "out.png"};

    const Result cut = run(look + QStringList{"--map=cut.jpg"});
    QCOMPARE(cut.code, 0);
    QCOMPARE(cut.lines().size(), 1);
    QVERIFY2(cut.err.startsWith(QLatin1String("kel-render: warning: cut.jpg: the map picture may be damaged: ")),
             qPrintable(cut.err));
    QCOMPARE(run(look + QStringList{"--map=whole.jpg"}).err, QString());
}

// ------------------------------------------------------------------------------------- info, export and selections

void tst_KelRender::infoTellsEverything()
{
    const QString file = write(
        "walk.gpx",
        "<gpx><trk><name>A\nwalk</name><trkseg><trkpt lat=\"50\" lon=\"8\"><time>2024-05-11T09:30:00Z</time></trkpt>"
        "<trkpt lat=\"51\" lon=\"8\"><time>2024-05-11T10:30:00Z</time></trkpt></trkseg>"
        "<trkseg><trkpt lat=\"51\" lon=\"9\"/><trkpt lat=\"52\" lon=\"9\">"
        "<time>2024-05-11T12:00:00Z</time></trkpt></trkseg></trk>"
        "<trk><trkseg><trkpt lat=\"1\" lon=\"2\"/></trkseg><shape>auto</shape></trk></gpx>");
    const Result result = run({file, "--info", "--quiet"});
    QCOMPARE(result.code, 0);
    QCOMPARE(result.err, QString());
    // Two meridian pieces of one degree, 6370 km × π / 180 each; the gap between the segments does not count.
    QCOMPARE(QString::fromUtf8(result.out),
             "name:     A walk\n"
             "shape:    linestring\n"
             "segments: 2\n"
             "points:   4\n"
             "length:   222.35 km\n"
             "bounds:   50.00000,8.00000,52.00000,9.00000\n"
             "time:     2024-05-11T09:30:00Z to 2024-05-11T12:00:00Z\n"
             "\n"
             "name:     walk 2\n"
             "shape:    point\n"
             "segments: 1\n"
             "points:   1\n"
             "length:   0.00 km\n"
             "bounds:   1.00000,2.00000,1.00000,2.00000\n"
             "time:     -\n");
}

void tst_KelRender::infoOfAFlightTakesTheShortWay()
{
    const Result result = run({writeTrack("flight.gpx", "-10,170 10,-170"), "--info", "-q"});
    QCOMPARE(result.code, 0);
    QVERIFY(result.out.contains("bounds:   -10.00000,170.00000,10.00000,-170.00000\n"));
}

void tst_KelRender::infoOfAWideTrackIsExact()
{
    // West of Greenwich to the date line and on: the free part lies between 10.123° and 150.456° east.
    const QString file = writeTrack("wide.gpx", "1,10.123 2,-60 3,-130 4,160 5,150.456");
    const Result result = run({file, "--info", "-q"});
    QVERIFY2(result.out.contains("bounds:   1.00000,150.45600,5.00000,10.12300\n"), result.out.constData());
}

void tst_KelRender::infoTellsTheTimesOfStoredTracks()
{
    write("walk.gpx",
          "<gpx><trk><trkseg><trkpt lat=\"50\" lon=\"8\"><time>2024-05-11T09:30:00Z</time></trkpt>"
          "<trkpt lat=\"51\" lon=\"8\"><time>1980-05-11T10:30:00Z</time></trkpt></trkseg></trk></gpx>");
    const QByteArray expected = "time:     1980-05-11T10:30:00Z to 2024-05-11T09:30:00Z\n";
    QVERIFY(run({"walk.gpx", "-q", "--info"}).out.endsWith(expected));
    QCOMPARE(run({"walk.gpx", "-q", "--export=once.gpx", "--save-selection=trip.xml"}).code, 0);
    QCOMPARE(run({"once.gpx", "-q", "--export=twice.gpx"}).code, 0);
    QVERIFY(contentOf(path("once.gpx")).contains("1715419800000"));
    for (const char *argument : {"once.gpx", "twice.gpx", "--selection=trip.xml"}) {
        const Result result = run({QString::fromLatin1(argument), "-q", "--info"});
        QVERIFY2(result.out.endsWith(expected), result.out.constData());
    }
}

void tst_KelRender::hugeFile()
{
    constexpr int COUNT = 50000;
    QByteArray xml = "<gpx><trk><trkseg>";
    for (int i = 0; i < COUNT; ++i) {
        xml += "<trkpt lat=\"" + QByteArray::number(50 + std::sin(i / 500.0)) + "\" lon=\""
            + QByteArray::number(8 + i * 1e-5) + "\"/>\n";
    }
    write("huge.gpx", xml + "</trkseg></trk></gpx>");
    const Result result = run({"huge.gpx", "-q", "--info", "-o", "out.png"});
    QCOMPARE(result.code, 0);
    QVERIFY(result.out.contains("points:   50000\n"));
    QVERIFY(!QImage(path("out.png")).isNull());
}

void tst_KelRender::exportSingleTrack()
{
    writeTrack("in.gpx", "50,8 51,9 52,8", "My way");
    write("out.gpx", "former");
    const Result result = run({"in.gpx", "--export", "out.gpx"});
    QCOMPARE(result.code, 0);
    QVERIFY(result.err.contains(QLatin1String("out.gpx: exported \"My way\"")));
    const QByteArray expected = run({"in.gpx", "-q", "--info"}).out;
    QCOMPARE(run({"out.gpx", "-q", "--info"}).out, expected);
}

void tst_KelRender::exportSeveralTracks()
{
    writeTrack("one.gpx", "50,8 51,9", "One");
    writeTrack("two.gpx", "40,8 41,9", "Two");
    write("out_2.gpx", "somebody else's");
    const Result result = run({"one.gpx", "two.gpx", "--export", "out.gpx"});
    QCOMPARE(result.code, 0);
    QCOMPARE(contentOf(path("out_2.gpx")), QByteArray("somebody else's"));
    QVERIFY(run({"out.gpx", "-q", "--info"}).out.startsWith("name:     One\n"));
    QVERIFY(run({"out_3.gpx", "-q", "--info"}).out.startsWith("name:     Two\n"));
    QVERIFY(result.lines().contains("kel-render: out_3.gpx: exported \"Two\""));
}

void tst_KelRender::exportThatFails()
{
    writeTrack("one.gpx", "50,8 51,9");
    const Result folder = run({"one.gpx", "-q", "--export", "none/out.gpx"});
    QCOMPARE(folder.code, 7);
    QCOMPARE(folder.lines().size(), 1);
    const Result suffix = run({"one.gpx", "-q", "--export", "out.kml"});
    QCOMPARE(suffix.code, 5);
}

void tst_KelRender::selectionRoundTrip()
{
    writeTrack("one.gpx", "50,8 51,9", "One");
    writeTrack("two.gpx", "50,9 51,10", "Two");
    const QImage before = picture({"one.gpx", "two.gpx", "--line-width=6", "--crop=120", "--save-selection=trip.xml"});
    QVERIFY(!before.isNull());
    QCOMPARE(QDir(path("trip.tracks")).entryList(QDir::Files).size(), 2);
    QVERIFY(!contentOf(path("trip.xml")).contains("compressedPoints"));
    QVERIFY(QFile::remove(path("one.gpx")));

    QVERIFY(picture({"--selection=trip.xml"}) == before);
    // Options still have the last word.
    QCOMPARE(picture({"--selection=trip.xml", "--crop=7", "--no-attribution"}).pixelColor(1599, 999).alpha(), 7);

    // Saving again stores no track twice, and a new one beside the old ones.
    QCOMPARE(run({"--selection=trip.xml", "two.gpx", "--save-selection=trip.xml"}).code, 0);
    QCOMPARE(QDir(path("trip.tracks")).entryList(QDir::Files).size(), 2);
    const QByteArray info = run({"--selection=trip.xml", "--info"}).out;
    QCOMPARE(info.count("name:     Two"), 2);
    QCOMPARE(info.count("name:     One"), 1);
}

void tst_KelRender::selectionInTheWorkingDirectory()
{
    writeTrack("one.gpx", "50,8 51,9", "One");
    QCOMPARE(run({"one.gpx", "--save-selection=trip.xml"}).code, 0);
    const Result result = runProgram(
        "/bin/sh",
        {"-c",
         "cd trip.tracks && exec \"$0\" --selection ../trip.xml ../one.gpx -q --info --save-selection ../trip.xml",
         QStringLiteral(KEL_RENDER_PROGRAM)});
    QCOMPARE(result.code, 0);
    QCOMPARE(result.out.count("name:     One"), 2);
    QCOMPARE(QDir(path("trip.tracks")).entryList(QDir::Files).size(), 1);
}

void tst_KelRender::selectionWithMissingTrack()
{
    writeTrack("one.gpx", "50,8 51,9", "One");
    QCOMPARE(run({"one.gpx", "--save-selection=trip.xml"}).code, 0);
    QVERIFY(QDir(path("trip.tracks")).removeRecursively());
    const Result result = run({"--selection=trip.xml", "-o", "out.png"});
    QCOMPARE(result.code, 3);
    QCOMPARE(result.lines().size(), 1);
    QVERIFY2(result.err.contains(QLatin1String("trip.xml: its track file ")), qPrintable(result.err));
}

void tst_KelRender::selectionWithDamagedTrack_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("message"); // behind the name of the file

    const QByteArray head = "<kelTracks>\n";
    QTest::newRow("cut off") << head + "<trk"
                             << ":2:4: ";
    QTest::newRow("too deep") << head + QByteArray("<a>").repeated(300) + QByteArray("</a>").repeated(300) + "</kelTracks>"
                              << ":2:";
    QTest::newRow("too deep and cut off") << head + QByteArray("<a>").repeated(300) << ":2:";
    QTest::newRow("empty") << QByteArray("") << ":1:1: ";
    QTest::newRow("another document") << QByteArray("<html/>") << ": there is no track in the file";
}

void tst_KelRender::selectionWithDamagedTrack()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, message);
    writeTrack("one.gpx", "50,8 51,9", "One");
    writeTrack("two.gpx", "50,9 51,10", "Two");
    QCOMPARE(run({"one.gpx", "two.gpx", "--save-selection=trip.xml"}).code, 0);
    write("trip.tracks/track.gps", content);
    const Result result = run({"--selection=trip.xml", "-k", "--info"});
    QCOMPARE(result.code, 4);
    QCOMPARE(result.lines().size(), 1);
    QVERIFY2(result.err.contains("trip.tracks/track.gps" + message), qPrintable(result.err));
    QVERIFY(result.out.startsWith("name:     Two\n"));
    QCOMPARE(result.out.count("name:"), 1);
}

void tst_KelRender::selectionWithManyMissingTracks_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("lines");
    QTest::addColumn<QString>("last");

    QTest::newRow("all are told") << 20 << 20 << "is missing; keep the folder trip.tracks beside it\n";
    QTest::newRow("one more") << 21 << 21 << "trip.xml: 1 more of its track files are missing or malformed\n";
    QTest::newRow("thousands") << 8000 << 21 << "trip.xml: 7980 more of its track files are missing or malformed\n";
}

void tst_KelRender::selectionWithManyMissingTracks()
{
    QFETCH(int, count);
    QFETCH(int, lines);
    QFETCH(QString, last);
    QByteArray document = "<kelTracks><gpxtrack>";
    for (int i = 0; i < count; ++i)
        document += "<configuredTrack><trk><include>t" + QByteArray::number(i) + ".gps</include></trk></configuredTrack>";
    write("trip.xml", document + "</gpxtrack></kelTracks>");
    const Result result = run({"--selection=trip.xml", "--info"});
    QCOMPARE(result.code, 3);
    QCOMPARE(result.lines().size(), lines);
    QVERIFY2(result.err.endsWith(last), qPrintable(result.lines().last()));
}

void tst_KelRender::restOfASelection()
{
    writeTrack("one.gpx", "50,8 51,9", "One");
    writeTrack("two.gpx", "50,9 51,10", "Two");
    QCOMPARE(run({"one.gpx", "two.gpx", "--line-width=7", "--save-selection=trip.xml"}).code, 0);
    const QByteArray former = contentOf(path("trip.xml"));
    QVERIFY(QFile::remove(path("trip.tracks/track.gps")));

    const Result all = run({"--selection=trip.xml", "--info"});
    QCOMPARE(all.code, 3);
    QVERIFY(all.out.isEmpty());
    const Result rest = run({"--selection=trip.xml", "-k", "--info", "-o", "out.png"});
    QCOMPARE(rest.code, 3);
    QCOMPARE(rest.lines().size(), 1);
    QCOMPARE(rest.out.count("name:"), 1);
    QVERIFY(rest.out.contains("name:     Two\n"));
    QVERIFY(!QImage(path("out.png")).isNull());

    // The document still knows of both, until the user decides.
    const Result saved = run({"--selection=trip.xml", "-k", "--save-selection=trip.xml"});
    QCOMPARE(saved.code, 3);
    QVERIFY2(saved.err.contains(QLatin1String("save under another name")), qPrintable(saved.err));
    QCOMPARE(contentOf(path("trip.xml")), former);
    QCOMPARE(run({"--selection=trip.xml", "-k", "--save-selection=rest.xml"}).code, 3);
    const Result restored = run({"--selection=rest.xml", "--info"});
    QCOMPARE(restored.code, 0);
    QCOMPARE(restored.out.count("name:"), 1);
    QVERIFY(contentOf(path("rest.xml")).contains("<pensize>7</pensize>"));

    // A document that cannot be read at all is not overwritten with what else was named.
    write("trip.xml", "<kelTracks>");
    QCOMPARE(run({"--selection=trip.xml", "one.gpx", "-k", "--save-selection=trip.xml"}).code, 4);
    QCOMPARE(contentOf(path("trip.xml")), QByteArray("<kelTracks>"));
}

void tst_KelRender::selectionThatIsNone_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("message");

    QTest::newRow("missing") << QByteArray() << 3 << "trip.xml: the selection cannot be read";
    QTest::newRow("empty") << QByteArray("") << 4 << "trip.xml:1:1: ";
    QTest::newRow("cut off") << QByteArray("<kelTracks>\n<gpxtrack>") << 4 << "trip.xml:2:10: ";
    QTest::newRow("cut off behind a line") << QByteArray("<kelTracks>\n") << 4 << "trip.xml:2:1: ";
    QTest::newRow("without tracks") << QByteArray("<kelTracks><gpxtrack/></kelTracks>") << 6 << "nothing to draw";
    QTest::newRow("another document") << QByteArray("<html/>") << 4 << "no stored selection";
}

void tst_KelRender::selectionThatIsNone()
{
    QFETCH(QByteArray, content);
    QFETCH(int, code);
    QFETCH(QString, message);

    if (!content.isNull())
        write("trip.xml", content);
    const Result result = run({"--selection=trip.xml", "-o", "out.png"});
    QCOMPARE(result.code, code);
    QCOMPARE(result.lines().size(), 1);
    QVERIFY2(result.err.contains(message), qPrintable(result.err));
}

void tst_KelRender::selectionThatCannotBeSaved()
{
    writeTrack("one.gpx", "50,8 51,9", "One");
    QCOMPARE(run({"one.gpx", "--save-selection=trip.xml"}).code, 0);
    const QByteArray former = contentOf(path("trip.xml"));
    QByteArray points;
    for (int i = 0; i < 2000; ++i)
        points += QByteArray::number(50 + i * 0.001) + ",8 ";
    writeTrack("long.gpx", points.trimmed(), "Long");

    const Result result = runProgram(
        "/bin/bash",
        {"-c", "ulimit -f 8; exec \"$0\" long.gpx -q --save-selection trip.xml", QStringLiteral(KEL_RENDER_PROGRAM)});
    QCOMPARE(result.code, 7);
    QCOMPARE(result.lines().size(), 1);
    QVERIFY2(result.err.contains(QLatin1String("trip.xml: the selection was not saved")), qPrintable(result.err));
    QCOMPARE(contentOf(path("trip.xml")), former);
    QCOMPARE(QDir(path("trip.tracks")).entryList(QDir::Files | QDir::Hidden).size(), 1);
    QVERIFY(run({"--selection=trip.xml", "--info"}).out.contains("name:     One"));

    const Result folder = run({"one.gpx", "-q", "--save-selection=one.gpx/trip.xml"});
    QCOMPARE(folder.code, 7);
    QCOMPARE(folder.lines().size(), 1);
}

// --------------------------------------------------------------------------------------------------- beelines, KML

void tst_KelRender::beelinePlaces_data()
{
    QTest::addColumn<QString>("place");
    QTest::addColumn<QByteArray>("southWest"); // where a line to (60, 30) begins

    QTest::newRow("letters and decimals") << "N53.14 E8.21" << QByteArray("53.14000,8.21000,");
    QTest::newRow("blanks around") << "  N53.14   E8.21 " << QByteArray("53.14000,8.21000,");
    QTest::newRow("south and west") << "S33.5 W70.25" << QByteArray("-33.50000,-70.25000,");
    QTest::newRow("two numbers") << "53.14, 8.21" << QByteArray("53.14000,8.21000,");
    QTest::newRow("negative numbers") << "-33.5,-70.25" << QByteArray("-33.50000,-70.25000,");
    QTest::newRow("degrees, minutes, seconds") << "53,8,24 N; 8,12,36 E" << QByteArray("53.14000,8.21000,");
    QTest::newRow("with their signs") << "53°, 8', 24\" N; 8°, 12', 36\" E" << QByteArray("53.14000,8.21000,");
    QTest::newRow("a known place") << "Oldenburg" << QByteArray("53.14118,8.21467,");
    QTest::newRow("in any case, with a blank") << "new york" << QByteArray("40.73061,-73.93524,");
}

void tst_KelRender::beelinePlaces()
{
    QFETCH(QString, place);
    QFETCH(QByteArray, southWest);

    const Result result = run({"--beeline", place, "60,30", "--info", "-q"});
    QCOMPARE(result.err, QString());
    QCOMPARE(result.code, 0);
    QVERIFY2(result.out.contains("bounds:   " + southWest), result.out.constData());
}

void tst_KelRender::beelineBetweenNoPlaces_data()
{
    QTest::addColumn<QString>("place");

    for (const char *place : {"", " ", "N53.14", "N53.14 E", "E8.21 N53.14", "N53.14 E8.21 x", "N53.14 O8.21", "nan,1",
                              "inf,1", "53.14,181", "-91,0", "1,2,3", "99,0,0 N; 8,0,0 E", "0,0", "Atlantis"})
        QTest::newRow(*place ? place : "empty") << QString::fromLatin1(place);
}

void tst_KelRender::beelineBetweenNoPlaces()
{
    QFETCH(QString, place);

    for (const QStringList &places : {QStringList{place, "Sydney"}, QStringList{"Sydney", place}}) {
        const Result result = run(QStringList{"--beeline"} + places + QStringList{"-o", "out.png"});
        QCOMPARE(result.code, 2);
        QCOMPARE(result.lines().size(), 1);
        QVERIFY2(result.err.contains(QStringLiteral("\"%1\" is no place").arg(place)), qPrintable(result.err));
    }
    QVERIFY(!QFileInfo::exists(path("out.png")));
}

void tst_KelRender::beelineThatLacksAPlace()
{
    writeTrack("track.gpx", EQUATOR);
    // Options are not taken for places.
    for (const QStringList &arguments : {QStringList{"--beeline", "Sydney", "--info", "track.gpx"}, QStringList{"--beeline", "--info"},
                                         QStringList{"track.gpx", "--info", "--beeline"}}) {
        const Result result = run(arguments);
        QCOMPARE(result.code, 2);
        QVERIFY2(result.err.contains("--beeline needs two places"), qPrintable(result.err));
    }
    QCOMPARE(run({"--beeline", "-33.9,151.2", "-34,152", "--info"}).code, 0);
}

void tst_KelRender::beelineNames()
{
    const Result result = run({"--beeline", "Bremen", "Sydney", "--name", "Long way", "--beeline", "LA", "Honolulu",
                               "--beeline", "LA", "Passau", "--name=Third", "--info", "-q"});
    QCOMPARE(result.code, 0);
    QCOMPARE(result.out.count("name:"), 3);
    QVERIFY(result.out.contains("name:     Long way\n"));
    QVERIFY(result.out.contains("name:     LA – Honolulu\n"));
    QVERIFY(result.out.contains("name:     Third\n"));
}

void tst_KelRender::beelineCrossesTheDateLine()
{
    const Result result = run({"--beeline", "Helsinki", "Honolulu", "--info", "-q"});
    QCOMPARE(result.code, 0);
    const QString bounds = QString::fromUtf8(result.out).section("bounds:   ", 1).section(QLatin1Char('\n'), 0, 0);
    const QStringList edges = bounds.split(QLatin1Char(','));
    QCOMPARE(edges.size(), 4);
    QVERIFY(std::abs(edges.at(1).toDouble() - 24.92967) < 1e-5);  // from Helsinki
    QVERIFY(std::abs(edges.at(3).toDouble() + 157.85809) < 1e-5); // east to Honolulu
    QVERIFY(edges.at(2).toDouble() > 75);                         // over the Arctic Ocean
}

void tst_KelRender::kmlStylesAreKept()
{
    const QString file = write(
        "tour.kml",
        "<kml><Document><Style id=\"red\"><LineStyle><color>ff0000ff</color><width>1</width></LineStyle></Style>"
        "<Folder><Placemark><styleUrl>#red</styleUrl><LineString><coordinates>-30,2 -10,2</coordinates>"
        "</LineString></Placemark>"
        "<Placemark><LineString><coordinates>-30,0 -10,0</coordinates></LineString></Placemark>"
        "<Placemark><LineString><coordinates>-30,-2 -10,-2</coordinates></LineString></Placemark>"
        "</Folder></Document></kml>");
    const QImage image = picture(QStringList{file} + EQUATOR_VIEW);
    QCOMPARE(image.pixelColor(203, 30), QColor(Qt::red)); // alpha, blue, green, red
    QCOMPARE(rowsOfColor(image, 203, Qt::red), 5);        // 6 times the width
    // The two without a style are told apart.
    const QColor second = image.pixelColor(203, 50);
    const QColor third = image.pixelColor(203, 70);
    QVERIFY(second != third);
    QVERIFY(second != QColor(Qt::red) && third != QColor(Qt::red));
}

void tst_KelRender::kmzDrawsTheSameAsKml()
{
    const QImage kml = picture({example("tour.kml")});
    QVERIFY(!kml.isNull());
    QVERIFY(picture({example("tour.kmz")}) == kml);
}

void tst_KelRender::exampleTracksAllDraw()
{
    const Result result = run({example(QString()), "-o", "out.png", "--info"});
    QCOMPARE(result.code, 0);
    QCOMPARE(result.lines().size(), 7);
    for (const QString &line : result.lines())
        QVERIFY2(!line.contains(QLatin1String("warning")), qPrintable(line));
    QCOMPARE(result.out.count("name:"), 17);
    QVERIFY(result.out.contains("segments: 5\n")); // the long ride
    QVERIFY(result.out.contains("enclaves: 1\n")); // the polygon
    QVERIFY(result.out.contains("name:     Around Iceland\n"));
}

QTEST_MAIN(tst_KelRender)
#include "tst_KelRender.moc"
