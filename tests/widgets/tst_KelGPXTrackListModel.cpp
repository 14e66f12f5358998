// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelDropPoint.h"
#include "KelTrackBuilder.h"

#include <KelGPXTrackListModel.h>
#include <KelGPXTrackSelection.h>
#include <KelRecordingTranslator.h>
#include <KelTemporarySettings.h>

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QDataStream>
#include <QDragEnterEvent>
#include <QDragMoveEvent>
#include <QDropEvent>
#include <QHeaderView>
#include <QIODevice>
#include <QListView>
#include <QMimeData>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTableView>
#include <QTest>

#include <algorithm>
#include <limits>
#include <memory>

namespace
{

const QString MIME_TYPE = QStringLiteral("application/gpxtrack");

QString letters(const KelGPXTrackListModel &model)
{
    QString result;
    for (int row = 0; row < model.rowCount(); ++row)
        result += model.index(row, 0).data().toString();
    return result;
}

void fill(KelGPXTrackListModel &model, const QString &names)
{
    model.addTracks(KelTrackBuilder::lines(names));
}

std::unique_ptr<QMimeData> payload(const QStringList &rows)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    for (const QString &row : rows)
        stream << row;
    auto data = std::make_unique<QMimeData>();
    data->setData(MIME_TYPE, bytes);
    return data;
}

QStringList rowsOf(const QMimeData &data)
{
    QStringList rows;
    QDataStream stream(data.data(MIME_TYPE));
    while (!stream.atEnd()) {
        QString row;
        stream >> row;
        rows.append(row);
    }
    return rows;
}

// "0-3 1-4": the rows of each dataChanged(), all of which have to reach over both columns.
QString spans(const QSignalSpy &changed)
{
    QStringList result;
    for (const QList<QVariant> &arguments : changed) {
        const QModelIndex topLeft = arguments.at(0).toModelIndex();
        const QModelIndex bottomRight = arguments.at(1).toModelIndex();
        if (topLeft.column() != 0 || bottomRight.column() != 1)
            return QStringLiteral("not both columns");
        result.append(QStringLiteral("%1-%2").arg(topLeft.row()).arg(bottomRight.row()));
    }
    return result.join(QLatin1Char(' '));
}

KelGPXTrackConfiguration configuration(const KelGPXTrackListModel &model, int row, const QColor &color)
{
    KelGPXTrackConfiguration result = model.trackAt(row).configuration();
    result.setLineColor(color);
    return result;
}

// A drag from elsewhere, as the window system delivers it to the view.
bool dropEvents(QAbstractItemView &view, const QMimeData &data, const QPoint &position)
{
    QDragEnterEvent enter(position, Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(view.viewport(), &enter);
    if (!enter.isAccepted())
        return false;
    QDragMoveEvent move(position, Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(view.viewport(), &move);
    if (!move.isAccepted())
        return false;
    QDropEvent drop(position, Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(view.viewport(), &drop);
    return drop.isAccepted();
}

} // namespace

class tst_KelGPXTrackListModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void empty();
    void flatTable();
    void flags();
    void data_data();
    void data();
    void invalidIndexHasNoData();
    void headerData_data();
    void headerData();
    void headerTranslation();
    void setDataChangesNothing();
    void movesOnly();
    void mimeData_data();
    void mimeData();
    void mimeDataBytes();
    void dropMimeData_data();
    void dropMimeData();
    void dropIsIgnored();
    void dropOfForeignDataIsRefused();
    void dropOnAnEmptyModel();
    void dropOfABrokenPayload_data();
    void dropOfABrokenPayload();
    void dropOntoAForeignRow();
    void dropFromTheModelsOwnMimeData();
    void isValidRow_data();
    void isValidRow();
    void trackAt();
    void trackAtOutOfRange_data();
    void trackAtOutOfRange();
    void tracksIsACopy();
    void setConfiguration();
    void setConfigurationWithoutChange();
    void setConfigurationOutOfRange_data();
    void setConfigurationOutOfRange();
    void setConfigurationOfUnknownShapeIsAutomatic();
    void setConfigurationToAll();
    void setConfigurationToAllOfNone();
    void moveTrack_data();
    void moveTrack();
    void remove_data();
    void remove();
    void removeInvalidIndex();
    void addTracks_data();
    void addTracks();
    void setSelection_data();
    void setSelection();
    void setSelectionComparesConfigurations();
    void setSelectionKeepsTheViewsSelection();
    void randomOperations();
    void dropEventsInAView_data();
    void dropEventsInAView();

private:
    std::unique_ptr<KelTemporarySettings> m_settings;
};

void tst_KelGPXTrackListModel::initTestCase()
{
    // Default tracks ask for the user's default configuration.
    m_settings = std::make_unique<KelTemporarySettings>();
}

void tst_KelGPXTrackListModel::empty()
{
    QObject parent;
    auto *model = new KelGPXTrackListModel(&parent);
    QCOMPARE(static_cast<QObject *>(model)->parent(), &parent);
    QCOMPARE(model->rowCount(), 0);
    QCOMPARE(model->columnCount(), 2);
    QVERIFY(!model->tracks().isValid());
    QVERIFY(!model->index(0, 0).isValid());
}

void tst_KelGPXTrackListModel::flatTable()
{
    KelGPXTrackListModel model;
    fill(model, QStringLiteral("ABC"));
    const QModelIndex first = model.index(0, 0);

    QCOMPARE(model.rowCount(), 3);
    QCOMPARE(model.columnCount(), 2);
    QCOMPARE(model.rowCount(first), 0);
    QCOMPARE(model.columnCount(first), 2);
    QVERIFY(!static_cast<QAbstractItemModel &>(model).hasChildren(first));
    QVERIFY(!model.parent(first).isValid());
    QVERIFY(!model.parent(model.index(2, 1)).isValid());
    QVERIFY(!model.parent(QModelIndex()).isValid());
}

void tst_KelGPXTrackListModel::flags()
{
    KelGPXTrackListModel model;
    fill(model, QStringLiteral("AB"));

    QCOMPARE(int(model.flags(QModelIndex())), 8);
    for (int row = 0; row < 2; ++row) {
        for (int column = 0; column < 2; ++column)
            QCOMPARE(int(model.flags(model.index(row, column))), 45);
    }
}

void tst_KelGPXTrackListModel::data_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<int>("role");
    QTest::addColumn<QVariant>("expected");

    const QString name = QStringLiteral("B");
    const QString description = QStringLiteral("about B");
    QTest::newRow("name is shown") << 0 << int(Qt::DisplayRole) << QVariant(name);
    QTest::newRow("second column shows nothing") << 1 << int(Qt::DisplayRole) << QVariant();
    QTest::newRow("name is edited") << 0 << int(Qt::EditRole) << QVariant(name);
    QTest::newRow("name is edited in the second column, too") << 1 << int(Qt::EditRole) << QVariant(name);
    QTest::newRow("description as tool tip") << 0 << int(Qt::ToolTipRole) << QVariant(description);
    QTest::newRow("description as tool tip in the second column") << 1 << int(Qt::ToolTipRole) << QVariant(description);
    for (const int column : {0, 1}) {
        QTest::addRow("no decoration in column %d", column) << column << int(Qt::DecorationRole) << QVariant();
        QTest::addRow("no status tip in column %d", column) << column << int(Qt::StatusTipRole) << QVariant();
        QTest::addRow("no check state in column %d", column) << column << int(Qt::CheckStateRole) << QVariant();
        QTest::addRow("no size hint in column %d", column) << column << int(Qt::SizeHintRole) << QVariant();
        QTest::addRow("no user role in column %d", column) << column << int(Qt::UserRole) << QVariant();
    }
}

