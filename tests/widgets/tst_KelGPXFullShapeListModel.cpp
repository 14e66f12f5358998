// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelGPXFullShapeListModel.h>
#include <KelGPXMarkerShape.h>
#include <KelGPXTrackShape.h>

#include <QAbstractItemModelTester>
#include <QComboBox>
#include <QHash>
#include <QIcon>
#include <QListView>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTest>

#include <limits>
#include <utility>

namespace
{

using Pair = std::pair<int, int>;

QList<Pair> rows(const KelGPXFullShapeListModel &model)
{
    QList<Pair> result;
    for (int row = 0; row < model.rowCount(); ++row)
        result.append({model.markerAt(row).trackShape().toInt(), model.markerAt(row).markerShape().toInt()});
    return result;
}

// A disk of radius 10 around the middle of the icon's 32 × 32 pixels, outlined with a pen of width 5: the middle has
// the fill, the ring from 7.5 to 12.5 the stroke.
QColor fillOf(const QIcon &icon)
{
    return icon.pixmap(32, 32).toImage().pixelColor(16, 16);
}

QColor strokeOf(const QIcon &icon)
{
    return icon.pixmap(32, 32).toImage().pixelColor(16, 5);
}

QIcon iconOf(const KelGPXFullShapeListModel &model, int row)
{
    return model.index(row).data(Qt::DecorationRole).value<QIcon>();
}

} // namespace

Q_DECLARE_METATYPE(QList<Pair>)

class tst_KelGPXFullShapeListModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void empty();
    void flatList();
    void fill_data();
    void fill();
    void fillReplaces();
    void fillResets();
    void textRoles_data();
    void textRoles();
    void otherRoles_data();
    void otherRoles();
    void invalidIndexHasNoData();
    void decorationIsAnIcon();
    void markerAt_data();
    void markerAt();
    void indexOf_data();
    void indexOf();
    void effectiveColors_data();
    void effectiveColors();
    void initialColors();
    void iconsShowTheColors_data();
    void iconsShowTheColors();
    void changesUpdateTheIconsAlone_data();
    void changesUpdateTheIconsAlone();
    void sameValueUpdatesToo();
    void updateOfAnEmptyListHasInvalidIndexes();
    void comboBoxKeepsItsRowWhenColorsChange();
    void emptyListInAView();
    void randomOperations();
};

void tst_KelGPXFullShapeListModel::empty()
{
    const KelGPXFullShapeListModel model;
    QCOMPARE(model.rowCount(), 0);
    QCOMPARE(model.columnCount(), 1);
    QVERIFY(!static_cast<const QObject &>(model).parent());
}

void tst_KelGPXFullShapeListModel::flatList()
{
    KelGPXFullShapeListModel model;
    model.fill(TrackShapePoint);
    const QModelIndex first = model.index(0);

    QVERIFY(first.isValid());
    QCOMPARE(model.rowCount(first), 0);
    QCOMPARE(model.columnCount(first), 1);
    QVERIFY(!model.parent(first).isValid());
    QVERIFY(!static_cast<QAbstractItemModel &>(model).hasChildren(first));
}

void tst_KelGPXFullShapeListModel::fill_data()
{
    QTest::addColumn<int>("shape");
    QTest::addColumn<QList<Pair>>("expected");

    const QList<Pair> points = {{1, 1}, {1, 2}, {1, 128}, {1, 256}, {1, 512}, {1, 8}, {1, 16}, {1, 32}, {1, 64}};
    QTest::newRow("point: every point marker") << 1 << points;
    QTest::newRow("hop: no marker") << 2 << QList<Pair>{{2, 0}};
    QTest::newRow("linestring: polygon, line, arrow") << 4 << QList<Pair>{{8, 0}, {4, 0}, {4, 1024}};
    QTest::newRow("polygon: every point marker, then polygon") << 8 << points + QList<Pair>{{8, 0}};
    QTest::newRow("auto: nothing") << 256 << QList<Pair>();
    QTest::newRow("unknown: nothing") << 0 << QList<Pair>();
    QTest::newRow("combination: nothing") << 5 << QList<Pair>();
}

