// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <QDir>
#include <QFile>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QProcessEnvironment>
#include <QRegularExpression>
#include <QSet>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

/// What kel-render offers to other programs: reports and statistics as JSON, completions for shells, and the same bytes
/// for the same input.
class tst_KelRenderForPrograms : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void reportOfTracksAndResults();
    void reportOfATrackWithoutTimes();
    void reportOfAMalformedFile();
    void reportOfSeveralTroubles();
    void reportOfWrongUse_data();
    void reportOfWrongUse();
    void reportThatCannotBePrinted();
    void statisticsOfARun();
    void statisticsWithoutAPicture();
    void statisticsWithTooLittleMemory();
    void reportAndStatisticsAreOneDocument();
    void otherKindsAreUnknown();

    void completionsNameEveryOption_data();
    void completionsNameEveryOption();
    void completedWordsAreAccepted_data();
    void completedWordsAreAccepted();

    void equalInputGivesEqualBytes_data();
    void equalInputGivesEqualBytes();

private:
    struct Result
    {
        int code = -1;
        QByteArray out;
        QByteArray err;

        [[nodiscard]] QJsonObject json() const { return QJsonDocument::fromJson(out).object(); }
    };

    [[nodiscard]] Result run(const QStringList &arguments, const QString &redirectOutput = QString()) const;
    [[nodiscard]] Result runProgram(const QString &program, const QStringList &arguments,
                                    const QString &redirectOutput = QString()) const;
    [[nodiscard]] QString path(const QString &name) const { return m_dir->filePath(name); }
    void write(const QString &name, const QByteArray &content) const;
    [[nodiscard]] QSet<QString> optionsOfHelp() const;
    [[nodiscard]] static QByteArray contentOf(const QString &fileName);
    [[nodiscard]] static QString completions(const QString &name)
    {
        return QStringLiteral(KEL_EXAMPLES_DIR "/../packaging/completions/") + name;
    }

    std::unique_ptr<QTemporaryDir> m_dir;
    QProcessEnvironment m_environment;
};

namespace
{

// Three points, two of them timed, in two segments; one degree of latitude has 111.177 km on a globe of 6370 km.
const QByteArray WALK = "<gpx><trk><name>A \"walk\" \xc3\xbc"
                        "ber Land</name><trkseg>"
                        "<trkpt lat=\"50\" lon=\"8\"><time>2024-05-01T10:00:00Z</time></trkpt>"
                        "<trkpt lat=\"51\" lon=\"8\"><time>2024-05-01T11:30:00Z</time></trkpt>"
                        "</trkseg><trkseg><trkpt lat=\"52\" lon=\"9\"/></trkseg></trk></gpx>";
constexpr double KM_PER_DEGREE = 111.1774733520461;

/// The line ends in the middle of its third line.
const QByteArray CUT_OFF = "<gpx>\n<trk><trkseg>\n<trkpt lat=\"50\" lon=";

QStringList keysOf(const QJsonObject &object)
{
    return object.keys();
}

} // namespace

void tst_KelRenderForPrograms::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
    m_environment = QProcessEnvironment::systemEnvironment();
    m_environment.insert("XDG_CONFIG_HOME", m_dir->filePath("config"));
    // The search for leaks itself crashes in programs that have written a JPEG picture and no text.
    m_environment.insert("ASAN_OPTIONS", "detect_leaks=0");
}

tst_KelRenderForPrograms::Result tst_KelRenderForPrograms::run(const QStringList &arguments,
                                                               const QString &redirectOutput) const
{
    return runProgram(QStringLiteral(KEL_RENDER_PROGRAM), arguments, redirectOutput);
}

tst_KelRenderForPrograms::Result tst_KelRenderForPrograms::runProgram(const QString &program,
                                                                      const QStringList &arguments,
                                                                      const QString &redirectOutput) const
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
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : 1000, process.readAllStandardOutput(),
            process.readAllStandardError()};
}

