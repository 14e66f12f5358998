// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelErrorHistory.h>
#include <KelGPXConfiguredTrackList.h>
#include <KelGPXTrackStyleList.h>
#include <KelGeoLocationSettings.h>
#include <KelTemporarySettings.h>
#include <KelTestArchive.h>
#include <KelTestSupport.h>
#include <KelTrackSelectionFactoryKmlFile.h>
#include <KelXMLLoader.h>

#include <QTemporaryDir>
#include <QUrl>
#include <QtTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <random>
#include <thread>

class tst_KelTrackSelectionFactoryKmlFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void supportedFileFormats();
    void supportsFile_data();
    void supportsFile();
    void supportsLocalUrlsOnly();

    void readsPlainFile_data();
    void readsPlainFile();
    void readsArchive_data();
    void readsArchive();
    void archiveIsReleased();
    void otherSuffixGivesEmptyText();

    void findPlacemarks_data();
    void findPlacemarks();
    void findCoordinates_data();
    void findCoordinates();

    void everyPlacemarkGivesOneEntry();
    void placemarksOutsideOfTheDocument();
    void namesAndDescriptions_data();
    void namesAndDescriptions();
    void shapes_data();
    void shapes();
    void coordinates_data();
    void coordinates();
    void styles_data();
    void styles();
    void stylesAreDirectChildrenOfTheDocument();
    void unknownStyleIsTheLibrarysDefault();
    void textThatDoesNotParse_data();
    void textThatDoesNotParse();

    void wholeFile_data();
    void wholeFile();
    void reasons_data();
    void reasons();
    void reasonOfAFileThatIsTooLarge();
    void reasonOfAnEmptyPipe();
    void noReasonWhenThereIsSomethingToDraw();
    void refusedArchiveGivesItsReason_data();
    void refusedArchiveGivesItsReason();
    void deepFoldersDoNoHarm();
    void equalsTheTree_data();
    void equalsTheTree();
    void randomDocumentsEqualTheTree();
    void largeDocument();
    void nothingReliesOnTheText();

private:
    QFileInfo write(const QString &name, const QByteArray &content);
    KelGPXConfiguredTrackList decode(const QString &insideOfDocument) const;

    KelTemporarySettings m_settings;
    QTemporaryDir m_folder;
    const KelTrackSelectionFactoryKmlFile m_factory{};
};

namespace
{

const QString FILE_NAME = QStringLiteral("tour.kml");
const QString PLACEMARK = QStringLiteral(
    "<Placemark><name>%1</name><LineString><coordinates>8,50 9,51</coordinates></LineString></Placemark>");

QString placemark(const QString &name)
{
    return PLACEMARK.arg(name);
}

QString inDocument(const QString &content)
{
    return QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<kml xmlns=\"http://www.opengis.net/kml/2.2\">"
                          "<Document>")
        + content + QStringLiteral("</Document></kml>");
}

QStringList names(const KelGPXConfiguredTrackList &list)
{
    QStringList result;
    for (const KelGPXConfiguredTrack &track : list)
        result.append(track.name());
    return result;
}

QList<KelGeoPosition> positions(const KelGPXConfiguredTrack &track)
{
    const KelGeoPositionList points = track.allPoints();
    return QList<KelGeoPosition>(points.begin(), points.end());
}

/// Long enough to be read where it lies.
QString longCoordinates()
{
    return QStringLiteral("8.5,47.25,412 -8.25,-47.125\n").repeated(20);
}

QString describe(const KelGPXTrack &track, const KelGPXTrackConfiguration &configuration)
{
    QString text = track.name() + '|' + track.description() + '|' + track.shape().encode() + '|';
    for (const KelGPXTrackSegment &segment : track.segments())
        text += segment.toKml() + ';';
    return text + '|' + configuration.serialize();
}

/// What the placemarks of a tree give, by the rules in their plainest form.
QStringList byTree(const QString &kml)
{
    QDomDocument xml;
    if (!KelXMLLoader::setContent(xml, kml))
        return {};
    const QDomElement document = xml.documentElement().firstChildElement("Document");
    const KelGPXTrackStyleList styles = KelGPXTrackStyleList::fromKml(document);
    const KelTrackSelectionFactoryKmlFile factory;
    QStringList result;
    for (const QDomElement &placemark : factory.findPlacemarks(document)) {
        const auto text = [&placemark](const char *name) { return placemark.firstChildElement(name).text(); };
        const auto orFileName = [](const QString &name) { return name.isEmpty() ? FILE_NAME : name; };
        const KelGPXTrack track =
            KelGPXTrack::decodeKml(orFileName(text("name")), orFileName(text("description")), factory.findCoordinates(placemark),
                                   KelGPXTrackShape::decodeKml(placemark));
        const KelGPXConfiguredTrack configured(track, styles.findStyling(text("styleUrl")));
        result.append(describe(configured.track(), configured.configuration()));
    }
    return result;
}

QStringList describe(const KelGPXConfiguredTrackList &list)
{
    QStringList result;
    for (const KelGPXConfiguredTrack &track : list)
        result.append(describe(track.track(), track.configuration()));
    return result;
}

} // namespace

void tst_KelTrackSelectionFactoryKmlFile::initTestCase()
{
    QVERIFY(m_folder.isValid());
    KelGPXTrackConfiguration users = KelGPXTrackConfiguration::defaultValue();
    users.setLineWidth(3.0);
    KelGeoLocationSettings::instance().setDefaultTrackConfiguration(users);
}

QFileInfo tst_KelTrackSelectionFactoryKmlFile::write(const QString &name, const QByteArray &content)
{
    if (!KelTestArchive::write(m_folder.filePath(name), content))
        qFatal("the test's file cannot be written");
    return QFileInfo(m_folder.filePath(name));
}

KelGPXConfiguredTrackList tst_KelTrackSelectionFactoryKmlFile::decode(const QString &insideOfDocument) const
{
    return m_factory.decode(inDocument(insideOfDocument), FILE_NAME);
}

