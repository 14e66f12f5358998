// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelTrackBuilder.h"

#include <KelBlinkAnimation.h>
#include <KelElidedLabel.h>
#include <KelGPXTrackListModel.h>
#include <KelGPXTrackMultiFunctionDelegateWidget.h>
#include <KelIconRegistry.h>
#include <KelRecordingTranslator.h>

#include <QApplication>
#include <QHBoxLayout>
#include <QSemaphore>
#include <QSharedPointer>
#include <QSignalSpy>
#include <QStandardItemModel>
#include <QTest>
#include <QToolButton>

#include <atomic>
#include <chrono>
#include <memory>
#include <thread>
#include <vector>

namespace
{

class Widget : public KelGPXTrackMultiFunctionDelegateWidget
{
public:
    using KelGPXTrackMultiFunctionDelegateWidget::animationMutex;
    using KelGPXTrackMultiFunctionDelegateWidget::KelGPXTrackMultiFunctionDelegateWidget;
};

// Another thread that keeps a mutex from construction to release().
class Holder
{
public:
    explicit Holder(QRecursiveMutex &mutex)
        : m_thread([this, &mutex] {
            mutex.lock();
            m_held.release();
            m_letGo.acquire();
            mutex.unlock();
        })
    {
        m_held.acquire();
    }
    ~Holder() { release(); }
    Holder(const Holder &) = delete;
    Holder &operator=(const Holder &) = delete;

    void release()
    {
        if (!m_thread.joinable())
            return;
        m_letGo.release();
        m_thread.join();
    }

private:
    QSemaphore m_held;
    QSemaphore m_letGo;
    std::thread m_thread;
};

class PaintCounter : public QObject
{
public:
    explicit PaintCounter(QObject *watched) { watched->installEventFilter(this); }
    int count = 0;

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        count += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
};

std::unique_ptr<QStandardItemModel> texts(const QStringList &list)
{
    auto model = std::make_unique<QStandardItemModel>(int(list.size()), 2);
    for (int row = 0; row < list.size(); ++row)
        model->setItem(row, 0, new QStandardItem(list.at(row)));
    return model;
}

KelElidedLabel *labelOf(const QWidget &widget)
{
    return widget.findChild<KelElidedLabel *>();
}

KelBlinkAnimation *animationOf(const QWidget &widget)
{
    return widget.findChild<KelBlinkAnimation *>(QString(), Qt::FindDirectChildrenOnly);
}

QToolButton *buttonAt(const QWidget &widget, int position)
{
    return qobject_cast<QToolButton *>(widget.layout()->itemAt(position)->widget());
}

constexpr KelGPXTrackEditOptions ALL =
    KelGPXTrackEditOptions(EditOptionAdd) | EditOptionDelete | EditOptionZoomTo | EditOptionEdit;

using Signal = void (KelGPXTrackMultiFunctionDelegateWidget::*)(int);

} // namespace

class tst_KelGPXTrackMultiFunctionDelegateWidget : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void optionValues();
    void layout();
    void label();
    void labelWithoutModel();
    void emptyTextInTheSecondColumn();
    void buttonOrder_data();
    void buttonOrder();
    void buttonsByOptions_data();
    void buttonsByOptions();
    void toolTips_data();
    void toolTips();
    void toolTipOfANameWithPlaceholders();
    void translations_data();
    void translations();
    void icons_data();
    void icons();
    void clickRaisesItsSignalWithTheRow_data();
    void clickRaisesItsSignalWithTheRow();
    void keyboardReachesEveryButton();
    void rowOfAnInvalidIndex();
    void startAnimation();
    void animationShowsInTheLabel();
    void animateRepaintsAtOnce();
    void blinkEndsByItself();
    void deleteStopsTheBlinkFirst();
    void otherButtonsLetItBlink();
    void startWhileTheMutexIsHeldIsSkipped();
    void secondStartWhileTheMutexIsHeldIsSkipped();
    void deleteWhileTheMutexIsHeldStillDeletes();
    void destructionWaitsForTheMutex();
    void destructionDuringABlink();
    void dataChangedUpdatesItsRow_data();
    void dataChangedUpdatesItsRow();
    void dataChangedOfTheOtherColumnReadsTheFirst();
    void dataChangedOfNothing();
    void dataChangedPaintsTheWidgetAnew();
    void renamingUpdatesTheToolTips();
    void movedTracksChangeTheTexts();
    void rowStaysWhenRowsGo();
    void modelMayDieFirst();
    void buildingBlocks();
};

