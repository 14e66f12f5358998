// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelLogger.h>

#include <QList>
#include <QLoggingCategory>
#include <QObject>
#include <QString>
#include <QtTest>

namespace
{

struct Line
{
    QtMsgType type;
    QString category;
    QString text;
};

QList<Line> lines;

void record(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    lines.append({type, QString::fromUtf8(context.category), text});
}

} // namespace

class tst_KelLogger : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void writesTheTextAsItIs_data();
    void writesTheTextAsItIs();
    void settingsAreAWarningOfTheirOwn();
    void canBeSwitchedOff();

private:
    QtMessageHandler m_before = nullptr;
};

void tst_KelLogger::init()
{
    lines.clear();
    m_before = qInstallMessageHandler(record);
}

void tst_KelLogger::cleanup()
{
    qInstallMessageHandler(m_before);
}

void tst_KelLogger::writesTheTextAsItIs_data()
{
    QTest::addColumn<QString>("text");

    QTest::newRow("the choice of a factory") << "ACTION:useFactory VALUE:*.kml,*.kmz";
    QTest::newRow("quotes and backslashes") << "\"a\\b\"";
    QTest::newRow("percent signs") << "100 %s %1";
    QTest::newRow("letters beyond ASCII") << QStringLiteral("Übergröße 東京");
}

void tst_KelLogger::writesTheTextAsItIs()
{
    QFETCH(QString, text);
    KelLogger::logOSM(text);
    QCOMPARE(lines.size(), 1);
    QCOMPARE(lines.first().type, QtInfoMsg);
    QCOMPARE(lines.first().category, QStringLiteral("kel.osm"));
    QCOMPARE(lines.first().text, text);
}

void tst_KelLogger::settingsAreAWarningOfTheirOwn()
{
    KelLogger::logSettings(QStringLiteral("cannot save \"a\" %1"));
    QCOMPARE(lines.size(), 1);
    QCOMPARE(lines.first().type, QtWarningMsg);
    QCOMPARE(lines.first().category, QStringLiteral("kel.settings"));
    QCOMPARE(lines.first().text, QStringLiteral("cannot save \"a\" %1"));
}

void tst_KelLogger::canBeSwitchedOff()
{
    QLoggingCategory::setFilterRules(QStringLiteral("kel.osm=false"));
    KelLogger::logOSM(QStringLiteral("unheard"));
    QLoggingCategory::setFilterRules(QString());
    QVERIFY(lines.isEmpty());
}

QTEST_GUILESS_MAIN(tst_KelLogger)
#include "tst_KelLogger.moc"
