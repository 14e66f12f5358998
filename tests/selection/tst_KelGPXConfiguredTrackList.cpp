// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelGPXConfiguredTrackList.h>
#include <KelGPXTrackSelectionComparisonResult.h>
#include <KelGeoLocationSettings.h>
#include <KelRequestDiskAccess.h>
#include <KelTemporarySettings.h>
#include <KelTestSupport.h>
#include <KelTestTracks.h>

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

using namespace KelTestTracks;

class tst_KelGPXConfiguredTrackList : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void constructors();
    void xmlConstructorTakesDirectChildrenOfTheName();
    void writtenForm();
    void checkRange_data();
    void checkRange();
    void configurationOutOfRangeIsTheUsersDefault();
    void setConfiguration_data();
    void setConfiguration();
    void setConfigurationOutOfRange();
    void moveTrack_data();
    void moveTrack();
    void wouldChangeHaloToVisibleAgainst_data();
    void wouldChangeHaloToVisibleAgainst();
    void compare();
    void compareIgnoresFillColor();
    void compareExaminesOnlyCommonRows();
    void appendAndRemove();
    void fromFileAsksTheUser();

private:
    KelTemporarySettings m_settings;
};

namespace
{

KelGPXConfiguredTrackList list(const QString &names)
{
    QList<KelGPXConfiguredTrack> tracks;
    const QStringList parts = names.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (const QString &name : parts)
        tracks.append(configured(name));
    return KelGPXConfiguredTrackList(tracks);
}

QString names(const KelGPXConfiguredTrackList &tracks)
{
    QStringList parts;
    for (const KelGPXConfiguredTrack &track : tracks)
        parts.append(track.name());
    return parts.join(QLatin1Char(' '));
}

KelGPXConfiguredTrackList withHalos(const QList<double> &widths)
{
    KelGPXConfiguredTrackList made;
    for (const double width : widths) {
        KelGPXTrackConfiguration configuration = KelTestTracks::configuration(TrackShapeAuto);
        configuration.setHaloWidth(width);
        made.append(KelGPXConfiguredTrack(track(LINE), configuration));
    }
    return made;
}

} // namespace

void tst_KelGPXConfiguredTrackList::initTestCase()
{
    KelGPXTrackConfiguration users = KelGPXTrackConfiguration::defaultValue();
    users.setLineWidth(3.0);
    KelGeoLocationSettings::instance().setDefaultTrackConfiguration(users);
}

void tst_KelGPXConfiguredTrackList::constructors()
{
    const KelGPXConfiguredTrackList empty;
    QCOMPARE(empty.count(), 0);
    QVERIFY(!empty.isValid());

    const KelGPXConfiguredTrackList one(configured(QStringLiteral("walk")));
    QCOMPARE(one.count(), 1);
    QVERIFY(one.isValid());
    QVERIFY(one.tracks().constFirst() == configured(QStringLiteral("walk")));

    QCOMPARE(names(list(QStringLiteral("A B C"))), QStringLiteral("A B C"));
    QCOMPARE(list(QStringLiteral("A B C")).tracks().size(), 3);
    QCOMPARE(list(QStringLiteral("A B C")).at(1).name(), QStringLiteral("B"));
}

void tst_KelGPXConfiguredTrackList::xmlConstructorTakesDirectChildrenOfTheName()
{
    const QDomDocument xml = KelTestSupport::document(QStringLiteral(
        "<host><entry><trk><name>A</name></trk></entry><other><entry><trk><name>deeper</name></trk></entry></other>"
        "<Entry/><entry/><entry><trk><name>C</name></trk></entry></host>"));
    const KelGPXConfiguredTrackList read(xml.documentElement(), QStringLiteral("entry"), QDir(QString()));

    // None is skipped, not even the one without a track.
    QCOMPARE(read.count(), 3);
    QCOMPARE(read.at(0).name(), QStringLiteral("A"));
    QCOMPARE(read.at(1).name(), QString());
    QCOMPARE(read.at(2).name(), QStringLiteral("C"));

    QCOMPARE(KelGPXConfiguredTrackList(QDomElement(), QStringLiteral("entry"), QDir(QString())).count(), 0);
    QCOMPARE(KelGPXConfiguredTrackList(xml.documentElement(), QString(), QDir(QString())).count(), 0);
}

void tst_KelGPXConfiguredTrackList::writtenForm()
{
    QDomDocument document;
    QDomElement host = document.createElement(QStringLiteral("host"));
    document.appendChild(host);
    const KelGPXConfiguredTrackList original = list(QStringLiteral("A B"));
    original.toXml(host, QStringLiteral("entry"), QDir(QString()));

    QCOMPARE(host.childNodes().size(), 2);
    QCOMPARE(host.firstChildElement().tagName(), QStringLiteral("entry"));
    const KelGPXConfiguredTrackList copy(host, QStringLiteral("entry"), QDir(QString()));
    QVERIFY(copy.tracks() == original.tracks());
}

