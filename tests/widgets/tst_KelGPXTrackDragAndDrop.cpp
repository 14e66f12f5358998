// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelDragByMouse.h"
#include "KelDropPoint.h"
#include "KelTrackBuilder.h"

#include <KelBlinkAnimation.h>
#include <KelElidedLabel.h>
#include <KelGPXTrackListModel.h>
#include <KelGPXTrackMultiFunctionDelegate.h>

#include <QListView>
#include <QTableView>
#include <QTest>

#include <memory>

namespace
{

QString letters(const KelGPXTrackListModel &model)
{
    QString result;
    for (int row = 0; row < model.rowCount(); ++row)
        result += model.index(row, 0).data().toString();
    return result;
}

QWidget *widgetOf(const QAbstractItemView &view, int row)
{
    return view.indexWidget(view.model()->index(row, 0));
}

} // namespace

/// Whole drags within a view, from the press of the button to its release: the list of tracks, its row widgets and
/// Qt's views together.
class tst_KelGPXTrackDragAndDrop : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void dragInAView_data();
    void dragInAView();
    void dragOfWholeRowsLosesNothing_data();
    void dragOfWholeRowsLosesNothing();
    void dragByTheLabelMovesTheRow();
    void releaseOutsideChangesNothing();
};

void tst_KelGPXTrackDragAndDrop::dragInAView_data()
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

void tst_KelGPXTrackDragAndDrop::dragInAView()
{
    QFETCH(bool, table);
    QFETCH(int, dragged);
    QFETCH(int, row);
    QFETCH(Where, where);
    KelGPXTrackListModel model;
    model.addTracks(KelTrackBuilder::lines(QStringLiteral("ABCDE")));
    const std::unique_ptr<QAbstractItemView> view(table ? static_cast<QAbstractItemView *>(new QTableView)
                                                        : new QListView);
    view->setDragDropOverwriteMode(false);
    view->setModel(&model);
    view->setDragDropMode(QAbstractItemView::InternalMove);
    view->setDragEnabled(true);
    view->resize(400, 400);
    view->show();
    QVERIFY(QTest::qWaitForWindowExposed(view.get()));
    connect(&model, &KelGPXTrackListModel::pleaseSelectTrack, view.get(),
            [&](int target) { view->setCurrentIndex(model.index(target, 0)); });

    KelDragByMouse::drag(view->viewport(), dropPoint(*view, dragged, Where::Middle), dropPoint(*view, row, where));

    QTEST(letters(model), "order");
    QTEST(view->currentIndex().row(), "selected");
}

void tst_KelGPXTrackDragAndDrop::dragOfWholeRowsLosesNothing_data()
{
    QTest::addColumn<bool>("overwrite");

    // After a move views remove or clear what was dragged, as far as the model lets them.
    QTest::newRow("view removes rows") << false;
    QTest::newRow("view clears cells") << true;
}

void tst_KelGPXTrackDragAndDrop::dragOfWholeRowsLosesNothing()
{
    QFETCH(bool, overwrite);
    KelGPXTrackListModel model;
    model.addTracks(KelTrackBuilder::lines(QStringLiteral("ABCDE")));
    QTableView view;
    view.setModel(&model);
    view.setSelectionBehavior(QAbstractItemView::SelectRows);
    view.setDragDropOverwriteMode(overwrite);
    view.setDragDropMode(QAbstractItemView::InternalMove);
    view.setDragEnabled(true);
    view.resize(400, 400);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    view.selectRow(3);

    KelDragByMouse::drag(view.viewport(), dropPoint(view, 3, Where::Middle), dropPoint(view, 0, Where::Middle));

    // Both columns were dragged: D goes to the front, then C, by then in row 3, behind it.
    QCOMPARE(letters(model), QStringLiteral("DCABE"));
}

void tst_KelGPXTrackDragAndDrop::dragByTheLabelMovesTheRow()
{
    KelGPXTrackListModel model;
    model.addTracks(KelTrackBuilder::lines(QStringLiteral("ABCD")));
    QListView view;
    view.setModel(&model);
    auto *delegate = new KelGPXTrackMultiFunctionDelegate(&view, EditOptionEdit | EditOptionDelete);
    view.setItemDelegate(delegate);
    view.setDragDropMode(QAbstractItemView::InternalMove);
    view.setDragEnabled(true);
    view.resize(400, 300);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    view.viewport()->repaint();
    connect(&model, &KelGPXTrackListModel::pleaseSelectTrack, delegate, &KelGPXTrackMultiFunctionDelegate::animate);
    auto *label = widgetOf(view, 3)->findChild<KelElidedLabel *>();
    const QPoint target = view.visualRect(model.index(0, 0)).center();

    KelDragByMouse::drag(label, label->rect().center(), label->mapFrom(view.viewport(), target));

    QString shown;
    for (int row = 0; row < 4; ++row)
        shown += widgetOf(view, row)->findChild<KelElidedLabel *>()->fullText();
    QCOMPARE(shown, QStringLiteral("DABC"));
    QVERIFY(widgetOf(view, 0)->findChild<KelBlinkAnimation *>()->isRunning());
}

void tst_KelGPXTrackDragAndDrop::releaseOutsideChangesNothing()
{
    KelGPXTrackListModel model;
    model.addTracks(KelTrackBuilder::lines(QStringLiteral("ABC")));
    QListView view;
    view.setModel(&model);
    view.setDragDropMode(QAbstractItemView::InternalMove);
    view.resize(300, 200);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));

    KelDragByMouse::drag(view.viewport(), dropPoint(view, 2, Where::Middle), QPoint(2000, 2000));

    QCOMPARE(letters(model), QStringLiteral("ABC"));
}

int main(int argc, char *argv[])
{
    // The offscreen platform refuses every drag; this one needs no display either and runs them.
    qputenv("QT_QPA_PLATFORM", "minimal");
    QApplication application(argc, argv);
    tst_KelGPXTrackDragAndDrop test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_KelGPXTrackDragAndDrop.moc"