void tst_KelGPXTrackListModel::data()
{
    QFETCH(int, column);
    QFETCH(int, role);
    QFETCH(QVariant, expected);
    KelGPXTrackListModel model;
    fill(model, QStringLiteral("ABC"));

    const QVariant value = model.data(model.index(1, column), role);

    QCOMPARE(value.isValid(), expected.isValid());
    QCOMPARE(value, expected);
}

void tst_KelGPXTrackListModel::invalidIndexHasNoData()
{
    KelGPXTrackListModel model;
    fill(model, QStringLiteral("A"));
    for (const int role : {int(Qt::DisplayRole), int(Qt::EditRole), int(Qt::ToolTipRole), int(Qt::UserRole)})
        QVERIFY(!model.data(QModelIndex(), role).isValid());
}

void tst_KelGPXTrackListModel::headerData_data()
{
    QTest::addColumn<int>("section");
    QTest::addColumn<Qt::Orientation>("orientation");
    QTest::addColumn<int>("role");
    QTest::addColumn<QVariant>("expected");

    QTest::newRow("name") << 0 << Qt::Horizontal << int(Qt::DisplayRole) << QVariant(QStringLiteral("Name"));
    QTest::newRow("second column has none") << 1 << Qt::Horizontal << int(Qt::DisplayRole) << QVariant();
    QTest::newRow("no such column") << 2 << Qt::Horizontal << int(Qt::DisplayRole) << QVariant();
    QTest::newRow("negative column") << -1 << Qt::Horizontal << int(Qt::DisplayRole) << QVariant();
    QTest::newRow("rows are counted from one") << 0 << Qt::Vertical << int(Qt::DisplayRole) << QVariant(1);
    QTest::newRow("third row") << 2 << Qt::Vertical << int(Qt::DisplayRole) << QVariant(3);
    QTest::newRow("other role") << 0 << Qt::Horizontal << int(Qt::ToolTipRole) << QVariant();
}

void tst_KelGPXTrackListModel::headerData()
{
    QFETCH(int, section);
    QFETCH(Qt::Orientation, orientation);
    QFETCH(int, role);
    QFETCH(QVariant, expected);
    KelGPXTrackListModel model;
    fill(model, QStringLiteral("ABC"));

    const QVariant value = model.headerData(section, orientation, role);

    QCOMPARE(value.isValid(), expected.isValid());
    QCOMPARE(value, expected);
}

void tst_KelGPXTrackListModel::headerTranslation()
{
    KelRecordingTranslator translator;
    translator.setTranslation(QStringLiteral("Name"), QStringLiteral("translated"));
    const KelGPXTrackListModel model;

    QCOMPARE(model.headerData(0, Qt::Horizontal).toString(), QStringLiteral("translated"));
    QVERIFY(translator.hasRecorded(QStringLiteral("KelGPXTrackListModel"), QStringLiteral("Name")));
}

