// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelGeoArcEdit.h>
#include <KelLatitude.h>
#include <KelLongitude.h>
#include <KelTemporarySettings.h>
#include <KelViewerLanguage.h>
#include <KelViewerWindow.h>

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QDomDocument>
#include <QFile>
#include <QKeySequence>
#include <QLabel>
#include <QLocale>
#include <QMenu>
#include <QMenuBar>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QTranslator>

namespace
{

/// One catalogue and the sources whose texts it translates.
struct Catalogue
{
    QString file;
    QString sources;
    QStringList options;
};

const QList<Catalogue> &catalogues()
{
    static const QList<Catalogue> all = {
        {QStringLiteral("libs/KelGeoLocation/translations/kelgeolocation_en.ts"), QStringLiteral("libs"), {}},
        {QStringLiteral("apps/kel-viewer/translations/kel-viewer_en.ts"), QStringLiteral("apps/kel-viewer"), {}},
        {QStringLiteral("apps/kel-viewer/translations/kel-viewer_de.ts"), QStringLiteral("apps/kel-viewer"),
         {QStringLiteral("-pluralonly")}},
    };
    return all;
}

struct Counts
{
    int texts = 0;
    int unfinished = 0;
};

Counts count(const QString &fileName)
{
    QFile file(fileName);
    QDomDocument document;
    if (!file.open(QIODevice::ReadOnly) || !document.setContent(&file))
        return {};
    Counts result;
    const QDomNodeList translations = document.elementsByTagName(QStringLiteral("translation"));
    for (int i = 0; i < translations.size(); ++i) {
        const QDomElement translation = translations.at(i).toElement();
        ++result.texts;
        if (translation.hasAttribute(QStringLiteral("type")) || translation.text().isEmpty())
            ++result.unfinished;
    }
    return result;
}

/// Texts whose mnemonics work side by side, as far as they have one; those with a clash twice.
QStringList clashes(const QStringList &texts)
{
    QHash<QKeySequence, QString> used;
    QStringList result;
    for (const QString &text : texts) {
        const QKeySequence mnemonic = QKeySequence::mnemonic(text);
        if (mnemonic.isEmpty())
            continue;
        if (used.contains(mnemonic))
            result.append(used.value(mnemonic) + QStringLiteral(" / ") + text);
        used.insert(mnemonic, text);
    }
    return result;
}

} // namespace

class tst_KelViewerLanguage : public QObject
{
    Q_OBJECT

private:
    KelTemporarySettings m_settings;
    QTemporaryDir m_data;

    /// The program itself tells its texts: the window is made in the language.
    static void use(const QString &language)
    {
        const QList<QTranslator *> old = qApp->findChildren<QTranslator *>(QString(), Qt::FindDirectChildrenOnly);
        for (QTranslator *translator : old) {
            QCoreApplication::removeTranslator(translator);
            delete translator;
        }
        KelViewerLanguage::use(language);
    }

private Q_SLOTS:
    void initTestCase()
    {
        qputenv("XDG_DATA_HOME", m_data.path().toUtf8());
    }

    void everyTextIsTranslated_data()
    {
        QTest::addColumn<int>("index");
        for (int i = 0; i < catalogues().size(); ++i)
            QTest::newRow(qPrintable(catalogues().at(i).file)) << i;
    }

    void everyTextIsTranslated()
    {
        QFETCH(int, index);
        const Catalogue &catalogue = catalogues().at(index);
        const QString original = QDir(QStringLiteral(KEL_SOURCE_DIR)).filePath(catalogue.file);
        const Counts before = count(original);
        QVERIFY(before.texts > 0);
        QCOMPARE(before.unfinished, 0);

        // What the sources say today: the same texts, none of them new and none gone.
        QTemporaryDir dir;
        const QString copy = dir.filePath(QStringLiteral("catalogue.ts"));
        QVERIFY(QFile::copy(original, copy));
        QProcess lupdate;
        lupdate.setWorkingDirectory(QStringLiteral(KEL_SOURCE_DIR));
        lupdate.start(QStringLiteral(KEL_LUPDATE),
                      catalogue.options
                          + QStringList{QStringLiteral("-silent"), QStringLiteral("-no-obsolete"),
                                        QStringLiteral("-locations"), QStringLiteral("none"), catalogue.sources,
                                        QStringLiteral("-ts"), copy});
        QVERIFY(lupdate.waitForFinished());
        QCOMPARE(lupdate.exitCode(), 0);
        const Counts after = count(copy);
        QCOMPARE(after.unfinished, 0);
        QCOMPARE(after.texts, before.texts);
    }