void tst_KelGPXTrackMultiFunctionDelegateWidget::optionValues()
{
    QCOMPARE(int(EditOptionNone), 0);
    QCOMPARE(int(EditOptionAdd), 1);
    QCOMPARE(int(EditOptionDelete), 2);
    QCOMPARE(int(EditOptionZoomTo), 4);
    QCOMPARE(int(EditOptionEdit), 8);
    QCOMPARE(int(EditOptionEdit | EditOptionDelete), 10);
}

void tst_KelGPXTrackMultiFunctionDelegateWidget::layout()
{
    const auto model = texts({"A"});
    QWidget parent;
    const Widget widget(model->index(0, 0), ALL, &parent);

    QCOMPARE(widget.parentWidget(), &parent);
    auto *layout = qobject_cast<QHBoxLayout *>(widget.layout());
    QVERIFY(layout);
    QCOMPARE(layout->spacing(), 1);
    QCOMPARE(layout->contentsMargins(), QMargins(2, 2, 2, 2));
    QCOMPARE(layout->count(), 5);
    QCOMPARE(layout->itemAt(0)->widget(), labelOf(widget));
    QCOMPARE(layout->stretch(0), 1);
    for (int position = 1; position < 5; ++position) {
        QVERIFY(buttonAt(widget, position));
        QCOMPARE(layout->stretch(position), 0);
    }
}

void tst_KelGPXTrackMultiFunctionDelegateWidget::label()
{
    const auto model = texts({"A", "a name much longer than the label will ever be wide"});
    const Widget widget(model->index(1, 0), EditOptionNone);

    QCOMPARE(widget.findChildren<KelElidedLabel *>().size(), 1);
    QCOMPARE(labelOf(widget)->fullText(), QStringLiteral("a name much longer than the label will ever be wide"));
    QVERIFY(labelOf(widget)->wordWrap());
    QCOMPARE(widget.row(), 1);
}

void tst_KelGPXTrackMultiFunctionDelegateWidget::labelWithoutModel()
{
    const Widget widget(QModelIndex(), ALL);
    QCOMPARE(labelOf(widget)->fullText(), QString());
    QCOMPARE(widget.layout()->count(), 5);
}

void tst_KelGPXTrackMultiFunctionDelegateWidget::emptyTextInTheSecondColumn()
{
    KelGPXTrackListModel model;
    model.addTracks(KelTrackBuilder::lines(QStringLiteral("AB")));
    const Widget widget(model.index(1, 1), EditOptionNone);
    QCOMPARE(labelOf(widget)->fullText(), QString());

    // From the first change on it shows what the first column does.
    model.moveTrack(0, 1);
    QCOMPARE(labelOf(widget)->fullText(), QStringLiteral("A"));
}

void tst_KelGPXTrackMultiFunctionDelegateWidget::buttonOrder_data()
{
    QTest::addColumn<int>("options");
    QTest::addColumn<QStringList>("toolTips");

    QTest::newRow("label alone") << 0 << QStringList();
    QTest::newRow("edit and delete") << 10 << QStringList{"A bearbeiten", "A löschen"};
    QTest::newRow("zoom to and add") << 5 << QStringList{"<b>Zoome auf</b> A", "<b>Markiere</b> A"};
    QTest::newRow("edit and add") << 9 << QStringList{"A bearbeiten", "<b>Markiere</b> A"};
    QTest::newRow("delete and zoom to") << 6 << QStringList{"A löschen", "<b>Zoome auf</b> A"};
    QTest::newRow("all") << 15
                         << QStringList{"A bearbeiten", "A löschen", "<b>Zoome auf</b> A", "<b>Markiere</b> A"};
    QTest::newRow("unknown bits are no buttons") << 16 << QStringList();
}

