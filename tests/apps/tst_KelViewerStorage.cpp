// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelViewerTestSupport.h"

#include <KelErrorHistory.h>
#include <KelProblemBar.h>
#include <KelTemporarySettings.h>

#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QProcess>
#include <QPushButton>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QUndoStack>

#include <csignal>
#include <cstdio>
#include <sys/resource.h>
#include <sys/stat.h>

using namespace KelViewerTestSupport;

namespace
{

constexpr auto CHILD = "--save-for-ever";

/// While it lives, no file can grow: what a full disk is for a program.
class FullDisk
{
public:
    FullDisk()
    {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_former);
        rlimit none = m_former;
        none.rlim_cur = 0;
        setrlimit(RLIMIT_FSIZE, &none);
    }
    ~FullDisk() { setrlimit(RLIMIT_FSIZE, &m_former); }
    FullDisk(const FullDisk &) = delete;
    FullDisk &operator=(const FullDisk &) = delete;

private:
    rlimit m_former{};
};

KelGPXTrackSelection tracks(const QString &letters)
{
    KelGPXTrackSelection selection;
    for (const QChar letter : letters)
        selection.addTrack(KelTestTracks::configured(QString(letter)));
    return selection;
}

/// The child process: saves one or the other selection until it is killed.
int saveForEver(const QString &fileName)
{
    KelTrackDocument document;
    for (int i = 0;; ++i) {
        KelErrorHistory errors;
        document.change(tracks(i % 2 ? QStringLiteral("ABC") : QStringLiteral("XY")), QStringLiteral("change"));
        if (!document.save(fileName, errors))
            return 1;
        if (i == 1) {
            std::puts("saved");
            std::fflush(stdout);
        }
    }
}

void press(QMessageBox &box, QMessageBox::ButtonRole role)
{
    const QList<QAbstractButton *> buttons = box.buttons();
    for (QAbstractButton *button : buttons) {
        if (box.buttonRole(button) == role) {
            button->click();
            return;
        }
    }
}

} // namespace

class tst_KelViewerStorage : public QObject
{
    Q_OBJECT

private:
    KelTemporarySettings m_settings;

    std::unique_ptr<QTemporaryDir> m_data;

    static QString problems(KelViewerWindow &window) { return window.findChild<KelProblemBar *>()->text(); }

private Q_SLOTS:
    void init()
    {
        m_settings.clear();
        m_data = std::make_unique<QTemporaryDir>();
        qputenv("XDG_DATA_HOME", m_data->path().toUtf8());
    }

    /// Whoever opened it would wait for ever.
    void settingsThatAreAPipe()
    {
        const QString name = m_settings.filePath();
        QFile::remove(name);
        QDir().mkpath(QFileInfo(name).path());
        QCOMPARE(::mkfifo(QFile::encodeName(name).constData(), 0600), 0);
        const auto cleanUp = qScopeGuard([&name] { QFile::remove(name); });
        KelViewerWindow window;
        window.restoreSession();
        QVERIFY(show(window));
        fill(window, QStringLiteral("AB"));
        QCOMPARE(window.document()->selection().count(), 2);
        window.document()->undoStack()->setClean();
        window.close();
    }

    void savesAndLoads()
    {
        const QString name = m_data->filePath(QStringLiteral("trip.keltracks"));
        KelGPXTrackSelection saved;
        {
            KelViewerWindow window;
            fill(window, QStringLiteral("ABC"));
            list(window)->selectRows({1});
            action(window, "duplicate")->trigger();
            KelGPXTrackSelection faded = window.document()->selection();
            faded.setCroppingOpacity(77);
            window.document()->change(faded, QStringLiteral("fade"));
            QVERIFY(window.isWindowModified());
            KelErrorHistory errors;
            QVERIFY(window.document()->save(name, errors));
            QVERIFY(!window.isWindowModified());
            QVERIFY(window.windowTitle().startsWith(QStringLiteral("trip.keltracks")));
            saved = window.document()->selection();
        }
        KelViewerWindow window;
        window.open({name});
        QVERIFY(window.document()->selection() == saved);
        QCOMPARE(window.document()->fileName(), name);
        QVERIFY(!window.isWindowModified());
        QVERIFY(!window.document()->undoStack()->canUndo());
    }

