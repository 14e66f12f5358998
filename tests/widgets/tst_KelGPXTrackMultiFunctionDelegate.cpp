// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelTrackBuilder.h"

#include <KelBlinkAnimation.h>
#include <KelElidedLabel.h>
#include <KelGPXTrackListModel.h>
#include <KelGPXTrackMultiFunctionDelegate.h>
#include <KelGPXTrackMultiFunctionDelegateWidget.h>
#include <KelGPXTrackSelection.h>

#include <QHeaderView>
#include <QListView>
#include <QMimeData>
#include <QPainter>
#include <QPointer>
#include <QScrollBar>
#include <QSemaphore>
#include <QSignalSpy>
#include <QStandardItemModel>
#include <QStringListModel>
#include <QTableView>
#include <QTest>
#include <QToolButton>

#include <memory>
#include <thread>

namespace
{

using Delegate = KelGPXTrackMultiFunctionDelegate;
using Widget = KelGPXTrackMultiFunctionDelegateWidget;

constexpr KelGPXTrackEditOptions ALL =
    KelGPXTrackEditOptions(EditOptionAdd) | EditOptionDelete | EditOptionZoomTo | EditOptionEdit;

// Texts of which those that are null have no edit role.
class SparseModel : public QStringListModel
{
public:
    using QStringListModel::QStringListModel;

    QVariant data(const QModelIndex &index, int role) const override
    {
        const QVariant value = QStringListModel::data(index, role);
        return role == Qt::EditRole && value.toString().isNull() ? QVariant() : value;
    }
};

bool isBlinking(const Widget *widget)
{
    return widget->findChild<KelBlinkAnimation *>()->isRunning();
}

QString textOf(const Widget *widget)
{
    return widget->findChild<KelElidedLabel *>()->fullText();
}

QToolButton *button(const Widget *widget, const char *name)
{
    return widget->findChild<QToolButton *>(QLatin1String(name));
}

// The live row widgets of a view, without the delegate's template.
QList<Widget *> widgetsOf(const QAbstractItemView &view)
{
    return view.viewport()->findChildren<Widget *>(QString(), Qt::FindDirectChildrenOnly);
}

Widget *widgetOf(const QAbstractItemView &view, int row)
{
    return qobject_cast<Widget *>(view.indexWidget(view.model()->index(row, 0)));
}

void destroyDeferred()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void paintNow(QAbstractItemView &view)
{
    // After a reset views wait for the event loop to lay out their rows.
    QCoreApplication::processEvents();
    view.viewport()->repaint();
}

struct AnimationMutex : Widget
{
    // Reaches the protected mutex of a widget that the delegate has made.
    static QRecursiveMutex &of(Widget *widget) { return (widget->*&AnimationMutex::animationMutex)(); }
};

} // namespace

class tst_KelGPXTrackMultiFunctionDelegate : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void belongsToItsView();
    void templateIsHidden();
    void sizeHintIsThatOfTheTemplate();
    void withoutAView();
    void paintDrawsNothing();
    void paintOpensAWidgetPerRow_data();
    void paintOpensAWidgetPerRow();
    void paintingAgainMakesNoMore();
    void rowsWithoutTextGetNoWidget();
    void createEditor();
    void createEditorReplacesTheEntry();
    void dataMethodsDoNothing();
    void editAndAddArriveAtOnce();
    void deleteAndZoomAreQueued();
    void clickOnDeleteRemovesTheRow();
    void zoomMayRebuildTheList();
    void animate();
    void animateOfRowsWithoutWidget();
    void animateWhileTheMutexIsHeldIsSkipped();
    void destroyEditorDisconnectsEditAndDeleteOnly();
    void destroyEditorWithAnInvalidIndex();
    void destroyEditorLeavesANewerOne();
    void destroyEditorOfAForeignWidget();
    void widgetDeletedByOthers();
    void renamingUpdatesItsRowAlone();
    void movedTracksChangeTheTexts();
    void resetRecreatesTheWidgets_data();
    void resetRecreatesTheWidgets();
    void deletedRowBlinksNoMore();
    void removedRowsCloseTheirWidgets();
    void bothColumnsWithTheSameDelegate();
    void replacedDelegateTakesItsTemplate();
    void viewDiesWithEverything();
    void clickOnTheLabelSelectsTheRow();
    void blinkAfterADrop();
    void tenThousandRows();
};