void tst_KelGPXTrackMultiFunctionDelegateWidget::buttonOrder()
{
    QFETCH(int, options);
    const auto model = texts({"A"});
    Widget widget(model->index(0, 0), KelGPXTrackEditOptions(options));

    QStringList toolTips;
    for (int position = 1; position < widget.layout()->count(); ++position)
        toolTips.append(buttonAt(widget, position)->toolTip());
    QTEST(toolTips, "toolTips");
    QCOMPARE(widget.findChildren<QToolButton *>().size(), toolTips.size());

    // And so they stand on the screen.
    widget.resize(400, widget.sizeHint().height());
    widget.show();
    QVERIFY(QTest::qWaitForWindowExposed(&widget));
    int left = labelOf(widget)->geometry().right();
    for (int position = 1; position < widget.layout()->count(); ++position) {
        QVERIFY(buttonAt(widget, position)->geometry().left() > left);
        left = buttonAt(widget, position)->geometry().right();
    }
}

void tst_KelGPXTrackMultiFunctionDelegateWidget::buttonsByOptions_data()
{
    QTest::addColumn<int>("options");
    for (int options = 0; options < 16; ++options)
        QTest::addRow("%d", options) << options;
}

void tst_KelGPXTrackMultiFunctionDelegateWidget::buttonsByOptions()
{
    QFETCH(int, options);
    const auto model = texts({"A"});
    const Widget widget(model->index(0, 0), KelGPXTrackEditOptions(options));

    QCOMPARE(widget.findChild<QToolButton *>(QStringLiteral("editButton")) != nullptr, (options & 8) != 0);
    QCOMPARE(widget.findChild<QToolButton *>(QStringLiteral("deleteButton")) != nullptr, (options & 2) != 0);
    QCOMPARE(widget.findChild<QToolButton *>(QStringLiteral("zoomToButton")) != nullptr, (options & 4) != 0);
    QCOMPARE(widget.findChild<QToolButton *>(QStringLiteral("addButton")) != nullptr, (options & 1) != 0);
}

void tst_KelGPXTrackMultiFunctionDelegateWidget::toolTips_data()
{
    QTest::addColumn<int>("option");
    QTest::addColumn<QString>("toolTip");
    QTest::addColumn<QString>("accessibleName");

    QTest::newRow("edit") << 8 << "Ammersee bearbeiten" << "Ammersee bearbeiten";
    QTest::newRow("delete") << 2 << "Ammersee löschen" << "Ammersee löschen";
    QTest::newRow("zoom to") << 4 << "<b>Zoome auf</b> Ammersee" << "Zoome auf Ammersee";
    QTest::newRow("add") << 1 << "<b>Markiere</b> Ammersee" << "Markiere Ammersee";
}

void tst_KelGPXTrackMultiFunctionDelegateWidget::toolTips()
{
    QFETCH(int, option);
    const auto model = texts({"Ammersee"});
    const Widget widget(model->index(0, 0), KelGPXTrackEditOptions(option));

    QTEST(buttonAt(widget, 1)->toolTip(), "toolTip");
    QTEST(buttonAt(widget, 1)->accessibleName(), "accessibleName");
}

void tst_KelGPXTrackMultiFunctionDelegateWidget::toolTipOfANameWithPlaceholders()
{
    const auto model = texts({"%1 of %2"});
    const Widget widget(model->index(0, 0), EditOptionEdit);
    QCOMPARE(buttonAt(widget, 1)->toolTip(), QStringLiteral("%1 of %2 bearbeiten"));
}

