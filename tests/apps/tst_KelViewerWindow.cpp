// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelViewerTestSupport.h"

#include <KelAddPlaceDialog.h>
#include <KelElidedLabel.h>
#include <KelExportDialog.h>
#include <KelGeoArcEdit.h>
#include <KelGeoLocationSettings.h>
#include <KelProblemBar.h>
#include <KelTemporarySettings.h>

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QDropEvent>
#include <QFile>
#include <QImageReader>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPushButton>
#include <QSlider>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QToolButton>

using namespace KelViewerTestSupport;

class tst_KelViewerWindow : public QObject
{
    Q_OBJECT

private:
    KelTemporarySettings m_settings;
    QTemporaryDir m_data;

    static QString example(const char *name)
    {
        return QStringLiteral(KEL_EXAMPLES_DIR "/tracks/") + QLatin1String(name);
    }
    static QString broken() { return QStringLiteral(KEL_TEST_DATA_DIR "/malformed-in-line-5.gpx"); }

    template <typename Widget>
    static Widget *field(KelViewerWindow &window, const char *name)
    {
        return window.findChild<Widget *>(QLatin1String(name));
    }

    static bool hasNoProblems(KelViewerWindow &window)
    {
        return window.findChild<KelProblemBar *>()->isHidden();
    }

private Q_SLOTS:
    void initTestCase()
    {
        qputenv("XDG_DATA_HOME", m_data.path().toUtf8());
    }

    // ---- import -------------------------------------------------------------------------------------------------

    void aBrokenFileBetweenGoodOnesIsReported()
    {
        KelViewerWindow window;
        QVERIFY(show(window));
        window.open({example("long-ride.gpx"), broken(), example("planned-route.gpx")});
        QTRY_COMPARE(window.document()->selection().count(), 2);
        QTRY_VERIFY(!hasNoProblems(window));
        const QString text = window.findChild<KelProblemBar *>()->text();
        QVERIFY2(text.startsWith(broken() + QStringLiteral(":5:")), qPrintable(text));
        QCOMPARE(text.count(QLatin1Char('\n')), 0);
        QTest::mouseClick(field<QPushButton>(window, "closeProblems"), Qt::LeftButton);
        QVERIFY(hasNoProblems(window));
    }

    void wholeFoldersAreRead()
    {
        KelViewerWindow window;
        window.open({QStringLiteral(KEL_EXAMPLES_DIR "/tracks")});
        // Five GPX files of one track each, and six placemarks in the KML file and in the KMZ file.
        QTRY_COMPARE(window.document()->selection().count(), 17);
        QVERIFY(hasNoProblems(window));
    }

    void whatCannotBeReadIsSaid_data()
    {
        QTest::addColumn<QString>("file");
        QTest::newRow("missing") << "/nowhere/there.gpx";
        QTest::newRow("no track file") << KEL_TEST_DATA_DIR "/../CMakeLists.txt";
    }

    void whatCannotBeReadIsSaid()
    {
        QFETCH(QString, file);
        KelViewerWindow window;
        window.open({file});
        QTRY_VERIFY(!hasNoProblems(window));
        QVERIFY(!window.document()->isModified());
    }

    void newTracksAreToldApart()
    {
        KelViewerWindow window;
        window.open({example("long-ride.gpx"), example("planned-route.gpx"), example("tour.kml")});
        QTRY_COMPARE(window.document()->selection().count(), 8);
        const KelGPXTrackSelection &selection = window.document()->selection();
        QCOMPARE(selection.configuration(0).lineColor(), KelGPXTrackConfiguration::defaultValue().lineColor());
        QVERIFY(selection.configuration(1).lineColor() != selection.configuration(0).lineColor());
        QCOMPARE(selection.configuration(2).lineColor(), QColor(0x1e, 0x64, 0xb4)); // as the KML file says
    }

    void anImportIsSelectedAndCanBeUndone()
    {
        KelViewerWindow window;
        QVERIFY(show(window));
        fill(window, QStringLiteral("AB"));
        window.open({example("long-ride.gpx")});
        QTRY_COMPARE(list(window)->selectedRows(), QList<int>{2});
        action(window, "undo")->trigger();
        QCOMPARE(names(window), QStringLiteral("A,B"));
        action(window, "redo")->trigger();
        QCOMPARE(window.document()->selection().count(), 3);
    }