void tst_KelRenderForPrograms::write(const QString &name, const QByteArray &content) const
{
    QFile file(path(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("the test's own file %s could not be written", qPrintable(name));
}

QByteArray tst_KelRenderForPrograms::contentOf(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// "--output", "-o" and so on, as --help shows them.
QSet<QString> tst_KelRenderForPrograms::optionsOfHelp() const
{
    const QString help = QString::fromUtf8(run({"--help"}).out);
    const QRegularExpression line("^ +(?:(-\\w), |    )(--[a-z-]+)", QRegularExpression::MultilineOption);
    QSet<QString> options;
    for (auto matches = line.globalMatch(help); matches.hasNext();) {
        const QRegularExpressionMatch match = matches.next();
        options.insert(match.captured(2));
        if (!match.captured(1).isEmpty())
            options.insert(match.captured(1));
    }
    return options;
}

// ---------------------------------------------------------------------------------------------------------- reports

void tst_KelRenderForPrograms::reportOfTracksAndResults()
{
    write("walk.gpx", WALK);
    const Result result = run({"walk.gpx", "--report", "json", "-o", "out.png", "--size=100x80", "--export=copy.gpx",
                               "--save-selection=trip.xml", "-q"});
    QCOMPARE(result.code, 0);
    QVERIFY(result.err.isEmpty());
    QJsonParseError error;
    const QJsonObject report = QJsonDocument::fromJson(result.out, &error).object();
    QCOMPARE(error.error, QJsonParseError::NoError);

    QCOMPARE(keysOf(report), QStringList({"exitCode", "messages", "program", "results", "tracks", "version"}));
    QCOMPARE(report.value("program").toString(), "kel-render");
    QCOMPARE("kel-render " + report.value("version").toString() + '\n', QString::fromUtf8(run({"--version"}).out));
    QCOMPARE(report.value("exitCode").toInt(-1), 0);

    const QJsonArray tracks = report.value("tracks").toArray();
    QCOMPARE(tracks.size(), 1);
    const QJsonObject track = tracks.at(0).toObject();
    QCOMPARE(keysOf(track), QStringList({"bounds", "enclaves", "end", "lengthKm", "name", "points", "segments", "shape", "start"}));
    QCOMPARE(track.value("name").toString(), QString::fromUtf8("A \"walk\" \xc3\xbc"
                                                               "ber Land"));
    QCOMPARE(track.value("shape").toString(), "linestring");
    QCOMPARE(track.value("segments").toInt(), 2);
    QCOMPARE(track.value("points").toInt(), 3);
    QCOMPARE(track.value("enclaves").toInt(-1), 0);
    QVERIFY(std::abs(track.value("lengthKm").toDouble() - KM_PER_DEGREE) < 1e-6);
    const QJsonObject bounds{{"south", 50.0}, {"west", 8.0}, {"north", 52.0}, {"east", 9.0}};
    QCOMPARE(track.value("bounds").toObject(), bounds);
    QCOMPARE(track.value("start").toString(), "2024-05-01T10:00:00Z");
    QCOMPARE(track.value("end").toString(), "2024-05-01T11:30:00Z");

    // Notes are for programs, even if nobody wants to read them.
    const QJsonArray messages = report.value("messages").toArray();
    QCOMPARE(messages.at(0).toObject(),
             QJsonObject({{"severity", "note"}, {"file", "walk.gpx"}, {"reason", "1 track"}}));

    const QJsonArray results = report.value("results").toArray();
    const QJsonObject gpx{{"kind", "gpx"}, {"file", "copy.gpx"}};
    const QJsonObject selection{{"kind", "selection"}, {"file", "trip.xml"}};
    const QJsonObject picture{{"kind", "picture"}, {"file", "out.png"}};
    QCOMPARE(results, QJsonArray({gpx, selection, picture}));
    for (const QJsonValue &written : results)
        QVERIFY(QFile::exists(path(written.toObject().value("file").toString())));
}

void tst_KelRenderForPrograms::reportOfATrackWithoutTimes()
{
    write("plain.gpx", "<gpx><trk><trkseg><trkpt lat=\"1\" lon=\"2\"/><trkpt lat=\"1\" lon=\"3\"/></trkseg></trk></gpx>");
    const QJsonObject track = run({"plain.gpx", "--report=json"}).json().value("tracks").toArray().at(0).toObject();
    QVERIFY(track.value("start").isNull());
    QVERIFY(track.value("end").isNull());
    QVERIFY(track.value("bounds").isObject());
}

void tst_KelRenderForPrograms::reportOfAMalformedFile()
{
    write("cut.gpx", CUT_OFF);
    const Result result = run({"cut.gpx", "--report=json", "-o", "out.png"});
    QCOMPARE(result.code, 4);
    const QJsonObject report = result.json();
    QCOMPARE(report.value("exitCode").toInt(), 4);
    QVERIFY(report.value("tracks").toArray().isEmpty());
    QVERIFY(report.value("results").toArray().isEmpty());
    const QJsonArray messages = report.value("messages").toArray();
    QCOMPARE(messages.size(), 1);
    const QJsonObject message = messages.at(0).toObject();
    QCOMPARE(message.value("severity").toString(), "error");
    QCOMPARE(message.value("file").toString(), "cut.gpx");
    QCOMPARE(message.value("line").toInt(), 3);
    QVERIFY(message.value("column").toInt() > 1);
    QCOMPARE(message.value("exitCode").toInt(), 4);
    // The line for people is made of the same parts.
    const QString line = QStringLiteral("kel-render: cut.gpx:3:%1: %2\n")
                             .arg(message.value("column").toInt())
                             .arg(message.value("reason").toString());
    QCOMPARE(QString::fromUtf8(result.err), line);
}

void tst_KelRenderForPrograms::reportOfSeveralTroubles()
{
    write("walk.gpx", WALK);
    write("cut.gpx", CUT_OFF);
    write("empty.gpx", "<gpx/>");
    const Result result = run({"missing.gpx", "empty.gpx", "walk.gpx", "cut.gpx", "-k", "--report=json", "-q"});
    QCOMPARE(result.code, 3);
    const QJsonObject report = result.json();
    QCOMPARE(report.value("exitCode").toInt(), 3);
    QCOMPARE(report.value("tracks").toArray().size(), 1);
    QStringList said;
    for (const QJsonValue &value : report.value("messages").toArray()) {
        const QJsonObject message = value.toObject();
        const QString severityAndFile = message.value("severity").toString() + ' ' + message.value("file").toString();
        said.append(severityAndFile + ' ' + QString::number(message.value("exitCode").toInt()));
    }
    QCOMPARE(said, QStringList({"error missing.gpx 3", "warning empty.gpx 0", "note walk.gpx 0", "error cut.gpx 4"}));
}

void tst_KelRenderForPrograms::reportOfWrongUse_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("reason");
    QTest::newRow("unknown option") << QStringList{"--report=json", "--frobnicate"} << "frobnicate";
    QTest::newRow("bad value") << QStringList{"--report=json", "--size=big"} << "--size big";
    QTest::newRow("picture on standard output") << QStringList{"--report=json", "-o", "-"} << "-o - and --report";
    QTest::newRow("statistics and a picture") << QStringList{"--stats=json", "-o", "-"} << "-o - and --stats";
    QTest::newRow("both and a picture") << QStringList{"--stats=json", "--report=json", "-o", "-"} << "-o - and --report, --stats";
    QTest::newRow("one place") << QStringList{"--report=json", "--beeline", "Sydney"} << "--beeline needs two places";
    QTest::newRow("one place, statistics") << QStringList{"--stats=json", "--beeline", "Sydney"} << "--beeline needs two places";
    QTest::newRow("one place before another option")
        << QStringList{"--beeline", "Sydney", "--report", "json"} << "--beeline needs two places";
    QTest::newRow("a name without a beeline") << QStringList{"--name=n", "--stats=json"} << "--name names the --beeline";
    QTest::newRow("another kind of report") << QStringList{"--report=xml", "--stats=json"} << "--report xml";
    QTest::newRow("with the report for people") << QStringList{"--report=json", "--info"} << "--info and --report";
    QTest::newRow("statistics and info") << QStringList{"--stats=json", "--info"} << "--info and --stats";
}

void tst_KelRenderForPrograms::reportOfWrongUse()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, reason);
    write("walk.gpx", WALK);
    const Result result = run(QStringList{"walk.gpx"} + arguments);
    QCOMPARE(result.code, 2);
    QVERIFY2(result.err.contains(reason.toUtf8()), result.err.constData());
    const QJsonObject report = result.json();
    QCOMPARE(report.value("exitCode").toInt(), 2);
    QVERIFY(report.value("messages").toArray().at(0).toObject().value("reason").toString().contains(reason));
    QCOMPARE(report.contains("stats"), arguments.join(' ').contains("--stats=json"));
    QCOMPARE(report.contains("tracks"), arguments.join(' ').contains(QRegularExpression("--report.json")));
}

