// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelGeoPosition.h>
#include <KelTemporarySettings.h>

#include <QAbstractItemModel>
#include <QColor>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QUrl>
#include <QtTest>

#include <memory>

/// The module as a QML program uses it.
class tst_KelQmlModule : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void expressions_data();
    void expressions();
    void tracksInAModel();
    void modelOfAFile();
    void modelWithoutAFile();

private:
    [[nodiscard]] std::unique_ptr<QObject> create(const QByteArray &body);

    KelTemporarySettings m_settings;
    QQmlEngine m_engine;
};

/// An object with these members; null, with a warning, if the text is wrong.
std::unique_ptr<QObject> tst_KelQmlModule::create(const QByteArray &body)
{
    m_engine.addImportPath(QStringLiteral(KEL_QML_IMPORT_DIR));
    QQmlComponent component(&m_engine);
    component.setData("import QtQml\nimport KelGeoLocation\n" + body, QUrl());
    std::unique_ptr<QObject> object(component.create());
    if (!object)
        qWarning("%s", qPrintable(component.errorString()));
    return object;
}

void tst_KelQmlModule::expressions_data()
{
    QTest::addColumn<QByteArray>("expression");
    QTest::addColumn<QVariant>("expected");
    const auto row = [](const char *name, const char *expression, const QVariant &expected) {
        QTest::newRow(name) << QByteArray(expression) << expected;
    };
    row("latitude", "Geo.position(53.5, 8.25).latitude", 53.5);
    row("longitude", "Geo.position(53.5, 8.25).longitude", 8.25);
    row("text", "Geo.position(53.5, -8.25).toString()", "N53.50000000; W8.25000000");
    row("parsed", "Geo.parsePosition('S12.5 E8').latitude", -12.5);
    row("parsed in degrees", "Geo.parsePosition('53,30,0 N; 8,15,0 E').longitude", 8.25);
    row("what is no position", "Geo.parsePosition('nowhere').valid", false);
    row("a position", "Geo.parsePosition('N1 E1').valid", true);
    // One degree of latitude on a globe of 6370 km.
    row("distance", "Math.round(Geo.position(50, 8).distanceTo(Geo.position(51, 8)) * 1000)", 111177.0);
    row("moved", "Math.round(Geo.position(50, 8).movedBy(1.852 * 60, 0).latitude * 1e6)", 51e6);
    row("equal", "Geo.position(50, 8) == Geo.position(50, 8)", true);
    row("changed", "(() => { let p = Geo.position(50, 8); p.latitude = 51; return p.latitude })()", 51.0);
    row("name of a beeline", "Geo.beeline(Geo.position(50, 8), Geo.position(51, 9), 'Line').name", "Line");
    row("end of a beeline", "Math.round(Geo.beeline(Geo.position(50, 8), Geo.position(51, 9), '').lastPosition.latitude)",
        51.0);
    row("points of a beeline",
        "(() => { let t = Geo.beeline(Geo.position(50, 8), Geo.position(51, 9), ''); "
        "return t.positions().length == t.pointCount && t.positions()[0].latitude == 50 })()",
        true);
}

void tst_KelQmlModule::expressions()
{
    QFETCH(QByteArray, expression);
    QFETCH(QVariant, expected);
    const auto object = create("QtObject { property var result: " + expression + " }");
    QVERIFY(object != nullptr);
    const QVariant result = object->property("result");
    QVERIFY2(result.isValid(), expression.constData());
    if (expected.typeId() == QMetaType::Double)
        QCOMPARE(result.toDouble(), expected.toDouble());
    else
        QCOMPARE(result, expected);
}

void tst_KelQmlModule::tracksInAModel()
{
    const auto object = create("TrackListModel { property int changes: 0; onCountChanged: ++changes\n"
                               "Component.onCompleted: { append(Geo.beeline(Geo.position(50, 8), Geo.position(51, 9), 'A'))\n"
                               "append(Geo.beeline(Geo.position(1, 2), Geo.position(3, 4), 'B')) } }");
    QVERIFY(object != nullptr);
    auto *model = qobject_cast<QAbstractItemModel *>(object.get());
    QVERIFY(model != nullptr);
    QCOMPARE(object->property("count").toInt(), 2);
    QCOMPARE(object->property("changes").toInt(), 2);

    const QHash<int, QByteArray> roles = model->roleNames();
    const auto value = [&](int row, const char *role) { return model->data(model->index(row, 0), roles.key(role)); };
    QCOMPARE(value(1, "name"), "B");
    QCOMPARE(value(1, "display"), "B");
    QVERIFY(value(0, "lineColor").value<QColor>().isValid());
    QVERIFY(value(0, "track").isValid());

    QVERIFY(QMetaObject::invokeMethod(object.get(), "removeAt", Q_ARG(int, 0)));
    QCOMPARE(object->property("count").toInt(), 1);
    QCOMPARE(value(0, "name"), "B");
    QVERIFY(QMetaObject::invokeMethod(object.get(), "clear"));
    QCOMPARE(object->property("count").toInt(), 0);
}

void tst_KelQmlModule::modelOfAFile()
{
    const QByteArray url = QUrl::fromLocalFile(QStringLiteral(KEL_EXAMPLES_DIR "/tracks/city-walk.gpx")).toEncoded();
    const auto object = create("TrackListModel { property bool done: load('" + url
                               + "'); property string name: get(0).name; property int points: get(0).pointCount }");
    QVERIFY(object != nullptr);
    QVERIFY(object->property("done").toBool());
    QVERIFY(object->property("count").toInt() > 0);
    QVERIFY(!object->property("name").toString().isEmpty());
    QVERIFY(object->property("points").toInt() > 1);
}

void tst_KelQmlModule::modelWithoutAFile()
{
    const auto object = create("TrackListModel { property bool done: load('file:///no/such/file.gpx'); "
                               "property bool valid: get(0).valid }");
    QVERIFY(object != nullptr);
    QCOMPARE(object->property("done").toBool(), false);
    QCOMPARE(object->property("count").toInt(), 0);
    QCOMPARE(object->property("valid").toBool(), false);
}

QTEST_MAIN(tst_KelQmlModule)
#include "tst_KelQmlModule.moc"