void tst_KelGPXTrackMultiFunctionDelegate::belongsToItsView()
{
    QListView view;
    auto *delegate = new Delegate(&view, ALL);
    QCOMPARE(delegate->parent(), &view);
    QVERIFY(qobject_cast<QStyledItemDelegate *>(delegate));
}

void tst_KelGPXTrackMultiFunctionDelegate::templateIsHidden()
{
    QListView view;
    new Delegate(&view, EditOptionEdit | EditOptionAdd);
    const auto templates = view.findChildren<Widget *>();
    QCOMPARE(templates.size(), 1);
    QCOMPARE(templates.first()->parentWidget(), &view);
    QCOMPARE(templates.first()->row(), -1);
    QVERIFY(button(templates.first(), "editButton"));
    QVERIFY(button(templates.first(), "addButton"));
    QVERIFY(!button(templates.first(), "deleteButton"));

    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    QVERIFY(templates.first()->isHidden());
}

void tst_KelGPXTrackMultiFunctionDelegate::sizeHintIsThatOfTheTemplate()
{
    QStringListModel model({"A", "a very long name that would need a very wide row to be shown in full"});
    QListView view;
    view.setModel(&model);
    const Delegate delegate(&view, ALL);
    const Delegate bare(&view, EditOptionNone);
    const Widget expected(QModelIndex(), ALL, &view);
    const QStyleOptionViewItem option;

    QCOMPARE(delegate.sizeHint(option, model.index(0)), expected.sizeHint());
    QCOMPARE(delegate.sizeHint(option, model.index(1)), expected.sizeHint());
    QCOMPARE(delegate.sizeHint(option, QModelIndex()), expected.sizeHint());
    // Four buttons need room.
    QVERIFY(bare.sizeHint(option, model.index(0)).width() + 4 * 10 < expected.sizeHint().width());
}

void tst_KelGPXTrackMultiFunctionDelegate::withoutAView()
{
    QStringListModel model({"A"});
    Delegate delegate(nullptr, ALL);
    QImage image(10, 10, QImage::Format_RGB32);
    QPainter painter(&image);

    delegate.paint(&painter, QStyleOptionViewItem(), model.index(0));
    delegate.animate(0);
    QVERIFY(delegate.sizeHint(QStyleOptionViewItem(), model.index(0)).isValid());
}

void tst_KelGPXTrackMultiFunctionDelegate::paintDrawsNothing()
{
    QStringListModel model({"A"});
    QListView view;
    view.setModel(&model);
    const Delegate delegate(&view, ALL);
    QImage image(200, 40, QImage::Format_ARGB32);
    image.fill(Qt::green);
    const QImage before = image.copy();
    QStyleOptionViewItem option;
    option.rect = image.rect();
    option.state = QStyle::State_Enabled | QStyle::State_Selected | QStyle::State_HasFocus;
    {
        QPainter painter(&image);
        delegate.paint(&painter, option, model.index(0));
    }
    QCOMPARE(image, before);
}

void tst_KelGPXTrackMultiFunctionDelegate::paintOpensAWidgetPerRow_data()
{
    QTest::addColumn<bool>("table");

    QTest::newRow("list") << false;
    QTest::newRow("table") << true;
}

void tst_KelGPXTrackMultiFunctionDelegate::paintOpensAWidgetPerRow()
{
    QFETCH(bool, table);
    KelGPXTrackListModel model;
    model.addTracks(KelTrackBuilder::lines(QStringLiteral("ABC")));
    const std::unique_ptr<QAbstractItemView> view(table ? static_cast<QAbstractItemView *>(new QTableView)
                                                        : new QListView);
    view->setModel(&model);
    view->setItemDelegateForColumn(0, new Delegate(view.get(), EditOptionEdit));
    QCOMPARE(widgetsOf(*view).size(), 0);
    view->resize(400, 300);
    view->show();
    QVERIFY(QTest::qWaitForWindowExposed(view.get()));
    paintNow(*view);

    QCOMPARE(widgetsOf(*view).size(), 3);
    for (int row = 0; row < 3; ++row) {
        const Widget *widget = widgetOf(*view, row);
        QVERIFY(widget);
        QCOMPARE(widget->row(), row);
        QCOMPARE(textOf(widget), model.trackAt(row).name());
        QVERIFY(view->isPersistentEditorOpen(model.index(row, 0)));
        QVERIFY(widget->isVisible());
        QVERIFY(view->visualRect(model.index(row, 0)).contains(widget->geometry().center()));
        QVERIFY(button(widget, "editButton"));
        QVERIFY(!button(widget, "deleteButton"));
    }
}