void tst_KelRenderForPrograms::reportThatCannotBePrinted()
{
    write("walk.gpx", WALK);
    const Result result = run({"walk.gpx", "-q", "--report=json"}, "/dev/full");
    QCOMPARE(result.code, 7);
    QVERIFY(result.err.startsWith("kel-render: standard output: "));
}

// ------------------------------------------------------------------------------------------------------- statistics

void tst_KelRenderForPrograms::statisticsOfARun()
{
    write("a.gpx", WALK);
    write("b.gpx", WALK);
    const Result result = run({"a.gpx", "b.gpx", "--stats", "json", "-o", "out.png", "--size=120x80"});
    QCOMPARE(result.code, 0);
    QCOMPARE(keysOf(result.json()), QStringList({"exitCode", "messages", "program", "stats", "version"}));
    const QJsonObject stats = result.json().value("stats").toObject();
    QCOMPARE(keysOf(stats), QStringList({"counts", "memory", "picture", "seconds"}));
    QCOMPARE(stats.value("counts").toObject(),
             QJsonObject({{"files", 2}, {"tracks", 2}, {"segments", 4}, {"points", 6}}));
    const QJsonObject picture{{"width", 120}, {"height", 80}, {"bytes", contentOf(path("out.png")).size()}};
    QCOMPARE(stats.value("picture").toObject(), picture);
    // A Qt program needs more than a megabyte, and this one less than four gigabytes.
    const double peak = stats.value("memory").toObject().value("peakBytes").toDouble();
    QVERIFY(peak > 1e6);
    QVERIFY(peak < 4e9);

    const QJsonObject seconds = stats.value("seconds").toObject();
    QCOMPARE(keysOf(seconds), QStringList({"cpu", "draw", "encode", "read", "store", "total", "write"}));
    double sum = 0.0;
    for (const char *phase : {"read", "draw", "encode", "write"}) {
        QVERIFY2(seconds.value(QLatin1String(phase)).toDouble() > 0.0, phase);
        sum += seconds.value(QLatin1String(phase)).toDouble();
    }
    QCOMPARE(seconds.value("store").toDouble(), 0.0);
    // The phases do not overlap, so together they are no longer than the whole.
    QVERIFY(sum <= seconds.value("total").toDouble());
    QVERIFY(seconds.value("cpu").toDouble() > 0.0);
}