void tst_KelGPXConfiguredTrackList::checkRange_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<bool>("inRange");

    QTest::newRow("before the first") << -1 << false;
    QTest::newRow("first") << 0 << true;
    QTest::newRow("last") << 2 << true;
    QTest::newRow("behind the last") << 3 << false;
}

void tst_KelGPXConfiguredTrackList::checkRange()
{
    QFETCH(int, index);
    const KelGPXConfiguredTrackList tracks = list(QStringLiteral("A B C"));
    QTEST(tracks.checkRange(index), "inRange");
    QCOMPARE(KelGPXConfiguredTrackList().checkRange(0), false);
}

void tst_KelGPXConfiguredTrackList::configurationOutOfRangeIsTheUsersDefault()
{
    const KelGPXConfiguredTrackList tracks = list(QStringLiteral("A"));
    QCOMPARE(tracks.configuration(0).lineWidth().value(), 10.0);
    QCOMPARE(tracks.configuration(-1).lineWidth().value(), 3.0);
    QCOMPARE(tracks.configuration(1).lineWidth().value(), 3.0);
    QCOMPARE(tracks.configuration(1).trackShape().toInt(), 256);
    QVERIFY(tracks.value(1) == KelGPXConfiguredTrack());
    QVERIFY(tracks.value(0) == configured(QStringLiteral("A")));
}

void tst_KelGPXConfiguredTrackList::setConfiguration_data()
{
    QTest::addColumn<QString>("coordinates");
    QTest::addColumn<int>("oldShape");
    QTest::addColumn<int>("newShape");
    QTest::addColumn<bool>("changed");
    QTest::addColumn<int>("shape");

    QTest::newRow("the same configuration") << LINE << 4 << 4 << false << 4;
    QTest::newRow("another shape") << LINE << 4 << 8 << true << 8;
    QTest::newRow("unknown becomes automatic") << LINE << 4 << 0 << true << 256;
    QTest::newRow("unknown on automatic changes nothing") << LINE << 256 << 0 << false << 256;
    QTest::newRow("unknown on a point: the natural shape rules") << POINT << 1 << 0 << true << 1;
}

void tst_KelGPXConfiguredTrackList::setConfiguration()
{
    QFETCH(QString, coordinates);
    QFETCH(int, oldShape);
    QFETCH(int, newShape);
    QFETCH(bool, changed);
    KelGPXConfiguredTrackList tracks = list(QStringLiteral("A B"));
    KelGPXConfiguredTrack second(track(coordinates), configuration(TrackShapeAuto));
    second.setConfiguration(configuration(KelGPXTrackShapeEnum(oldShape)));
    tracks.append(second);
    QCOMPARE(tracks.configuration(2).trackShape().toInt(), oldShape);

    QCOMPARE(tracks.setConfiguration(2, configuration(KelGPXTrackShapeEnum(newShape))), changed);
    QTEST(tracks.configuration(2).trackShape().toInt(), "shape");
    QVERIFY(tracks.at(0) == configured(QStringLiteral("A")));
    QVERIFY(tracks.at(1) == configured(QStringLiteral("B")));
}

void tst_KelGPXConfiguredTrackList::setConfigurationOutOfRange()
{
    KelGPXConfiguredTrackList tracks = list(QStringLiteral("A"));
    QCOMPARE(tracks.setConfiguration(1, configuration(TrackShapePolygon)), false);
    QCOMPARE(tracks.setConfiguration(-1, configuration(TrackShapePolygon)), false);
    QVERIFY(tracks.tracks() == list(QStringLiteral("A")).tracks());
}

void tst_KelGPXConfiguredTrackList::moveTrack_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    QTest::addColumn<QString>("order");

    QTest::newRow("first to the end") << 0 << 2 << "B C A";
    QTest::newRow("last to the front") << 2 << 0 << "C A B";
    QTest::newRow("first to the middle") << 0 << 1 << "B A C";
    QTest::newRow("last to the middle") << 2 << 1 << "A C B";
    QTest::newRow("to itself") << 1 << 1 << "A B C";
    QTest::newRow("from before the first") << -1 << 1 << "A B C";
    QTest::newRow("from behind the last") << 3 << 1 << "A B C";
    QTest::newRow("to before the first") << 1 << -1 << "A B C";
    QTest::newRow("to behind the last") << 1 << 3 << "A B C";
    QTest::newRow("both out of range") << 7 << -7 << "A B C";
    QTest::newRow("to itself, out of range") << 3 << 3 << "A B C";
}

