// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelRequestDiskAccess.h>

#include <QDir>
#include <QObject>
#include <QSettings>
#include <QStringList>
#include <QTemporaryDir>
#include <QtTest>

#include <KelTemporarySettings.h>

#include <dlfcn.h>

namespace
{

KelRequestDiskAccess &diskAccess()
{
    return KelSingleton<KelRequestDiskAccess>::instance();
}

} // namespace

class tst_KelRequestDiskAccess : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void modes();
    void passesOnWhatIsAsked();
    void returnsTheChosenPath();
    void cancellingReturnsNothingAndRemembersNothing();
    void remembersTheDirectory();
    void modesRememberApart();
    void startPathGoesBeforeTheRememberedDirectory();
    void aRememberedDirectoryThatIsGoneIsNotOffered();
    void withoutAGraphicalApplicationNobodyIsAsked();
    void stateLivesInTheLibrary();

private:
    QString ask(KelDiskAccessMode mode, const QString &startPath = QString());

    KelTemporarySettings m_settings;
    QTemporaryDir m_dir;
    QString m_answer;
    QStringList m_asked;
};

void tst_KelRequestDiskAccess::init()
{
    m_settings.clear();
    m_asked.clear();
    m_answer.clear();
    diskAccess().setDialog([this](const QString &title, const QString &directory, const QString &filter) {
        m_asked = {title, directory, filter};
        return m_answer;
    });
}

void tst_KelRequestDiskAccess::cleanup()
{
    diskAccess().setDialog({});
}

QString tst_KelRequestDiskAccess::ask(KelDiskAccessMode mode, const QString &startPath)
{
    return diskAccess().getOpenFileName(mode, QStringLiteral("filter"), QStringLiteral("title"), startPath);
}

void tst_KelRequestDiskAccess::modes()
{
    QCOMPARE(static_cast<int>(KelDiskAccessMode::Unknown), 0);
    QCOMPARE(static_cast<int>(KelDiskAccessMode::Read), 1);
    QCOMPARE(static_cast<int>(KelDiskAccessMode::Write), 2);
}

void tst_KelRequestDiskAccess::passesOnWhatIsAsked()
{
    ask(KelDiskAccessMode::Read);
    QCOMPARE(m_asked, QStringList({QStringLiteral("title"), QString(), QStringLiteral("filter")}));
}

void tst_KelRequestDiskAccess::returnsTheChosenPath()
{
    m_answer = m_dir.filePath(QStringLiteral("Weg übers Feld.gpx"));
    QCOMPARE(ask(KelDiskAccessMode::Read), m_answer);
}

void tst_KelRequestDiskAccess::cancellingReturnsNothingAndRemembersNothing()
{
    QCOMPARE(ask(KelDiskAccessMode::Read), QString());
    QVERIFY(QSettings().allKeys().isEmpty());

    m_answer = m_dir.filePath(QStringLiteral("a.gpx"));
    ask(KelDiskAccessMode::Read);
    m_answer.clear();
    ask(KelDiskAccessMode::Read);
    ask(KelDiskAccessMode::Read);
    QCOMPARE(m_asked.at(1), m_dir.path());
}

void tst_KelRequestDiskAccess::remembersTheDirectory()
{
    m_answer = m_dir.filePath(QStringLiteral("a.gpx"));
    ask(KelDiskAccessMode::Read);
    ask(KelDiskAccessMode::Read);
    QCOMPARE(m_asked.at(1), m_dir.path());
}

void tst_KelRequestDiskAccess::modesRememberApart()
{
    m_answer = m_dir.filePath(QStringLiteral("a.gpx"));
    ask(KelDiskAccessMode::Read);
    ask(KelDiskAccessMode::Write);
    QCOMPARE(m_asked.at(1), QString());
    m_answer = QDir::rootPath() + QStringLiteral("b.gpx");
    ask(KelDiskAccessMode::Write);
    ask(KelDiskAccessMode::Read);
    QCOMPARE(m_asked.at(1), m_dir.path());
    ask(KelDiskAccessMode::Unknown);
    QCOMPARE(m_asked.at(1), QString());
}

void tst_KelRequestDiskAccess::startPathGoesBeforeTheRememberedDirectory()
{
    m_answer = m_dir.filePath(QStringLiteral("a.gpx"));
    ask(KelDiskAccessMode::Read);
    ask(KelDiskAccessMode::Read, QStringLiteral("/start/here"));
    QCOMPARE(m_asked.at(1), QStringLiteral("/start/here"));
}

void tst_KelRequestDiskAccess::aRememberedDirectoryThatIsGoneIsNotOffered()
{
    m_answer = m_dir.filePath(QStringLiteral("gone/a.gpx"));
    ask(KelDiskAccessMode::Read);
    ask(KelDiskAccessMode::Read);
    QCOMPARE(m_asked.at(1), QString());
}

void tst_KelRequestDiskAccess::withoutAGraphicalApplicationNobodyIsAsked()
{
    diskAccess().setDialog({});
    QCOMPARE(ask(KelDiskAccessMode::Read), QString());
}

void tst_KelRequestDiskAccess::stateLivesInTheLibrary()
{
    // Programs and plugins find one state only if a library shows it to all of them, as the C++ ABI names it.
    QVERIFY(dlsym(RTLD_DEFAULT, "_ZZN12KelSingletonI20KelRequestDiskAccessE5stateEvE8theState") != nullptr);
}

QTEST_GUILESS_MAIN(tst_KelRequestDiskAccess)
#include "tst_KelRequestDiskAccess.moc"