void tst_KelRenderForPrograms::statisticsWithoutAPicture()
{
    write("walk.gpx", WALK);
    const QJsonObject stats = run({"walk.gpx", "--stats=json", "--export=copy.gpx"}).json().value("stats").toObject();
    QCOMPARE(stats.value("picture").toObject(), QJsonObject({{"width", 0}, {"height", 0}, {"bytes", 0}}));
    const QJsonObject seconds = stats.value("seconds").toObject();
    QCOMPARE(keysOf(seconds), QStringList({"cpu", "draw", "encode", "read", "store", "total", "write"}));
    QVERIFY(seconds.value("store").toDouble() > 0.0);
    QCOMPARE(seconds.value("draw").toDouble(), 0.0);
    QCOMPARE(seconds.value("encode").toDouble(), 0.0);
}

void tst_KelRenderForPrograms::statisticsWithTooLittleMemory()
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    QSKIP("a sanitizer needs more memory than any limit");
#endif
    write("walk.gpx", WALK);
    const Result result = runProgram(QStringLiteral("/bin/sh"),
                                     {"-c", "ulimit -v 800000; exec \"$@\"", "sh", QStringLiteral(KEL_RENDER_PROGRAM), "walk.gpx",
                                      "--stats=json", "--crop=0", "-o", "out.png", "--size=10000x10000"});
    QCOMPARE(result.code, 1);
    const QJsonObject report = result.json();
    QCOMPARE(report.value("exitCode").toInt(), 1);
    QVERIFY(!report.value("messages").toArray().isEmpty());
    // What was read was read, although it had to go.
    QCOMPARE(report.value("stats").toObject().value("counts").toObject(),
             QJsonObject({{"files", 1}, {"tracks", 1}, {"segments", 2}, {"points", 3}}));
    QVERIFY(!QFile::exists(path("out.png")));
}