    void asksForAFileName()
    {
        const QString name = m_data->filePath(QStringLiteral("asked"));
        KelViewerWindow window;
        QVERIFY(show(window));
        fill(window, QStringLiteral("AB"));
        whenAsked<QFileDialog>([&](QFileDialog &dialog) {
            auto *edit = dialog.findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
            edit->setText(name);
            QTest::keyClick(edit, Qt::Key_Return);
        });
        action(window, "save")->trigger();
        QVERIFY(QFile::exists(name + QStringLiteral(".keltracks")));
        QVERIFY(!window.isWindowModified());
    }

    void undoingToTheSavedStateIsNoChange()
    {
        KelViewerWindow window;
        fill(window, QStringLiteral("AB"));
        KelErrorHistory errors;
        QVERIFY(window.document()->save(m_data->filePath(QStringLiteral("a.keltracks")), errors));
        list(window)->selectRows({0});
        action(window, "delete")->trigger();
        QVERIFY(window.isWindowModified());
        action(window, "undo")->trigger();
        QVERIFY(!window.isWindowModified());
    }

    void whatIsNoSelectionIsReported_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("not XML") << QByteArray("hello");
        QTest::newRow("another document") << QByteArray("<gpx/>");
        QTest::newRow("cut off") << QByteArray("<kelTracks>\n<gpxtrack>");
    }

    void whatIsNoSelectionIsReported()
    {
        QFETCH(QByteArray, content);
        const QString name = m_data->filePath(QStringLiteral("bad.keltracks"));
        QFile file(name);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
        file.close();
        KelViewerWindow window;
        fill(window, QStringLiteral("AB"));
        window.open({name});
        QVERIFY(problems(window).startsWith(name));
        QCOMPARE(names(window), QStringLiteral("A,B"));
    }

    void aFullDiskIsReportedAndLosesNothing()
    {
        const QString name = m_data->filePath(QStringLiteral("trip.keltracks"));
        KelViewerWindow window;
        fill(window, QStringLiteral("AB"));
        KelErrorHistory errors;
        QVERIFY(window.document()->save(name, errors));
        KelGPXTrackSelection more = window.document()->selection();
        more.addTrack(KelTestTracks::configured(QStringLiteral("C"), QStringLiteral("1,2 3,4")));
        window.document()->change(more, QStringLiteral("add"));
        {
            const FullDisk full;
            action(window, "save")->trigger();
        }
        QVERIFY2(problems(window).startsWith(name), qPrintable(problems(window)));
        QVERIFY(window.isWindowModified());
        QCOMPARE(names(window), QStringLiteral("A,B,C"));

        KelViewerWindow other;
        other.open({name});
        QCOMPARE(names(other), QStringLiteral("A,B"));
        // With room again the same document is saved.
        action(window, "save")->trigger();
        QVERIFY(!window.isWindowModified());
        KelViewerWindow third;
        third.open({name});
        QCOMPARE(names(third), QStringLiteral("A,B,C"));
    }

    void aKilledSaveLeavesAWholeFile()
    {
        const QString name = m_data->filePath(QStringLiteral("killed.keltracks"));
        for (int delay : {0, 3, 7, 13, 29}) {
            QProcess child;
            child.start(QCoreApplication::applicationFilePath(), {QLatin1String(CHILD), name});
            QVERIFY(child.waitForReadyRead(20000));
            QTest::qSleep(delay);
            child.kill();
            QVERIFY(child.waitForFinished());
            QCOMPARE(child.exitStatus(), QProcess::CrashExit);

            KelViewerWindow window;
            window.open({name});
            const QString found = names(window);
            QVERIFY2(found == QStringLiteral("A,B,C") || found == QStringLiteral("X,Y"), qPrintable(problems(window)));
        }
    }

    // ---- the session --------------------------------------------------------------------------------------------

    void theSessionContinues()
    {
        const QString name = m_data->filePath(QStringLiteral("s.keltracks"));
        KelGPXTrackSelection left;
        {
            KelViewerWindow window;
            fill(window, QStringLiteral("ABC"));
            KelErrorHistory errors;
            QVERIFY(window.document()->save(name, errors));
            left = window.document()->selection();
            QVERIFY(window.close());
        }
        KelViewerWindow window;
        QVERIFY(window.restoreSession());
        QVERIFY(window.document()->selection() == left);
        QCOMPARE(window.document()->fileName(), name);
        QVERIFY(!window.isWindowModified());
    }

    void aKilledSessionContinuesModified()
    {
        {
            KelViewerWindow window;
            fill(window, QStringLiteral("AB"));
            list(window)->selectRows({0});
            action(window, "delete")->trigger();
            // Written a moment after the change, without a question and without an end.
            const QString session = m_data->filePath(QStringLiteral("libKelGeoLocation/tests/session.keltracks"));
            QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(session), 20000);
        }
        KelViewerWindow window;
        QVERIFY(window.restoreSession());
        QCOMPARE(names(window), QStringLiteral("B"));
        QVERIFY(window.isWindowModified());
    }

    void thereIsNothingToContinueAtFirst()
    {
        KelViewerWindow window;
        QVERIFY(!window.restoreSession());
        QCOMPARE(problems(window), QString());
    }

    void aFullDiskIsSaidOfTheSessionOnce()
    {
        KelViewerWindow window;
        fill(window, QStringLiteral("AB"));
        {
            const FullDisk full;
            QTRY_VERIFY_WITH_TIMEOUT(!problems(window).isEmpty(), 20000);
        }
        QCOMPARE(names(window), QStringLiteral("A,B"));
    }

    // ---- closing ------------------------------------------------------------------------------------------------

    void closingAsksAboutChanges_data()
    {
        QTest::addColumn<QMessageBox::ButtonRole>("answer");
        QTest::addColumn<bool>("closed");
        QTest::addColumn<QString>("onDisk");
        QTest::addColumn<QString>("nextSession");
        QTest::newRow("save") << QMessageBox::AcceptRole << true << "B" << "B";
        QTest::newRow("discard") << QMessageBox::DestructiveRole << true << "A,B" << "A,B";
        QTest::newRow("cancel") << QMessageBox::RejectRole << false << "A,B" << "";
    }

    void closingAsksAboutChanges()
    {
        QFETCH(QMessageBox::ButtonRole, answer);
        QFETCH(bool, closed);
        QFETCH(QString, onDisk);
        QFETCH(QString, nextSession);
        const QString name = m_data->filePath(QStringLiteral("c.keltracks"));
        {
            KelViewerWindow window;
            QVERIFY(show(window));
            fill(window, QStringLiteral("AB"));
            KelErrorHistory errors;
            QVERIFY(window.document()->save(name, errors));
            list(window)->selectRows({0});
            action(window, "delete")->trigger();
            bool asked = false;
            whenAsked<QMessageBox>([&](QMessageBox &box) {
                asked = true;
                press(box, answer);
            });
            QCOMPARE(window.close(), closed);
            QVERIFY(asked);
            QCOMPARE(names(window), QStringLiteral("B"));
        }
        KelViewerWindow reader;
        reader.open({name});
        QCOMPARE(names(reader), onDisk);
        if (!closed)
            return;
        KelViewerWindow next;
        next.restoreSession();
        QCOMPARE(names(next), nextSession);
        QVERIFY(!next.isWindowModified());
    }

    void anUnchangedDocumentIsClosedWithoutAQuestion()
    {
        KelViewerWindow window;
        QVERIFY(show(window));
        fill(window, QStringLiteral("AB"));
        QVERIFY(window.close());
    }
};

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    if (argc == 3 && QLatin1String(argv[1]) == QLatin1String(CHILD))
        return saveForEver(QString::fromLocal8Bit(argv[2]));
    tst_KelViewerStorage test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_KelViewerStorage.moc"