void tst_KelGPXFullShapeListModel::fill()
{
    QFETCH(int, shape);
    QFETCH(QList<Pair>, expected);
    KelGPXFullShapeListModel model;

    model.fill(KelGPXTrackShape(shape));

    QCOMPARE(rows(model), expected);
}

void tst_KelGPXFullShapeListModel::fillReplaces()
{
    KelGPXFullShapeListModel model;
    model.fill(TrackShapePolygon);
    model.fill(TrackShapeHop);
    QCOMPARE(rows(model), (QList<Pair>{{2, 0}}));
}

void tst_KelGPXFullShapeListModel::fillResets()
{
    KelGPXFullShapeListModel model;
    QSignalSpy about(&model, &QAbstractItemModel::modelAboutToBeReset);
    QSignalSpy reset(&model, &QAbstractItemModel::modelReset);
    int rowsBefore = -1;
    connect(&model, &QAbstractItemModel::modelAboutToBeReset, this, [&] { rowsBefore = model.rowCount(); });
    model.fill(TrackShapeLineString);
    QCOMPARE(rowsBefore, 0);

    model.fill(TrackShapeLineString);

    QCOMPARE(rowsBefore, 3);
    QCOMPARE(about.count(), 2);
    QCOMPARE(reset.count(), 2);
}

void tst_KelGPXFullShapeListModel::textRoles_data()
{
    QTest::addColumn<int>("shape");
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("toolTip");

    QTest::newRow("point") << 1 << 0 << "Punkt"
                           << "Ein Punkt kann als verschiedene vorgefertigte Formen gezeichnet werden.";
    QTest::newRow("last point marker") << 1 << 8 << "Punkt"
                                       << "Ein Punkt kann als verschiedene vorgefertigte Formen gezeichnet werden.";
    QTest::newRow("polygon") << 4 << 0 << "Fläche" << "Alle Punkte werden als Außenlinie einer Fläche betrachtet.";
    QTest::newRow("line") << 4 << 1 << "Strecke" << "Alle Punkte werden zu einer Strecke verbunden.";
    QTest::newRow("arrow") << 4 << 2 << "Pfeil" << "Alle Punkte werden zu einer Strecke verbunden.";
    QTest::newRow("hop") << 2 << 0 << "Fluglinie" << "Die beiden Punkt werden als Fluglinie betrachtet.";
}

void tst_KelGPXFullShapeListModel::textRoles()
{
    QFETCH(int, shape);
    QFETCH(int, row);
    KelGPXFullShapeListModel model;
    model.fill(KelGPXTrackShape(shape));

    QTEST(model.data(model.index(row), Qt::DisplayRole).toString(), "text");
    QTEST(model.data(model.index(row), Qt::ToolTipRole).toString(), "toolTip");
    QTEST(model.data(model.index(row)).toString(), "text");
}

void tst_KelGPXFullShapeListModel::otherRoles_data()
{
    QTest::addColumn<int>("role");

    QTest::newRow("edit") << int(Qt::EditRole);
    QTest::newRow("status tip") << int(Qt::StatusTipRole);
    QTest::newRow("check state") << int(Qt::CheckStateRole);
    QTest::newRow("background") << int(Qt::BackgroundRole);
    QTest::newRow("user") << int(Qt::UserRole);
}

void tst_KelGPXFullShapeListModel::otherRoles()
{
    QFETCH(int, role);
    KelGPXFullShapeListModel model;
    model.fill(TrackShapePoint);
    QVERIFY(!model.data(model.index(0), role).isValid());
}

void tst_KelGPXFullShapeListModel::invalidIndexHasNoData()
{
    KelGPXFullShapeListModel model;
    model.fill(TrackShapePoint);
    for (const int role : {int(Qt::DisplayRole), int(Qt::DecorationRole), int(Qt::ToolTipRole), int(Qt::EditRole)})
        QVERIFY(!model.data(QModelIndex(), role).isValid());
}

