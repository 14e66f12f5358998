// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <QColor>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QProcess>
#include <QProcessEnvironment>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <QXmlStreamReader>
#include <QtTest>

#include <cmath>
#include <memory>

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
    void wrongUse_data();
    void wrongUse();
    void unreadableInput_data();
    void unreadableInput();
    void filesWithoutTracksAreExplained_data();
    void filesWithoutTracksAreExplained();
    void unwritableOutput_data();
    void unwritableOutput();
    void fileSizeLimitKeepsTheFormerFile();
    void readOnlyFileIsNotReplaced();
    void failingInputKeepsTheFormerFile();
    void formerFileIsReplacedAsAWhole();
    void linkedOutputStaysALink();
    void keepGoingDrawsTheRest();

    void formats_data();
    void formats();
    void formatOptionOverridesTheSuffix();
    void standardOutputGetsThePicture();
    void noDisplayIsNeeded();
    void everyFileIsMentionedOnce();
    void quietSaysNothing();
    void noProgressInAPipe();
    void lineBreaksInFileNamesStayInOneLine();

    void landAndSea();
    void darkMap();
    void trackLiesWhereItBelongs();
    void paddingLeavesTheBorderFree();
    void singleTrackHasTheUsersColor();
    void severalTracksHaveColorsOfTheirOwn();
    void storedDefaultStyleIsUsed();
    void dateLineFlightIsUnbroken();
    void boundsAcrossTheDateLine();
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

    void ownMapPicture();
    void ownMapPictureMayBeBad_data();
    void ownMapPictureMayBeBad();

    void infoTellsEverything();
    void infoOfAFlightTakesTheShortWay();
    void exportSingleTrack();
    void exportSeveralTracks();
    void exportThatFails();
    void selectionRoundTrip();
    void selectionInTheWorkingDirectory();
    void selectionWithMissingTrack();
    void selectionThatIsNone_data();
    void selectionThatIsNone();
    void selectionThatCannotBeSaved();

    void beelinePlaces_data();
    void beelinePlaces();
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
    [[nodiscard]] Result runProgram(const QString &program, const QStringList &arguments, const QString &redirectOutput = QString()) const;
    [[nodiscard]] QString path(const QString &name) const { return m_dir->filePath(name); }
    QString write(const QString &name, const QByteArray &content) const;
    QString writeTrack(const QString &name, const QByteArray &points, const QByteArray &title = "Track") const;
    [[nodiscard]] QImage picture(const QStringList &arguments) const;
    [[nodiscard]] static QByteArray contentOf(const QString &fileName);
    [[nodiscard]] static QString example(const QString &name) { return QStringLiteral(KEL_EXAMPLES_DIR "/tracks/") + name; }

    std::unique_ptr<QTemporaryDir> m_dir;
    QProcessEnvironment m_environment;
};

namespace
{

const QColor SEA(0xc6, 0xdb, 0xe6);
const QColor LAND(0xf5, 0xf2, 0xea);
constexpr int GRATICULE = 40; // how far a line of the graticule changes the colour of the sea
const QColor DEFAULT_LINE(255, 145, 0);

/// A straight line along the equator, far from any coast, and bounds that show it 10 pixels to the degree.
const QByteArray EQUATOR = "0,-30 0,-10";
const QStringList EQUATOR_VIEW = {QStringLiteral("--bounds=-5,-40,5,0"), QStringLiteral("--size=400x101"), QStringLiteral("--no-scale"),
                                  QStringLiteral("--no-attribution")};

int rowsOfColor(const QImage &image, int column, const QColor &color)
{
    int rows = 0;
    for (int y = 0; y < image.height(); ++y)
        rows += image.pixelColor(column, y) == color ? 1 : 0;
    return rows;
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
    m_environment = QProcessEnvironment::systemEnvironment();
    for (const char *name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        m_environment.remove(QString::fromLatin1(name));
    m_environment.insert(QStringLiteral("XDG_CONFIG_HOME"), m_dir->filePath(QStringLiteral("config")));
    m_environment.insert(QStringLiteral("ASAN_OPTIONS"), QStringLiteral("detect_leaks=0"));
}

tst_KelRender::Result tst_KelRender::run(const QStringList &arguments, const QString &redirectOutput) const
{
    return runProgram(QStringLiteral(KEL_RENDER_PROGRAM), arguments, redirectOutput);
}

tst_KelRender::Result tst_KelRender::runProgram(const QString &program, const QStringList &arguments, const QString &redirectOutput) const
{
    QProcess process;
    process.setProcessEnvironment(m_environment);
    process.setWorkingDirectory(m_dir->path());
    process.setStandardInputFile(QProcess::nullDevice());
    if (!redirectOutput.isEmpty())
        process.setStandardOutputFile(redirectOutput);
    process.start(program, arguments);
    if (!process.waitForFinished(120000))
        return {};
    Result result;
    result.code = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : 1000;
    result.out = process.readAllStandardOutput();
    result.err = QString::fromUtf8(process.readAllStandardError());
    return result;
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
    const QString file = path(QStringLiteral("picture.png"));
    const Result result = run(arguments + QStringList{QStringLiteral("-o"), file});
    if (result.code != 0)
        qWarning("exit code %d: %s", result.code, qPrintable(result.err));
    return QImage(file).convertToFormat(QImage::Format_ARGB32);
}

// ---------------------------------------------------------------------------------------------------- what it says

void tst_KelRender::helpNamesOptionsAndExitCodes()
{
    const Result result = run({QStringLiteral("--help")});
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
    const Result result = run({QStringLiteral("--version")});
    QCOMPARE(result.code, 0);
    QVERIFY(QRegularExpression(QStringLiteral("^kel-render \\d+\\.\\d+\\.\\d+\n$")).match(QString::fromUtf8(result.out)).hasMatch());
}

void tst_KelRender::manualPageNamesEveryOption()
{
    QString manual = QString::fromUtf8(contentOf(QStringLiteral(KEL_EXAMPLES_DIR "/../docs/man/kel-render.1")));
    QVERIFY(!manual.isEmpty());
    manual.remove(QLatin1Char('\\'));
    const QString help = QString::fromUtf8(run({QStringLiteral("--help")}).out);
    const QRegularExpression option(QStringLiteral("^ +(?:-\\w, |    )--([a-z-]+)"), QRegularExpression::MultilineOption);
    int count = 0;
    for (auto matches = option.globalMatch(help); matches.hasNext(); ++count) {
        const QString name = QStringLiteral("--") + matches.next().captured(1);
        QVERIFY2(manual.contains(name), qPrintable(name));
    }
    QVERIFY(count > 30);
    for (int code = 0; code <= 7; ++code)
        QVERIFY(manual.contains(QStringLiteral(".B %1\n").arg(code)));
}

void tst_KelRender::wrongUse_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("message");

    const auto row = [](const char *name, const QString &arguments, const QString &message) {
        QTest::newRow(name) << (arguments.isEmpty() ? QStringList() : arguments.split(QLatin1Char('|'))) << message;
    };
    row("nothing at all", QString(), QStringLiteral("no tracks named"));
    row("no result", QStringLiteral("track.gpx"), QStringLiteral("no result named"));
    row("no input", QStringLiteral("-o|out.png"), QStringLiteral("no tracks named"));
    row("unknown option", QStringLiteral("track.gpx|-o|out.png|--frobnicate"), QStringLiteral("frobnicate"));
    row("option without its value", QStringLiteral("track.gpx|-o"), QStringLiteral("--help"));
    row("unknown format", QStringLiteral("track.gpx|-o|out.png|--format|bmp"), QStringLiteral("use one of png, jpg, webp, pdf, svg"));
    row("size without height", QStringLiteral("track.gpx|-o|out.png|--size|400"), QStringLiteral("--size 400"));
    row("size of letters", QStringLiteral("track.gpx|-o|out.png|--size|axb"), QStringLiteral("1600x1000"));
    row("size too small", QStringLiteral("track.gpx|-o|out.png|--size|15x400"), QStringLiteral("16 to"));
    row("size too wide", QStringLiteral("track.gpx|-o|out.png|--size|32768x16"), QStringLiteral("32767"));
    row("size too wide for WebP", QStringLiteral("track.gpx|-o|out.webp|--size|16384x16"), QStringLiteral("16383"));
    row("size too large as a whole", QStringLiteral("track.gpx|-o|out.png|--size|20000x20000"), QStringLiteral("100 million"));
    row("size beyond all numbers", QStringLiteral("track.gpx|-o|out.png|--size|99999999999x10"), QStringLiteral("--size"));
    row("scale factor 0", QStringLiteral("track.gpx|-o|out.png|--scale-factor|0"), QStringLiteral("--scale-factor 0"));
    row("scale factor that is no number", QStringLiteral("track.gpx|-o|out.png|--scale-factor|nan"), QStringLiteral("0.05 to 20"));
    row("negative padding", QStringLiteral("track.gpx|-o|out.png|--padding=-1"), QStringLiteral("--padding -1"));
    row("bounds of three numbers", QStringLiteral("track.gpx|-o|out.png|--bounds|1,2,3"), QStringLiteral("SOUTH,WEST,NORTH,EAST"));
    row("bounds upside down", QStringLiteral("track.gpx|-o|out.png|--bounds|10,0,5,10"), QStringLiteral("south below north"));
    row("bounds without width", QStringLiteral("track.gpx|-o|out.png|--bounds|0,5,10,5"), QStringLiteral("--bounds"));
    row("bounds off the globe", QStringLiteral("track.gpx|-o|out.png|--bounds|0,0,10,181"), QStringLiteral("--bounds"));
    row("bounds beyond the pole", QStringLiteral("track.gpx|-o|out.png|--bounds|0,0,91,10"), QStringLiteral("--bounds"));
    row("bounds above Mercator's edge", QStringLiteral("track.gpx|-o|out.png|--bounds|86,0,89,10"), QStringLiteral("--bounds"));
    row("an area of millimetres", QStringLiteral("track.gpx|-o|out.png|--bounds|1,1,1.0000001,1.0000001|--size|20000x100"), QStringLiteral("too small"));
    row("a row of worlds", QStringLiteral("track.gpx|-o|out.png|--bounds|-85,-180,85,180|--size|32767x16"), QStringLiteral("more than 100 times"));
    row("colour", QStringLiteral("track.gpx|-o|out.png|--line-color|reddish"), QStringLiteral("reddish is not a colour"));
    row("line width", QStringLiteral("track.gpx|-o|out.png|--line-width|thick"), QStringLiteral("--line-width thick"));
    row("pen style", QStringLiteral("track.gpx|-o|out.png|--pen-style|wavy"), QStringLiteral("dash-dot-dot"));
    row("display options", QStringLiteral("track.gpx|-o|out.png|--display-options|stroke,glow"), QStringLiteral("--display-options stroke,glow"));
    row("marker", QStringLiteral("track.gpx|-o|out.png|--marker|heart"), QStringLiteral("--marker heart"));
    row("shape", QStringLiteral("track.gpx|-o|out.png|--shape|blob"), QStringLiteral("--shape blob"));
    row("smoothing above 100", QStringLiteral("track.gpx|-o|out.png|--smoothing|101"), QStringLiteral("--smoothing 101"));
    row("smoothing in no piece", QStringLiteral("track.gpx|-o|out.png|--smoothing-steps|0"), QStringLiteral("--smoothing-steps 0"));
    row("crop above 255", QStringLiteral("track.gpx|-o|out.png|--crop|256"), QStringLiteral("--crop 256"));
    row("crop above 100 percent", QStringLiteral("track.gpx|-o|out.png|--crop|101%"), QStringLiteral("--crop 101%"));
    row("quality", QStringLiteral("track.gpx|-o|out.jpg|--quality|0"), QStringLiteral("--quality 0"));
    row("map without its bounds", QStringLiteral("track.gpx|-o|out.png|--map|map.png"), QStringLiteral("--map-bounds"));
    row("map bounds without a map", QStringLiteral("track.gpx|-o|out.png|--map-bounds|0,0,1,1"), QStringLiteral("--map "));
    row("map and no map", QStringLiteral("track.gpx|-o|out.png|--map|m.png|--map-bounds|0,0,1,1|--no-map"), QStringLiteral("contradict"));
    row("two things on standard output", QStringLiteral("track.gpx|-o|-|--info"), QStringLiteral("standard output"));
    row("beeline to nowhere", QStringLiteral("-o|out.png|--beeline|Sydney"), QStringLiteral("--beeline needs two places"));
    row("beeline between no places", QStringLiteral("-o|out.png|--beeline|Sydney|Atlantis"), QStringLiteral("\"Atlantis\" is no place"));
    row("beeline off the globe", QStringLiteral("-o|out.png|--beeline|Sydney|N91 E0"), QStringLiteral("\"N91 E0\" is no place"));
    row("name before any beeline", QStringLiteral("-o|out.png|--name|x|--beeline|LA|Sydney"), QStringLiteral("put the --beeline first"));
}

void tst_KelRender::wrongUse()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, message);

    writeTrack(QStringLiteral("track.gpx"), EQUATOR);
    const Result result = run(QStringList{QStringLiteral("--quiet")} + arguments);
    QCOMPARE(result.code, 2);
    QCOMPARE(result.lines().size(), 1);
    QVERIFY2(result.err.startsWith(QLatin1String("kel-render: ")), qPrintable(result.err));
    QVERIFY2(result.err.contains(message), qPrintable(result.err));
    QVERIFY(result.out.isEmpty());
    QVERIFY(!QFileInfo::exists(path(QStringLiteral("out.png"))));
}