    void theWindowSpeaks_data()
    {
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("undo");
        QTest::addColumn<QString>("fileMenu");
        QTest::addColumn<QString>("title");
        QTest::newRow("German") << "de" << "&Rückgängig" << "&Datei" << "Neue Auswahl[*] – Strecken";
        QTest::newRow("Austrian") << "de_AT" << "&Rückgängig" << "&Datei" << "Neue Auswahl[*] – Strecken";
        QTest::newRow("English") << "en" << "&Undo" << "&File" << "New selection[*] – Tracks";
        QTest::newRow("French reads English") << "fr" << "&Undo" << "&File" << "New selection[*] – Tracks";
    }

    void theWindowSpeaks()
    {
        QFETCH(QString, language);
        QFETCH(QString, undo);
        QFETCH(QString, fileMenu);
        QFETCH(QString, title);
        use(language);
        KelViewerWindow window;
        QCOMPARE(window.findChild<QAction *>(QStringLiteral("undo"))->text(), undo);
        QCOMPARE(window.menuBar()->actions().first()->text(), fileMenu);
        QCOMPARE(window.windowTitle(), title);
    }

    void theLibrarySpeaksToo()
    {
        const auto hemisphere = [](bool latitude) {
            KelGeoArcEdit edit(nullptr, latitude);
            return edit.findChild<QComboBox *>()->itemText(0);
        };
        use(QStringLiteral("de"));
        QCOMPARE(hemisphere(true), QStringLiteral("Nord"));
        QCOMPARE(hemisphere(false), QStringLiteral("Ost"));
        QCOMPARE(KelLongitude(8.0).toString(true).contains(QStringLiteral("Ost")), true);
        use(QStringLiteral("en"));
        QCOMPARE(hemisphere(true), QStringLiteral("North"));
        QCOMPARE(hemisphere(false), QStringLiteral("East"));
        QCOMPARE(KelLongitude(8.0).toString(true).contains(QStringLiteral("east")), true);
    }

    void pluralsAreRight_data()
    {
        QTest::addColumn<QString>("language");
        QTest::addColumn<int>("number");
        QTest::addColumn<QString>("text");
        QTest::newRow("one in German") << "de" << 1 << "1 Strecke gelesen.";
        QTest::newRow("two in German") << "de" << 2 << "2 Strecken gelesen.";
        QTest::newRow("one in English") << "en" << 1 << "1 track read.";
        QTest::newRow("two in English") << "en" << 2 << "2 tracks read.";
    }

    void pluralsAreRight()
    {
        QFETCH(QString, language);
        QFETCH(int, number);
        QFETCH(QString, text);
        use(language);
        QCOMPARE(KelViewerWindow::tr("%n Strecke(n) gelesen.", nullptr, number), text);
    }

    void mnemonicsDoNotClash_data()
    {
        QTest::addColumn<QString>("language");
        QTest::newRow("German") << "de";
        QTest::newRow("English") << "en";
    }

    void mnemonicsDoNotClash()
    {
        QFETCH(QString, language);
        use(language);
        KelViewerWindow window;
        QStringList inWindow;
        const QList<QAction *> menus = window.menuBar()->actions();
        for (QAction *menu : menus) {
            inWindow.append(menu->text());
            QStringList inMenu;
            const QList<QAction *> actions = menu->menu()->actions();
            for (QAction *action : actions)
                inMenu.append(action->text());
            QCOMPARE(clashes(inMenu), QStringList());
        }
        const QList<QLabel *> labels = window.findChildren<QLabel *>();
        for (QLabel *label : labels) {
            if (label->buddy())
                inWindow.append(label->text());
        }
        const QList<QAbstractButton *> buttons = window.findChildren<QAbstractButton *>();
        for (QAbstractButton *button : buttons) {
            // Buttons of the tool bar carry their action's text, but have no mnemonic.
            if (!button->text().isEmpty() && !button->parentWidget()->inherits("QToolBar"))
                inWindow.append(button->text());
        }
        QVERIFY(inWindow.size() > 15);
        QCOMPARE(clashes(inWindow), QStringList());
    }

    void cleanupTestCase()
    {
        QLocale::setDefault(QLocale::c());
    }
};

QTEST_MAIN(tst_KelViewerLanguage)
#include "tst_KelViewerLanguage.moc"