void tst_KelGPXFullShapeListModel::decorationIsAnIcon()
{
    KelGPXFullShapeListModel model;
    model.fill(TrackShapeLineString);
    // A line with nothing or an arrow has no marker to show; the role still gives an icon.
    for (int row = 0; row < 3; ++row) {
        QCOMPARE(model.index(row).data(Qt::DecorationRole).metaType(), QMetaType::fromType<QIcon>());
        QVERIFY(iconOf(model, row).isNull());
    }

    model.fill(TrackShapePoint);
    for (int row = 0; row < 9; ++row)
        QVERIFY(!iconOf(model, row).isNull());
}

void tst_KelGPXFullShapeListModel::markerAt_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("trackShape");
    QTest::addColumn<int>("markerShape");

    QTest::newRow("first") << 0 << 8 << 0;
    QTest::newRow("last") << 2 << 4 << 1024;
    QTest::newRow("one behind the last") << 3 << 0 << 0;
    QTest::newRow("minus one") << -1 << 0 << 0;
    QTest::newRow("smallest") << std::numeric_limits<int>::min() << 0 << 0;
    QTest::newRow("largest") << std::numeric_limits<int>::max() << 0 << 0;
}

void tst_KelGPXFullShapeListModel::markerAt()
{
    QFETCH(int, row);
    QFETCH(int, trackShape);
    QFETCH(int, markerShape);
    KelGPXFullShapeListModel model;
    model.fill(TrackShapeLineString);

    const KelGPXFullShape expected{KelGPXTrackShape(trackShape), KelGPXMarkerShape(markerShape)};
    QVERIFY(model.markerAt(row) == expected);
    // No index leads to a row that does not exist, and an invalid one gives the default as well.
    QVERIFY(model.markerAt(model.index(row)) == expected);
}

void tst_KelGPXFullShapeListModel::indexOf_data()
{
    QTest::addColumn<int>("filledFor");
    QTest::addColumn<int>("trackShape");
    QTest::addColumn<int>("markerShape");
    QTest::addColumn<int>("row");

    QTest::newRow("point with disk") << 1 << 1 << 1 << 0;
    QTest::newRow("point with star of nine rays") << 1 << 1 << 256 << 3;
    QTest::newRow("point with arrow and disk is a disk") << 1 << 1 << 1025 << 0;
    QTest::newRow("point with arrow and rhombus is a rhombus") << 1 << 1 << 1088 << 8;
    QTest::newRow("point with arrow alone has no marker left") << 1 << 1 << 1024 << -1;
    QTest::newRow("point with two markers") << 1 << 1 << 3 << -1;
    QTest::newRow("line") << 4 << 4 << 0 << 1;
    QTest::newRow("line with disk is a plain line") << 4 << 4 << 1 << 1;
    QTest::newRow("line with arrow") << 4 << 4 << 1024 << 2;
    QTest::newRow("line with arrow and disk is an arrow") << 4 << 4 << 1025 << 2;
    QTest::newRow("polygon with any marker") << 4 << 8 << 64 << 0;
    QTest::newRow("polygon behind the points") << 8 << 8 << 1 << 9;
    QTest::newRow("hop with marker") << 2 << 2 << 16 << 0;
    QTest::newRow("shape that is not offered") << 1 << 4 << 0 << -1;
    QTest::newRow("empty list") << 0 << 1 << 1 << -1;
}

void tst_KelGPXFullShapeListModel::indexOf()
{
    QFETCH(int, filledFor);
    QFETCH(int, trackShape);
    QFETCH(int, markerShape);
    KelGPXFullShapeListModel model;
    model.fill(KelGPXTrackShape(filledFor));

    QTEST(model.indexOf(KelGPXFullShape(KelGPXTrackShape(trackShape), KelGPXMarkerShape(markerShape))), "row");
}

void tst_KelGPXFullShapeListModel::effectiveColors_data()
{
    QTest::addColumn<int>("options");
    QTest::addColumn<bool>("invisible");
    QTest::addColumn<QColor>("stroke");
    QTest::addColumn<QColor>("fill");

    const QColor black(Qt::black);
    const QColor transparent(Qt::transparent);
    const QColor red(255, 0, 0);
    const QColor blue(0, 0, 255, 128);
    QTest::newRow("none is previewed in black") << 0 << true << black << black;
    QTest::newRow("stroke") << 1 << false << red << transparent;
    QTest::newRow("fill") << 2 << false << transparent << blue;
    QTest::newRow("stroke and fill") << 3 << false << red << blue;
    QTest::newRow("the third option alone shows nothing") << 4 << true << black << black;
    QTest::newRow("third option and stroke") << 5 << false << red << transparent;
    QTest::newRow("third option and fill") << 6 << false << transparent << blue;
    QTest::newRow("all") << 7 << false << red << blue;
}