void tst_KelRenderForPrograms::reportAndStatisticsAreOneDocument()
{
    write("walk.gpx", WALK);
    const QJsonObject both = run({"walk.gpx", "--stats=json", "--report=json"}).json();
    QCOMPARE(keysOf(both), QStringList({"exitCode", "messages", "program", "results", "stats", "tracks", "version"}));
}

void tst_KelRenderForPrograms::otherKindsAreUnknown()
{
    write("walk.gpx", WALK);
    for (const char *option : {"--report=xml", "--stats=", "--stats=JSON"}) {
        const Result result = run({"walk.gpx", QString::fromLatin1(option)});
        QCOMPARE(result.code, 2);
        QVERIFY2(result.err.contains("use json"), result.err.constData());
        QVERIFY(result.out.isEmpty());
    }
}

// ------------------------------------------------------------------------------------------------------ completions

void tst_KelRenderForPrograms::completionsNameEveryOption_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QString>("prefix");

    // Every place where the file's language declares an option; short ones stand beside their long names.
    QTest::newRow("zsh") << "_kel-render"
                         << "(?<=[{',(*])(--?[a-z-]+?)(?==?[\\[}',])"
                         << "";
    QTest::newRow("fish, long") << "kel-render.fish"
                                << "(?m)^complete .*? -l ([a-z-]+)"
                                << "--";
    QTest::newRow("fish, short") << "kel-render.fish"
                                 << "(?m)^complete .*? -s ([a-z])"
                                 << "-";
}

void tst_KelRenderForPrograms::completionsNameEveryOption()
{
    QFETCH(QString, file);
    QFETCH(QString, pattern);
    QFETCH(QString, prefix);
    const QString text = QString::fromUtf8(contentOf(completions(file)));
    QSet<QString> named;
    for (auto matches = QRegularExpression(pattern).globalMatch(text); matches.hasNext();)
        named.insert(prefix + matches.next().captured(1));

    QSet<QString> expected = optionsOfHelp();
    QVERIFY(expected.size() > 35);
    if (prefix == QLatin1String("--"))
        expected.removeIf([](const QString &option) { return !option.startsWith(QLatin1String("--")); });
    else if (prefix == QLatin1String("-"))
        expected.removeIf([](const QString &option) { return option.startsWith(QLatin1String("--")); });
    QCOMPARE(QStringList(named.values()).size(), expected.size());
    QVERIFY2((named - expected).isEmpty(), qPrintable(QStringList((named - expected).values()).join(' ')));
    QVERIFY2((expected - named).isEmpty(), qPrintable(QStringList((expected - named).values()).join(' ')));
}

void tst_KelRenderForPrograms::completedWordsAreAccepted_data()
{
    QTest::addColumn<QStringList>("line");
    QTest::addColumn<QStringList>("words"); // empty: the options of --help

    QTest::newRow("options") << QStringList{"-"} << QStringList();
    QTest::newRow("start of an option") << QStringList{"--no-m"} << QStringList{"--no-map"};
    QTest::newRow("kinds of pictures") << QStringList{"--format", ""} << QStringList{"png", "jpg", "webp", "pdf", "svg"};
    QTest::newRow("joined with the option") << QStringList{"--format", "=", "p"} << QStringList{"png", "pdf"};
    QTest::newRow("just after the equals sign") << QStringList{"--report", "="} << QStringList{"json"};
    QTest::newRow("place") << QStringList{"--beeline", "He"} << QStringList{"Helsinki"};
    QTest::newRow("number") << QStringList{"--padding", ""} << QStringList{"nothing"};
}