void tst_KelTrackSelectionFactoryKmlFile::supportedFileFormats()
{
    QCOMPARE(m_factory.supportedFileFormats(), QStringList({"*.kml", "*.kmz"}));
}

void tst_KelTrackSelectionFactoryKmlFile::supportsFile_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("supported");

    QTest::newRow("kml") << "/somewhere/route.kml" << true;
    QTest::newRow("kmz") << "route.kmz" << true;
    QTest::newRow("route.KMZ") << "route.KMZ" << true;
    QTest::newRow("route.Kml") << "route.Kml" << true;
    QTest::newRow("gpx") << "route.gpx" << false;
    QTest::newRow("route.kml.bak") << "route.kml.bak" << false;
    QTest::newRow("longer suffix") << "route.kmlx" << false;
    QTest::newRow("no suffix") << "kml" << false;
    QTest::newRow("nothing") << "" << false;
}

void tst_KelTrackSelectionFactoryKmlFile::supportsFile()
{
    QFETCH(QString, path);
    QTEST(m_factory.supportsFile(QFileInfo(path)), "supported");
}

void tst_KelTrackSelectionFactoryKmlFile::supportsLocalUrlsOnly()
{
    QVERIFY(m_factory.supportsFile(QUrl(QStringLiteral("file:///somewhere/route.KMZ"))));
    QVERIFY(!m_factory.supportsFile(QUrl(QStringLiteral("https://example.org/route.kml"))));
}

void tst_KelTrackSelectionFactoryKmlFile::readsPlainFile_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("text");

    QTest::newRow("lines are joined with line feeds") << "a.kml" << QByteArray("<a>\r\n</a>\n") << "<a>\n</a>";
    QTest::newRow("suffix in capitals") << "A.KML" << QByteArray("<a/>") << "<a/>";
    QTest::newRow("UTF-8") << "a.kml" << QByteArray("<a>Stra\xc3\x9f"
                                                    "e</a>")
                           << QStringLiteral("<a>Straße</a>");
    QTest::newRow("empty file") << "a.kml" << QByteArray() << "";
}

void tst_KelTrackSelectionFactoryKmlFile::readsPlainFile()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    QTEST(m_factory.readFile(write(name, content)), "text");
    QCOMPARE(m_factory.readFile(QFileInfo(m_folder.filePath(QStringLiteral("missing.kml")))), QString());
}

void tst_KelTrackSelectionFactoryKmlFile::readsArchive_data()
{
    QTest::addColumn<QByteArray>("archive");
    QTest::addColumn<QString>("text");

    using Entries = QList<KelTestArchive::Entry>;
    const auto archive = [](const Entries &entries) { return KelTestArchive::build(entries); };
    QTest::newRow("stored") << archive({{"doc.kml", "<a/>"}}) << "<a/>";
    QTest::newRow("deflated, sizes behind the data") << archive({{"doc.kml", "<a/>", true, true}}) << "<a/>";
    QTest::newRow("the first .kml entry of several, in the archive's order")
        << archive({{"picture.png", "x"}, {"z.kml", "<z/>"}, {"doc.kml", "<a/>"}, {"a.kml", "<b/>"}}) << "<z/>";
    QTest::newRow("doc.KML does not count") << archive({{"doc.KML", "<A/>"}, {"sub/a.kml", "<a/>"}}) << "<a/>";
    QTest::newRow("only doc.KML") << archive({{"doc.KML", "<A/>"}}) << "";
    QTest::newRow("no .kml entry") << archive({{"picture.png", "x"}}) << "";
    QTest::newRow("the suffix must be at the end") << archive({{"doc.kml.bak", "x"}, {"kml", "y"}}) << "";
    QTest::newRow("a name that is nothing but the suffix") << archive({{".kml", "<a/>"}}) << "<a/>";
    QTest::newRow("no entry") << archive({}) << "";
    QTest::newRow("UTF-8") << archive({{"doc.kml", "<a>Stra\xc3\x9f"
                                                   "e</a>"}})
                           << QStringLiteral("<a>Straße</a>");
    QTest::newRow("first .kml entry damaged: a later one is no substitute")
        << archive({{"a.kml", "<a/>", true, false, false, QByteArray(40, '\xff')}, {"b.kml", "<b/>"}}) << "";
    QTest::newRow("truncated") << archive({{"doc.kml", "<a/>"}}).chopped(30) << "";
    QTest::newRow("no archive") << QByteArray("<a/>") << "";
}

void tst_KelTrackSelectionFactoryKmlFile::readsArchive()
{
    QFETCH(QByteArray, archive);
    QTEST(m_factory.readFile(write(QStringLiteral("a.kmz"), archive)), "text");
    QTEST(m_factory.readFile(write(QStringLiteral("A.KMZ"), archive)), "text");
}

void tst_KelTrackSelectionFactoryKmlFile::archiveIsReleased()
{
    const auto openFiles = [] {
        return QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::AllEntries | QDir::System).size();
    };
    const QFileInfo with = write(QStringLiteral("with.kmz"), KelTestArchive::build({{"doc.kml", "<a/>"}}));
    const QFileInfo without = write(QStringLiteral("without.kmz"), KelTestArchive::build({{"a", "x"}}));
    const auto before = openFiles();
    QCOMPARE(m_factory.readFile(with), QStringLiteral("<a/>"));
    QCOMPARE(openFiles(), before);
    QCOMPARE(m_factory.readFile(without), QString());
    QCOMPARE(openFiles(), before);
}

void tst_KelTrackSelectionFactoryKmlFile::otherSuffixGivesEmptyText()
{
    QCOMPARE(m_factory.readFile(write(QStringLiteral("a.xml"), "<a/>")), QString());
    QCOMPARE(m_factory.readFile(write(QStringLiteral("kml"), "<a/>")), QString());
}