void tst_KelGPXFullShapeListModel::effectiveColors()
{
    QFETCH(int, options);
    KelGPXFullShapeListModel model;
    model.setStrokeColor(QColor(255, 0, 0));
    model.setFillColor(QColor(0, 0, 255, 128));

    model.setDisplayOptions(KelGPXTrackDisplayOptions(options));

    QTEST(model.wouldBeInvisible(), "invisible");
    QTEST(model.effectiveStrokeColor(), "stroke");
    QTEST(model.effectiveFillColor(), "fill");
}

void tst_KelGPXFullShapeListModel::initialColors()
{
    KelGPXFullShapeListModel model;
    QVERIFY(model.wouldBeInvisible());
    QCOMPARE(model.effectiveStrokeColor(), QColor(Qt::black));
    QCOMPARE(model.effectiveFillColor(), QColor(Qt::black));

    model.setDisplayOptions(KelGPXTrackDisplayOptions(3));
    QCOMPARE(model.effectiveStrokeColor(), QColor(Qt::black));
    QCOMPARE(model.effectiveFillColor(), QColor(Qt::gray));
}

void tst_KelGPXFullShapeListModel::iconsShowTheColors_data()
{
    QTest::addColumn<int>("options");
    QTest::addColumn<QColor>("stroke");
    QTest::addColumn<QColor>("fill");

    QTest::newRow("none: all black") << 0 << QColor(0, 0, 0) << QColor(0, 0, 0);
    QTest::newRow("stroke: hollow") << 1 << QColor(255, 0, 0) << QColor(0, 0, 0, 0);
    QTest::newRow("fill: no outline") << 2 << QColor(0, 0, 0, 0) << QColor(0, 0, 255);
    QTest::newRow("stroke and fill") << 3 << QColor(255, 0, 0) << QColor(0, 0, 255);
}

void tst_KelGPXFullShapeListModel::iconsShowTheColors()
{
    QFETCH(int, options);
    KelGPXFullShapeListModel model;
    model.fill(TrackShapePoint);
    model.setStrokeColor(QColor(255, 0, 0));
    model.setFillColor(QColor(0, 0, 255));
    model.setDisplayOptions(KelGPXTrackDisplayOptions(options));

    QTEST(strokeOf(iconOf(model, 0)), "stroke");
    QTEST(fillOf(iconOf(model, 0)), "fill");
}

void tst_KelGPXFullShapeListModel::changesUpdateTheIconsAlone_data()
{
    QTest::addColumn<int>("setter");

    QTest::newRow("stroke colour") << 0;
    QTest::newRow("fill colour") << 1;
    QTest::newRow("display options") << 2;
    QTest::newRow("by hand") << 3;
}

void tst_KelGPXFullShapeListModel::changesUpdateTheIconsAlone()
{
    QFETCH(int, setter);
    KelGPXFullShapeListModel model;
    model.fill(TrackShapePolygon);
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    QSignalSpy reset(&model, &QAbstractItemModel::modelReset);

    switch (setter) {
    case 0:
        model.setStrokeColor(Qt::green);
        break;
    case 1:
        model.setFillColor(Qt::green);
        break;
    case 2:
        model.setDisplayOptions(KelGPXTrackDisplayOptions(DisplayFill));
        break;
    default:
        model.updateVisualization();
    }

    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.first().at(0).toModelIndex(), model.index(0));
    QCOMPARE(changed.first().at(1).toModelIndex(), model.index(9));
    QCOMPARE(changed.first().at(2).value<QList<int>>(), QList<int>{Qt::DecorationRole});
    QCOMPARE(reset.count(), 0);
}