void tst_KelRender::unreadableInput_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content"); // null: no such file
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("message");

    QTest::newRow("missing") << QStringLiteral("a.gpx") << QByteArray() << 3 << QStringLiteral("a.gpx: no such file or folder");
    QTest::newRow("missing folder") << QStringLiteral("none/a.gpx") << QByteArray() << 3 << QStringLiteral("none/a.gpx: no such file");
    QTest::newRow("empty GPX") << QStringLiteral("a.gpx") << QByteArray("") << 4 << QStringLiteral("a.gpx: the file is empty");
    QTest::newRow("empty KML") << QStringLiteral("a.kml") << QByteArray("") << 4 << QStringLiteral("a.kml: the file is empty");
    QTest::newRow("empty KMZ") << QStringLiteral("a.kmz") << QByteArray("") << 4 << QStringLiteral("a.kmz: the file is empty");
    QTest::newRow("truncated GPX") << QStringLiteral("a.gpx") << QByteArray("<gpx>\n<trk>\n<trkseg><trkpt lat=\"1\" lon=\"2\"/>\n") << 4
                                   << QStringLiteral("a.gpx:");
    QTest::newRow("tags that do not match") << QStringLiteral("a.gpx") << QByteArray("<gpx>\n  <trk></rte>\n</gpx>") << 4 << QStringLiteral("a.gpx:2:");
    QTest::newRow("truncated KML") << QStringLiteral("a.kml") << QByteArray("<kml>\n<Document>\n<Placemark>\n") << 4 << QStringLiteral("a.kml:");
    QTest::newRow("binary GPX") << QStringLiteral("a.gpx") << QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0\0\xff\xfe", 20) << 4 << QStringLiteral("a.gpx:1:");
    QTest::newRow("KMZ that is no archive") << QStringLiteral("a.kmz") << QByteArray("PK\x03\x04 and no more") << 4 << QStringLiteral("a.kmz: ");
    QTest::newRow("another kind of file") << QStringLiteral("a.txt") << QByteArray("text") << 5 << QStringLiteral("use *.gpx, *.kml, *.kmz");
    QTest::newRow("no suffix") << QStringLiteral("track") << QByteArray("<gpx/>") << 5 << QStringLiteral("track: not a kind of file");
}

void tst_KelRender::unreadableInput()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    QFETCH(int, code);
    QFETCH(QString, message);

    if (!content.isNull())
        write(name, content);
    const Result result = run({name, QStringLiteral("-o"), QStringLiteral("out.png")});
    QCOMPARE(result.code, code);
    QCOMPARE(result.lines().size(), 1);
    QVERIFY2(result.err.contains(message), qPrintable(result.err));
    QVERIFY(!QFileInfo::exists(path(QStringLiteral("out.png"))));
    if (name.endsWith(QLatin1String(".gpx")) && code == 4 && !content.isEmpty()) {
        const QRegularExpression place(QStringLiteral("^kel-render: a\\.gpx:[1-9]\\d*:[1-9]\\d*: \\S"));
        QVERIFY2(place.match(result.err).hasMatch(), qPrintable(result.err));
    }
}