void tst_KelTrackSelectionFactoryKmlFile::findPlacemarks_data()
{
    QTest::addColumn<QString>("xml");
    QTest::addColumn<QString>("found");

    QTest::newRow("none") << "<Document><Folder/></Document>" << "";
    QTest::newRow("direct children") << "<Document><Placemark id='a'/><Placemark id='b'/></Document>" << "a b";
    QTest::newRow("the element itself") << "<Placemark id='a'><Placemark id='b'/></Placemark>" << "a";
    QTest::newRow("in a folder inside the document")
        << "<Document><Folder><Placemark id='a'/></Folder></Document>" << "a";
    QTest::newRow("depth first in document order")
        << "<Document><Placemark id='a'/><Folder><Placemark id='b'/><Folder><x/><Placemark id='c'/></Folder>"
           "<Placemark id='d'/></Folder><Placemark id='e'/></Document>"
        << "a b c d e";
    QTest::newRow("not inside a placemark")
        << "<Document><Placemark id='a'><Folder><Placemark id='b'/></Folder></Placemark><Placemark id='c'/></Document>"
        << "a c";
    QTest::newRow("case counts") << "<Document><placemark id='a'/></Document>" << "";
    QTest::newRow("a prefix is another name") << "<Document><k:Placemark id='a'/></Document>" << "";
    QTest::newRow("comments and texts between") << "<Document>x<!-- <Placemark/> -->y<Placemark id='a'/></Document>"
                                                << "a";
}

void tst_KelTrackSelectionFactoryKmlFile::findPlacemarks()
{
    QFETCH(QString, xml);
    // Neighbours that must not be found when the search begins below them.
    const QDomDocument document = KelTestSupport::document(
        QStringLiteral("<r><Placemark id='before'/>%1<Placemark id='after'/></r>").arg(xml));
    const QDomElement element = document.documentElement().firstChildElement().nextSiblingElement();
    QStringList found;
    const QList<QDomElement> placemarks = m_factory.findPlacemarks(element);
    for (const QDomElement &placemark : placemarks)
        found.append(placemark.attribute(QStringLiteral("id")));
    QTEST(found.join(QLatin1Char(' ')), "found");
    QVERIFY(m_factory.findPlacemarks(QDomElement()).isEmpty());
}

void tst_KelTrackSelectionFactoryKmlFile::findCoordinates_data()
{
    QTest::addColumn<QString>("xml");
    QTest::addColumn<QString>("found");

    QTest::newRow("trimmed") << "<p><coordinates>\n  1,2 3,4\t\n</coordinates></p>" << "1,2 3,4";
    QTest::newRow("the element itself") << "<coordinates> 1,2 </coordinates>" << "1,2";
    QTest::newRow("deeper") << "<p><a/><Polygon><o><coordinates>1,2</coordinates></o></Polygon></p>" << "1,2";
    QTest::newRow("the first of several")
        << "<p><a><coordinates>1,2</coordinates></a><coordinates>3,4</coordinates></p>" << "1,2";
    QTest::newRow("the first that is not empty")
        << "<p><coordinates>  </coordinates><coordinates/><a><coordinates>3,4</coordinates></a></p>" << "3,4";
    QTest::newRow("nothing inside of coordinates is searched")
        << "<p><coordinates><coordinates>1,2</coordinates></coordinates></p>" << "1,2"; // it is its text
    QTest::newRow("none") << "<p><a/></p>" << "";
    QTest::newRow("only an empty one") << "<p><coordinates/></p>" << "";
    QTest::newRow("case counts") << "<p><Coordinates>1,2</Coordinates></p>" << "";
}

void tst_KelTrackSelectionFactoryKmlFile::findCoordinates()
{
    QFETCH(QString, xml);
    QFETCH(QString, found);
    const QDomDocument document = KelTestSupport::document(
        QStringLiteral("<r><b><coordinates>7,7</coordinates></b>%1<coordinates>8,8</coordinates></r>").arg(xml));
    const QDomElement element = document.documentElement().firstChildElement().nextSiblingElement();
    QCOMPARE(m_factory.findCoordinates(element), found);
    QCOMPARE(m_factory.findCoordinates(element).isNull(), found.isEmpty());
    QVERIFY(m_factory.findCoordinates(QDomElement()).isNull());
}

void tst_KelTrackSelectionFactoryKmlFile::everyPlacemarkGivesOneEntry()
{
    const KelGPXConfiguredTrackList list =
        decode(placemark("a") + "<Placemark><name>without coordinates</name></Placemark><Folder>" + placemark("c")
               + "</Folder><Placemark/>");
    QCOMPARE(names(list), QStringList({"a", "without coordinates", "c", FILE_NAME}));
    QCOMPARE(list.at(0).track().countPoints(), 2);
    QVERIFY(!list.at(1).track().isValid());
    QVERIFY(!list.at(3).track().isValid());
}

void tst_KelTrackSelectionFactoryKmlFile::placemarksOutsideOfTheDocument()
{
    const QString kml = QStringLiteral("<kml>%1</kml>");
    QVERIFY(!m_factory.decode(kml.arg(placemark("a")), FILE_NAME).isValid());
    const QString a = "<Document>" + placemark("a") + "</Document>";
    const QString b = "<Document>" + placemark("b") + "</Document>";
    QCOMPARE(names(m_factory.decode(kml.arg(placemark("a") + b), FILE_NAME)), QStringList({"b"}));
    QCOMPARE(names(m_factory.decode(kml.arg(a + b), FILE_NAME)), QStringList({"a"}));
    QVERIFY(!m_factory.decode(kml.arg("<Folder>" + a + "</Folder>"), FILE_NAME).isValid());
    QVERIFY(!m_factory.decode(a, FILE_NAME).isValid());
    // The root element's own name does not matter.
    QCOMPARE(names(m_factory.decode("<x>" + a + "</x>", FILE_NAME)), QStringList({"a"}));
}

