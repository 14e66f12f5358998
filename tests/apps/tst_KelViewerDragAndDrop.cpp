// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelDragByMouse.h"
#include "KelDropPoint.h"
#include "KelViewerTestSupport.h"

#include <KelTemporarySettings.h>

#include <QTemporaryDir>

using namespace KelViewerTestSupport;

/// Whole drags with the mouse in the viewer's list.
class tst_KelViewerDragAndDrop : public QObject
{
    Q_OBJECT

private:
    KelTemporarySettings m_settings;
    QTemporaryDir m_data;

private Q_SLOTS:
    void initTestCase()
    {
        qputenv("XDG_DATA_HOME", m_data.path().toUtf8());
    }

    void rowsAreReordered_data()
    {
        QTest::addColumn<int>("from");
        QTest::addColumn<int>("to");
        QTest::addColumn<Where>("where");
        QTest::addColumn<QString>("result");
        QTest::newRow("down onto a row") << 0 << 2 << Where::Middle << "B,C,A,D";
        QTest::newRow("up onto a row") << 3 << 1 << Where::Middle << "A,D,B,C";
        QTest::newRow("below all") << 0 << 0 << Where::BelowAll << "B,C,D,A";
    }

    void rowsAreReordered()
    {
        QFETCH(int, from);
        QFETCH(int, to);
        QFETCH(Where, where);
        QFETCH(QString, result);
        KelViewerWindow window;
        QVERIFY(show(window));
        fill(window, QStringLiteral("ABCD"));
        KelTrackListView *view = list(window);
        QTRY_VERIFY(view->indexWidget(view->model()->index(3, 0)));

        KelDragByMouse::drag(view->viewport(), dropPoint(*view, from, Where::Middle), dropPoint(*view, to, where));

        QTRY_COMPARE(names(window), result);
        QVERIFY(window.isWindowModified());
        action(window, "undo")->trigger();
        QCOMPARE(names(window), QStringLiteral("A,B,C,D"));
        QCOMPARE(view->trackModel()->tracks().count(), 4);
    }
};

int main(int argc, char *argv[])
{
    // The offscreen platform refuses every drag; this one needs no display either and runs them.
    qputenv("QT_QPA_PLATFORM", "minimal");
    QApplication application(argc, argv);
    tst_KelViewerDragAndDrop test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_KelViewerDragAndDrop.moc"