void tst_KelRender::filesWithoutTracksAreExplained_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("message");

    QTest::newRow("only waypoints") << QStringLiteral("a.gpx") << QByteArray("<gpx><wpt lat=\"1\" lon=\"2\"/></gpx>") << QStringLiteral("waypoints");
    QTest::newRow("plain route points") << QStringLiteral("a.gpx") << QByteArray("<gpx><rte><rtept lat=\"1\" lon=\"2\"/></rte></gpx>")
                                        << QStringLiteral("plain route points");
    QTest::newRow("tracks without points") << QStringLiteral("a.gpx") << QByteArray("<gpx><trk><trkseg/></trk></gpx>") << QStringLiteral("points");
    QTest::newRow("nothing in it") << QStringLiteral("a.gpx") << QByteArray("<gpx/>") << QStringLiteral("no tracks");
    QTest::newRow("not GPX at all") << QStringLiteral("a.gpx") << QByteArray("<html><body/></html>") << QStringLiteral("html");
    QTest::newRow("no Document") << QStringLiteral("a.kml") << QByteArray("<kml><Placemark><Point><coordinates>1,2</coordinates></Point></Placemark></kml>")
                                 << QStringLiteral("Document");
    QTest::newRow("no placemarks") << QStringLiteral("a.kml") << QByteArray("<kml><Document/></kml>") << QStringLiteral("no placemarks");
    QTest::newRow("placemarks without coordinates") << QStringLiteral("a.kml") << QByteArray("<kml><Document><Placemark/></Document></kml>")
                                                    << QStringLiteral("coordinates");
}

void tst_KelRender::filesWithoutTracksAreExplained()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    QFETCH(QString, message);

    write(name, content);
    const Result alone = run({name, QStringLiteral("-o"), QStringLiteral("out.png")});
    QCOMPARE(alone.code, 6);
    QCOMPARE(alone.lines().size(), 2);
    QVERIFY2(alone.lines().at(0).startsWith(QStringLiteral("kel-render: warning: %1: 0 tracks: ").arg(name)), qPrintable(alone.err));
    QVERIFY2(alone.lines().at(0).contains(message), qPrintable(alone.err));
    QVERIFY2(alone.lines().at(1).contains(QLatin1String("nothing to draw")), qPrintable(alone.err));
    QVERIFY(!QFileInfo::exists(path(QStringLiteral("out.png"))));

    // Beside a file with tracks it is no more than a warning.
    const Result beside = run({name, writeTrack(QStringLiteral("b.gpx"), EQUATOR), QStringLiteral("-o"), QStringLiteral("out.png")});
    QCOMPARE(beside.code, 0);
    QVERIFY(beside.err.contains(message));
    QVERIFY(QFileInfo::exists(path(QStringLiteral("out.png"))));
}

void tst_KelRender::unwritableOutput_data()
{
    QTest::addColumn<QString>("target");
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("message");

    QTest::newRow("unknown suffix") << QStringLiteral("out.gif") << 5 << QStringLiteral("out.gif: a .gif file cannot be written");
    QTest::newRow("no suffix") << QStringLiteral("out") << 5 << QStringLiteral("the name has no suffix");
    QTest::newRow("missing folder") << QStringLiteral("none/out.png") << 7 << QStringLiteral("create the folder first");
    QTest::newRow("a file where a folder should be") << QStringLiteral("track.gpx/out.png") << 7 << QStringLiteral("track.gpx/out.png");
    QTest::newRow("a folder") << QStringLiteral("folder.png") << 7 << QStringLiteral("this is a folder");
    QTest::newRow("full device") << QStringLiteral("/dev/full") << 7 << QStringLiteral("free some space");
}

void tst_KelRender::unwritableOutput()
{
    QFETCH(QString, target);
    QFETCH(int, code);
    QFETCH(QString, message);

    const QString track = writeTrack(QStringLiteral("track.gpx"), EQUATOR);
    const QByteArray before = contentOf(track);
    QVERIFY(QDir(m_dir->path()).mkdir(QStringLiteral("folder.png")));
    QStringList arguments{track, QStringLiteral("-q"), QStringLiteral("-o"), target};
    if (target.startsWith(QLatin1String("/dev")))
        arguments << QStringLiteral("--format") << QStringLiteral("png");
    const Result result = run(arguments);
    QCOMPARE(result.code, code);
    QCOMPARE(result.lines().size(), 1);
    QVERIFY2(result.err.contains(message), qPrintable(result.err));
    QCOMPARE(contentOf(track), before);
    QCOMPARE(QDir(m_dir->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             (QStringList{QStringLiteral("folder.png"), QStringLiteral("track.gpx")}));
}

void tst_KelRender::fileSizeLimitKeepsTheFormerFile()
{
    writeTrack(QStringLiteral("track.gpx"), EQUATOR);
    write(QStringLiteral("out.png"), "the former picture");
    // The shell's limit is in blocks of 1024 bytes; the picture is larger, the scratch files of a build with sanitizers are not.
    const Result result = runProgram(QStringLiteral("/bin/bash"),
                                     {QStringLiteral("-c"), QStringLiteral("ulimit -f 1; exec \"$0\" track.gpx -q -o out.png"),
                                      QStringLiteral(KEL_RENDER_PROGRAM)});
    QCOMPARE(result.code, 7);
    QCOMPARE(result.lines().size(), 1);
    QVERIFY2(result.err.contains(QLatin1String("ulimit")), qPrintable(result.err));
    QCOMPARE(contentOf(path(QStringLiteral("out.png"))), QByteArray("the former picture"));
    QCOMPARE(QDir(m_dir->path()).entryList(QDir::Files | QDir::Hidden).size(), 2);
}

void tst_KelRender::readOnlyFileIsNotReplaced()
{
    if (geteuid() == 0)
        QSKIP("root may write everywhere");
    writeTrack(QStringLiteral("track.gpx"), EQUATOR);
    QFile file(write(QStringLiteral("out.png"), "kept"));
    QVERIFY(file.setPermissions(QFile::ReadOwner));
    const Result result = run({QStringLiteral("track.gpx"), QStringLiteral("-q"), QStringLiteral("-o"), QStringLiteral("out.png")});
    QCOMPARE(result.code, 7);
    QCOMPARE(contentOf(file.fileName()), QByteArray("kept"));
}

void tst_KelRender::failingInputKeepsTheFormerFile()
{
    write(QStringLiteral("out.png"), "the former picture");
    writeTrack(QStringLiteral("good.gpx"), EQUATOR);
    write(QStringLiteral("bad.gpx"), "<gpx>");
    const Result result = run({QStringLiteral("good.gpx"), QStringLiteral("bad.gpx"), QStringLiteral("-o"), QStringLiteral("out.png")});
    QCOMPARE(result.code, 4);
    QCOMPARE(contentOf(path(QStringLiteral("out.png"))), QByteArray("the former picture"));
}

void tst_KelRender::formerFileIsReplacedAsAWhole()
{
    QFile former(write(QStringLiteral("out.png"), QByteArray(1000000, 'x')));
    QVERIFY(former.setPermissions(QFile::ReadOwner | QFile::WriteOwner));
    QVERIFY(!picture({writeTrack(QStringLiteral("track.gpx"), EQUATOR)}).isNull());
    const Result result = run({QStringLiteral("track.gpx"), QStringLiteral("-o"), QStringLiteral("out.png")});
    QCOMPARE(result.code, 0);
    QVERIFY(contentOf(former.fileName()) == contentOf(path(QStringLiteral("picture.png"))));
    // With the permissions that the user had given it.
    QVERIFY(!(QFileInfo(former.fileName()).permissions() & (QFile::ReadGroup | QFile::ReadOther)));
}

void tst_KelRender::linkedOutputStaysALink()
{
    QVERIFY(QDir(m_dir->path()).mkdir(QStringLiteral("real")));
    const QString real = write(QStringLiteral("real/out.png"), "former");
    QVERIFY(QFile::link(real, path(QStringLiteral("out.png"))));
    QCOMPARE(run({writeTrack(QStringLiteral("track.gpx"), EQUATOR), QStringLiteral("-o"), QStringLiteral("out.png")}).code, 0);
    QVERIFY(QFileInfo(path(QStringLiteral("out.png"))).isSymLink());
    QVERIFY(!QImage(real).isNull());
}

void tst_KelRender::keepGoingDrawsTheRest()
{
    writeTrack(QStringLiteral("good.gpx"), EQUATOR);
    write(QStringLiteral("bad.gpx"), "<gpx>");
    const Result result = run({QStringLiteral("bad.gpx"), QStringLiteral("missing.gpx"), QStringLiteral("good.gpx"), QStringLiteral("-k"),
                               QStringLiteral("-o"), QStringLiteral("out.png")});
    QCOMPARE(result.code, 4); // the first failure
    QCOMPARE(result.lines().size(), 3);
    QVERIFY(!QImage(path(QStringLiteral("out.png"))).isNull());
}

// ------------------------------------------------------------------------------------------------- kinds of output

void tst_KelRender::formats_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("magic");

    QTest::newRow("PNG") << QStringLiteral("out.png") << QByteArray("\x89PNG");
    QTest::newRow("suffix in capitals") << QStringLiteral("OUT.PNG") << QByteArray("\x89PNG");
    QTest::newRow("JPEG") << QStringLiteral("out.jpg") << QByteArray("\xff\xd8\xff");
    QTest::newRow("JPEG, long suffix") << QStringLiteral("out.jpeg") << QByteArray("\xff\xd8\xff");
    QTest::newRow("WebP") << QStringLiteral("out.webp") << QByteArray("RIFF");
    QTest::newRow("PDF") << QStringLiteral("out.pdf") << QByteArray("%PDF-");
    QTest::newRow("SVG") << QStringLiteral("out.svg") << QByteArray("<?xml");
}