void tst_KelGPXFullShapeListModel::sameValueUpdatesToo()
{
    KelGPXFullShapeListModel model;
    model.fill(TrackShapeHop);
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);

    model.setStrokeColor(Qt::black);
    model.setFillColor(Qt::gray);
    model.setDisplayOptions(KelGPXTrackDisplayOptions());

    QCOMPARE(changed.count(), 3);
}

void tst_KelGPXFullShapeListModel::updateOfAnEmptyListHasInvalidIndexes()
{
    KelGPXFullShapeListModel model;
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);

    model.updateVisualization();
    model.setStrokeColor(Qt::red);
    model.setFillColor(Qt::red);
    model.setDisplayOptions(KelGPXTrackDisplayOptions(DisplayStroke));

    QCOMPARE(changed.count(), 4);
    for (const QList<QVariant> &arguments : std::as_const(changed)) {
        QVERIFY(!arguments.at(0).toModelIndex().isValid());
        QVERIFY(!arguments.at(1).toModelIndex().isValid());
        QCOMPARE(arguments.at(1).toModelIndex().row(), -1);
        QCOMPARE(arguments.at(2).value<QList<int>>(), QList<int>{Qt::DecorationRole});
    }
}

void tst_KelGPXFullShapeListModel::comboBoxKeepsItsRowWhenColorsChange()
{
    KelGPXFullShapeListModel model;
    model.fill(TrackShapePoint);
    QComboBox box;
    box.setModel(&model);
    box.setCurrentIndex(0);
    box.show();
    QVERIFY(QTest::qWaitForWindowExposed(&box));
    QCOMPARE(fillOf(box.itemIcon(0)), QColor(0, 0, 0));

    model.setFillColor(QColor(0, 255, 0));
    model.setDisplayOptions(KelGPXTrackDisplayOptions(3));
    box.setCurrentIndex(4);
    model.setStrokeColor(QColor(255, 0, 0));

    QCOMPARE(box.currentIndex(), 4);
    QCOMPARE(box.currentText(), QStringLiteral("Punkt"));
    QCOMPARE(fillOf(box.itemIcon(0)), QColor(0, 255, 0));
    QCOMPARE(strokeOf(box.itemIcon(0)), QColor(255, 0, 0));
}

void tst_KelGPXFullShapeListModel::emptyListInAView()
{
    KelGPXFullShapeListModel model;
    QListView view;
    view.setModel(&model);
    QComboBox box;
    box.setModel(&model);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));

    // Views take the announcement of nothing in their stride.
    model.updateVisualization();
    model.fill(TrackShapeLineString);
    model.updateVisualization();
    model.fill(TrackShapeAuto);
    model.updateVisualization();
    QCoreApplication::processEvents();

    QCOMPARE(box.count(), 0);
}

void tst_KelGPXFullShapeListModel::randomOperations()
{
    KelGPXFullShapeListModel model;
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QListView view;
    view.setModel(&model);
    QRandomGenerator random(20240611);
    const QList<int> shapes = {0, 1, 2, 4, 8, 256, 5};
    const QHash<int, int> rowCounts = {{0, 0}, {1, 9}, {2, 1}, {4, 3}, {8, 10}, {256, 0}, {5, 0}};
    int expectedRows = 0;

    for (int step = 0; step < 2000; ++step) {
        switch (random.bounded(4)) {
        case 0: {
            const int shape = shapes.at(random.bounded(int(shapes.size())));
            model.fill(KelGPXTrackShape(shape));
            expectedRows = rowCounts.value(shape);
            break;
        }
        // The tester takes no changes of an empty list, which are tried on their own above.
        case 1:
            if (expectedRows > 0)
                model.setStrokeColor(QColor::fromRgba(random.generate()));
            break;
        case 2:
            if (expectedRows > 0)
                model.setFillColor(QColor::fromRgba(random.generate()));
            break;
        default:
            if (expectedRows > 0)
                model.setDisplayOptions(KelGPXTrackDisplayOptions(random.bounded(8)));
        }
        QCOMPARE(model.rowCount(), expectedRows);
        for (int row = 0; row < expectedRows; ++row)
            QCOMPARE(model.indexOf(model.markerAt(row)), row);
    }
}

QTEST_MAIN(tst_KelGPXFullShapeListModel)
#include "tst_KelGPXFullShapeListModel.moc"