void tst_KelGPXTrackMultiFunctionDelegateWidget::translations_data()
{
    QTest::addColumn<int>("option");
    QTest::addColumn<QString>("text");

    QTest::newRow("edit") << 8 << "%1 bearbeiten";
    QTest::newRow("delete") << 2 << "%1 löschen";
    QTest::newRow("zoom to") << 4 << "<b>Zoome auf</b> %1";
    QTest::newRow("add") << 1 << "<b>Markiere</b> %1";
}

void tst_KelGPXTrackMultiFunctionDelegateWidget::translations()
{
    QFETCH(int, option);
    QFETCH(QString, text);
    KelRecordingTranslator translator;
    translator.setTranslation(text, QStringLiteral("this is %1"));
    const auto model = texts({"A", "B"});
    const Widget widget(model->index(0, 0), KelGPXTrackEditOptions(option));

    QVERIFY(translator.hasRecorded(QStringLiteral("KelGPXTrackMultiFunctionDelegateWidget"), text));
    QCOMPARE(buttonAt(widget, 1)->toolTip(), QStringLiteral("this is A"));
    model->item(0)->setText(QStringLiteral("B"));
    QCOMPARE(buttonAt(widget, 1)->toolTip(), QStringLiteral("this is B"));
}

void tst_KelGPXTrackMultiFunctionDelegateWidget::icons_data()
{
    QTest::addColumn<int>("option");
    QTest::addColumn<QString>("icon");

    QTest::newRow("edit") << 8 << "ico_editListItem";
    QTest::newRow("delete") << 2 << "ico_deleteListItem";
    QTest::newRow("zoom to") << 4 << "ico_fit_map";
    QTest::newRow("add") << 1 << "ico_add_route";
}

void tst_KelGPXTrackMultiFunctionDelegateWidget::icons()
{
    QFETCH(int, option);
    QFETCH(QString, icon);
    // A host's icon of that name, in a colour of its own, has to arrive on the button.
    QPixmap magenta(16, 16);
    magenta.fill(Qt::magenta);
    KelIconRegistry &registry = KelIconRegistry::instance();
    const auto model = texts({"A"});

    const Widget builtIn(model->index(0, 0), KelGPXTrackEditOptions(option));
    registry.registerIcon(icon, QIcon(magenta));
    const Widget hosts(model->index(0, 0), KelGPXTrackEditOptions(option));
    registry.registerIcon(icon, QIcon());

    QVERIFY(!buttonAt(builtIn, 1)->icon().isNull());
    QVERIFY(buttonAt(builtIn, 1)->icon().pixmap(16, 16).toImage().pixelColor(8, 8) != QColor(Qt::magenta));
    QCOMPARE(buttonAt(hosts, 1)->icon().pixmap(16, 16).toImage().pixelColor(8, 8), QColor(Qt::magenta));
}

void tst_KelGPXTrackMultiFunctionDelegateWidget::clickRaisesItsSignalWithTheRow_data()
{
    QTest::addColumn<int>("position");

    QTest::newRow("edit") << 1;
    QTest::newRow("delete") << 2;
    QTest::newRow("zoom to") << 3;
    QTest::newRow("add") << 4;
}

void tst_KelGPXTrackMultiFunctionDelegateWidget::clickRaisesItsSignalWithTheRow()
{
    QFETCH(int, position);
    const auto model = texts({"A", "B", "C"});
    Widget widget(model->index(2, 0), ALL);
    widget.show();
    QVERIFY(QTest::qWaitForWindowExposed(&widget));
    const QList<Signal> emitted = {&Widget::editItem, &Widget::deleteItem, &Widget::zoomToItem, &Widget::addItem};
    std::vector<std::unique_ptr<QSignalSpy>> spies;
    for (const Signal signal : emitted)
        spies.push_back(std::make_unique<QSignalSpy>(&widget, signal));

    QTest::mouseClick(buttonAt(widget, position), Qt::LeftButton);

    for (int i = 0; i < 4; ++i)
        QCOMPARE(spies.at(i)->count(), i == position - 1 ? 1 : 0);
    QCOMPARE(spies.at(position - 1)->first().first().toInt(), 2);
}