void tst_KelTrackSelectionFactoryKmlFile::namesAndDescriptions_data()
{
    QTest::addColumn<QString>("children");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("description");

    QTest::newRow("both") << "<name>N</name><description>D</description>" << "N" << "D";
    QTest::newRow("a placemark without name is named after the file") << "<description>D</description>" << "tour.kml"
                                                                      << "D";
    QTest::newRow("no description") << "<name>N</name>" << "N" << "tour.kml";
    QTest::newRow("neither") << "" << "tour.kml" << "tour.kml";
    QTest::newRow("both empty") << "<name/><description></description>" << "tour.kml" << "tour.kml";
    QTest::newRow("the first of several") << "<name>N</name><name>M</name>" << "N" << "tour.kml";
    QTest::newRow("the first of several is empty") << "<name/><name>M</name>" << "tour.kml" << "tour.kml";
    QTest::newRow("nothing but blanks") << "<name> \n </name><description>\t</description>" << "tour.kml" << "tour.kml";
    QTest::newRow("blanks around stay") << "<name> N </name><description>\nD</description>" << " N " << "\nD";
    QTest::newRow("only direct children") << "<x><name>deeper</name></x>" << "tour.kml" << "tour.kml";
    QTest::newRow("mark-up in a description") << "<description><![CDATA[<b>bold</b> & more]]></description>"
                                              << "tour.kml" << "<b>bold</b> & more";
    QTest::newRow("an argument's place in a name") << "<name>%1 and %2</name>" << "%1 and %2" << "tour.kml";
}

void tst_KelTrackSelectionFactoryKmlFile::namesAndDescriptions()
{
    QFETCH(QString, children);
    const KelGPXConfiguredTrackList list = decode("<Placemark>" + children + "</Placemark>");
    QCOMPARE(list.count(), 1);
    QTEST(list.at(0).name(), "name");
    QTEST(list.at(0).description(), "description");
}

void tst_KelTrackSelectionFactoryKmlFile::shapes_data()
{
    QTest::addColumn<QString>("geometry");
    QTest::addColumn<int>("shape"); // of the track
    QTest::addColumn<int>("configured");
    QTest::addColumn<int>("count");

    const QString line = QStringLiteral("<coordinates>8,53 9,53 9,54</coordinates>");
    const QString ring = QStringLiteral("<coordinates>8,53 9,53 9,54 8,53</coordinates>");
    const QString boundary = QStringLiteral("<outerBoundaryIs><LinearRing>%1</LinearRing></outerBoundaryIs>");
    QTest::newRow("point") << "<Point><coordinates>8,53</coordinates></Point>" << 1 << 1 << 1;
    QTest::newRow("line") << "<LineString>" + line + "</LineString>" << 4 << 4 << 3;
    QTest::newRow("closed line") << "<LineString>" + ring + "</LineString>" << 4 << 8 << 4;
    QTest::newRow("polygon") << "<Polygon>" + boundary.arg(ring) + "</Polygon>" << 8 << 8 << 4;
    QTest::newRow("unclosed polygon: the configured shape is the natural one")
        << "<Polygon>" + boundary.arg(line) + "</Polygon>" << 8 << 4 << 3;
    QTest::newRow("point with several coordinates") << "<Point>" + line + "</Point>" << 1 << 4 << 3;
    QTest::newRow("a polygon in a multi-geometry is found by its points")
        << "<MultiGeometry><Polygon>" + boundary.arg(ring) + "</Polygon></MultiGeometry>" << 8 << 8 << 4;
    QTest::newRow("a line in a multi-geometry is found by its points")
        << "<MultiGeometry><LineString>" + ring + "</LineString></MultiGeometry>" << 8 << 8 << 4;
    QTest::newRow("an unclosed polygon in a multi-geometry")
        << "<MultiGeometry><Polygon>" + boundary.arg(line) + "</Polygon></MultiGeometry>" << 4 << 4 << 3;
    QTest::newRow("of a multi-geometry only the first coordinates")
        << "<MultiGeometry><Point><coordinates>8,53</coordinates></Point><LineString>" + line
               + "</LineString></MultiGeometry>"
        << 1 << 1 << 1;
    QTest::newRow("polygon goes before line")
        << "<LineString>" + line + "</LineString><Polygon>" + boundary.arg(ring) + "</Polygon>" << 8 << 4 << 3;
    QTest::newRow("named shape") << "<shape>hop</shape>" + line << 2 << 4 << 3;
    QTest::newRow("nothing") << "" << 0 << 0 << 0;
}

void tst_KelTrackSelectionFactoryKmlFile::shapes()
{
    QFETCH(QString, geometry);
    const KelGPXConfiguredTrackList list = decode("<Placemark>" + geometry + "</Placemark>");
    QCOMPARE(list.count(), 1);
    QTEST(list.at(0).track().shape().toInt(), "shape");
    QTEST(list.at(0).configuration().trackShape().toInt(), "configured");
    QTEST(list.at(0).track().countPoints(), "count");
}

void tst_KelTrackSelectionFactoryKmlFile::coordinates_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QList<KelGeoPosition>>("points");

    using Points = QList<KelGeoPosition>;
    QTest::newRow("longitude first") << "8.5,53.25" << Points{{53.25, 8.5}};
    QTest::newRow("any white space") << "\n\t8,50\n 9,51 \t10,52\n" << Points{{50.0, 8.0}, {51.0, 9.0}, {52.0, 10.0}};
    QTest::newRow("with altitudes") << "8,50,12 9,51,7.5" << Points{{50.0, 8.0}, {51.0, 9.0}};
    QTest::newRow("southern and western") << "-58.4,-34.6" << Points{{-34.6, -58.4}};
}

void tst_KelTrackSelectionFactoryKmlFile::coordinates()
{
    QFETCH(QString, text);
    const KelGPXConfiguredTrackList list =
        decode("<Placemark><LineString><coordinates>" + text + "</coordinates></LineString></Placemark>");
    QCOMPARE(list.count(), 1);
    QTEST(positions(list.at(0)), "points");
    QCOMPARE(list.at(0).track().segments().size(), 1);
}