    void aCancelledImportKeepsWhatWasRead()
    {
        KelViewerWindow window;
        QVERIFY(show(window));
        auto *cancel = field<QPushButton>(window, "cancelImport");
        QStringList many;
        for (int i = 0; i < 200; ++i)
            many.append(example("tour.kml"));
        window.open(many);
        QVERIFY(cancel->isVisible());
        QTRY_VERIFY(window.document()->selection().count() >= 6);
        QTest::mouseClick(cancel, Qt::LeftButton);
        const int kept = window.document()->selection().count();
        QVERIFY(kept >= 6 && kept < 1200);
        QVERIFY(!cancel->isVisible());
        QTest::qWait(50); // the file that was being read is thrown away
        QCOMPARE(window.document()->selection().count(), kept);
    }

    void droppedFilesAreOpened_data()
    {
        QTest::addColumn<bool>("onTheList");
        QTest::newRow("on the list") << true;
        QTest::newRow("on the map") << false;
    }

    void droppedFilesAreOpened()
    {
        QFETCH(bool, onTheList);
        KelViewerWindow window;
        QVERIFY(show(window));
        QWidget *target = onTheList ? list(window)->viewport() : static_cast<QWidget *>(&window);
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(example("long-ride.gpx")), QUrl::fromLocalFile(example("tour.kmz")),
                      QUrl(QStringLiteral("https://example.org/far.gpx"))});
        QDragEnterEvent enter(QPoint(50, 90), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(target, &enter);
        QVERIFY(enter.isAccepted());
        QDragMoveEvent move(QPoint(50, 90), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(target, &move);
        QVERIFY(move.isAccepted());
        QDropEvent drop(QPointF(50, 90), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(target, &drop);
        QVERIFY(drop.isAccepted());
        QTRY_COMPARE(window.document()->selection().count(), 7);
        QVERIFY(window.findChild<KelProblemBar *>()->text().contains(QStringLiteral("https://example.org/far.gpx")));
    }

    // ---- list ---------------------------------------------------------------------------------------------------

    void everyChangeOfTheListCanBeUndone_data()
    {
        QTest::addColumn<QList<int>>("rows");
        QTest::addColumn<QByteArray>("command");
        QTest::addColumn<QString>("result");
        QTest::newRow("delete one") << QList<int>{1} << QByteArray("delete") << "A,C,D";
        QTest::newRow("delete several") << QList<int>{0, 2} << QByteArray("delete") << "B,D";
        QTest::newRow("delete all") << QList<int>{0, 1, 2, 3} << QByteArray("delete") << "";
        QTest::newRow("move up") << QList<int>{2} << QByteArray("moveUp") << "A,C,B,D";
        QTest::newRow("move down") << QList<int>{0} << QByteArray("moveDown") << "B,A,C,D";
        QTest::newRow("duplicate two") << QList<int>{0, 3} << QByteArray("duplicate") << "A,B,C,D,A,D";
    }

    void everyChangeOfTheListCanBeUndone()
    {
        QFETCH(QList<int>, rows);
        QFETCH(QByteArray, command);
        QFETCH(QString, result);
        KelViewerWindow window;
        QVERIFY(show(window));
        fill(window, QStringLiteral("ABCD"));
        QVERIFY(!window.isWindowModified());
        list(window)->selectRows(rows);
        action(window, command.constData())->trigger();
        QCOMPARE(names(window), result);
        QVERIFY(window.isWindowModified());
        action(window, "undo")->trigger();
        QCOMPARE(names(window), QStringLiteral("A,B,C,D"));
        QVERIFY(!window.isWindowModified());
        action(window, "redo")->trigger();
        QCOMPARE(names(window), result);
    }

    void movingAtTheEndsDoesNothing()
    {
        KelViewerWindow window;
        fill(window, QStringLiteral("AB"));
        list(window)->selectRows({0});
        action(window, "moveUp")->trigger();
        list(window)->selectRows({1});
        action(window, "moveDown")->trigger();
        QCOMPARE(names(window), QStringLiteral("A,B"));
        QVERIFY(!window.document()->isModified());
    }

    void commandsNeedASelectedTrack()
    {
        KelViewerWindow window;
        fill(window, QStringLiteral("AB"));
        for (const char *name : {"rename", "delete", "duplicate", "moveUp", "moveDown", "fitSelected"})
            QVERIFY2(!action(window, name)->isEnabled(), name);
        list(window)->selectRows({1});
        for (const char *name : {"rename", "delete", "duplicate", "moveUp", "moveDown", "fitSelected"})
            QVERIFY2(action(window, name)->isEnabled(), name);
    }

    void theRowsButtonsWork()
    {
        KelViewerWindow window;
        QVERIFY(show(window));
        fill(window, QStringLiteral("ABC"));
        KelTrackListView *view = list(window);
        const auto button = [view](int row, const char *name) {
            QWidget *widget = view->indexWidget(view->model()->index(row, 0));
            return widget ? widget->findChild<QToolButton *>(QLatin1String(name)) : nullptr;
        };
        QTRY_VERIFY(button(1, "editButton"));

        QTest::mouseClick(button(1, "editButton"), Qt::LeftButton);
        QCOMPARE(view->selectedRows(), QList<int>{1});
        QCOMPARE(field<QLineEdit>(window, "trackName")->text(), QStringLiteral("B"));

        // Marks the track beside those that are selected.
        QTest::mouseClick(button(0, "addButton"), Qt::LeftButton);
        QCOMPARE(view->selectedRows(), (QList<int>{0, 1}));

        auto *map = window.findChild<KelMapView *>();
        const double before = map->viewport().worldSize();
        QTest::mouseClick(button(2, "zoomToButton"), Qt::LeftButton);
        QTRY_VERIFY(map->viewport().worldSize() > 10 * before);

        QTest::mouseClick(button(0, "deleteButton"), Qt::LeftButton);
        QTRY_COMPARE(names(window), QStringLiteral("B,C"));
    }

    void theDeleteKeyBelongsToTheList()
    {
        KelViewerWindow window;
        QVERIFY(show(window));
        window.activateWindow();
        fill(window, QStringLiteral("AB"));
        list(window)->selectRows({0});
        auto *name = field<QLineEdit>(window, "trackName");
        name->setFocus();
        QTest::keyClick(name, Qt::Key_Delete);
        QCOMPARE(names(window), QStringLiteral("A,B"));
        list(window)->setFocus();
        QTest::keyClick(list(window), Qt::Key_Delete);
        QCOMPARE(names(window), QStringLiteral("B"));
        // The next row is selected, so that the key can be pressed again.
        QCOMPARE(list(window)->selectedRows(), QList<int>{0});
    }

    void enterZoomsToTheTrack()
    {
        KelViewerWindow window;
        QVERIFY(show(window));
        fill(window, QStringLiteral("AB"));
        list(window)->selectRows({1});
        auto *map = window.findChild<KelMapView *>();
        const double before = map->viewport().worldSize();
        QTest::keyClick(list(window), Qt::Key_Return);
        QVERIFY(map->viewport().worldSize() > 10 * before);
    }

    void selectedRowsLookDifferent()
    {
        KelViewerWindow window;
        QVERIFY(show(window));
        fill(window, QStringLiteral("AB"));
        KelTrackListView *view = list(window);
        view->selectRows({1});
        QTRY_VERIFY(view->indexWidget(view->model()->index(1, 0)));
        const QImage image = view->viewport()->grab().toImage();
        const auto color = [&](int row) {
            // Left of the track's colour, where the background is bare.
            const QRect rect = view->visualRect(view->model()->index(row, 0));
            return image.pixelColor(rect.left() + 1, rect.center().y());
        };
        QVERIFY(color(0) != color(1));
    }

    void aNewTrackBlinks()
    {
        KelViewerWindow window;
        QVERIFY(show(window));
        fill(window, QStringLiteral("AB"));
        KelTrackListView *view = list(window);
        const QColor highlight = view->palette().color(QPalette::Active, QPalette::Highlight);
        view->drawAttention(1);
        // While it blinks, the label has the colour of selections.
        QTRY_VERIFY(([&] {
            QWidget *row = view->indexWidget(view->model()->index(1, 0));
            auto *label = row ? row->findChild<KelElidedLabel *>() : nullptr;
            if (!label || label->width() < 10)
                return false;
            const QImage image = label->grab().toImage();
            return image.pixelColor(image.width() - 8, image.height() / 2) == highlight;
        }()));
    }

    void stylingKeepsTheRowsWidgets()
    {
        KelViewerWindow window;
        QVERIFY(show(window));
        fill(window, QStringLiteral("AB"));
        KelTrackListView *view = list(window);
        view->selectRows({0});
        QTRY_VERIFY(view->indexWidget(view->model()->index(0, 0)));
        const QWidget *before = view->indexWidget(view->model()->index(0, 0));
        field<QDoubleSpinBox>(window, "lineWidth")->setValue(7);
        QCOMPARE(view->indexWidget(view->model()->index(0, 0)), before);
        QCOMPARE(view->trackModel()->trackAt(0).lineWidth().value(), 7.0);
    }

    // ---- names and styles ---------------------------------------------------------------------------------------

    void aTrackIsRenamedInTheStyleEditor()
    {
        KelViewerWindow window;
        QVERIFY(show(window));
        fill(window, QStringLiteral("AB"));
        list(window)->selectRows({1});
        action(window, "rename")->trigger();
        auto *name = field<QLineEdit>(window, "trackName");
        QCOMPARE(name->selectedText(), QStringLiteral("B"));
        QTest::keyClicks(name, QStringLiteral("new name"));
        QTest::keyClick(name, Qt::Key_Return);
        QCOMPARE(names(window), QStringLiteral("A,new name"));
        action(window, "undo")->trigger();
        QCOMPARE(names(window), QStringLiteral("A,B"));
        QCOMPARE(name->text(), QStringLiteral("B"));
    }

    void eachValueChangesAloneInAllSelectedTracks_data()
    {
        using Change = std::function<void(KelViewerWindow &)>;
        using Read = std::function<QVariant(const KelGPXTrackConfiguration &)>;
        QTest::addColumn<Change>("change");
        QTest::addColumn<Read>("read");
        QTest::addColumn<QVariant>("expected");
        const auto number = [](const char *name, int value) {
            return Change([=](KelViewerWindow &window) {
                if (auto *box = field<QDoubleSpinBox>(window, name))
                    box->setValue(value);
                else
                    field<QSpinBox>(window, name)->setValue(value);
            });
        };
        const auto choose = [](const char *name, const QString &text) {
            return Change([=](KelViewerWindow &window) {
                auto *box = field<QComboBox>(window, name);
                const int row = box->findText(text);
                QVERIFY(row >= 0);
                box->setCurrentIndex(row);
                Q_EMIT box->activated(row);
            });
        };
        const auto click = [](const char *name) {
            return Change([=](KelViewerWindow &window) { field<QCheckBox>(window, name)->click(); });
        };
        QTest::newRow("line width") << number("lineWidth", 13)
            << Read([](const auto &c) { return c.lineWidth().value(); }) << QVariant(13.0);
        QTest::newRow("halo") << number("haloWidth", 21)
            << Read([](const auto &c) { return c.haloWidth().value(); }) << QVariant(21.0);
        QTest::newRow("smoothing") << number("smoothingStrength", 40)
            << Read([](const auto &c) { return c.smoothingStrength(); }) << QVariant(40);
        QTest::newRow("steps") << number("smoothingSteps", 12)
            << Read([](const auto &c) { return c.smoothingSteps(); }) << QVariant(12);
        QTest::newRow("dashes") << choose("penStyle", QStringLiteral("gepunktet"))
            << Read([](const auto &c) { return int(c.penStyle().value()); }) << QVariant(int(Qt::DotLine));
        QTest::newRow("shape") << choose("shape", QStringLiteral("Pfeil"))
            << Read([](const auto &c) { return c.markerShape().toInt(); }) << QVariant(int(MarkerArrow));
        QTest::newRow("stroke") << click("stroke")
            << Read([](const auto &c) { return c.hasDrawOption(DisplayStroke); }) << QVariant(false);
        QTest::newRow("fill") << click("fill")
            << Read([](const auto &c) { return c.hasDrawOption(DisplayFill); }) << QVariant(true);
    }

    void eachValueChangesAloneInAllSelectedTracks()
    {
        using Change = std::function<void(KelViewerWindow &)>;
        using Read = std::function<QVariant(const KelGPXTrackConfiguration &)>;
        QFETCH(Change, change);
        QFETCH(Read, read);
        QFETCH(QVariant, expected);
        KelViewerWindow window;
        QVERIFY(show(window));
        fill(window, QStringLiteral("ABC"));
        KelGPXTrackSelection prepared = window.document()->selection();
        KelGPXTrackConfiguration other = prepared.configuration(2);
        other.setLineColor(Qt::magenta);
        prepared.setConfiguration(2, other);
        window.document()->restore(prepared, QString(), false);

        list(window)->selectRows({0, 2});
        change(window);
        const KelGPXTrackSelection &after = window.document()->selection();
        QCOMPARE(read(after.configuration(0)), expected);
        QCOMPARE(read(after.configuration(2)), expected);
        QVERIFY(after.configuration(1) == prepared.configuration(1));
        QCOMPARE(after.configuration(2).lineColor(), QColor(Qt::magenta)); // no other value came along
        action(window, "undo")->trigger();
        QVERIFY(window.document()->selection() == prepared);
    }

    void quickStepsOfOneValueAreUndoneAtOnce()
    {
        KelViewerWindow window;
        fill(window, QStringLiteral("A"));
        list(window)->selectRows({0});
        auto *width = field<QDoubleSpinBox>(window, "lineWidth");
        const double before = width->value();
        for (int value : {11, 12, 13})
            width->setValue(value);
        QCOMPARE(window.document()->undoStack()->count(), 1);
        field<QSpinBox>(window, "smoothingSteps")->setValue(5);
        QCOMPARE(window.document()->undoStack()->count(), 2);
        action(window, "undo")->trigger();
        action(window, "undo")->trigger();
        QCOMPARE(width->value(), before);
    }

    void theShownStyleBecomesTheDefault()
    {
        KelViewerWindow window;
        fill(window, QStringLiteral("A"));
        list(window)->selectRows({0});
        field<QDoubleSpinBox>(window, "lineWidth")->setValue(3);
        field<QPushButton>(window, "asDefault")->click();
        QCOMPARE(KelGeoLocationSettings::instance().defaultTrackConfiguration().lineWidth().value(), 3.0);
        KelGeoLocationSettings::instance().setDefaultTrackConfiguration(KelGPXTrackConfiguration::defaultValue());
    }

    void theCroppingSliderFadesTheMap()
    {
        KelViewerWindow window;
        fill(window, QStringLiteral("A"));
        auto *slider = field<QSlider>(window, "cropping");
        QCOMPARE(slider->value(), 255);
        for (int value : {200, 150, 100})
            slider->setValue(value);
        QCOMPARE(window.document()->selection().nominalCroppingOpacity(), 100);
        QCOMPARE(window.document()->undoStack()->count(), 1);
        action(window, "undo")->trigger();
        QCOMPARE(slider->value(), 255);
    }

    // ---- places and lines ---------------------------------------------------------------------------------------

    void aPlaceIsAdded()
    {
        KelViewerWindow window;
        whenAsked<KelAddPlaceDialog>([](KelAddPlaceDialog &dialog) {
            dialog.findChild<QLineEdit *>(QStringLiteral("name"))->setText(QStringLiteral("Here"));
            const QList<KelGeoArcEdit *> arcs = dialog.findChildren<KelGeoArcEdit *>();
            QCOMPARE(arcs.size(), 2);
            arcs.at(0)->setGeoArc(KelGeoArc(-33.5));
            arcs.at(1)->setGeoArc(KelGeoArc(151.25));
            dialog.accept();
        });
        action(window, "addPlace")->trigger();
        QCOMPARE(names(window), QStringLiteral("Here"));
        const KelGeoPosition position = window.document()->selection().firstPoint();
        QCOMPARE(position.latitude().decimalDegrees(), -33.5);
        QCOMPARE(position.longitude().decimalDegrees(), 151.25);
        action(window, "undo")->trigger();
        QVERIFY(window.document()->selection().isEmpty());
    }

    void aBeelineIsAddedFromTheSamplePlaces()
    {
        KelViewerWindow window;
        whenAsked<KelAddPlaceDialog>([](KelAddPlaceDialog &dialog) { dialog.accept(); });
        action(window, "addBeeline")->trigger();
        QCOMPARE(window.document()->selection().count(), 1);
        QVERIFY(window.document()->selection().value(0).track().countPoints() > 2);
        QVERIFY(names(window).contains(QStringLiteral(" – ")));
    }

    void impossiblePositionsAreNotAdded_data()
    {
        QTest::addColumn<double>("latitude");
        QTest::addColumn<double>("longitude");
        QTest::newRow("north of the pole") << 90.5 << 8.0;
        QTest::newRow("round the world") << 50.0 << 200.0;
        QTest::newRow("not set") << 0.0 << 0.0;
    }

    void impossiblePositionsAreNotAdded()
    {
        QFETCH(double, latitude);
        QFETCH(double, longitude);
        KelAddPlaceDialog dialog(KelAddPlaceDialog::Place);
        const QList<KelGeoArcEdit *> arcs = dialog.findChildren<KelGeoArcEdit *>();
        auto *ok = dialog.findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok);
        QVERIFY(ok->isEnabled());
        arcs.at(0)->setGeoArc(KelGeoArc(latitude));
        arcs.at(1)->setGeoArc(KelGeoArc(longitude));
        QTest::keyClick(arcs.at(0)->findChild<QSpinBox *>(), Qt::Key_Return); // finishes the editing
        QVERIFY(!ok->isEnabled());
        QVERIFY(!dialog.findChild<QLabel *>(QStringLiteral("problem"))->text().isEmpty());
    }

    // ---- pictures -----------------------------------------------------------------------------------------------

    void picturesAreExported_data()
    {
        QTest::addColumn<QString>("suffix");
        QTest::addColumn<QByteArray>("magic");
        QTest::newRow("PNG") << "png" << QByteArray("\x89PNG");
        QTest::newRow("PDF") << "pdf" << QByteArray("%PDF-");
        QTest::newRow("SVG") << "svg" << QByteArray("<?xml");
    }

    void picturesAreExported()
    {
        QFETCH(QString, suffix);
        QFETCH(QByteArray, magic);
        QTemporaryDir dir;
        KelViewerWindow window;
        QVERIFY(show(window));
        fill(window, QStringLiteral("A"));
        const QString name = dir.filePath(QStringLiteral("map.") + suffix);
        QVERIFY(window.exportPicture(name, QSize(300, 200), 2.0));
        QFile file(name);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QVERIFY(file.readAll().startsWith(magic));
        if (suffix == QLatin1String("png"))
            QCOMPARE(QImageReader(name).size(), QSize(600, 400));
        QVERIFY(hasNoProblems(window));
    }

    void failedExportsAreReported_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("no such folder") << "/nowhere/map.png";
        QTest::newRow("no such format") << "map.doc";
    }

    void failedExportsAreReported()
    {
        QFETCH(QString, name);
        KelViewerWindow window;
        QVERIFY(!window.exportPicture(name, QSize(300, 200), 1.0));
        QVERIFY(window.findChild<KelProblemBar *>()->text().startsWith(name + QLatin1Char(':')));
    }

    void theExportDialogTellsThePixels()
    {
        KelExportDialog dialog(QSize(800, 600));
        dialog.findChild<QDoubleSpinBox *>()->setValue(2.5);
        QCOMPARE(dialog.size(), QSize(800, 600));
        QCOMPARE(dialog.scaleFactor(), 2.5);
        QStringList texts;
        const QList<QLabel *> labels = dialog.findChildren<QLabel *>();
        for (QLabel *label : labels)
            texts.append(label->text());
        QVERIFY(texts.join(QLatin1Char('|')).contains(QStringLiteral("2000 × 1500")));
    }

    // ---- for everybody ------------------------------------------------------------------------------------------

    void everyFieldHasANameForScreenReaders()
    {
        KelViewerWindow window;
        const QList<QWidget *> widgets = window.findChildren<QWidget *>();
        int fields = 0;
        for (QWidget *widget : widgets) {
            const bool isField = widget->inherits("QAbstractSpinBox") || widget->inherits("QComboBox")
                || widget->inherits("QSlider") || widget->inherits("QPlainTextEdit") || widget->inherits("KelMapView")
                || widget->inherits("KelTrackListView");
            if (!isField)
                continue;
            ++fields;
            QVERIFY2(!widget->accessibleName().isEmpty(), qPrintable(widget->objectName()));
        }
        QVERIFY(fields >= 10);
    }

    void aDarkWindowHasADarkMap()
    {
        KelViewerWindow window;
        auto *map = window.findChild<KelMapView *>();
        QVERIFY(map->background()->baseColor().lightness() > 128);
        QPalette dark = window.palette();
        dark.setColor(QPalette::Window, Qt::black);
        dark.setColor(QPalette::WindowText, Qt::white);
        window.setPalette(dark);
        QVERIFY(map->background()->baseColor().lightness() < 128);
    }
};

QTEST_MAIN(tst_KelViewerWindow)
#include "tst_KelViewerWindow.moc"