void tst_KelRender::formats()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, magic);

    const Result result = run({writeTrack(QStringLiteral("track.gpx"), EQUATOR), QStringLiteral("-o"), name, QStringLiteral("-s"), QStringLiteral("300x200")});
    QCOMPARE(result.code, 0);
    QVERIFY(contentOf(path(name)).startsWith(magic));
    if (!name.endsWith(QLatin1String("pdf")) && !name.endsWith(QLatin1String("svg")))
        QCOMPARE(QImage(path(name)).size(), QSize(300, 200));
}

void tst_KelRender::formatOptionOverridesTheSuffix()
{
    writeTrack(QStringLiteral("track.gpx"), EQUATOR);
    QCOMPARE(run({QStringLiteral("track.gpx"), QStringLiteral("-o"), QStringLiteral("out.dat"), QStringLiteral("--format"), QStringLiteral("JPG")}).code, 0);
    QVERIFY(contentOf(path(QStringLiteral("out.dat"))).startsWith("\xff\xd8\xff"));
}

void tst_KelRender::standardOutputGetsThePicture()
{
    writeTrack(QStringLiteral("track.gpx"), EQUATOR);
    const Result png = run({QStringLiteral("track.gpx"), QStringLiteral("-o"), QStringLiteral("-"), QStringLiteral("-s"), QStringLiteral("64x48")});
    QCOMPARE(png.code, 0);
    QCOMPARE(QImage::fromData(png.out, "PNG").size(), QSize(64, 48));
    QCOMPARE(png.lines().size(), 1); // the note about the file, and it is not in the picture

    const Result svg = run({QStringLiteral("track.gpx"), QStringLiteral("-o"), QStringLiteral("-"), QStringLiteral("--format=svg")});
    QCOMPARE(svg.code, 0);
    QVERIFY(svg.out.contains("<svg"));

    const Result full = run({QStringLiteral("track.gpx"), QStringLiteral("-q"), QStringLiteral("-o"), QStringLiteral("-")}, QStringLiteral("/dev/full"));
    QCOMPARE(full.code, 7);
    QVERIFY(full.err.contains(QLatin1String("standard output")));
}

void tst_KelRender::noDisplayIsNeeded()
{
    QVERIFY(!m_environment.contains(QStringLiteral("DISPLAY")));
    QVERIFY(!m_environment.contains(QStringLiteral("QT_QPA_PLATFORM")));
    const QString track = writeTrack(QStringLiteral("track.gpx"), EQUATOR);
    QVERIFY(!picture({track}).isNull());
    // Nor does a broken one do harm.
    m_environment.insert(QStringLiteral("DISPLAY"), QStringLiteral(":4711"));
    m_environment.insert(QStringLiteral("WAYLAND_DISPLAY"), QStringLiteral("nowhere"));
    QVERIFY(!picture({track}).isNull());
}

void tst_KelRender::everyFileIsMentionedOnce()
{
    QVERIFY(QDir(m_dir->path()).mkdir(QStringLiteral("tracks")));
    writeTrack(QStringLiteral("tracks/b.GPX"), EQUATOR);
    writeTrack(QStringLiteral("tracks/a.gpx"), EQUATOR);
    write(QStringLiteral("tracks/notes.txt"), "not a track");
    write(QStringLiteral("tracks/c.kml"), "<kml><Document><Placemark><LineString><coordinates>1,2 3,4</coordinates></LineString></Placemark>"
                                           "<Placemark><LineString><coordinates>1,2 3,4</coordinates></LineString></Placemark><Placemark/></Document></kml>");
    const Result result = run({QStringLiteral("tracks"), QStringLiteral("-o"), QStringLiteral("out.png")});
    QCOMPARE(result.code, 0);
    QCOMPARE(result.lines(), (QStringList{QStringLiteral("kel-render: tracks/a.gpx: 1 track"), QStringLiteral("kel-render: tracks/b.GPX: 1 track"),
                                          QStringLiteral("kel-render: tracks/c.kml: 2 tracks; 1 placemark without coordinates left out")}));

    QVERIFY(QDir(m_dir->path()).mkdir(QStringLiteral("empty")));
    const Result empty = run({QStringLiteral("empty/"), QStringLiteral("-o"), QStringLiteral("out.png")});
    QCOMPARE(empty.code, 6);
    QVERIFY(empty.err.contains(QLatin1String("warning: empty/: no track files in this folder (*.gpx, *.kml, *.kmz)")));
}

void tst_KelRender::quietSaysNothing()
{
    const Result result = run({writeTrack(QStringLiteral("track.gpx"), EQUATOR), QStringLiteral("--quiet"), QStringLiteral("-o"), QStringLiteral("out.png")});
    QCOMPARE(result.code, 0);
    QCOMPARE(result.err, QString());
    QCOMPARE(result.out, QByteArray());
}

void tst_KelRender::noProgressInAPipe()
{
    const Result result = run({example(QString()), QStringLiteral("-o"), QStringLiteral("out.png")});
    QCOMPARE(result.code, 0);
    QVERIFY(!result.err.contains(QLatin1Char('\r')));
    QVERIFY(!result.err.contains(QLatin1Char('\x1b')));
}

void tst_KelRender::lineBreaksInFileNamesStayInOneLine()
{
    const Result result = run({QStringLiteral("a\nb\x1b[2J.gpx"), QStringLiteral("-o"), QStringLiteral("out.png")});
    QCOMPARE(result.code, 3);
    QCOMPARE(result.lines().size(), 1);
    QVERIFY(result.err.contains(QLatin1String("a?b?[2J.gpx")));
}

// -------------------------------------------------------------------------------------------- map, tracks and area

void tst_KelRender::landAndSea()
{
    // The whole world, 4 pixels to the degree.
    const QString track = writeTrack(QStringLiteral("track.gpx"), EQUATOR);
    const QImage image = picture({track, QStringLiteral("--bounds=-85,-180,85,180"), QStringLiteral("--size=1440x1440"), QStringLiteral("--line-width=1")});
    const auto at = [&](double longitude, int y) { return image.pixelColor(static_cast<int>((longitude + 180) * 4) + 2, y); };
    const int equator = 720;
    QVERIFY(near(at(25, equator + 12), LAND)); // Congo, 3° south
    QVERIFY(near(at(-60, equator + 12), LAND)); // Amazon
    QVERIFY(near(at(-140, equator + 12), SEA)); // Pacific
    QVERIFY(near(at(75, equator + 12), SEA)); // Indian Ocean
}

void tst_KelRender::darkMap()
{
    const QString track = writeTrack(QStringLiteral("track.gpx"), EQUATOR);
    const QImage image = picture(QStringList{track, QStringLiteral("--dark")} + EQUATOR_VIEW);
    QCOMPARE(image.pixelColor(30, 30).lightness() < 60, true);
    QCOMPARE(image.pixelColor(200, 50), DEFAULT_LINE);
}