void tst_KelGPXTrackMultiFunctionDelegate::paintingAgainMakesNoMore()
{
    QStringListModel model({"A", "B"});
    QListView view;
    view.setModel(&model);
    view.setItemDelegate(new Delegate(&view, ALL));
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    paintNow(view);
    const QList<Widget *> widgets = widgetsOf(view);
    QCOMPARE(widgets.size(), 2);

    for (int i = 0; i < 20; ++i)
        paintNow(view);

    QCOMPARE(widgetsOf(view), widgets);
}

void tst_KelGPXTrackMultiFunctionDelegate::rowsWithoutTextGetNoWidget()
{
    SparseModel model({QStringLiteral("A"), QString(), QStringLiteral(""), QStringLiteral("D")});
    QListView view;
    view.setModel(&model);
    view.setItemDelegate(new Delegate(&view, ALL));
    view.resize(300, 300);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    paintNow(view);

    QVERIFY(widgetOf(view, 0));
    QVERIFY(!widgetOf(view, 1));
    // An empty text is a text.
    QVERIFY(widgetOf(view, 2));
    QVERIFY(widgetOf(view, 3));
}

void tst_KelGPXTrackMultiFunctionDelegate::createEditor()
{
    QStringListModel model({"A", "B"});
    QListView view;
    const Delegate delegate(&view, EditOptionDelete);
    QWidget parent;

    auto *widget = qobject_cast<Widget *>(delegate.createEditor(&parent, QStyleOptionViewItem(), model.index(1)));

    QVERIFY(widget);
    QCOMPARE(widget->parentWidget(), &parent);
    QCOMPARE(widget->row(), 1);
    QCOMPARE(textOf(widget), QStringLiteral("B"));
    QVERIFY(button(widget, "deleteButton"));
    QVERIFY(!button(widget, "editButton"));
}

void tst_KelGPXTrackMultiFunctionDelegate::createEditorReplacesTheEntry()
{
    QStringListModel model({"A"});
    QListView view;
    Delegate delegate(&view, ALL);
    QWidget parent;
    const QStyleOptionViewItem option;
    auto *first = qobject_cast<Widget *>(delegate.createEditor(&parent, option, model.index(0)));
    auto *second = qobject_cast<Widget *>(delegate.createEditor(&parent, option, model.index(0)));

    delegate.animate(0);

    QVERIFY(!isBlinking(first));
    QVERIFY(isBlinking(second));
}

void tst_KelGPXTrackMultiFunctionDelegate::dataMethodsDoNothing()
{
    QStringListModel model({"A", "B"});
    QListView view;
    const Delegate delegate(&view, ALL);
    QWidget parent;
    auto *widget = qobject_cast<Widget *>(delegate.createEditor(&parent, QStyleOptionViewItem(), model.index(0)));
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);

    delegate.setEditorData(widget, model.index(1));
    delegate.setModelData(widget, &model, model.index(1));

    QCOMPARE(textOf(widget), QStringLiteral("A"));
    QCOMPARE(model.stringList(), (QStringList{"A", "B"}));
    QCOMPARE(changed.count(), 0);
}

void tst_KelGPXTrackMultiFunctionDelegate::editAndAddArriveAtOnce()
{
    QStringListModel model({"A", "B"});
    QListView view;
    view.setModel(&model);
    auto *delegate = new Delegate(&view, ALL);
    view.setItemDelegate(delegate);
    view.resize(400, 200);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    paintNow(view);
    QSignalSpy edited(delegate, &Delegate::editItem);
    QSignalSpy added(delegate, &Delegate::addItem);

    QTest::mouseClick(button(widgetOf(view, 1), "editButton"), Qt::LeftButton);
    QCOMPARE(edited.count(), 1);
    QCOMPARE(edited.first().first().toInt(), 1);
    QTest::mouseClick(button(widgetOf(view, 0), "addButton"), Qt::LeftButton);
    QCOMPARE(added.count(), 1);
    QCOMPARE(added.first().first().toInt(), 0);
}