void tst_KelGPXConfiguredTrackList::moveTrack()
{
    QFETCH(int, from);
    QFETCH(int, to);
    KelGPXConfiguredTrackList tracks = list(QStringLiteral("A B C"));
    tracks.moveTrack(from, to);
    QTEST(names(tracks), "order");

    KelGPXConfiguredTrackList none;
    none.moveTrack(from, to);
    QCOMPARE(none.count(), 0);
}

void tst_KelGPXConfiguredTrackList::wouldChangeHaloToVisibleAgainst_data()
{
    QTest::addColumn<QList<double>>("own");
    QTest::addColumn<QList<double>>("other");
    QTest::addColumn<bool>("becomesVisible");

    using Widths = QList<double>;
    QTest::newRow("in the second row") << Widths{0.0, 5.0} << Widths{0.0, 0.0} << true;
    QTest::newRow("in a row that only one has") << Widths{0.0, 5.0} << Widths{0.0} << false;
    QTest::newRow("vanishes") << Widths{0.0} << Widths{5.0} << false;
    QTest::newRow("own list empty") << Widths{} << Widths{0.0} << false;
    QTest::newRow("other list empty") << Widths{5.0} << Widths{} << false;
}

void tst_KelGPXConfiguredTrackList::wouldChangeHaloToVisibleAgainst()
{
    QFETCH(QList<double>, own);
    QFETCH(QList<double>, other);
    QTEST(withHalos(own).wouldChangeHaloToVisibleAgainst(withHalos(other)), "becomesVisible");
}

void tst_KelGPXConfiguredTrackList::compare()
{
    const KelGPXConfiguredTrackList old = list(QStringLiteral("A B C D"));
    KelGPXConfiguredTrackList changed = list(QStringLiteral("A B C X"));
    changed[1].setLineWidth(2.0);

    const KelGPXTrackSelectionComparisonResult result = old.compare(changed);
    QCOMPARE(result.changingTracks(), QList<int>({1, 3}));
    QCOMPARE(result.changingAspects(), AspectLineWidth | AspectTrack);
    QCOMPARE(result.trackCountChanges(), false);

    QCOMPARE(old.compare(old).changingTracks(), QList<int>());
    QCOMPARE(int(old.compare(old).changingAspects()), 0);
}

void tst_KelGPXConfiguredTrackList::compareIgnoresFillColor()
{
    KelGPXConfiguredTrackList changed = list(QStringLiteral("A"));
    changed[0].setFillColor(Qt::blue);
    const KelGPXTrackSelectionComparisonResult result = list(QStringLiteral("A")).compare(changed);
    QCOMPARE(result.changingTracks(), QList<int>());
    QCOMPARE(int(result.changingAspects()), 0);
}

void tst_KelGPXConfiguredTrackList::compareExaminesOnlyCommonRows()
{
    const KelGPXConfiguredTrackList three = list(QStringLiteral("A B C"));
    const KelGPXConfiguredTrackList five = list(QStringLiteral("X B C D E"));
    QCOMPARE(three.compare(five).changingTracks(), QList<int>({0}));
    QCOMPARE(five.compare(three).changingTracks(), QList<int>({0}));
    QCOMPARE(three.compare(five).trackCountChanges(), false); // told by the selection
}

void tst_KelGPXConfiguredTrackList::appendAndRemove()
{
    KelGPXConfiguredTrackList tracks = list(QStringLiteral("A B"));
    tracks.append(list(QStringLiteral("C D")));
    tracks.append(configured(QStringLiteral("E")));
    QCOMPARE(names(tracks), QStringLiteral("A B C D E"));
    tracks.removeAt(1);
    tracks.removeAt(-1);
    tracks.removeAt(4);
    QCOMPARE(names(tracks), QStringLiteral("A C D E"));
}

void tst_KelGPXConfiguredTrackList::fromFileAsksTheUser()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("walk.gpx"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("<gpx><trk><name>chosen</name><trkseg><trkpt lat='50' lon='8'/><trkpt lat='51' lon='8'/></trkseg></trk>"
               "</gpx>");
    file.close();

    KelRequestDiskAccess &dialog = KelRequestDiskAccess::instance();
    dialog.setDialog([&path](const QString &, const QString &, const QString &) { return path; });
    const KelGPXConfiguredTrackList chosen = KelGPXConfiguredTrackList::fromFile();
    dialog.setDialog([](const QString &, const QString &, const QString &) { return QString(); });
    const KelGPXConfiguredTrackList cancelled = KelGPXConfiguredTrackList::fromFile();
    dialog.setDialog({});

    QCOMPARE(names(chosen), QStringLiteral("chosen"));
    QCOMPARE(cancelled.count(), 0);
}

QTEST_GUILESS_MAIN(tst_KelGPXConfiguredTrackList)
#include "tst_KelGPXConfiguredTrackList.moc"