void tst_KelRender::trackLiesWhereItBelongs()
{
    const QImage image = picture(QStringList{writeTrack(QStringLiteral("track.gpx"), EQUATOR), QStringLiteral("--line-color=red"), QStringLiteral("--line-width=4")}
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
    const QString track = writeTrack(QStringLiteral("track.gpx"), "0,-30 2,-20 0,-10");
    const auto columns = [&](const QString &padding) {
        const QImage image = picture({track, QStringLiteral("--padding"), padding, QStringLiteral("--size=400x300"), QStringLiteral("--line-color=red"),
                                      QStringLiteral("--line-width=2"), QStringLiteral("--no-scale"), QStringLiteral("--no-attribution")});
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
    const auto [first, last] = columns(QStringLiteral("25"));
    QVERIFY2(std::abs(first - 100) <= 2 && std::abs(last - 299) <= 2, qPrintable(QStringLiteral("%1 %2").arg(first).arg(last)));
    const auto [edge, otherEdge] = columns(QStringLiteral("0"));
    QVERIFY2(edge <= 2 && otherEdge >= 397, qPrintable(QStringLiteral("%1 %2").arg(edge).arg(otherEdge)));
}

void tst_KelRender::singleTrackHasTheUsersColor()
{
    const QImage image = picture(QStringList{writeTrack(QStringLiteral("track.gpx"), EQUATOR)} + EQUATOR_VIEW);
    QCOMPARE(image.pixelColor(200, 50), DEFAULT_LINE);
    QCOMPARE(rowsOfColor(image, 203, DEFAULT_LINE), 9); // 10 pixels wide
}

void tst_KelRender::severalTracksHaveColorsOfTheirOwn()
{
    QStringList arguments;
    for (int i = 0; i < 12; ++i)
        arguments << writeTrack(QStringLiteral("track%1.gpx").arg(i), QByteArray::number(4.2 - 0.7 * i) + ",-30 " + QByteArray::number(4.2 - 0.7 * i) + ",-10");
    arguments << QStringLiteral("--line-width=4");
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
    QVERIFY(QDir(m_dir->path()).mkpath(QStringLiteral("config/Kel")));
    write(QStringLiteral("config/Kel/KelGeoLocation.conf"),
          "[General]\ndefaultTrackConfiguration=\"<config smoothing=\\\"100\\\" smoothingSteps=\\\"1\\\"><pensize>20</pensize><color>#ff0000ff</color>"
          "<fillcolor>#ff0000ff</fillcolor><halosize>0</halosize><displayOptions>stroke</displayOptions></config>\"\n");
    const QImage image = picture(QStringList{writeTrack(QStringLiteral("track.gpx"), EQUATOR)} + EQUATOR_VIEW);
    QCOMPARE(image.pixelColor(200, 50), QColor(Qt::blue));
    QCOMPARE(rowsOfColor(image, 203, Qt::blue), 19);
}

void tst_KelRender::dateLineFlightIsUnbroken()
{
    const QImage image = picture({example(QStringLiteral("date-line-flight.gpx")), QStringLiteral("--line-color=red"), QStringLiteral("--line-width=3"),
                                  QStringLiteral("--size=800x500"), QStringLiteral("--no-scale"), QStringLiteral("--no-attribution")});
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
    const QImage image = picture({writeTrack(QStringLiteral("track.gpx"), "0,170 0,-170"), QStringLiteral("--bounds=-5,160,5,-160"), QStringLiteral("--size=400x101"),
                                  QStringLiteral("--line-color=red"), QStringLiteral("--no-scale"), QStringLiteral("--no-attribution")});
    for (int x = 100; x < 300; ++x)
        QCOMPARE(image.pixelColor(x, 50), QColor(Qt::red));
    QVERIFY(near(image.pixelColor(85, 50), SEA, GRATICULE));
    QVERIFY(near(image.pixelColor(315, 50), SEA, GRATICULE));
}

void tst_KelRender::singlePlaceGetsSurroundings()
{
    const QString place = write(QStringLiteral("place.kml"), "<kml><Document><Placemark><Point><coordinates>-20,-20</coordinates></Point></Placemark></Document></kml>");
    const QImage image = picture({place, QStringLiteral("--size=300x300"), QStringLiteral("--no-scale"), QStringLiteral("--no-attribution")});
    QVERIFY(near(image.pixelColor(20, 150), SEA, 16));
    // A disk without filling, 20 pixels across, drawn with a pen of 10 pixels.
    QCOMPARE(image.pixelColor(150 + 10, 150), DEFAULT_LINE);
    QCOMPARE(image.pixelColor(150, 150 - 10), DEFAULT_LINE);
    QVERIFY(near(image.pixelColor(150 + 20, 150), SEA, 16));
}

void tst_KelRender::tracksAllAroundTheGlobe()
{
    // Fiji, Alaska, Brazil and Greenwich: the picture is not cut through the flight over the date line.
    const QString flight = writeTrack(QStringLiteral("flight.gpx"), "-17,178 0,-170 60,-150");
    const QString brazil = writeTrack(QStringLiteral("brazil.gpx"), "-10,-60 -5,-40");
    const QString europe = writeTrack(QStringLiteral("europe.gpx"), "50,0 52,5");
    const QImage image = picture({flight, brazil, europe, QStringLiteral("--size=800x500"), QStringLiteral("--line-color=red"), QStringLiteral("--line-width=3"),
                                  QStringLiteral("--no-scale"), QStringLiteral("--no-attribution")});
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
    QTest::newRow("solid") << QStringLiteral("--pen-style=solid");
    QTest::newRow("dashed") << QStringLiteral("--pen-style=dash");
    QTest::newRow("with a halo") << QStringLiteral("--halo-width=3");
    QTest::newRow("arrow") << QStringLiteral("--marker=arrow");
}

void tst_KelRender::farAwayPointsDoNoHarm()
{
    QFETCH(QString, style);
    // A line around half the world, seen through a window of 100 metres.
    const QString track = writeTrack(QStringLiteral("track.gpx"), "0,-60 0,0.001 0,60 10,120");
    const QImage image = picture({track, QStringLiteral("--bounds=-0.0005,0,0.0005,0.002"), QStringLiteral("--size=400x200"), QStringLiteral("--line-color=red"), style,
                                  QStringLiteral("--no-scale"), QStringLiteral("--no-attribution")});
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
    const QString track = writeTrack(QStringLiteral("track.gpx"), EQUATOR);
    const QStringList look = QStringList{track, QStringLiteral("--line-color=red"), QStringLiteral("--line-width=8")} + EQUATOR_VIEW;
    QCOMPARE(rowsOfColor(picture(look), 203, Qt::red), 7);
    QCOMPARE(rowsOfColor(picture(look + QStringList{QStringLiteral("--scale-factor=3")}), 203, Qt::red), 23);
}

void tst_KelRender::dashesLeaveGaps()
{
    const QString track = writeTrack(QStringLiteral("track.gpx"), EQUATOR);
    const QImage image = picture(QStringList{track, QStringLiteral("--pen-style=dash"), QStringLiteral("--line-width=4"), QStringLiteral("--line-color=red")} + EQUATOR_VIEW);
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
    const QString file = write(QStringLiteral("area.gpx"),
                               "<gpx><trk><shape>polygon</shape><trkseg><trkpt lat=\"-4\" lon=\"-30\"/><trkpt lat=\"4\" lon=\"-30\"/><trkpt lat=\"4\" lon=\"-10\"/>"
                               "<trkpt lat=\"-4\" lon=\"-10\"/><trkpt lat=\"-4\" lon=\"-30\"/></trkseg><enclaves><trk><shape>polygon</shape><trkseg>"
                               "<trkpt lat=\"-2\" lon=\"-25\"/><trkpt lat=\"2\" lon=\"-25\"/><trkpt lat=\"2\" lon=\"-15\"/><trkpt lat=\"-2\" lon=\"-15\"/>"
                               "<trkpt lat=\"-2\" lon=\"-25\"/></trkseg></trk></enclaves></trk></gpx>");
    const QStringList look = QStringList{file, QStringLiteral("--line-color=red"), QStringLiteral("--fill-color=blue"), QStringLiteral("--line-width=2")} + EQUATOR_VIEW;
    const QImage filled = picture(look + QStringList{QStringLiteral("--display-options=stroke,fill")});
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
    const QString track = writeTrack(QStringLiteral("track.gpx"), EQUATOR);
    const QImage image = picture(QStringList{track, QStringLiteral("--halo-width=12"), QStringLiteral("--line-width=4"), QStringLiteral("--line-color=red")} + EQUATOR_VIEW);
    QCOMPARE(image.pixelColor(203, 50), QColor(Qt::red));
    QVERIFY(image.pixelColor(203, 45).lightness() > 240);
    QVERIFY(near(image.pixelColor(203, 38), SEA, 16));
}

void tst_KelRender::cropFadesTheMap_data()
{
    QTest::addColumn<QString>("opacity");
    QTest::addColumn<int>("alpha");

    QTest::newRow("map gone") << QStringLiteral("0") << 0;
    QTest::newRow("faded") << QStringLiteral("100") << 100;
    QTest::newRow("percent") << QStringLiteral("40%") << 102;
    QTest::newRow("unchanged") << QStringLiteral("255") << 255;
}

void tst_KelRender::cropFadesTheMap()
{
    QFETCH(QString, opacity);
    QFETCH(int, alpha);

    const QString track = writeTrack(QStringLiteral("track.gpx"), EQUATOR);
    const QImage image = picture(QStringList{track, QStringLiteral("--crop"), opacity, QStringLiteral("--line-width=4"), QStringLiteral("--halo-width=20"),
                                             QStringLiteral("--line-color=red")}
                                 + EQUATOR_VIEW);
    QCOMPARE(image.pixelColor(30, 20).alpha(), alpha);
    QCOMPARE(image.pixelColor(203, 50), QColor(Qt::red));
    QCOMPARE(image.pixelColor(203, 42).alpha(), 255); // within the halo
}

void tst_KelRender::noMapIsTransparent()
{
    const QString track = writeTrack(QStringLiteral("track.gpx"), EQUATOR);
    const QImage image = picture(QStringList{track, QStringLiteral("--no-map"), QStringLiteral("--crop=10"), QStringLiteral("--line-color=red")} + EQUATOR_VIEW);
    QCOMPARE(image.pixelColor(30, 20).alpha(), 0);
    QCOMPARE(image.pixelColor(203, 50), QColor(Qt::red));
}

void tst_KelRender::jpegHasAWhiteGround()
{
    const QString track = writeTrack(QStringLiteral("track.gpx"), EQUATOR);
    QCOMPARE(run(QStringList{track, QStringLiteral("--no-map"), QStringLiteral("-o"), QStringLiteral("out.jpg")} + EQUATOR_VIEW).code, 0);
    QVERIFY(near(QImage(path(QStringLiteral("out.jpg"))).pixelColor(30, 20), Qt::white));
}

void tst_KelRender::overlaysCanBeLeftOut()
{
    const QString track = writeTrack(QStringLiteral("track.gpx"), "0,-30 3,-10");
    const QStringList view{track, QStringLiteral("--size=800x500")};
    const auto differs = [](const QImage &a, const QImage &b, const QRect &area) { return a.copy(area) != b.copy(area); };
    const QStringList bounds{QStringLiteral("--bounds=-10,-40,10,0")};
    const QImage all = picture(view + bounds);
    const QImage noScale = picture(view + bounds + QStringList{QStringLiteral("--no-scale")});
    const QImage noCredit = picture(view + bounds + QStringList{QStringLiteral("--no-attribution")});
    const QRect left(0, 400, 400, 100);
    const QRect right(400, 400, 400, 100);
    QVERIFY(differs(all, noScale, left));
    QVERIFY(!differs(all, noScale, right));
    QVERIFY(differs(all, noCredit, right));
    QVERIFY(!differs(all, noCredit, left));
}

void tst_KelRender::scaleBarHasTheRightLength()
{
    // 1000 pixels for 2 degrees at the equator: 222.355 km, 4.497 pixels to the kilometre. The longest bar of the series
    // 1, 2.5, 5 within 150 pixels is 25 km, 112.4 pixels.
    const QString track = writeTrack(QStringLiteral("track.gpx"), "0.1,-21 0.2,-20");
    const QImage image = picture({track, QStringLiteral("--bounds=-0.5,-21,0.5,-19"), QStringLiteral("--size=1000x500"), QStringLiteral("--no-attribution")});
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
    const QString track = writeTrack(QStringLiteral("track.gpx"), EQUATOR);
    QCOMPARE(run({track, QStringLiteral("--line-color=#010203"), QStringLiteral("-o"), QStringLiteral("out.svg"), QStringLiteral("-s"), QStringLiteral("640x400")}).code, 0);
    const QByteArray svg = contentOf(path(QStringLiteral("out.svg")));
    QXmlStreamReader reader(svg);
    int paths = 0;
    int images = 0;
    while (!reader.atEnd()) {
        reader.readNext();
        if (!reader.isStartElement())
            continue;
        if (reader.name() == QLatin1String("svg"))
            QCOMPARE(reader.attributes().value(QLatin1String("viewBox")).toString(), QStringLiteral("0 0 640 400"));
        paths += reader.name() == QLatin1String("path") || reader.name() == QLatin1String("polyline") ? 1 : 0;
        images += reader.name() == QLatin1String("image") ? 1 : 0;
    }
    QVERIFY2(!reader.hasError(), qPrintable(reader.errorString()));
    QVERIFY(paths > 5);
    QCOMPARE(images, 0);
    QVERIFY(svg.contains("#010203"));
    QVERIFY(svg.contains("Made with Natural Earth."));

    QCOMPARE(run({track, QStringLiteral("-o"), QStringLiteral("out.pdf"), QStringLiteral("-s"), QStringLiteral("640x400")}).code, 0);
    const QByteArray pdf = contentOf(path(QStringLiteral("out.pdf")));
    QVERIFY(pdf.contains("/MediaBox [0 0 480 300]") || pdf.contains("/MediaBox [0 0 480.000000 300.000000]"));
    QVERIFY(!pdf.contains("/Subtype /Image"));
}

void tst_KelRender::largestPictureIsPossible()
{
    const QString track = writeTrack(QStringLiteral("track.gpx"), EQUATOR);
    QCOMPARE(run({track, QStringLiteral("-o"), QStringLiteral("out.png"), QStringLiteral("--size=32767x64")}).code, 0);
    QCOMPARE(QImage(path(QStringLiteral("out.png"))).size(), QSize(32767, 64));
    QCOMPARE(run({track, QStringLiteral("-o"), QStringLiteral("out.png"), QStringLiteral("--size=16x16")}).code, 0);
    QCOMPARE(QImage(path(QStringLiteral("out.png"))).size(), QSize(16, 16));
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
    QVERIFY(map.save(path(QStringLiteral("map.png"))));
    const QString track = writeTrack(QStringLiteral("track.gpx"), "0,-38 0,-30");
    const QStringList look{track, QStringLiteral("--map=map.png"), QStringLiteral("--map-bounds=-5,-40,5,0"), QStringLiteral("--line-color=red"),
                           QStringLiteral("--no-scale"), QStringLiteral("--no-attribution")};

    const QImage same = picture(look);
    QCOMPARE(same.size(), QSize(400, 100));
    QCOMPARE(same.pixelColor(10, 10), QColor(Qt::green));
    QCOMPARE(same.pixelColor(390, 10), QColor(Qt::yellow));
    QCOMPARE(same.pixelColor(50, 50), QColor(Qt::red));

    // A window that reaches beyond the picture's edges.
    const QImage window = picture(look + QStringList{QStringLiteral("--bounds=-5,-20,5,20"), QStringLiteral("--size=400x100")});
    QCOMPARE(window.pixelColor(10, 50), QColor(Qt::yellow));
    QCOMPARE(window.pixelColor(190, 50), QColor(Qt::yellow));
    QVERIFY(near(window.pixelColor(210, 50), QColor(0xe4, 0xe4, 0xe4)));

    // Not the credit of a map that is not shown.
    QCOMPARE(run(look.mid(0, 4) + QStringList{QStringLiteral("-o"), QStringLiteral("out.svg")}).code, 0);
    const QByteArray svg = contentOf(path(QStringLiteral("out.svg")));
    QVERIFY(svg.contains("OpenStreetMap.org"));
    QVERIFY(!svg.contains("Natural Earth"));
    QCOMPARE(run(look.mid(0, 4) + QStringList{QStringLiteral("--attribution=My own survey"), QStringLiteral("-o"), QStringLiteral("out.svg")}).code, 0);
    QVERIFY(contentOf(path(QStringLiteral("out.svg"))).contains("My own survey"));
}

void tst_KelRender::ownMapPictureMayBeBad_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("code");

    QTest::newRow("missing") << QByteArray() << 3;
    QTest::newRow("no picture") << QByteArray("just text") << 5;
    QTest::newRow("truncated PNG") << QByteArray::fromHex("89504e470d0a1a0a0000000d4948445200000010000000100806000000") << 4;
}

void tst_KelRender::ownMapPictureMayBeBad()
{
    QFETCH(QByteArray, content);
    QFETCH(int, code);

    if (!content.isNull())
        write(QStringLiteral("map.png"), content);
    const Result result = run({writeTrack(QStringLiteral("track.gpx"), EQUATOR), QStringLiteral("-q"), QStringLiteral("--map=map.png"), QStringLiteral("--map-bounds=-5,-40,5,0"),
                               QStringLiteral("-o"), QStringLiteral("out.png")});
    QCOMPARE(result.code, code);
    QCOMPARE(result.lines().size(), 1);
    QVERIFY(result.err.contains(QLatin1String("map.png: the map picture")));
}

// ------------------------------------------------------------------------------------- info, export and selections

void tst_KelRender::infoTellsEverything()
{
    const QString file = write(QStringLiteral("walk.gpx"),
                               "<gpx><trk><name>A\nwalk</name><trkseg><trkpt lat=\"50\" lon=\"8\"><time>2024-05-11T09:30:00Z</time></trkpt>"
                               "<trkpt lat=\"51\" lon=\"8\"><time>2024-05-11T10:30:00Z</time></trkpt></trkseg>"
                               "<trkseg><trkpt lat=\"51\" lon=\"9\"/><trkpt lat=\"52\" lon=\"9\"><time>2024-05-11T12:00:00Z</time></trkpt></trkseg></trk>"
                               "<trk><trkseg><trkpt lat=\"1\" lon=\"2\"/></trkseg><shape>auto</shape></trk></gpx>");
    const Result result = run({file, QStringLiteral("--info"), QStringLiteral("--quiet")});
    QCOMPARE(result.code, 0);
    QCOMPARE(result.err, QString());
    // Two meridian pieces of one degree, 6370 km × π / 180 each; the gap between the segments does not count.
    QCOMPARE(QString::fromUtf8(result.out), QStringLiteral("name:     A walk\n"
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
                                                           "time:     -\n"));
}

void tst_KelRender::infoOfAFlightTakesTheShortWay()
{
    const Result result = run({writeTrack(QStringLiteral("flight.gpx"), "-10,170 10,-170"), QStringLiteral("--info"), QStringLiteral("-q")});
    QCOMPARE(result.code, 0);
    QVERIFY(result.out.contains("bounds:   -10.00000,170.00000,10.00000,-170.00000\n"));
}

void tst_KelRender::exportSingleTrack()
{
    writeTrack(QStringLiteral("in.gpx"), "50,8 51,9 52,8", "My way");
    write(QStringLiteral("out.gpx"), "former");
    const Result result = run({QStringLiteral("in.gpx"), QStringLiteral("--export"), QStringLiteral("out.gpx")});
    QCOMPARE(result.code, 0);
    QVERIFY(result.err.contains(QLatin1String("out.gpx: exported \"My way\"")));
    const QByteArray expected = run({QStringLiteral("in.gpx"), QStringLiteral("-q"), QStringLiteral("--info")}).out;
    QCOMPARE(run({QStringLiteral("out.gpx"), QStringLiteral("-q"), QStringLiteral("--info")}).out, expected);
}

void tst_KelRender::exportSeveralTracks()
{
    writeTrack(QStringLiteral("one.gpx"), "50,8 51,9", "One");
    writeTrack(QStringLiteral("two.gpx"), "40,8 41,9", "Two");
    write(QStringLiteral("out_2.gpx"), "somebody else's");
    const Result result = run({QStringLiteral("one.gpx"), QStringLiteral("two.gpx"), QStringLiteral("--export"), QStringLiteral("out.gpx")});
    QCOMPARE(result.code, 0);
    QCOMPARE(contentOf(path(QStringLiteral("out_2.gpx"))), QByteArray("somebody else's"));
    QVERIFY(run({QStringLiteral("out.gpx"), QStringLiteral("-q"), QStringLiteral("--info")}).out.startsWith("name:     One\n"));
    QVERIFY(run({QStringLiteral("out_3.gpx"), QStringLiteral("-q"), QStringLiteral("--info")}).out.startsWith("name:     Two\n"));
    QVERIFY(result.lines().contains(QStringLiteral("kel-render: out_3.gpx: exported \"Two\"")));
}

void tst_KelRender::exportThatFails()
{
    writeTrack(QStringLiteral("one.gpx"), "50,8 51,9");
    const Result folder = run({QStringLiteral("one.gpx"), QStringLiteral("-q"), QStringLiteral("--export"), QStringLiteral("none/out.gpx")});
    QCOMPARE(folder.code, 7);
    QCOMPARE(folder.lines().size(), 1);
    const Result suffix = run({QStringLiteral("one.gpx"), QStringLiteral("-q"), QStringLiteral("--export"), QStringLiteral("out.kml")});
    QCOMPARE(suffix.code, 5);
    const Result same = run({QStringLiteral("one.gpx"), QStringLiteral("-q"), QStringLiteral("--export"), QStringLiteral("one.gpx")});
    QCOMPARE(same.code, 0); // a track may be rewritten in place: it was read before
    QVERIFY(contentOf(path(QStringLiteral("one.gpx"))).contains("compressedPoints"));
}

void tst_KelRender::selectionRoundTrip()
{
    writeTrack(QStringLiteral("one.gpx"), "50,8 51,9", "One");
    writeTrack(QStringLiteral("two.gpx"), "50,9 51,10", "Two");
    const QImage before = picture({QStringLiteral("one.gpx"), QStringLiteral("two.gpx"), QStringLiteral("--line-width=6"), QStringLiteral("--crop=120"),
                                   QStringLiteral("--save-selection=trip.xml")});
    QVERIFY(!before.isNull());
    QCOMPARE(QDir(path(QStringLiteral("trip.tracks"))).entryList(QDir::Files).size(), 2);
    QVERIFY(!contentOf(path(QStringLiteral("trip.xml"))).contains("compressedPoints"));
    QVERIFY(QFile::remove(path(QStringLiteral("one.gpx"))));

    QVERIFY(picture({QStringLiteral("--selection=trip.xml")}) == before);
    // Options still have the last word.
    QCOMPARE(picture({QStringLiteral("--selection=trip.xml"), QStringLiteral("--crop=7"), QStringLiteral("--no-attribution")}).pixelColor(1599, 999).alpha(), 7);

    // Saving again stores no track twice, and a new one beside the old ones.
    QCOMPARE(run({QStringLiteral("--selection=trip.xml"), QStringLiteral("two.gpx"), QStringLiteral("--save-selection=trip.xml")}).code, 0);
    QCOMPARE(QDir(path(QStringLiteral("trip.tracks"))).entryList(QDir::Files).size(), 2);
    const QByteArray info = run({QStringLiteral("--selection=trip.xml"), QStringLiteral("--info")}).out;
    QCOMPARE(info.count("name:     Two"), 2);
    QCOMPARE(info.count("name:     One"), 1);
}

void tst_KelRender::selectionInTheWorkingDirectory()
{
    writeTrack(QStringLiteral("one.gpx"), "50,8 51,9", "One");
    QCOMPARE(run({QStringLiteral("one.gpx"), QStringLiteral("--save-selection=trip.xml")}).code, 0);
    const Result result = runProgram(QStringLiteral("/bin/sh"),
                                     {QStringLiteral("-c"), QStringLiteral("cd trip.tracks && exec \"$0\" --selection ../trip.xml ../one.gpx -q --info --save-selection ../trip.xml"),
                                      QStringLiteral(KEL_RENDER_PROGRAM)});
    QCOMPARE(result.code, 0);
    QCOMPARE(result.out.count("name:     One"), 2);
    QCOMPARE(QDir(path(QStringLiteral("trip.tracks"))).entryList(QDir::Files).size(), 1);
}

void tst_KelRender::selectionWithMissingTrack()
{
    writeTrack(QStringLiteral("one.gpx"), "50,8 51,9", "One");
    QCOMPARE(run({QStringLiteral("one.gpx"), QStringLiteral("--save-selection=trip.xml")}).code, 0);
    QVERIFY(QDir(path(QStringLiteral("trip.tracks"))).removeRecursively());
    const Result result = run({QStringLiteral("--selection=trip.xml"), QStringLiteral("-o"), QStringLiteral("out.png")});
    QCOMPARE(result.code, 3);
    QCOMPARE(result.lines().size(), 1);
    QVERIFY2(result.err.contains(QLatin1String("trip.xml: its track file ")), qPrintable(result.err));
}

void tst_KelRender::selectionThatIsNone_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("message");

    QTest::newRow("missing") << QByteArray() << 3 << QStringLiteral("trip.xml: the selection cannot be read");
    QTest::newRow("malformed") << QByteArray("<kelTracks>\n<gpxtrack>") << 4 << QStringLiteral("trip.xml:");
    QTest::newRow("another document") << QByteArray("<html/>") << 4 << QStringLiteral("no stored selection");
}