void tst_KelGPXTrackMultiFunctionDelegate::deleteAndZoomAreQueued()
{
    QStringListModel model({"A", "B", "C"});
    QListView view;
    view.setModel(&model);
    auto *delegate = new Delegate(&view, ALL);
    view.setItemDelegate(delegate);
    view.resize(400, 200);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    paintNow(view);
    QSignalSpy deleted(delegate, &Delegate::deleteItem);
    QSignalSpy zoomed(delegate, &Delegate::zoomToItem);
    QSignalSpy clickedDelete(widgetOf(view, 2), &Widget::deleteItem);

    // click() handles the click without an event loop in between.
    button(widgetOf(view, 2), "deleteButton")->click();
    button(widgetOf(view, 1), "zoomToButton")->click();
    QCOMPARE(clickedDelete.count(), 1);
    QCOMPARE(deleted.count(), 0);
    QCOMPARE(zoomed.count(), 0);

    QCoreApplication::processEvents();
    QCOMPARE(deleted.count(), 1);
    QCOMPARE(deleted.first().first().toInt(), 2);
    QCOMPARE(zoomed.count(), 1);
    QCOMPARE(zoomed.first().first().toInt(), 1);
}

void tst_KelGPXTrackMultiFunctionDelegate::clickOnDeleteRemovesTheRow()
{
    KelGPXTrackListModel model;
    model.addTracks(KelTrackBuilder::lines(QStringLiteral("ABCD")));
    QTableView view;
    view.setModel(&model);
    auto *delegate = new Delegate(&view, ALL);
    view.setItemDelegateForColumn(0, delegate);
    view.resize(500, 300);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    paintNow(view);
    connect(delegate, &Delegate::deleteItem, &model, [&](int row) { model.remove(model.index(row, 0)); });

    delegate->animate(1);
    QVERIFY(isBlinking(widgetOf(view, 1)));
    QTest::mouseClick(button(widgetOf(view, 1), "deleteButton"), Qt::LeftButton);
    QTRY_COMPARE(model.rowCount(), 3);
    destroyDeferred();
    paintNow(view);

    QCOMPARE(textOf(widgetOf(view, 0)), QStringLiteral("A"));
    QCOMPARE(textOf(widgetOf(view, 1)), QStringLiteral("C"));
    QCOMPARE(textOf(widgetOf(view, 2)), QStringLiteral("D"));
    QCOMPARE(widgetsOf(view).size(), 3);

    // One after the other, down to the last.
    for (int left = 2; left >= 0; --left) {
        QTest::mouseClick(button(widgetOf(view, 0), "deleteButton"), Qt::LeftButton);
        QTRY_COMPARE(model.rowCount(), left);
        paintNow(view);
    }
    destroyDeferred();
    QCOMPARE(widgetsOf(view).size(), 0);
}

void tst_KelGPXTrackMultiFunctionDelegate::zoomMayRebuildTheList()
{
    KelGPXTrackListModel model;
    model.addTracks(KelTrackBuilder::lines(QStringLiteral("AB")));
    QListView view;
    view.setModel(&model);
    auto *delegate = new Delegate(&view, ALL);
    view.setItemDelegate(delegate);
    view.resize(400, 200);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    paintNow(view);
    connect(delegate, &Delegate::zoomToItem, &model,
            [&] { model.setSelection(KelGPXTrackSelection(KelTrackBuilder::lines(QStringLiteral("XYZ")))); });

    QTest::mouseClick(button(widgetOf(view, 1), "zoomToButton"), Qt::LeftButton);
    QTRY_COMPARE(model.rowCount(), 3);
    destroyDeferred();
    paintNow(view);

    QCOMPARE(widgetsOf(view).size(), 3);
    QCOMPARE(textOf(widgetOf(view, 0)), QStringLiteral("X"));
}

void tst_KelGPXTrackMultiFunctionDelegate::animate()
{
    QStringListModel model({"A", "B"});
    QListView view;
    view.setModel(&model);
    auto *delegate = new Delegate(&view, ALL);
    view.setItemDelegate(delegate);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    paintNow(view);

    delegate->animate(1);

    QVERIFY(!isBlinking(widgetOf(view, 0)));
    QVERIFY(isBlinking(widgetOf(view, 1)));
    QTRY_VERIFY(!isBlinking(widgetOf(view, 1)));
}