void tst_KelGPXTrackListModel::setDataChangesNothing()
{
    KelGPXTrackListModel model;
    fill(model, QStringLiteral("AB"));
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);

    QVERIFY(!model.setData(model.index(0, 0), QStringLiteral("other")));
    QVERIFY(!model.setData(model.index(1, 1), QStringLiteral("other"), Qt::DisplayRole));
    QVERIFY(!model.setData(QModelIndex(), QVariant()));

    QCOMPARE(letters(model), QStringLiteral("AB"));
    QCOMPARE(changed.count(), 0);
}

void tst_KelGPXTrackListModel::movesOnly()
{
    const KelGPXTrackListModel model;
    QCOMPARE(model.supportedDropActions(), Qt::DropActions(Qt::MoveAction));
    QCOMPARE(model.supportedDragActions(), Qt::DropActions(Qt::MoveAction));
    QCOMPARE(model.mimeTypes(), QStringList{QStringLiteral("application/gpxtrack")});
}

void tst_KelGPXTrackListModel::mimeData_data()
{
    QTest::addColumn<QList<QPoint>>("cells");
    QTest::addColumn<QStringList>("rows");

    // Cells as (column, row); (-1, -1) is an invalid index.
    QTest::newRow("nothing") << QList<QPoint>() << QStringList();
    QTest::newRow("one row") << QList<QPoint>{{0, 1}} << QStringList{"1"};
    QTest::newRow("in the order given") << QList<QPoint>{{0, 2}, {0, 0}, {0, 1}} << QStringList{"2", "0", "1"};
    QTest::newRow("both columns of a row") << QList<QPoint>{{0, 2}, {1, 2}} << QStringList{"2", "2"};
    QTest::newRow("invalid ones are left out") << QList<QPoint>{{-1, -1}, {1, 0}, {-1, -1}} << QStringList{"0"};
    QTest::newRow("invalid alone") << QList<QPoint>{{-1, -1}} << QStringList();
}

void tst_KelGPXTrackListModel::mimeData()
{
    QFETCH(QList<QPoint>, cells);
    KelGPXTrackListModel model;
    fill(model, QStringLiteral("ABC"));
    QModelIndexList indexes;
    for (const QPoint &cell : cells)
        indexes.append(model.index(cell.y(), cell.x()));

    const std::unique_ptr<QMimeData> data(model.mimeData(indexes));

    QVERIFY(data);
    QCOMPARE(data->formats(), QStringList{MIME_TYPE});
    QTEST(rowsOf(*data), "rows");
}

void tst_KelGPXTrackListModel::mimeDataBytes()
{
    KelGPXTrackListModel model;
    fill(model, QStringLiteral("ABCDEFGHIJK"));

    const std::unique_ptr<QMimeData> data(model.mimeData({model.index(10, 0), model.index(3, 0)}));

    // Each string: length in bytes, then UTF-16, big endian.
    QCOMPARE(data->data(MIME_TYPE), QByteArray::fromHex("00000004" "00310030" "00000002" "0033"));
}

void tst_KelGPXTrackListModel::dropMimeData_data()
{
    QTest::addColumn<QStringList>("rows");
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("column");
    QTest::addColumn<int>("parentRow");
    QTest::addColumn<QString>("order");
    QTest::addColumn<int>("selected");
    QTest::addColumn<QString>("changed");

    const int none = -1;
    QTest::newRow("onto the first row") << QStringList{"3"} << -1 << -1 << 0 << "DABCE" << 0 << "0-3";
    QTest::newRow("onto a later row") << QStringList{"0"} << -1 << -1 << 3 << "BCDAE" << 3 << "0-3";
    QTest::newRow("onto itself") << QStringList{"2"} << -1 << -1 << 2 << "ABCDE" << 2 << "";
    QTest::newRow("below the last row") << QStringList{"1"} << -1 << -1 << none << "ACDEB" << 4 << "1-4";
    QTest::newRow("last row below itself") << QStringList{"4"} << -1 << -1 << none << "ABCDE" << 4 << "";
    QTest::newRow("above a row") << QStringList{"3"} << 1 << 0 << none << "ADBCE" << 1 << "1-3";
    QTest::newRow("above the first row") << QStringList{"4"} << 0 << 0 << none << "EABCD" << 0 << "0-4";
    QTest::newRow("between, downwards, takes the number") << QStringList{"0"} << 3 << 0 << none << "BCDAE" << 3
                                                          << "0-3";
    QTest::newRow("lower edge of the last row") << QStringList{"1"} << 5 << 0 << none << "ACDEB" << 4 << "1-4";
    QTest::newRow("far below") << QStringList{"1"} << std::numeric_limits<int>::max() << 0 << none << "ACDEB" << 4
                               << "1-4";
    QTest::newRow("second column counts as well") << QStringList{"3"} << 1 << 1 << none << "ADBCE" << 1 << "1-3";
    QTest::newRow("row without column") << QStringList{"0"} << 2 << -1 << none << "BCADE" << 2 << "0-2";
    QTest::newRow("row wins over parent") << QStringList{"0"} << 2 << 0 << 4 << "BCADE" << 2 << "0-2";
    QTest::newRow("column without row leads nowhere") << QStringList{"3"} << -1 << 0 << 2 << "ABCDE" << -1 << "";

    QTest::newRow("two upwards") << QStringList{"3", "4"} << -1 << -1 << 0 << "DEABC" << 0 << "0-3 1-4";
    // Each move shifts the rows in between: the second one finds C in row 1.
    QTest::newRow("two downwards") << QStringList{"0", "1"} << -1 << -1 << 3 << "BDAEC" << 3 << "0-3 1-4";
    QTest::newRow("two to the end: the second has no place") << QStringList{"0", "1"} << -1 << -1 << none << "BCDEA"
                                                             << 4 << "0-4";
    QTest::newRow("both columns of one row") << QStringList{"2", "2"} << -1 << -1 << 0 << "CBADE" << 0 << "0-2 1-2";
    QTest::newRow("one of two stays") << QStringList{"1", "4"} << -1 << -1 << 1 << "ABECD" << 1 << "2-4";

    QTest::newRow("no number moves the first row") << QStringList{"x"} << -1 << -1 << 2 << "BCADE" << 2 << "0-2";
    QTest::newRow("empty text moves the first row") << QStringList{""} << -1 << -1 << 2 << "BCADE" << 2 << "0-2";
    QTest::newRow("too large for a number moves the first row") << QStringList{"99999999999"} << -1 << -1 << 2
                                                                << "BCADE" << 2 << "0-2";
    QTest::newRow("broken number moves the first row") << QStringList{"3.7"} << -1 << -1 << 2 << "BCADE" << 2 << "0-2";
    QTest::newRow("row that has gone") << QStringList{"5"} << -1 << -1 << 0 << "ABCDE" << 0 << "";
    QTest::newRow("row far away") << QStringList{"2147483647"} << -1 << -1 << 0 << "ABCDE" << 0 << "";
    QTest::newRow("negative row") << QStringList{"-1"} << -1 << -1 << 0 << "ABCDE" << 0 << "";
    QTest::newRow("a gone row keeps its place in the count") << QStringList{"9", "3"} << -1 << -1 << 0 << "ADBCE" << 0
                                                             << "1-3";
    QTest::newRow("nothing dragged") << QStringList() << -1 << -1 << 3 << "ABCDE" << 3 << "";
}