void tst_KelRender::selectionThatIsNone()
{
    QFETCH(QByteArray, content);
    QFETCH(int, code);
    QFETCH(QString, message);

    if (!content.isNull())
        write(QStringLiteral("trip.xml"), content);
    const Result result = run({QStringLiteral("--selection=trip.xml"), QStringLiteral("-o"), QStringLiteral("out.png")});
    QCOMPARE(result.code, code);
    QCOMPARE(result.lines().size(), 1);
    QVERIFY2(result.err.contains(message), qPrintable(result.err));
}

void tst_KelRender::selectionThatCannotBeSaved()
{
    writeTrack(QStringLiteral("one.gpx"), "50,8 51,9", "One");
    QCOMPARE(run({QStringLiteral("one.gpx"), QStringLiteral("--save-selection=trip.xml")}).code, 0);
    const QByteArray former = contentOf(path(QStringLiteral("trip.xml")));
    QByteArray points;
    for (int i = 0; i < 2000; ++i)
        points += QByteArray::number(50 + i * 0.001) + ",8 ";
    writeTrack(QStringLiteral("long.gpx"), points.trimmed(), "Long");

    const Result result = runProgram(QStringLiteral("/bin/bash"),
                                     {QStringLiteral("-c"), QStringLiteral("ulimit -f 8; exec \"$0\" long.gpx -q --save-selection trip.xml"),
                                      QStringLiteral(KEL_RENDER_PROGRAM)});
    QCOMPARE(result.code, 7);
    QCOMPARE(result.lines().size(), 1);
    QVERIFY2(result.err.contains(QLatin1String("trip.xml: the selection was not saved")), qPrintable(result.err));
    QCOMPARE(contentOf(path(QStringLiteral("trip.xml"))), former);
    QCOMPARE(QDir(path(QStringLiteral("trip.tracks"))).entryList(QDir::Files | QDir::Hidden).size(), 1);
    QVERIFY(run({QStringLiteral("--selection=trip.xml"), QStringLiteral("--info")}).out.contains("name:     One"));

    const Result folder = run({QStringLiteral("one.gpx"), QStringLiteral("-q"), QStringLiteral("--save-selection=one.gpx/trip.xml")});
    QCOMPARE(folder.code, 7);
    QCOMPARE(folder.lines().size(), 1);
}