void tst_KelTrackSelectionFactoryKmlFile::styles_data()
{
    QTest::addColumn<QString>("style");
    QTest::addColumn<QColor>("line");
    QTest::addColumn<QColor>("fill");
    QTest::addColumn<double>("width");
    QTest::addColumn<double>("halo");
    QTest::addColumn<int>("options");

    const QString lineStyle = QStringLiteral("<LineStyle>%1</LineStyle>");
    const QString polyStyle = QStringLiteral("<PolyStyle>%1</PolyStyle>");
    QTest::newRow("a red line is drawn red, alpha blue green red")
        << lineStyle.arg("<color>ff0000ff</color><width>2</width>") << QColor(255, 0, 0) << QColor(255, 0, 0, 127)
        << 12.0 << 24.0 << 1;
    QTest::newRow("only a fill of alpha 40: line of twice the alpha")
        << polyStyle.arg("<color>40ff0000</color>") << QColor(0, 0, 255, 0x80) << QColor(0, 0, 255, 0x40) << 7.7 << 7.7
        << 2;
    QTest::newRow("only a line of alpha ff: fill of alpha 127")
        << lineStyle.arg("<color>ff00ff00</color>") << QColor(0, 255, 0) << QColor(0, 255, 0, 127) << 7.7 << 15.4 << 1;
    QTest::newRow("line and fill") << lineStyle.arg("<color>80102030</color><width>0.5</width>")
               + polyStyle.arg("<color>ff405060</color>")
                                   << QColor(0x30, 0x20, 0x10, 0x80) << QColor(0x60, 0x50, 0x40) << 3.0 << 3.0 << 3;
    QTest::newRow("width 0") << lineStyle.arg("<color>ff0000ff</color><width>0</width>") << QColor(255, 0, 0)
                             << QColor(255, 0, 0, 127) << 7.7 << 15.4 << 1;
    QTest::newRow("nothing") << "" << QColor(0, 0, 0) << QColor(0, 0, 0, 128) << 7.7 << 15.4 << 1;
}

void tst_KelTrackSelectionFactoryKmlFile::styles()
{
    QFETCH(QString, style);
    const KelGPXConfiguredTrackList list =
        decode("<Style id='mine'>" + style
               + "</Style><Placemark><styleUrl>#mine</styleUrl><coordinates>8,50 9,51</coordinates></Placemark>");
    QCOMPARE(list.count(), 1);
    QTEST(list.at(0).lineColor(), "line");
    QTEST(list.at(0).fillColor(), "fill");
    QTEST(list.at(0).lineWidth().value(), "width");
    QTEST(list.at(0).haloWidth().value(), "halo");
    QTEST(list.at(0).configuration().currentDisplayOptions().toInt(), "options");
}

void tst_KelTrackSelectionFactoryKmlFile::stylesAreDirectChildrenOfTheDocument()
{
    const QString style = QStringLiteral("<Style id='%1'><LineStyle><width>%2</width></LineStyle></Style>");
    const QString placemark = QStringLiteral("<Placemark><styleUrl>%1</styleUrl></Placemark>");
    const KelGPXConfiguredTrackList list =
        decode(placemark.arg("#late") + "<Folder>" + style.arg("deep", "3") + "</Folder>" + style.arg("twice", "1")
               + placemark.arg("#deep") + style.arg("twice", "2") + placemark.arg("#twice") + style.arg("late", "4")
               + "<Placemark><Style><LineStyle><width>5</width></LineStyle></Style></Placemark>");
    QCOMPARE(list.count(), 4);
    QCOMPARE(list.at(0).lineWidth().value(), 24.0); // declared behind its use
    QCOMPARE(list.at(1).lineWidth().value(), 10.0); // not seen in its folder
    QCOMPARE(list.at(2).lineWidth().value(), 12.0); // the last declaration
    QCOMPARE(list.at(3).lineWidth().value(), 10.0); // a placemark's own style is not read
}

void tst_KelTrackSelectionFactoryKmlFile::unknownStyleIsTheLibrarysDefault()
{
    const KelGPXConfiguredTrackList list = decode(
        "<Style id='mine'/><Placemark><styleUrl>#other</styleUrl></Placemark><Placemark/>"
        "<Placemark><styleUrl>mine</styleUrl></Placemark><Placemark><styleUrl>other.kml#mine</styleUrl></Placemark>"
        "<Placemark><styleUrl>#Mine</styleUrl></Placemark>");
    QCOMPARE(list.count(), 5);
    for (const KelGPXConfiguredTrack &track : list) {
        QCOMPARE(track.lineWidth().value(), 10.0); // the user's is 3
        QCOMPARE(track.lineColor(), QColor(255, 145, 0));
    }
}

void tst_KelTrackSelectionFactoryKmlFile::textThatDoesNotParse_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("parses");

    const QString whole = inDocument(placemark("a"));
    QTest::newRow("as it should be") << whole << true;
    QTest::newRow("with a byte order mark") << QString(QChar(0xfeff)) + whole << true;
    QTest::newRow("with an undeclared prefix") << inDocument(placemark("a") + "<gx:Tour/>") << true;
    QTest::newRow("empty") << QString() << false;
    QTest::newRow("cut short behind the placemark") << whole.chopped(5) << false;
    QTest::newRow("something behind the end") << whole + "x" << false;
    QTest::newRow("not XML") << "walk" << false;
    QTest::newRow("wrong nesting at the very end") << whole.chopped(6) + "</kmx>" << false;
}

void tst_KelTrackSelectionFactoryKmlFile::textThatDoesNotParse()
{
    QFETCH(QString, text);
    QTEST(m_factory.decode(text, FILE_NAME).isValid(), "parses");
}

void tst_KelTrackSelectionFactoryKmlFile::wholeFile_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");

    const QByteArray kml = inDocument(placemark("named") + "<Placemark/>").toUtf8();
    QTest::newRow("plain") << "tour 100%.kml" << kml;
    QTest::newRow("plain with a byte order mark") << "tour.kml" << "\xef\xbb\xbf" + kml;
    QTest::newRow("packed") << "TOUR.KMZ" << KelTestArchive::build({{"doc.kml", kml, true}});
    QTest::newRow("packed with a byte order mark")
        << "tour.kmz" << KelTestArchive::build({{"doc.kml", "\xef\xbb\xbf" + kml}});
}