void tst_KelGPXTrackMultiFunctionDelegateWidget::keyboardReachesEveryButton()
{
    const auto model = texts({"A"});
    Widget widget(model->index(0, 0), ALL);
    widget.show();
    QVERIFY(QTest::qWaitForWindowExposed(&widget));
    QSignalSpy edited(&widget, &Widget::editItem);
    QSignalSpy added(&widget, &Widget::addItem);

    buttonAt(widget, 1)->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    for (int i = 0; i < 3; ++i)
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), buttonAt(widget, 4));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);

    QCOMPARE(edited.count(), 1);
    QCOMPARE(added.count(), 1);
}

void tst_KelGPXTrackMultiFunctionDelegateWidget::rowOfAnInvalidIndex()
{
    Widget widget(QModelIndex(), ALL);
    QSignalSpy edited(&widget, &Widget::editItem);
    widget.onEditEventRequested();
    QCOMPARE(widget.row(), -1);
    QCOMPARE(edited.first().first().toInt(), -1);
}

void tst_KelGPXTrackMultiFunctionDelegateWidget::startAnimation()
{
    const auto model = texts({"A"});
    Widget widget(model->index(0, 0), ALL);
    QVERIFY(animationOf(widget));
    QVERIFY(!animationOf(widget)->isRunning());

    widget.startAnimation();

    QVERIFY(animationOf(widget)->isRunning());
}

void tst_KelGPXTrackMultiFunctionDelegateWidget::animationShowsInTheLabel()
{
    const auto model = texts({"A"});
    Widget widget(model->index(0, 0), EditOptionNone);
    widget.resize(100, 30);
    const QImage normal = labelOf(widget)->grab().toImage();

    Q_EMIT animationOf(widget)->blink(1);
    QCOMPARE(labelOf(widget)->animationState(), 1);
    QVERIFY(labelOf(widget)->grab().toImage() != normal);

    Q_EMIT animationOf(widget)->blink(0);
    QCOMPARE(labelOf(widget)->animationState(), 0);
    QCOMPARE(labelOf(widget)->grab().toImage(), normal);
}

void tst_KelGPXTrackMultiFunctionDelegateWidget::animateRepaintsAtOnce()
{
    const auto model = texts({"A"});
    Widget widget(model->index(0, 0), EditOptionNone);
    widget.show();
    QVERIFY(QTest::qWaitForWindowExposed(&widget));
    QCoreApplication::processEvents();
    const PaintCounter paints(labelOf(widget));

    widget.animate(1);
    QCOMPARE(paints.count, 1);
    // Also where the state is the same.
    widget.animate(1);
    QCOMPARE(paints.count, 2);
}

void tst_KelGPXTrackMultiFunctionDelegateWidget::blinkEndsByItself()
{
    const auto model = texts({"A"});
    Widget widget(model->index(0, 0), EditOptionNone);
    QSignalSpy blinks(animationOf(widget), &KelBlinkAnimation::blink);

    widget.startAnimation();

    QTRY_VERIFY(!animationOf(widget)->isRunning());
    QVERIFY(blinks.count() > 1);
    QCOMPARE(labelOf(widget)->animationState(), 0);
}

void tst_KelGPXTrackMultiFunctionDelegateWidget::deleteStopsTheBlinkFirst()
{
    const auto model = texts({"A"});
    Widget widget(model->index(0, 0), ALL);
    widget.show();
    QVERIFY(QTest::qWaitForWindowExposed(&widget));
    widget.startAnimation();
    QVERIFY(animationOf(widget)->isRunning());
    bool runningAtDelete = true;
    int stateAtDelete = 1;
    connect(&widget, &Widget::deleteItem, &widget, [&] {
        runningAtDelete = animationOf(widget)->isRunning();
        stateAtDelete = labelOf(widget)->animationState();
    });

    QTest::mouseClick(buttonAt(widget, 2), Qt::LeftButton);

    QVERIFY(!runningAtDelete);
    QCOMPARE(stateAtDelete, 0);
}