// --------------------------------------------------------------------------------------------------- beelines, KML

void tst_KelRender::beelinePlaces_data()
{
    QTest::addColumn<QString>("place");
    QTest::addColumn<QByteArray>("southWest"); // where a line to (60, 30) begins

    QTest::newRow("letters and decimals") << QStringLiteral("N53.14 E8.21") << QByteArray("53.14000,8.21000,");
    QTest::newRow("blanks around") << QStringLiteral("  N53.14   E8.21 ") << QByteArray("53.14000,8.21000,");
    QTest::newRow("south and west") << QStringLiteral("S33.5 W70.25") << QByteArray("-33.50000,-70.25000,");
    QTest::newRow("two numbers") << QStringLiteral("53.14, 8.21") << QByteArray("53.14000,8.21000,");
    QTest::newRow("negative numbers") << QStringLiteral("-33.5,-70.25") << QByteArray("-33.50000,-70.25000,");
    QTest::newRow("degrees, minutes, seconds") << QStringLiteral("53,8,24 N; 8,12,36 E") << QByteArray("53.14000,8.21000,");
    QTest::newRow("with their signs") << QStringLiteral("53°, 8', 24\" N; 8°, 12', 36\" E") << QByteArray("53.14000,8.21000,");
    QTest::newRow("a known place") << QStringLiteral("Oldenburg") << QByteArray("53.14118,8.21467,");
    QTest::newRow("in any case, with a blank") << QStringLiteral("new york") << QByteArray("40.73061,-73.93524,");
}