void tst_KelTrackSelectionFactoryKmlFile::wholeFile()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    const QFileInfo file = write(name, content);
    const QStringList expected{QStringLiteral("named"), name};
    QCOMPARE(names(m_factory.createConfiguredTrackList(file)), expected);
    QCOMPARE(names(m_factory.createConfiguredTrackList(QUrl::fromLocalFile(file.filePath()))), expected);
    const KelTrackSelectionFactoryAbstract &abstract = m_factory;
    QCOMPARE(names(abstract.createConfiguredTrackList(QUrl::fromLocalFile(file.filePath()))), expected);
}

void tst_KelTrackSelectionFactoryKmlFile::reasons_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("reason"); // a part of it
    QTest::addColumn<qint64>("line");

    const auto archive = [](const QByteArray &kml) { return KelTestArchive::build({{"doc.kml", kml}}); };
    const QByteArray malformed = "<kml>\n<Document>\n</kml>";
    const QByteArray noDocument = "<kml><Folder/></kml>";
    QTest::newRow("malformed in the third line") << "a.kml" << malformed << "" << qint64(3);
    QTest::newRow("malformed in an archive") << "a.kmz" << archive(malformed) << "" << qint64(3);
    QTest::newRow("no Document") << "a.kml" << noDocument << "no \"Document\" element in the root element \"kml\""
                                 << qint64(-1);
    QTest::newRow("no Document in an archive") << "a.kmz" << archive(noDocument) << "no \"Document\" element"
                                               << qint64(-1);
    const QString wide = "this is UTF-16 or UTF-32; KML is read as UTF-8: save it as UTF-8";
    const QString text = "<kml><Document>" + placemark("ä") + "</Document></kml>";
    for (const auto encoding : {QStringConverter::Utf16LE, QStringConverter::Utf16BE, QStringConverter::Utf32LE,
                                QStringConverter::Utf32BE}) {
        const char *name = QStringConverter::nameForEncoding(encoding);
        QTest::addRow("%s", name) << "a.kml" << QByteArray(QStringEncoder(encoding).encode(text)) << wide << qint64(1);
        const QByteArray marked = QStringEncoder(encoding, QStringConverter::Flag::WriteBom).encode(text);
        QTest::addRow("%s with a byte order mark", name) << "a.kml" << marked << wide << qint64(1);
        QTest::addRow("%s in an archive", name) << "a.kmz" << archive(marked) << wide << qint64(1);
    }
    QTest::newRow("a zero further on") << "a.kml" << QByteArray("<kml>\n<\0", 8) << "" << qint64(2);
    QTest::newRow("no placemark") << "a.kml" << QByteArray("<kml><Document/></kml>")
                                  << "the \"Document\" holds no placemarks" << qint64(-1);
    QTest::newRow("no coordinates")
        << "a.kml" << QByteArray("<kml><Document><Placemark/><Placemark><coordinates/></Placemark></Document></kml>")
        << "no placemark has coordinates" << qint64(-1);
    QTest::newRow("empty file") << "a.kml" << QByteArray() << "the file is empty" << qint64(-1);
    QTest::newRow("archive without entries") << "a.kmz" << KelTestArchive::build({})
                                             << "the archive holds no .kml entry" << qint64(-1);
    QTest::newRow("no archive") << "a.kmz" << QByteArray("<kml/>") << "not a zip archive" << qint64(-1);
    QTest::newRow("empty entry") << "a.kmz" << archive("") << "the entry \"doc.kml\" is empty" << qint64(-1);
    QTest::newRow("other suffix") << "a.xml" << QByteArray("<kml/>") << "neither a .kml nor a .kmz file" << qint64(-1);
}

void tst_KelTrackSelectionFactoryKmlFile::reasons()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    QFETCH(QString, reason);
    QFETCH(qint64, line);
    const QFileInfo file = write(name, content);
    KelErrorHistory errors;
    const KelGPXConfiguredTrackList list = m_factory.createConfiguredTrackList(file, &errors);

    QCOMPARE(errors.entries().size(), 1);
    QCOMPARE(errors.last().fileName, file.filePath());
    QCOMPARE(errors.last().line, line);
    QVERIFY(!errors.last().message.isEmpty());
    QVERIFY2(errors.last().message.contains(reason), qPrintable(errors.last().message));
    QVERIFY(list.tracks() == m_factory.createConfiguredTrackList(file).tracks());

    KelErrorHistory missing;
    QVERIFY(!m_factory.createConfiguredTrackList(QFileInfo(m_folder.filePath("missing.kml")), &missing).isValid());
    QVERIFY(!m_factory.createConfiguredTrackList(QFileInfo(m_folder.filePath("missing.kmz")), &missing).isValid());
    QCOMPARE(missing.entries().size(), 2);
    for (const KelErrorHistory::Entry &entry : missing.entries())
        QVERIFY2(entry.message.contains(QLatin1String("No such file")), qPrintable(entry.message));
}

void tst_KelTrackSelectionFactoryKmlFile::reasonOfAFileThatIsTooLarge()
{
    const QFileInfo file = write("large.kml", "<kml>");
    // Without taking room on the disk.
    QVERIFY(QFile::resize(file.filePath(), (qint64(1) << 31) + 1));
    KelErrorHistory errors;
    QVERIFY(!m_factory.createConfiguredTrackList(file, &errors).isValid());
    QCOMPARE(errors.entries().size(), 1);
    QCOMPARE(errors.last().message, "the file is larger than the 2 GiB that are read");
}