void tst_KelGPXTrackListModel::dropMimeData()
{
    QFETCH(QStringList, rows);
    QFETCH(int, row);
    QFETCH(int, column);
    QFETCH(int, parentRow);
    for (const Qt::DropAction action : {Qt::MoveAction, Qt::CopyAction, Qt::LinkAction}) {
        KelGPXTrackListModel model;
        fill(model, QStringLiteral("ABCDE"));
        const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
        QSignalSpy selected(&model, &KelGPXTrackListModel::pleaseSelectTrack);
        QSignalSpy moved(&model, &QAbstractItemModel::rowsMoved);
        QSignalSpy reset(&model, &QAbstractItemModel::modelReset);

        QVERIFY(model.dropMimeData(payload(rows).get(), action, row, column, model.index(parentRow, 0)));

        QTEST(letters(model), "order");
        QTEST(spans(changed), "changed");
        QCOMPARE(selected.count(), 1);
        QTEST(selected.first().first().toInt(), "selected");
        QCOMPARE(moved.count(), 0);
        QCOMPARE(reset.count(), 0);
    }
}

void tst_KelGPXTrackListModel::dropIsIgnored()
{
    KelGPXTrackListModel model;
    fill(model, QStringLiteral("ABC"));
    QSignalSpy selected(&model, &KelGPXTrackListModel::pleaseSelectTrack);

    QVERIFY(model.dropMimeData(payload({"2"}).get(), Qt::IgnoreAction, 0, 0, QModelIndex()));
    // Also foreign data: the action is asked first.
    const QMimeData foreign;
    QVERIFY(model.dropMimeData(&foreign, Qt::IgnoreAction, 0, 0, QModelIndex()));

    QCOMPARE(letters(model), QStringLiteral("ABC"));
    QCOMPARE(selected.count(), 0);
}

void tst_KelGPXTrackListModel::dropOfForeignDataIsRefused()
{
    KelGPXTrackListModel model;
    fill(model, QStringLiteral("ABC"));
    QSignalSpy selected(&model, &KelGPXTrackListModel::pleaseSelectTrack);
    QMimeData foreign;
    foreign.setText(QStringLiteral("2"));
    foreign.setData(QStringLiteral("application/gpx+xml"), QByteArrayLiteral("2"));

    QVERIFY(!model.dropMimeData(&foreign, Qt::MoveAction, 0, 0, QModelIndex()));
    QVERIFY(!model.dropMimeData(nullptr, Qt::MoveAction, 0, 0, QModelIndex()));

    QCOMPARE(letters(model), QStringLiteral("ABC"));
    QCOMPARE(selected.count(), 0);
}

void tst_KelGPXTrackListModel::dropOnAnEmptyModel()
{
    KelGPXTrackListModel model;
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    QSignalSpy selected(&model, &KelGPXTrackListModel::pleaseSelectTrack);

    QVERIFY(model.dropMimeData(payload({"0", "3"}).get(), Qt::MoveAction, -1, -1, QModelIndex()));
    QVERIFY(model.dropMimeData(payload({"0"}).get(), Qt::MoveAction, 0, 0, QModelIndex()));

    QCOMPARE(model.rowCount(), 0);
    QCOMPARE(changed.count(), 0);
    QCOMPARE(selected.count(), 2);
    QCOMPARE(selected.at(0).first().toInt(), -1);
    QCOMPARE(selected.at(1).first().toInt(), -1);
}