void tst_KelRender::beelinePlaces()
{
    QFETCH(QString, place);
    QFETCH(QByteArray, southWest);

    const Result result = run({QStringLiteral("--beeline"), place, QStringLiteral("60,30"), QStringLiteral("--info"), QStringLiteral("-q")});
    QCOMPARE(result.err, QString());
    QCOMPARE(result.code, 0);
    QVERIFY2(result.out.contains("bounds:   " + southWest), result.out.constData());
}

void tst_KelRender::beelineNames()
{
    const Result result = run({QStringLiteral("--beeline"), QStringLiteral("Bremen"), QStringLiteral("Sydney"), QStringLiteral("--name"), QStringLiteral("Long way"),
                               QStringLiteral("--beeline"), QStringLiteral("LA"), QStringLiteral("Honolulu"), QStringLiteral("--beeline"), QStringLiteral("LA"),
                               QStringLiteral("Passau"), QStringLiteral("--name=Third"), QStringLiteral("--info"), QStringLiteral("-q")});
    QCOMPARE(result.code, 0);
    QCOMPARE(result.out.count("name:"), 3);
    QVERIFY(result.out.contains("name:     Long way\n"));
    QVERIFY(result.out.contains("name:     LA – Honolulu\n"));
    QVERIFY(result.out.contains("name:     Third\n"));
}

void tst_KelRender::beelineCrossesTheDateLine()
{
    const Result result = run({QStringLiteral("--beeline"), QStringLiteral("Helsinki"), QStringLiteral("Honolulu"), QStringLiteral("--info"), QStringLiteral("-q")});
    QCOMPARE(result.code, 0);
    const QString bounds = QString::fromUtf8(result.out).section(QStringLiteral("bounds:   "), 1).section(QLatin1Char('\n'), 0, 0);
    const QStringList edges = bounds.split(QLatin1Char(','));
    QCOMPARE(edges.size(), 4);
    QVERIFY(std::abs(edges.at(1).toDouble() - 24.92967) < 1e-5); // from Helsinki
    QVERIFY(std::abs(edges.at(3).toDouble() + 157.85809) < 1e-5); // east to Honolulu
    QVERIFY(edges.at(2).toDouble() > 75); // over the Arctic Ocean
}

void tst_KelRender::kmlStylesAreKept()
{
    const QString file = write(QStringLiteral("tour.kml"),
                               "<kml><Document><Style id=\"red\"><LineStyle><color>ff0000ff</color><width>1</width></LineStyle></Style>"
                               "<Folder><Placemark><styleUrl>#red</styleUrl><LineString><coordinates>-30,2 -10,2</coordinates></LineString></Placemark>"
                               "<Placemark><LineString><coordinates>-30,0 -10,0</coordinates></LineString></Placemark>"
                               "<Placemark><LineString><coordinates>-30,-2 -10,-2</coordinates></LineString></Placemark></Folder></Document></kml>");
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
    const QImage kml = picture({example(QStringLiteral("tour.kml"))});
    QVERIFY(!kml.isNull());
    QVERIFY(picture({example(QStringLiteral("tour.kmz"))}) == kml);
}

void tst_KelRender::exampleTracksAllDraw()
{
    const Result result = run({example(QString()), QStringLiteral("-o"), QStringLiteral("out.png"), QStringLiteral("--info")});
    QCOMPARE(result.code, 0);
    QCOMPARE(result.lines().size(), 7);
    for (const QString &line : result.lines())
        QVERIFY2(!line.contains(QLatin1String("warning")), qPrintable(line));
    QCOMPARE(result.out.count("name:"), 17);
    QVERIFY(result.out.contains("segments: 5\n"));  // the long ride
    QVERIFY(result.out.contains("enclaves: 1\n"));  // the polygon
    QVERIFY(result.out.contains("name:     Around Iceland\n"));
}

QTEST_MAIN(tst_KelRender)
#include "tst_KelRender.moc"