void tst_KelGPXTrackMultiFunctionDelegate::animateOfRowsWithoutWidget()
{
    QStringListModel model({"A", "B"});
    QListView view;
    view.setModel(&model);
    auto *delegate = new Delegate(&view, ALL);
    view.setItemDelegate(delegate);

    // Never painted, no such row, and the row of the template.
    for (const int row : {0, 1, 2, -1, 100000})
        delegate->animate(row);

    for (const Widget *widget : view.findChildren<Widget *>())
        QVERIFY(!isBlinking(widget));
}

void tst_KelGPXTrackMultiFunctionDelegate::animateWhileTheMutexIsHeldIsSkipped()
{
    QStringListModel model({"A"});
    QListView view;
    Delegate delegate(&view, ALL);
    QWidget parent;
    auto *widget = qobject_cast<Widget *>(delegate.createEditor(&parent, QStyleOptionViewItem(), model.index(0)));
    QSignalSpy blinks(widget->findChild<KelBlinkAnimation *>(), &KelBlinkAnimation::blink);
    delegate.animate(0);
    QCOMPARE(blinks.count(), 1);

    QSemaphore held;
    QSemaphore letGo;
    std::thread other([&] {
        const QMutexLocker locker(&AnimationMutex::of(widget));
        held.release();
        letGo.acquire();
    });
    held.acquire();
    delegate.animate(0);
    const int whileHeld = int(blinks.count());
    letGo.release();
    other.join();

    QCOMPARE(whileHeld, 1);
    delegate.animate(0);
    QCOMPARE(blinks.count(), 2);
}

void tst_KelGPXTrackMultiFunctionDelegate::destroyEditorDisconnectsEditAndDeleteOnly()
{
    QStringListModel model({"A"});
    QListView view;
    Delegate delegate(&view, ALL);
    QWidget parent;
    auto *widget = qobject_cast<Widget *>(delegate.createEditor(&parent, QStyleOptionViewItem(), model.index(0)));
    QSignalSpy edited(&delegate, &Delegate::editItem);
    QSignalSpy deleted(&delegate, &Delegate::deleteItem);
    QSignalSpy added(&delegate, &Delegate::addItem);
    QSignalSpy zoomed(&delegate, &Delegate::zoomToItem);
    QSignalSpy destroyed(widget, &QObject::destroyed);

    delegate.destroyEditor(widget, model.index(0));
    // It dies later.
    QCOMPARE(destroyed.count(), 0);
    for (const char *name : {"editButton", "deleteButton", "addButton", "zoomToButton"})
        button(widget, name)->click();
    QCoreApplication::processEvents();

    QCOMPARE(edited.count(), 0);
    QCOMPARE(deleted.count(), 0);
    QCOMPARE(added.count(), 1);
    QCOMPARE(zoomed.count(), 1);

    delegate.animate(0);
    destroyDeferred();
    QCOMPARE(destroyed.count(), 1);
    delegate.animate(0);
}

void tst_KelGPXTrackMultiFunctionDelegate::destroyEditorWithAnInvalidIndex()
{
    QStringListModel model({"A", "B"});
    QListView view;
    Delegate delegate(&view, ALL);
    QWidget parent;
    auto *widget = qobject_cast<Widget *>(delegate.createEditor(&parent, QStyleOptionViewItem(), model.index(1)));
    QSignalSpy edited(&delegate, &Delegate::editItem);

    delegate.destroyEditor(widget, QModelIndex());

    button(widget, "editButton")->click();
    QCOMPARE(edited.count(), 0);
    delegate.animate(1);
    QVERIFY(!isBlinking(widget));
    destroyDeferred();
    delegate.animate(1);
}

void tst_KelGPXTrackMultiFunctionDelegate::destroyEditorLeavesANewerOne()
{
    QStringListModel model({"A"});
    QListView view;
    Delegate delegate(&view, ALL);
    QWidget parent;
    const QStyleOptionViewItem option;
    auto *older = qobject_cast<Widget *>(delegate.createEditor(&parent, option, model.index(0)));
    auto *newer = qobject_cast<Widget *>(delegate.createEditor(&parent, option, model.index(0)));
    QSignalSpy edited(&delegate, &Delegate::editItem);

    delegate.destroyEditor(older, model.index(0));
    destroyDeferred();

    delegate.animate(0);
    QVERIFY(isBlinking(newer));
    button(newer, "editButton")->click();
    QCOMPARE(edited.count(), 1);
}