void tst_KelGPXTrackMultiFunctionDelegateWidget::otherButtonsLetItBlink()
{
    const auto model = texts({"A"});
    Widget widget(model->index(0, 0), ALL);
    widget.startAnimation();

    buttonAt(widget, 1)->click();
    buttonAt(widget, 3)->click();
    buttonAt(widget, 4)->click();

    QVERIFY(animationOf(widget)->isRunning());
}

void tst_KelGPXTrackMultiFunctionDelegateWidget::startWhileTheMutexIsHeldIsSkipped()
{
    const auto model = texts({"A"});
    Widget widget(model->index(0, 0), ALL);
    {
        const Holder holder(widget.animationMutex());
        widget.startAnimation();
        QVERIFY(!animationOf(widget)->isRunning());
    }
    widget.startAnimation();
    QVERIFY(animationOf(widget)->isRunning());
}

void tst_KelGPXTrackMultiFunctionDelegateWidget::secondStartWhileTheMutexIsHeldIsSkipped()
{
    const auto model = texts({"A"});
    Widget widget(model->index(0, 0), ALL);
    QSignalSpy blinks(animationOf(widget), &KelBlinkAnimation::blink);
    widget.startAnimation();
    QCOMPARE(blinks.count(), 1);

    Holder holder(widget.animationMutex());
    widget.startAnimation();
    QCOMPARE(blinks.count(), 1);

    holder.release();
    widget.startAnimation();
    QCOMPARE(blinks.count(), 2);
}

void tst_KelGPXTrackMultiFunctionDelegateWidget::deleteWhileTheMutexIsHeldStillDeletes()
{
    const auto model = texts({"A"});
    Widget widget(model->index(0, 0), ALL);
    widget.startAnimation();
    QSignalSpy deleted(&widget, &Widget::deleteItem);

    const Holder holder(widget.animationMutex());
    widget.onDeleteEventRequested();

    QCOMPARE(deleted.count(), 1);
    QVERIFY(animationOf(widget)->isRunning());
}

void tst_KelGPXTrackMultiFunctionDelegateWidget::destructionWaitsForTheMutex()
{
    const auto model = texts({"A"});
    auto widget = std::make_unique<Widget>(model->index(0, 0), ALL);
    QSemaphore held;
    std::atomic_bool letGo = false;
    std::thread other([&, mutex = &widget->animationMutex()] {
        mutex->lock();
        held.release();
        // Long enough for a destructor that would not wait to be done by then.
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        letGo = true;
        mutex->unlock();
    });
    held.acquire();

    widget.reset();
    const bool waited = letGo;
    other.join();

    QVERIFY(waited);
}

void tst_KelGPXTrackMultiFunctionDelegateWidget::destructionDuringABlink()
{
    const auto model = texts({"A"});
    auto widget = std::make_unique<Widget>(model->index(0, 0), ALL);
    widget->show();
    QVERIFY(QTest::qWaitForWindowExposed(widget.get()));
    QSignalSpy blinks(animationOf(*widget), &KelBlinkAnimation::blink);
    widget->startAnimation();

    widget.reset();

    // On, then off by the stop; nothing comes later.
    const int count = int(blinks.count());
    QTest::qWait(2 * KelBlinkAnimation::STEP_MS);
    QCOMPARE(count, 2);
    QCOMPARE(int(blinks.count()), count);
}