void tst_KelTrackSelectionFactoryKmlFile::reasonOfAnEmptyPipe()
{
    const QByteArray path = QFile::encodeName(m_folder.filePath("pipe.kml"));
    QCOMPARE(::mkfifo(path.constData(), 0600), 0);
    // Gone as soon as it is read: who opens it for a second time finds nothing, instead of waiting for ever.
    std::thread writer([&path] {
        const int pipe = ::open(path.constData(), O_WRONLY);
        ::unlink(path.constData());
        ::close(pipe);
    });
    KelErrorHistory errors;
    const KelGPXConfiguredTrackList list = m_factory.createConfiguredTrackList(QFileInfo(QFile::decodeName(path)), &errors);
    writer.join();
    QVERIFY(!list.isValid());
    QCOMPARE(errors.entries().size(), 1);
    QCOMPARE(errors.last().message, "the file is empty");
}

void tst_KelTrackSelectionFactoryKmlFile::noReasonWhenThereIsSomethingToDraw()
{
    KelErrorHistory errors;
    const QFileInfo file = write("fine.kml", inDocument("<Placemark/>" + placemark("a")).toUtf8());
    QCOMPARE(m_factory.createConfiguredTrackList(file, &errors).count(), 2);
    QVERIFY(errors.isEmpty());
}

void tst_KelTrackSelectionFactoryKmlFile::refusedArchiveGivesItsReason_data()
{
    QTest::addColumn<QByteArray>("archive");
    QTest::addColumn<QString>("reason");

    using Entry = KelTestArchive::Entry;
    Entry encrypted{"doc.kml", "0123456789abcdef"};
    encrypted.encryptedFlag = true;
    QTest::newRow("encrypted") << KelTestArchive::build({encrypted}) << "the entry \"doc.kml\" is encrypted";
    const Entry bomb{"doc.kml", "", true, false, false, KelTestArchive::deflatedZeros(qint64(300) << 20), 100};
    QTest::newRow("a bomb") << KelTestArchive::build({bomb}) << "the entry \"doc.kml\" unpacks to more than 256 MiB";
    Entry again{"doc.kml", "x"};
    again.sharesDataOf = 0;
    QTest::newRow("overlapping entries") << KelTestArchive::build({Entry{"a", "x"}, again})
                                         << "the entries \"a\" and \"doc.kml\" overlap";
    QTest::newRow("too many entries") << KelTestArchive::build(QList<Entry>(10001, Entry{"doc.kml", "x"}))
                                      << "the archive has 10001 entries, more than the 10000 that are accepted";
}

void tst_KelTrackSelectionFactoryKmlFile::refusedArchiveGivesItsReason()
{
    QFETCH(QByteArray, archive);
    const QFileInfo file = write("refused.kmz", archive);
    KelErrorHistory errors;
    QVERIFY(!m_factory.createConfiguredTrackList(file, &errors).isValid());
    QCOMPARE(errors.entries().size(), 1);
    QTEST(errors.last().message, "reason");
}

void tst_KelTrackSelectionFactoryKmlFile::deepFoldersDoNoHarm()
{
    const int depth = 250;
    const KelGPXConfiguredTrackList list =
        decode(QString("<Folder>").repeated(depth) + placemark("deep") + QString("</Folder>").repeated(depth)
               + "<Placemark>" + QString("<g>").repeated(depth) + "<coordinates>8,50</coordinates>"
               + QString("</g>").repeated(depth) + "</Placemark>");
    QCOMPARE(list.count(), 2);
    QCOMPARE(list.at(0).name(), QStringLiteral("deep"));
    QCOMPARE(list.at(1).track().countPoints(), 1);

    KelErrorHistory errors;
    QVERIFY(!m_factory.decode(QString("<a>").repeated(100000) + QString("</a>").repeated(100000), FILE_NAME, &errors)
                 .isValid());
    QVERIFY2(errors.last().message.contains("nested"), qPrintable(errors.last().message));
}

void tst_KelTrackSelectionFactoryKmlFile::equalsTheTree_data()
{
    QTest::addColumn<QString>("inside");
    QTest::addColumn<int>("count");
    const auto row = [](const char *name, const char *inside, int count = 1) {
        QTest::newRow(name) << QString::fromUtf8(inside).replace('~', longCoordinates()) << count;
    };
    row("the first of each", "<Placemark><name>a</name><name>b</name><description>c</description><description>d</description>"
                             "<styleUrl>#x</styleUrl><styleUrl>#y</styleUrl><Style id='x'/></Placemark>");
    row("an empty first", "<Placemark><name/><name>b</name><description><![CDATA[ ]]></description></Placemark>");
    row("a name of elements and pieces", "<Placemark><name>a<b>c</b> <!-- -->d<![CDATA[ e ]]>f &amp; g</name></Placemark>");
    row("coordinates in the name", "<Placemark><name>a<coordinates>1,2</coordinates></name></Placemark>");
    row("long coordinates in the name", "<Placemark><name><coordinates>~</coordinates></name></Placemark>");
    row("coordinates in coordinates", "<Placemark><coordinates> <coordinates>1,2</coordinates></coordinates></Placemark>");
    row("the first that are not blank", "<Placemark><coordinates> </coordinates><a><coordinates>1,2</coordinates></a>"
                                        "<coordinates>3,4</coordinates></Placemark>");
    row("blank coordinates behind", "<Placemark><coordinates>1,2</coordinates><coordinates> </coordinates></Placemark>");
    row("only blanks, of a CDATA section", "<Placemark><coordinates><![CDATA[ \n ]]></coordinates></Placemark>");
    row("long coordinates in pieces", "<Placemark><coordinates>~<!-- -->7,8 <a>~</a> 9,10</coordinates></Placemark>");
    row("a short piece before a long one", "<Placemark><coordinates>7,8<a> ~</a></coordinates></Placemark>");
    row("long name and description", "<Placemark><name>~</name><description>~</description><coordinates>~</coordinates></Placemark>");
    row("a placemark in a placemark", "<Placemark><name>a</name><Placemark><name>b</name><coordinates>1,2</coordinates>"
                                      "</Placemark></Placemark>");
    row("a second document", "<Placemark/></Document><Document><Placemark/>");
    row("a document in the document", "<Document><Style id='x'/><Placemark><styleUrl>#x</styleUrl></Placemark></Document>");
    row("a style behind", "<Placemark><styleUrl>#x</styleUrl></Placemark><Style id='x'><LineStyle><width>2</width></LineStyle></Style>");
    row("styles of one name", "<Style id='x'><PolyStyle><color>11223344</color></PolyStyle></Style><Style id='x'/>"
                              "<Placemark><styleUrl>#x</styleUrl></Placemark>");
    row("the first of each in a style",
        "<Style id='x'><LineStyle><color>ff<b>00</b>0011</color><color>ff000022</color><width>1</width><width>5</width></LineStyle>"
        "<LineStyle><color>ff000033</color></LineStyle><PolyStyle/><PolyStyle><color>ff000044</color></PolyStyle></Style>"
        "<Placemark><styleUrl>#x</styleUrl></Placemark>");
    row("what lies deeper in a style", "<Style id='x'><a><LineStyle><width>3</width></LineStyle></a><LineStyle><a><width>4</width></a>"
                                       "</LineStyle></Style><Placemark><styleUrl>#x</styleUrl></Placemark>");
    row("a placemark in a style", "<Style id='x'><LineStyle><color>ff<Placemark><name>00</name><styleUrl>#x</styleUrl></Placemark>"
                                  "2211</color></LineStyle></Style>");
    row("a style without a name", "<Style><LineStyle><width>3</width></LineStyle></Style><Placemark><styleUrl>#</styleUrl></Placemark>");
    row("shapes of the library's own", "<Placemark><shape>hop</shape></Placemark><Placemark><shape/></Placemark>"
                                       "<Placemark><shape>x</shape><Point/></Placemark><Placemark><a><Point/></a></Placemark>", 4);
    row("names with prefixes", "<k:Placemark/><Placemark><k:name>a</k:name></Placemark>");
}