void tst_KelGPXTrackMultiFunctionDelegate::destroyEditorOfAForeignWidget()
{
    QStringListModel model({"A"});
    QListView view;
    Delegate delegate(&view, ALL);
    QWidget parent;
    auto *own = qobject_cast<Widget *>(delegate.createEditor(&parent, QStyleOptionViewItem(), model.index(0)));
    QPointer<QWidget> foreign(new QWidget(&parent));

    delegate.destroyEditor(foreign, model.index(0));
    destroyDeferred();

    QVERIFY(!foreign);
    delegate.animate(0);
    QVERIFY(isBlinking(own));
}

void tst_KelGPXTrackMultiFunctionDelegate::widgetDeletedByOthers()
{
    QStringListModel model({"A", "B"});
    QListView view;
    Delegate delegate(&view, ALL);
    auto parent = std::make_unique<QWidget>();
    delegate.createEditor(parent.get(), QStyleOptionViewItem(), model.index(0));
    delegate.createEditor(parent.get(), QStyleOptionViewItem(), model.index(1));

    parent.reset();

    delegate.animate(0);
    delegate.animate(1);
}

void tst_KelGPXTrackMultiFunctionDelegate::renamingUpdatesItsRowAlone()
{
    QStandardItemModel model;
    for (const char *name : {"A", "B", "C"})
        model.appendRow(new QStandardItem(QLatin1String(name)));
    QListView view;
    view.setModel(&model);
    view.setItemDelegate(new Delegate(&view, ALL));
    view.resize(400, 300);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    paintNow(view);
    const QList<Widget *> before = widgetsOf(view);

    model.item(1)->setText(QStringLiteral("Isar"));

    QCOMPARE(textOf(widgetOf(view, 0)), QStringLiteral("A"));
    QCOMPARE(textOf(widgetOf(view, 1)), QStringLiteral("Isar"));
    QCOMPARE(textOf(widgetOf(view, 2)), QStringLiteral("C"));
    QCOMPARE(widgetsOf(view), before);
}

void tst_KelGPXTrackMultiFunctionDelegate::movedTracksChangeTheTexts()
{
    KelGPXTrackListModel model;
    model.addTracks(KelTrackBuilder::lines(QStringLiteral("ABCDE")));
    QListView view;
    view.setModel(&model);
    auto *delegate = new Delegate(&view, ALL);
    view.setItemDelegate(delegate);
    view.resize(400, 400);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    paintNow(view);
    const QList<Widget *> before = widgetsOf(view);
    QCOMPARE(before.size(), 5);

    model.moveTrack(3, 1);

    QCOMPARE(widgetsOf(view), before);
    QString shown;
    for (int row = 0; row < 5; ++row)
        shown += textOf(widgetOf(view, row));
    QCOMPARE(shown, QStringLiteral("ADBCE"));
    QSignalSpy edited(delegate, &Delegate::editItem);
    button(widgetOf(view, 1), "editButton")->click();
    QCOMPARE(edited.first().first().toInt(), 1);
}

void tst_KelGPXTrackMultiFunctionDelegate::resetRecreatesTheWidgets_data()
{
    QTest::addColumn<bool>("oneColumn");

    QTest::newRow("delegate of the whole view") << false;
    // Such a delegate is not asked to destroy its widgets.
    QTest::newRow("delegate of one column") << true;
}

void tst_KelGPXTrackMultiFunctionDelegate::resetRecreatesTheWidgets()
{
    QFETCH(bool, oneColumn);
    KelGPXTrackListModel model;
    model.addTracks(KelTrackBuilder::lines(QStringLiteral("ABCD")));
    QListView view;
    view.setModel(&model);
    auto *delegate = new Delegate(&view, ALL);
    if (oneColumn)
        view.setItemDelegateForColumn(0, delegate);
    else
        view.setItemDelegate(delegate);
    view.resize(400, 400);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    paintNow(view);
    QList<QPointer<Widget>> before;
    for (Widget *widget : widgetsOf(view))
        before.append(widget);
    QCOMPARE(before.size(), 4);
    delegate->animate(3);

    model.setSelection(KelGPXTrackSelection(KelTrackBuilder::lines(QStringLiteral("XY"))));
    // Between the reset and the next painting, with the old widgets alive and then without them.
    for (int row = 0; row < 4; ++row)
        delegate->animate(row);
    destroyDeferred();
    for (const QPointer<Widget> &widget : std::as_const(before))
        QVERIFY(!widget);
    for (int row = 0; row < 4; ++row)
        delegate->animate(row);

    paintNow(view);
    QCOMPARE(widgetsOf(view).size(), 2);
    QCOMPARE(textOf(widgetOf(view, 0)), QStringLiteral("X"));
    QCOMPARE(textOf(widgetOf(view, 1)), QStringLiteral("Y"));
    delegate->animate(1);
    QVERIFY(isBlinking(widgetOf(view, 1)));
    delegate->animate(3);
}