void tst_KelGPXTrackListModel::dropOfABrokenPayload_data()
{
    QTest::addColumn<QByteArray>("bytes");

    QTest::newRow("shorter than a length") << QByteArray::fromHex("00");
    QTest::newRow("length without text") << QByteArray::fromHex("00000004");
    QTest::newRow("text cut off") << QByteArray::fromHex("000000040031");
    QTest::newRow("odd length") << QByteArray::fromHex("00000003003100");
    QTest::newRow("length of two gigabytes") << QByteArray::fromHex("7ffffffe0031");
    QTest::newRow("length of four gigabytes") << QByteArray::fromHex("fffffffe0031");
    QTest::newRow("null texts") << QByteArray(4000, '\xff');
    QTest::newRow("zeros") << QByteArray(4001, '\0');
    QTest::newRow("XML") << QByteArrayLiteral("<gpx><trk><name>A</name></trk></gpx>");
}

void tst_KelGPXTrackListModel::dropOfABrokenPayload()
{
    QFETCH(QByteArray, bytes);
    KelGPXTrackListModel model;
    fill(model, QStringLiteral("ABCDE"));
    QSignalSpy selected(&model, &KelGPXTrackListModel::pleaseSelectTrack);
    QMimeData data;
    data.setData(MIME_TYPE, bytes);

    QVERIFY(model.dropMimeData(&data, Qt::MoveAction, -1, -1, model.index(1, 0)));

    // Whatever moves, nothing is lost or doubled.
    QString sorted = letters(model);
    std::sort(sorted.begin(), sorted.end());
    QCOMPARE(sorted, QStringLiteral("ABCDE"));
    QCOMPARE(selected.count(), 1);
    QCOMPARE(selected.first().first().toInt(), 1);
}

void tst_KelGPXTrackListModel::dropOntoAForeignRow()
{
    KelGPXTrackListModel model;
    fill(model, QStringLiteral("ABC"));
    KelGPXTrackListModel longer;
    fill(longer, QStringLiteral("ABCDEFGH"));
    QSignalSpy selected(&model, &KelGPXTrackListModel::pleaseSelectTrack);

    QVERIFY(model.dropMimeData(payload({"0"}).get(), Qt::MoveAction, -1, -1, longer.index(7, 0)));

    QCOMPARE(letters(model), QStringLiteral("BCA"));
    QCOMPARE(selected.first().first().toInt(), 2);
}

void tst_KelGPXTrackListModel::dropFromTheModelsOwnMimeData()
{
    KelGPXTrackListModel model;
    fill(model, QStringLiteral("ABCD"));
    const std::unique_ptr<QMimeData> data(model.mimeData({model.index(3, 0)}));

    QVERIFY(model.canDropMimeData(data.get(), Qt::MoveAction, -1, -1, model.index(0, 0)));
    QVERIFY(!model.canDropMimeData(data.get(), Qt::CopyAction, -1, -1, model.index(0, 0)));
    QVERIFY(model.dropMimeData(data.get(), Qt::MoveAction, -1, -1, model.index(0, 0)));

    QCOMPARE(letters(model), QStringLiteral("DABC"));
}

void tst_KelGPXTrackListModel::isValidRow_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<bool>("valid");

    QTest::newRow("minus one") << -1 << false;
    QTest::newRow("first") << 0 << true;
    QTest::newRow("last") << 2 << true;
    QTest::newRow("one behind the last") << 3 << false;
    QTest::newRow("smallest") << std::numeric_limits<int>::min() << false;
    QTest::newRow("largest") << std::numeric_limits<int>::max() << false;
}

void tst_KelGPXTrackListModel::isValidRow()
{
    QFETCH(int, row);
    KelGPXTrackListModel model;
    QVERIFY(!model.isValidRow(row));
    fill(model, QStringLiteral("ABC"));
    QTEST(model.isValidRow(row), "valid");
}

void tst_KelGPXTrackListModel::trackAt()
{
    KelGPXTrackListModel model;
    fill(model, QStringLiteral("ABC"));

    QCOMPARE(model.trackAt(0).name(), QStringLiteral("A"));
    QCOMPARE(model.trackAt(2).name(), QStringLiteral("C"));
    QCOMPARE(model.trackAt(2).description(), QStringLiteral("about C"));
    QCOMPARE(model.trackAt(model.index(1, 0)).name(), QStringLiteral("B"));
    QCOMPARE(model.trackAt(model.index(1, 1)).name(), QStringLiteral("B"));
}

void tst_KelGPXTrackListModel::trackAtOutOfRange_data()
{
    QTest::addColumn<int>("row");

    QTest::newRow("minus one") << -1;
    QTest::newRow("one behind the last") << 3;
    QTest::newRow("smallest") << std::numeric_limits<int>::min();
    QTest::newRow("largest") << std::numeric_limits<int>::max();
}

void tst_KelGPXTrackListModel::trackAtOutOfRange()
{
    QFETCH(int, row);
    KelGPXTrackListModel model;
    fill(model, QStringLiteral("ABC"));

    QVERIFY(model.trackAt(row) == KelGPXConfiguredTrack());
    QVERIFY(model.trackAt(model.index(row, 0)) == KelGPXConfiguredTrack());
}