void tst_KelTrackSelectionFactoryKmlFile::equalsTheTree()
{
    QFETCH(QString, inside);
    QFETCH(int, count);
    const QStringList expected = byTree(inDocument(inside));
    QCOMPARE(expected.size(), count);
    QCOMPARE(describe(decode(inside)), expected);
}

void tst_KelTrackSelectionFactoryKmlFile::randomDocumentsEqualTheTree()
{
    const QStringList names{"Document", "Placemark", "Placemark", "Style id='a'", "Style id='b'", "LineStyle", "PolyStyle",
                            "color", "width", "name", "description", "styleUrl", "coordinates", "coordinates", "Polygon",
                            "LineString", "Point", "shape", "Folder"};
    const QStringList texts{"1,2 3,4", " ", "#a", "#b", "7f112233", "2.5", "polygon", "<![CDATA[ 5,6 ]]>", "<!-- -->", "<?p?>",
                            "&#32;", longCoordinates(), "&lt;"};
    std::mt19937 random(KelTestSupport::randomSeed(11));
    int withPlacemarks = 0;
    for (int cases = KelTestSupport::randomCases(3000); cases > 0; --cases) {
        QString xml = random() % 8 ? "<kml><Document>" : "<kml>";
        QStringList open = random() % 8 ? QStringList{"kml", "Document"} : QStringList{"kml"};
        for (uint steps = random() % 40; steps > 0; --steps) {
            const uint what = random() % 8;
            if (what < 4 && open.size() < 12) {
                const QString name = names.at(int(random() % uint(names.size())));
                xml += '<' + name + '>';
                open.append(name.section(' ', 0, 0));
            } else if (what < 6 && open.size() > 1) {
                xml += "</" + open.takeLast() + '>';
            } else {
                xml += texts.at(int(random() % uint(texts.size())));
            }
        }
        // Some end too early.
        while (!open.isEmpty() && random() % 100)
            xml += "</" + open.takeLast() + '>';
        const QStringList expected = byTree(xml);
        withPlacemarks += expected.isEmpty() ? 0 : 1;
        const QStringList actual = describe(m_factory.decode(xml, FILE_NAME));
        QVERIFY2(actual == expected, qPrintable(xml));
    }
    QVERIFY(withPlacemarks > 0);
}

void tst_KelTrackSelectionFactoryKmlFile::largeDocument()
{
    QString tuples;
    for (int i = 0; i < 200000; ++i)
        tuples += QStringLiteral("8.%1,53.%2,7\n").arg(i, 6, 10, QLatin1Char('0')).arg(i);
    QString many;
    for (int i = 0; i < 5000; ++i)
        many += "<Folder>" + placemark(QString::number(i)) + "</Folder>";
    const KelGPXConfiguredTrackList list = decode(
        many + "<Placemark><LineString><coordinates>" + tuples + "</coordinates></LineString></Placemark>");
    QCOMPARE(list.count(), 5001);
    QCOMPARE(list.at(4999).name(), QStringLiteral("4999"));
    QCOMPARE(list.at(5000).track().countPoints(), 200000);
}

void tst_KelTrackSelectionFactoryKmlFile::nothingReliesOnTheText()
{
    const QString longText = QStringLiteral("8,50 9,51 ").repeated(100) + QStringLiteral("7,49");
    const QString element = QStringLiteral("<coordinates>%1</coordinates>").arg(longText);
    QString text = inDocument(QStringLiteral("<Placemark><name>%1</name><description>%1</description>%1</Placemark>"
                                             "<Placemark><name>%2</name><Point/>%1</Placemark>")
                                  .arg(element, longText));
    const KelGPXConfiguredTrackList list = m_factory.decode(text, FILE_NAME);
    text.fill(QLatin1Char('?')); // in its place
    QCOMPARE(list.count(), 2);
    QCOMPARE(list.at(0).name(), longText);
    QCOMPARE(list.at(0).track().description(), longText);
    QCOMPARE(list.at(0).track().countPoints(), 201);
    QCOMPARE(list.at(1).name(), longText);
    QCOMPARE(positions(list.at(1)).last(), KelGeoPosition(49, 7));
}

QTEST_GUILESS_MAIN(tst_KelTrackSelectionFactoryKmlFile)
#include "tst_KelTrackSelectionFactoryKmlFile.moc"