void tst_KelGPXTrackMultiFunctionDelegateWidget::dataChangedUpdatesItsRow_data()
{
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("last");
    QTest::addColumn<bool>("updated");

    QTest::newRow("its row alone") << 2 << 2 << true;
    QTest::newRow("first of several") << 2 << 4 << true;
    QTest::newRow("last of several") << 0 << 2 << true;
    QTest::newRow("between") << 1 << 3 << true;
    QTest::newRow("rows before") << 0 << 1 << false;
    QTest::newRow("rows behind") << 3 << 4 << false;
}

void tst_KelGPXTrackMultiFunctionDelegateWidget::dataChangedUpdatesItsRow()
{
    QFETCH(int, first);
    QFETCH(int, last);
    QFETCH(bool, updated);
    const auto model = texts({"A", "B", "C", "D", "E"});
    const Widget widget(model->index(2, 0), ALL);
    {
        const QSignalBlocker silence(model.get());
        model->item(2)->setText(QStringLiteral("new"));
    }

    Q_EMIT model->dataChanged(model->index(first, 0), model->index(last, 1));

    QCOMPARE(labelOf(widget)->fullText(), updated ? QStringLiteral("new") : QStringLiteral("C"));
}

void tst_KelGPXTrackMultiFunctionDelegateWidget::dataChangedOfTheOtherColumnReadsTheFirst()
{
    const auto model = texts({"A", "B"});
    const Widget widget(model->index(1, 0), ALL);

    model->setItem(1, 1, new QStandardItem(QStringLiteral("note")));

    QCOMPARE(labelOf(widget)->fullText(), QStringLiteral("B"));
}

void tst_KelGPXTrackMultiFunctionDelegateWidget::dataChangedOfNothing()
{
    const auto model = texts({"A", "B"});
    Widget widget(model->index(0, 0), ALL);

    Q_EMIT model->dataChanged(QModelIndex(), QModelIndex());
    widget.modelDataChanged(QModelIndex(), model->index(1, 0));
    widget.modelDataChanged(model->index(1, 0), model->index(0, 0));

    QCOMPARE(labelOf(widget)->fullText(), QStringLiteral("A"));
}

void tst_KelGPXTrackMultiFunctionDelegateWidget::dataChangedPaintsTheWidgetAnew()
{
    const auto model = texts({"A", "B"});
    Widget widget(model->index(0, 0), ALL);
    widget.show();
    QVERIFY(QTest::qWaitForWindowExposed(&widget));
    QCoreApplication::processEvents();
    const PaintCounter paints(&widget);

    Q_EMIT model->dataChanged(model->index(1, 0), model->index(1, 1));
    QCoreApplication::processEvents();
    QCOMPARE(paints.count, 0);

    // Also with the same text: something else of the row may have changed.
    Q_EMIT model->dataChanged(model->index(0, 0), model->index(0, 1));
    QCoreApplication::processEvents();
    QCOMPARE(paints.count, 1);
}

void tst_KelGPXTrackMultiFunctionDelegateWidget::renamingUpdatesTheToolTips()
{
    const auto model = texts({"A", "B"});
    const Widget first(model->index(0, 0), ALL);
    const Widget second(model->index(1, 0), ALL);

    model->item(1)->setText(QStringLiteral("Bodensee"));

    QCOMPARE(labelOf(first)->fullText(), QStringLiteral("A"));
    QCOMPARE(buttonAt(first, 2)->toolTip(), QStringLiteral("A löschen"));
    QCOMPARE(labelOf(second)->fullText(), QStringLiteral("Bodensee"));
    QCOMPARE(buttonAt(second, 1)->toolTip(), QStringLiteral("Bodensee bearbeiten"));
    QCOMPARE(buttonAt(second, 2)->toolTip(), QStringLiteral("Bodensee löschen"));
    QCOMPARE(buttonAt(second, 3)->toolTip(), QStringLiteral("<b>Zoome auf</b> Bodensee"));
    QCOMPARE(buttonAt(second, 4)->toolTip(), QStringLiteral("<b>Markiere</b> Bodensee"));
    QCOMPARE(buttonAt(second, 4)->accessibleName(), QStringLiteral("Markiere Bodensee"));
}