void tst_KelGPXTrackListModel::tracksIsACopy()
{
    KelGPXTrackListModel model;
    fill(model, QStringLiteral("ABC"));
    const KelGPXConfiguredTrackList before = model.tracks();

    model.moveTrack(0, 2);

    QCOMPARE(KelGPXTrackSelection(before).value(0).name(), QStringLiteral("A"));
    QCOMPARE(KelGPXTrackSelection(model.tracks()).value(0).name(), QStringLiteral("B"));
}

void tst_KelGPXTrackListModel::setConfiguration()
{
    KelGPXTrackListModel model;
    fill(model, QStringLiteral("ABC"));
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    QSignalSpy reset(&model, &QAbstractItemModel::modelReset);

    model.setConfiguration(1, configuration(model, 1, QColor(1, 2, 3)));
    QCOMPARE(spans(changed), QStringLiteral("1-1"));
    model.setConfiguration(model.index(2, 1), configuration(model, 2, QColor(4, 5, 6)));
    QCOMPARE(spans(changed), QStringLiteral("1-1 2-2"));

    QCOMPARE(model.trackAt(0).lineColor(), KelGPXTrackConfiguration::defaultValue().lineColor());
    QCOMPARE(model.trackAt(1).lineColor(), QColor(1, 2, 3));
    QCOMPARE(model.trackAt(2).lineColor(), QColor(4, 5, 6));
    QCOMPARE(reset.count(), 0);
}

void tst_KelGPXTrackListModel::setConfigurationWithoutChange()
{
    KelGPXTrackListModel model;
    fill(model, QStringLiteral("AB"));
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);

    model.setConfiguration(0, model.trackAt(0).configuration());
    model.setConfiguration(model.index(1, 0), model.trackAt(1).configuration());

    QCOMPARE(changed.count(), 0);
}

void tst_KelGPXTrackListModel::setConfigurationOutOfRange_data()
{
    trackAtOutOfRange_data();
}

void tst_KelGPXTrackListModel::setConfigurationOutOfRange()
{
    QFETCH(int, row);
    KelGPXTrackListModel model;
    fill(model, QStringLiteral("ABC"));
    const KelGPXTrackSelection before(model.tracks());
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);

    model.setConfiguration(row, configuration(model, 0, Qt::red));
    model.setConfiguration(QModelIndex(), configuration(model, 0, Qt::red));

    QCOMPARE(changed.count(), 0);
    QVERIFY(KelGPXTrackSelection(model.tracks()) == before);
}

void tst_KelGPXTrackListModel::setConfigurationOfUnknownShapeIsAutomatic()
{
    KelGPXTrackListModel model;
    fill(model, QStringLiteral("A"));
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    KelGPXTrackConfiguration unknown = model.trackAt(0).configuration();
    unknown.setTrackShape(KelGPXTrackShape(TrackShapeUnknown));

    model.setConfiguration(0, unknown);
    QCOMPARE(model.trackAt(0).configuration().trackShape().toInt(), int(TrackShapeAuto));
    QCOMPARE(changed.count(), 1);

    // By then it is what the row has.
    model.setConfiguration(0, unknown);
    QCOMPARE(changed.count(), 1);
}

void tst_KelGPXTrackListModel::setConfigurationToAll()
{
    KelGPXTrackListModel model;
    fill(model, QStringLiteral("ABCD"));
    const KelGPXTrackConfiguration green = configuration(model, 0, QColor(0, 255, 0));
    model.setConfiguration(1, green);
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);

    model.setConfigurationToAll(green);

    QCOMPARE(spans(changed), QStringLiteral("0-0 2-2 3-3"));
    for (int row = 0; row < 4; ++row)
        QCOMPARE(model.trackAt(row).lineColor(), QColor(0, 255, 0));

    model.setConfigurationToAll(green);
    QCOMPARE(changed.count(), 3);
}

void tst_KelGPXTrackListModel::setConfigurationToAllOfNone()
{
    KelGPXTrackListModel model;
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    model.setConfigurationToAll(KelGPXTrackConfiguration::defaultValue());
    QCOMPARE(changed.count(), 0);
}

void tst_KelGPXTrackListModel::moveTrack_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    QTest::addColumn<QString>("order");
    QTest::addColumn<QString>("changed");

    QTest::newRow("first to the end") << 0 << 3 << "BCDA" << "0-3";
    QTest::newRow("last to the front") << 3 << 0 << "DABC" << "0-3";
    QTest::newRow("one down") << 1 << 2 << "ACBD" << "1-2";
    QTest::newRow("one up") << 2 << 1 << "ACBD" << "1-2";
    QTest::newRow("nowhere") << 2 << 2 << "ABCD" << "";
    QTest::newRow("from before the first") << -1 << 2 << "ABCD" << "";
    QTest::newRow("to before the first") << 2 << -1 << "ABCD" << "";
    QTest::newRow("from behind the last") << 4 << 0 << "ABCD" << "";
    QTest::newRow("to behind the last") << 0 << 4 << "ABCD" << "";
    QTest::newRow("from far away") << std::numeric_limits<int>::max() << 0 << "ABCD" << "";
    QTest::newRow("to far away") << 0 << std::numeric_limits<int>::min() << "ABCD" << "";
    QTest::newRow("both far away") << std::numeric_limits<int>::min() << std::numeric_limits<int>::max() << "ABCD"
                                   << "";
    QTest::newRow("nowhere, far away") << 99 << 99 << "ABCD" << "";
}