void tst_KelGPXTrackMultiFunctionDelegate::deletedRowBlinksNoMore()
{
    KelGPXTrackListModel model;
    model.addTracks(KelTrackBuilder::lines(QStringLiteral("AB")));
    QListView view;
    view.setModel(&model);
    auto *delegate = new Delegate(&view, ALL);
    view.setItemDelegate(delegate);
    view.resize(400, 200);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    paintNow(view);
    delegate->animate(1);
    bool runningAtDelete = true;
    connect(delegate, &Delegate::deleteItem, this, [&](int row) { runningAtDelete = isBlinking(widgetOf(view, row)); });

    QTest::mouseClick(button(widgetOf(view, 1), "deleteButton"), Qt::LeftButton);
    QCoreApplication::processEvents();

    QVERIFY(!runningAtDelete);
}

void tst_KelGPXTrackMultiFunctionDelegate::removedRowsCloseTheirWidgets()
{
    QStringListModel model({"A", "B", "C"});
    QListView view;
    view.setModel(&model);
    auto *delegate = new Delegate(&view, ALL);
    view.setItemDelegate(delegate);
    view.resize(400, 300);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    paintNow(view);
    QPointer<Widget> gone(widgetOf(view, 0));

    model.removeRow(0);
    destroyDeferred();
    QVERIFY(!gone);
    paintNow(view);

    // The others have kept the row with which they were made.
    QCOMPARE(textOf(widgetOf(view, 0)), QStringLiteral("B"));
    QCOMPARE(widgetOf(view, 0)->row(), 1);
    delegate->animate(0);
    delegate->animate(2);
    QVERIFY(!isBlinking(widgetOf(view, 0)));
    QVERIFY(isBlinking(widgetOf(view, 1)));

    // Which is why the index that comes with a widget does not tell where it was entered.
    model.removeRow(1);
    destroyDeferred();
    for (int row = 0; row < 3; ++row)
        delegate->animate(row);
    QVERIFY(isBlinking(widgetOf(view, 0)));
}

void tst_KelGPXTrackMultiFunctionDelegate::bothColumnsWithTheSameDelegate()
{
    KelGPXTrackListModel model;
    model.addTracks(KelTrackBuilder::lines(QStringLiteral("AB")));
    QTableView view;
    view.setModel(&model);
    auto *delegate = new Delegate(&view, EditOptionNone);
    view.setItemDelegate(delegate);
    view.resize(500, 300);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    paintNow(view);

    QCOMPARE(widgetsOf(view).size(), 4);
    auto *second = qobject_cast<Widget *>(view.indexWidget(model.index(0, 1)));
    QVERIFY(second);
    QCOMPARE(textOf(second), QString());
    model.moveTrack(0, 1);
    QCOMPARE(textOf(second), QStringLiteral("B"));

    // The last one made has the row; when all are gone, nothing is left behind.
    model.setSelection(KelGPXTrackSelection());
    destroyDeferred();
    QCOMPARE(widgetsOf(view).size(), 0);
    delegate->animate(0);
    delegate->animate(1);
}

void tst_KelGPXTrackMultiFunctionDelegate::replacedDelegateTakesItsTemplate()
{
    QListView view;
    auto *delegate = new Delegate(&view, ALL);
    view.setItemDelegate(delegate);
    QCOMPARE(view.findChildren<Widget *>().size(), 1);

    delete delegate;

    QCOMPARE(view.findChildren<Widget *>().size(), 0);
}