void tst_KelRenderForPrograms::completedWordsAreAccepted()
{
    QFETCH(QStringList, line);
    QFETCH(QStringList, words);
    const QString bash = QStandardPaths::findExecutable("bash");
    if (bash.isEmpty())
        QSKIP("there is no bash");
    const Result result = runProgram(bash, QStringList{"-c", "source \"$0\"; COMP_WORDS=(kel-render \"$@\"); COMP_CWORD=$#; "
                                                             "_kel_render; printf '%s\\n' \"${COMPREPLY[@]-nothing}\"",
                                                       completions("kel-render.bash")}
                                         + line);
    const QStringList offered = QString::fromUtf8(result.out).split('\n', Qt::SkipEmptyParts);
    if (!words.isEmpty()) {
        QCOMPARE(offered, words);
        return;
    }
    const QSet<QString> options = optionsOfHelp();
    QCOMPARE(offered.size(), options.size());
    QCOMPARE(QSet<QString>(offered.cbegin(), offered.cend()), options);
}

// ------------------------------------------------------------------------------------------------------ equal bytes

void tst_KelRenderForPrograms::equalInputGivesEqualBytes_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QStringList>("results");

    const auto picture = [](const char *format) {
        const QString file = QStringLiteral("out.") + QLatin1String(format);
        QTest::newRow(format) << QStringList{"-o", file, "--size=400x300"} << QStringList{file};
    };
    for (const char *format : {"png", "jpg", "webp", "svg", "pdf"})
        picture(format);
    QTest::newRow("cropped picture") << QStringList{"-o", "out.png", "--size=400x300", "--crop=20%", "--dark"}
                                     << QStringList{"out.png"};
    QTest::newRow("export") << QStringList{"--export", "out.gpx"} << QStringList{"out.gpx", "out_2.gpx"};
    QTest::newRow("report") << QStringList{"--report=json"} << QStringList();
}

void tst_KelRenderForPrograms::equalInputGivesEqualBytes()
{
    QFETCH(QStringList, arguments);
    QFETCH(QStringList, results);
    const QString examples = QStringLiteral(KEL_EXAMPLES_DIR "/tracks/");
    QList<QByteArray> first;
    // Other processes have other orders of hashes; the last one has another clock, too: a later second, another zone.
    for (const char *round : {"fixed seed", "random seed", "other clock"}) {
        const QString folder = path(QString::fromLatin1(round));
        QVERIFY(QDir().mkpath(folder));
        if (qstrcmp(round, "fixed seed") == 0)
            m_environment.insert("QT_HASH_SEED", "0");
        else
            m_environment.remove("QT_HASH_SEED");
        if (qstrcmp(round, "other clock") == 0) {
            m_environment.insert("TZ", "Pacific/Kiritimati");
            if (arguments.contains("out.pdf"))
                QTest::qSleep(1100);
        }
        QProcess process;
        process.setProcessEnvironment(m_environment);
        process.setWorkingDirectory(folder);
        process.start(QStringLiteral(KEL_RENDER_PROGRAM),
                      QStringList{examples + "tour.kml", examples + "city-walk.gpx"} + arguments);
        QVERIFY(process.waitForFinished(120000));
        QCOMPARE(process.exitCode(), 0);
        QList<QByteArray> bytes{process.readAllStandardOutput()};
        for (const QString &name : results) {
            bytes.append(contentOf(folder + '/' + name));
            QVERIFY2(!bytes.last().isEmpty(), qPrintable(name));
        }
        if (first.isEmpty())
            first = bytes;
        QCOMPARE(bytes.size(), first.size());
        for (qsizetype i = 0; i < bytes.size(); ++i)
            QVERIFY2(bytes.at(i) == first.at(i), round);
    }
}

QTEST_GUILESS_MAIN(tst_KelRenderForPrograms)
#include "tst_KelRenderForPrograms.moc"