void tst_KelGPXTrackListModel::moveTrack()
{
    QFETCH(int, from);
    QFETCH(int, to);
    KelGPXTrackListModel model;
    fill(model, QStringLiteral("ABCD"));
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    QSignalSpy moved(&model, &QAbstractItemModel::rowsMoved);
    QSignalSpy reset(&model, &QAbstractItemModel::modelReset);

    model.moveTrack(from, to);

    QTEST(letters(model), "order");
    QTEST(spans(changed), "changed");
    QCOMPARE(moved.count(), 0);
    QCOMPARE(reset.count(), 0);
}

void tst_KelGPXTrackListModel::remove_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("column");
    QTest::addColumn<QString>("left");

    QTest::newRow("first") << 0 << 0 << "BC";
    QTest::newRow("middle") << 1 << 0 << "AC";
    QTest::newRow("last, by its second column") << 2 << 1 << "AB";
}

void tst_KelGPXTrackListModel::remove()
{
    QFETCH(int, row);
    QFETCH(int, column);
    KelGPXTrackListModel model;
    fill(model, QStringLiteral("ABC"));
    QSignalSpy reset(&model, &QAbstractItemModel::modelReset);
    int rowsBefore = 0;
    connect(&model, &QAbstractItemModel::modelAboutToBeReset, this, [&] { rowsBefore = model.rowCount(); });

    model.remove(model.index(row, column));

    QTEST(letters(model), "left");
    QCOMPARE(rowsBefore, 3);
    QCOMPARE(reset.count(), 1);
}

void tst_KelGPXTrackListModel::removeInvalidIndex()
{
    KelGPXTrackListModel model;
    fill(model, QStringLiteral("ABC"));
    const QModelIndex last = model.index(2, 0);
    QSignalSpy reset(&model, &QAbstractItemModel::modelReset);

    model.remove(QModelIndex());
    model.remove(model.index(3, 0));
    QCOMPARE(reset.count(), 0);

    // An index that has outlived its row.
    model.remove(last);
    model.remove(last);
    QCOMPARE(letters(model), QStringLiteral("AB"));
    QCOMPARE(reset.count(), 1);
}

void tst_KelGPXTrackListModel::addTracks_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("added");

    QTest::newRow("to an empty list") << "" << "AB";
    QTest::newRow("at the end, in their order") << "AB" << "XCY";
    QTest::newRow("the same again") << "A" << "A";
    QTest::newRow("none, which resets as well") << "AB" << "";
    QTest::newRow("none to none") << "" << "";
}

void tst_KelGPXTrackListModel::addTracks()
{
    QFETCH(QString, before);
    QFETCH(QString, added);
    KelGPXTrackListModel model;
    model.setSelection(KelGPXTrackSelection(KelTrackBuilder::lines(before)));
    QSignalSpy about(&model, &QAbstractItemModel::modelAboutToBeReset);
    QSignalSpy reset(&model, &QAbstractItemModel::modelReset);

    model.addTracks(KelTrackBuilder::lines(added));

    QCOMPARE(letters(model), before + added);
    QCOMPARE(about.count(), 1);
    QCOMPARE(reset.count(), 1);
}

void tst_KelGPXTrackListModel::setSelection_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    QTest::addColumn<int>("resets");

    QTest::newRow("equal") << "ABC" << "ABC" << 0;
    QTest::newRow("both empty") << "" << "" << 0;
    QTest::newRow("other order") << "ABC" << "ACB" << 1;
    QTest::newRow("one more") << "ABC" << "ABCD" << 1;
    QTest::newRow("one fewer") << "ABC" << "AB" << 1;
    QTest::newRow("another track") << "ABC" << "ABX" << 1;
    QTest::newRow("none left") << "ABC" << "" << 1;
    QTest::newRow("first ones") << "" << "ABC" << 1;
}

void tst_KelGPXTrackListModel::setSelection()
{
    QFETCH(QString, before);
    QFETCH(QString, after);
    KelGPXTrackListModel model;
    model.setSelection(KelGPXTrackSelection(KelTrackBuilder::lines(before)));
    QSignalSpy about(&model, &QAbstractItemModel::modelAboutToBeReset);
    QSignalSpy reset(&model, &QAbstractItemModel::modelReset);

    model.setSelection(KelGPXTrackSelection(KelTrackBuilder::lines(after)));

    QCOMPARE(letters(model), after);
    QTEST(int(reset.count()), "resets");
    QCOMPARE(about.count(), reset.count());
}

void tst_KelGPXTrackListModel::setSelectionComparesConfigurations()
{
    KelGPXTrackListModel model;
    fill(model, QStringLiteral("AB"));
    KelGPXTrackSelection selection(model.tracks());
    QSignalSpy reset(&model, &QAbstractItemModel::modelReset);

    // The cropping opacity is no part of the list.
    selection.setCroppingOpacity(17);
    model.setSelection(selection);
    QCOMPARE(reset.count(), 0);

    selection.setConfiguration(1, configuration(model, 1, Qt::red));
    model.setSelection(selection);
    QCOMPARE(reset.count(), 1);
    QCOMPARE(model.trackAt(1).lineColor(), QColor(Qt::red));
}