void tst_KelGPXTrackMultiFunctionDelegate::viewDiesWithEverything()
{
    QStringListModel model({"A", "B"});
    auto view = std::make_unique<QListView>();
    view->setModel(&model);
    auto *delegate = new Delegate(view.get(), ALL);
    view->setItemDelegate(delegate);
    view->show();
    QVERIFY(QTest::qWaitForWindowExposed(view.get()));
    paintNow(*view);
    QPointer<Delegate> watched(delegate);
    QPointer<Widget> widget(widgetOf(*view, 1));
    delegate->animate(1);
    // A click that the view does not live to see delivered.
    button(widget, "deleteButton")->click();

    view.reset();
    QCoreApplication::processEvents();

    QVERIFY(!watched);
    QVERIFY(!widget);
}

void tst_KelGPXTrackMultiFunctionDelegate::clickOnTheLabelSelectsTheRow()
{
    KelGPXTrackListModel model;
    model.addTracks(KelTrackBuilder::lines(QStringLiteral("ABC")));
    QListView view;
    view.setModel(&model);
    view.setItemDelegate(new Delegate(&view, ALL));
    view.resize(400, 300);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    paintNow(view);

    QTest::mouseClick(widgetOf(view, 1)->findChild<KelElidedLabel *>(), Qt::LeftButton);

    QCOMPARE(view.currentIndex(), model.index(1, 0));
    QVERIFY(view.selectionModel()->isSelected(model.index(1, 0)));
}

void tst_KelGPXTrackMultiFunctionDelegate::blinkAfterADrop()
{
    KelGPXTrackListModel model;
    model.addTracks(KelTrackBuilder::lines(QStringLiteral("ABCD")));
    QListView view;
    view.setModel(&model);
    auto *delegate = new Delegate(&view, ALL);
    view.setItemDelegate(delegate);
    view.resize(400, 300);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    paintNow(view);
    connect(&model, &KelGPXTrackListModel::pleaseSelectTrack, delegate, &Delegate::animate);

    const std::unique_ptr<QMimeData> data(model.mimeData({model.index(3, 0)}));
    QVERIFY(model.dropMimeData(data.get(), Qt::MoveAction, -1, -1, model.index(0, 0)));

    QVERIFY(isBlinking(widgetOf(view, 0)));
    QCOMPARE(textOf(widgetOf(view, 0)), QStringLiteral("D"));
    QVERIFY(!isBlinking(widgetOf(view, 3)));
}

void tst_KelGPXTrackMultiFunctionDelegate::tenThousandRows()
{
    QStringList names;
    for (int row = 0; row < 10000; ++row)
        names.append(QStringLiteral("track %1").arg(row));
    QStringListModel model(names);
    QListView view;
    view.setUniformItemSizes(true);
    view.setModel(&model);
    auto *delegate = new Delegate(&view, ALL);
    view.setItemDelegate(delegate);
    view.resize(400, 300);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    paintNow(view);

    // What has been seen has a widget, nothing else.
    const int perPage = int(widgetsOf(view).size());
    QVERIFY(perPage > 2);
    QVERIFY(perPage < 100);
    QVERIFY(!widgetOf(view, 9999));
    delegate->animate(9999);

    constexpr int pages = 60;
    for (int page = 1; page <= pages; ++page) {
        view.verticalScrollBar()->setValue(int(qint64(view.verticalScrollBar()->maximum()) * page / pages));
        paintNow(view);
    }
    QVERIFY(widgetsOf(view).size() <= (pages + 2) * perPage);
    QVERIFY(widgetOf(view, 9999));
    QCOMPARE(textOf(widgetOf(view, 9999)), QStringLiteral("track 9999"));
    QVERIFY(view.viewport()->rect().intersects(widgetOf(view, 9999)->geometry()));
    delegate->animate(9999);
    QVERIFY(isBlinking(widgetOf(view, 9999)));

    // The first rows have kept theirs, out of sight.
    QVERIFY(widgetOf(view, 0));
    QVERIFY(!view.viewport()->rect().intersects(widgetOf(view, 0)->geometry()));

    model.setStringList({QStringLiteral("left")});
    destroyDeferred();
    paintNow(view);
    QCOMPARE(widgetsOf(view).size(), 1);
}

QTEST_MAIN(tst_KelGPXTrackMultiFunctionDelegate)
#include "tst_KelGPXTrackMultiFunctionDelegate.moc"