void tst_KelGPXTrackMultiFunctionDelegateWidget::movedTracksChangeTheTexts()
{
    KelGPXTrackListModel model;
    model.addTracks(KelTrackBuilder::lines(QStringLiteral("ABCD")));
    QList<QSharedPointer<Widget>> widgets;
    for (int row = 0; row < 4; ++row)
        widgets.append(QSharedPointer<Widget>::create(model.index(row, 0), ALL));

    model.moveTrack(2, 0);

    QString shown;
    for (int row = 0; row < 4; ++row) {
        shown += labelOf(*widgets.at(row))->fullText();
        QCOMPARE(widgets.at(row)->row(), row);
    }
    QCOMPARE(shown, QStringLiteral("CABD"));
}

void tst_KelGPXTrackMultiFunctionDelegateWidget::rowStaysWhenRowsGo()
{
    const auto model = texts({"A", "B", "C"});
    Widget widget(model->index(2, 0), ALL);
    QSignalSpy edited(&widget, &Widget::editItem);

    model->removeRow(0);
    buttonAt(widget, 1)->click();
    QCOMPARE(edited.count(), 1);
    QCOMPARE(edited.first().first().toInt(), 2);

    // Its row has gone; a change of all the others is none of its business.
    model->item(0)->setText(QStringLiteral("other"));
    QCOMPARE(labelOf(widget)->fullText(), QStringLiteral("C"));
}

void tst_KelGPXTrackMultiFunctionDelegateWidget::modelMayDieFirst()
{
    auto model = texts({"A"});
    Widget widget(model->index(0, 0), ALL);
    QSignalSpy edited(&widget, &Widget::editItem);

    model.reset();
    buttonAt(widget, 1)->click();
    widget.startAnimation();

    QCOMPARE(labelOf(widget)->fullText(), QStringLiteral("A"));
    QCOMPARE(edited.count(), 1);
}

void tst_KelGPXTrackMultiFunctionDelegateWidget::buildingBlocks()
{
    Widget widget(QModelIndex(), EditOptionNone);
    const QString text = QStringLiteral("Elbe");
    widget.setupUi(QModelIndex(), ALL);
    QCOMPARE(widget.layout()->count(), 1);

    const KelElidedLabel *label = widget.createTextLabel(text);
    QCOMPARE(label->parentWidget(), &widget);
    QCOMPARE(label->fullText(), text);
    QVERIFY(label->wordWrap());

    QSignalSpy edited(&widget, &Widget::editItem);
    QSignalSpy deleted(&widget, &Widget::deleteItem);
    QSignalSpy zoomed(&widget, &Widget::zoomToItem);
    QSignalSpy added(&widget, &Widget::addItem);
    QToolButton *edit = widget.createEditButton(text);
    QToolButton *remove = widget.createDeleteButton(text);
    QToolButton *zoomTo = widget.createZoomToButton(text);
    QToolButton *add = widget.createAddButton(text);
    for (QToolButton *button : {edit, remove, zoomTo, add}) {
        QCOMPARE(button->parentWidget(), &widget);
        QVERIFY(!button->icon().isNull());
        button->click();
    }

    QCOMPARE(edit->toolTip(), QStringLiteral("Elbe bearbeiten"));
    QCOMPARE(remove->toolTip(), QStringLiteral("Elbe löschen"));
    QCOMPARE(zoomTo->toolTip(), QStringLiteral("<b>Zoome auf</b> Elbe"));
    QCOMPARE(add->toolTip(), QStringLiteral("<b>Markiere</b> Elbe"));
    QCOMPARE(edited.count(), 1);
    QCOMPARE(deleted.count(), 1);
    QCOMPARE(zoomed.count(), 1);
    QCOMPARE(added.count(), 1);
}

QTEST_MAIN(tst_KelGPXTrackMultiFunctionDelegateWidget)
#include "tst_KelGPXTrackMultiFunctionDelegateWidget.moc"