void tst_KelGPXTrackListModel::setSelectionKeepsTheViewsSelection()
{
    KelGPXTrackListModel model;
    fill(model, QStringLiteral("ABC"));
    QListView view;
    view.setModel(&model);
    view.setCurrentIndex(model.index(1, 0));

    model.setSelection(KelGPXTrackSelection(KelTrackBuilder::lines(QStringLiteral("ABC"))));
    QCOMPARE(view.currentIndex().row(), 1);
    QVERIFY(view.selectionModel()->isSelected(model.index(1, 0)));

    model.setSelection(KelGPXTrackSelection(KelTrackBuilder::lines(QStringLiteral("ABCD"))));
    QVERIFY(!view.currentIndex().isValid());
}

void tst_KelGPXTrackListModel::randomOperations()
{
    KelGPXTrackListModel model;
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QTableView table;
    table.setModel(&model);
    QRandomGenerator random(20240612);
    QString expected;
    const QString alphabet = QStringLiteral("ABCDEFGHIJKLMNOPQRSTUVWXYZ");
    const auto someLetters = [&](int most) {
        QString result;
        for (int count = random.bounded(most + 1); count > 0; --count)
            result += alphabet.at(random.bounded(int(alphabet.size())));
        return result;
    };
    // Rows from before the first to behind the last.
    const auto anyRow = [&] { return random.bounded(int(expected.size()) + 4) - 2; };
    const auto exists = [&](int row) { return row >= 0 && row < expected.size(); };
    const auto moveExpected = [&](int from, int to) {
        if (!exists(from) || !exists(to) || from == to)
            return;
        const QChar letter = expected.at(from);
        expected.remove(from, 1);
        expected.insert(to, letter);
    };

    for (int step = 0; step < 3000; ++step) {
        switch (random.bounded(7)) {
        case 0: {
            const QString added = someLetters(expected.size() < 30 ? 3 : 0);
            model.addTracks(KelTrackBuilder::lines(added));
            expected += added;
            break;
        }
        case 1: {
            const int row = anyRow();
            model.remove(model.index(row, random.bounded(2)));
            if (exists(row))
                expected.remove(row, 1);
            break;
        }
        case 2: {
            const int from = anyRow();
            const int to = anyRow();
            model.moveTrack(from, to);
            moveExpected(from, to);
            break;
        }
        case 3: {
            const int from = anyRow();
            const int onto = random.bounded(int(expected.size()) + 1);
            model.dropMimeData(payload({QString::number(from)}).get(), Qt::MoveAction, -1, -1, model.index(onto, 0));
            moveExpected(from, onto < expected.size() ? onto : int(expected.size()) - 1);
            break;
        }
        case 4:
            model.setConfiguration(anyRow(), configuration(model, 0, QColor::fromRgb(random.generate())));
            break;
        case 5:
            model.setConfigurationToAll(configuration(model, 0, QColor::fromRgb(random.generate())));
            break;
        default:
            if (random.bounded(20) == 0)
                expected = someLetters(8);
            model.setSelection(KelGPXTrackSelection(KelTrackBuilder::lines(expected)));
        }
        QCOMPARE(letters(model), expected);
    }
}

void tst_KelGPXTrackListModel::dropEventsInAView_data()
{
    QTest::addColumn<bool>("table");
    QTest::addColumn<int>("dragged");
    QTest::addColumn<int>("row");
    QTest::addColumn<Where>("where");
    QTest::addColumn<QString>("order");
    QTest::addColumn<int>("selected");

    for (const bool table : {false, true}) {
        const char *view = table ? "table" : "list";
        QTest::addRow("%s: onto the first row", view) << table << 3 << 0 << Where::Middle << "DABCE" << 0;
        QTest::addRow("%s: onto a later row", view) << table << 0 << 2 << Where::Middle << "BCADE" << 2;
        QTest::addRow("%s: above the first row", view) << table << 2 << 0 << Where::TopEdge << "CABDE" << 0;
        QTest::addRow("%s: below the last row", view) << table << 1 << 4 << Where::BottomEdge << "ACDEB" << 4;
        QTest::addRow("%s: empty space", view) << table << 1 << 0 << Where::BelowAll << "ACDEB" << 4;
    }
}

void tst_KelGPXTrackListModel::dropEventsInAView()
{
    QFETCH(bool, table);
    QFETCH(int, dragged);
    QFETCH(int, row);
    QFETCH(Where, where);
    KelGPXTrackListModel model;
    fill(model, QStringLiteral("ABCDE"));
    const std::unique_ptr<QAbstractItemView> view(table ? static_cast<QAbstractItemView *>(new QTableView)
                                                        : new QListView);
    view->setDragDropOverwriteMode(false);
    view->setModel(&model);
    view->setDragDropMode(QAbstractItemView::DragDrop);
    view->resize(400, 400);
    view->show();
    QVERIFY(QTest::qWaitForWindowExposed(view.get()));
    QSignalSpy selected(&model, &KelGPXTrackListModel::pleaseSelectTrack);

    const std::unique_ptr<QMimeData> data(model.mimeData({model.index(dragged, 0)}));
    QVERIFY(dropEvents(*view, *data, dropPoint(*view, row, where)));
    QTEST(letters(model), "order");
    QCOMPARE(selected.count(), 1);
    QTEST(selected.first().first().toInt(), "selected");

    QMimeData foreign;
    foreign.setText(QStringLiteral("0"));
    QVERIFY(!dropEvents(*view, foreign, dropPoint(*view, 0, Where::Middle)));
    QTEST(letters(model), "order");
}

QTEST_MAIN(tst_KelGPXTrackListModel)
#include "tst_KelGPXTrackListModel.moc"
