// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelIconRegistry.h>

#include <QColor>
#include <QGuiApplication>
#include <QIcon>
#include <QImage>
#include <QObject>
#include <QPainter>
#include <QPalette>
#include <QPixmap>
#include <QToolButton>
#include <QtTest>

#include <atomic>
#include <cstdlib>
#include <dlfcn.h>
#include <new>
#include <utility>

namespace
{

std::atomic<int> objectsMade = 0;

} // namespace

// Every object that anyone in the process makes is counted.
void *operator new(std::size_t size)
{
    ++objectsMade;
    if (void *memory = std::malloc(size ? size : 1))
        return memory;
    throw std::bad_alloc();
}

void operator delete(void *memory) noexcept
{
    std::free(memory);
}

void operator delete(void *memory, std::size_t) noexcept
{
    std::free(memory);
}

namespace
{

KelIconRegistry &registry()
{
    return KelSingleton<KelIconRegistry>::instance();
}

/// The colour of the first pixel that is covered entirely; invalid if there is none.
QColor inkOf(const QPixmap &pixmap)
{
    const QImage image = pixmap.toImage().convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qAlpha(image.pixel(x, y)) == 255)
                return QColor::fromRgb(image.pixel(x, y));
        }
    }
    return {};
}

/// Share of the pixels that are neither empty nor covered: the blur of the edges.
double shareOfHalfTones(const QPixmap &pixmap)
{
    const QImage image = pixmap.toImage().convertToFormat(QImage::Format_ARGB32);
    int halfTones = 0;
    int inked = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const int alpha = qAlpha(image.pixel(x, y));
            inked += alpha > 0;
            halfTones += alpha > 0 && alpha < 255;
        }
    }
    return inked > 0 ? double(halfTones) / inked : 1.0;
}

void addBuiltInNames()
{
    QTest::addColumn<QString>("name");
    for (const char *name : {"ico_editListItem", "ico_deleteListItem", "ico_fit_map", "ico_add_route"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

} // namespace

class tst_KelIconRegistry : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void builtInIcons_data();
    void builtInIcons();
    void densitiesAreDrawnAnew_data();
    void densitiesAreDrawnAnew();
    void drawingIsReadOnce_data();
    void drawingIsReadOnce();
    void buttonsOfOneNameHaveTheirOwnColours();
    void namesHaveTheirOwnDrawings();
    void colourIsThatOfTheApplicationsText();
    void colourIsThatOfTheButtonsText();
    void iconOutlivesItsButton();
    void modesHaveTheirColours();
    void narrowSizesKeepTheShape();
    void paintingOnADensePictureFillsIt();
    void unknownName();
    void hostsIconComesFirst();
    void nullButtonIsIgnored();
    void stateLivesInTheLibrary();
};

void tst_KelIconRegistry::builtInIcons_data()
{
    addBuiltInNames();
}

void tst_KelIconRegistry::builtInIcons()
{
    QFETCH(QString, name);
    const QIcon icon = registry().icon(name);
    QVERIFY(!icon.isNull());
    QVERIFY(inkOf(icon.pixmap(24, 24)).isValid());

    QToolButton button;
    registry().setIcon(&button, name);
    QVERIFY(!button.icon().isNull());
}

void tst_KelIconRegistry::densitiesAreDrawnAnew_data()
{
    addBuiltInNames();
}

void tst_KelIconRegistry::densitiesAreDrawnAnew()
{
    QFETCH(QString, name);
    const QIcon icon = registry().icon(name);
    const QPixmap single = icon.pixmap(QSize(24, 24), 1.0);
    const QPixmap triple = icon.pixmap(QSize(24, 24), 3.0);
    QCOMPARE(single.size(), QSize(24, 24));
    QCOMPARE(triple.size(), QSize(72, 72));
    QCOMPARE(triple.devicePixelRatio(), 3.0);
    // A picture that was merely enlarged would have as much blur as the small one, or more.
    QVERIFY(shareOfHalfTones(triple) < shareOfHalfTones(single));
}

void tst_KelIconRegistry::drawingIsReadOnce_data()
{
    addBuiltInNames();
}

void tst_KelIconRegistry::drawingIsReadOnce()
{
    QFETCH(QString, name);
    const QIcon first = registry().icon(name);
    QList<QIcon> icons;
    icons.reserve(100);

    const int before = objectsMade;
    for (int i = 0; i < 100; ++i)
        icons.append(registry().icon(name));
    const int perIcon = (objectsMade - before) / 100;

    // The icon and its engine, and what the look into the theme takes; a drawing alone has a dozen parts.
    QVERIFY2(perIcon >= 2 && perIcon < 10, qPrintable(QString::number(perIcon)));
    for (const QIcon &icon : std::as_const(icons))
        QCOMPARE(icon.pixmap(24, 24).toImage(), first.pixmap(24, 24).toImage());
}

void tst_KelIconRegistry::buttonsOfOneNameHaveTheirOwnColours()
{
    QToolButton red;
    QToolButton green;
    for (QToolButton *button : {&red, &green}) {
        QPalette palette = button->palette();
        palette.setColor(QPalette::ButtonText, button == &red ? Qt::red : Qt::green);
        button->setPalette(palette);
        registry().setIcon(button, QStringLiteral("ico_fit_map"));
    }
    QCOMPARE(inkOf(red.icon().pixmap(24, 24)), QColor(Qt::red));
    QCOMPARE(inkOf(green.icon().pixmap(24, 24)), QColor(Qt::green));
    QCOMPARE(inkOf(red.icon().pixmap(24, 24)), QColor(Qt::red));
}

void tst_KelIconRegistry::namesHaveTheirOwnDrawings()
{
    const QStringList names = {QStringLiteral("ico_editListItem"), QStringLiteral("ico_deleteListItem"),
                               QStringLiteral("ico_fit_map"), QStringLiteral("ico_add_route")};
    QList<QImage> pictures;
    for (const QString &name : names) {
        const QImage picture = registry().icon(name).pixmap(24, 24).toImage();
        QVERIFY(!pictures.contains(picture));
        pictures.append(picture);
    }
}

void tst_KelIconRegistry::colourIsThatOfTheApplicationsText()
{
    const QPalette before = QGuiApplication::palette();
    const QIcon icon = registry().icon(QStringLiteral("ico_fit_map"));
    QList<QColor> seen;
    for (const QColor &text : {QColor(10, 20, 30), QColor(240, 230, 220)}) {
        QPalette palette = before;
        palette.setColor(QPalette::ButtonText, text);
        QGuiApplication::setPalette(palette);
        seen.append(inkOf(icon.pixmap(24, 24)));
    }
    QGuiApplication::setPalette(before);
    QCOMPARE(seen, QList<QColor>({QColor(10, 20, 30), QColor(240, 230, 220)}));
}

void tst_KelIconRegistry::colourIsThatOfTheButtonsText()
{
    QToolButton button;
    registry().setIcon(&button, QStringLiteral("ico_fit_map"));
    QPalette palette = button.palette();
    palette.setColor(QPalette::ButtonText, Qt::green);
    button.setPalette(palette);
    QCOMPARE(inkOf(button.icon().pixmap(24, 24)), QColor(Qt::green));
    palette.setColor(QPalette::ButtonText, Qt::red);
    button.setPalette(palette);
    QCOMPARE(inkOf(button.icon().pixmap(24, 24)), QColor(Qt::red));
}

void tst_KelIconRegistry::iconOutlivesItsButton()
{
    QIcon icon;
    {
        QToolButton button;
        registry().setIcon(&button, QStringLiteral("ico_fit_map"));
        icon = button.icon();
    }
    QCOMPARE(inkOf(icon.pixmap(24, 24)), QGuiApplication::palette().color(QPalette::Active, QPalette::ButtonText));
}

void tst_KelIconRegistry::modesHaveTheirColours()
{
    QToolButton button;
    QPalette palette = button.palette();
    palette.setColor(QPalette::Active, QPalette::ButtonText, QColor(1, 2, 3));
    palette.setColor(QPalette::Disabled, QPalette::ButtonText, QColor(4, 5, 6));
    palette.setColor(QPalette::Active, QPalette::HighlightedText, QColor(7, 8, 9));
    button.setPalette(palette);
    registry().setIcon(&button, QStringLiteral("ico_fit_map"));
    const QIcon icon = button.icon();
    QCOMPARE(inkOf(icon.pixmap(QSize(24, 24), QIcon::Normal)), QColor(1, 2, 3));
    QCOMPARE(inkOf(icon.pixmap(QSize(24, 24), QIcon::Active)), QColor(1, 2, 3));
    QCOMPARE(inkOf(icon.pixmap(QSize(24, 24), QIcon::Disabled)), QColor(4, 5, 6));
    QCOMPARE(inkOf(icon.pixmap(QSize(24, 24), QIcon::Selected)), QColor(7, 8, 9));
}

void tst_KelIconRegistry::narrowSizesKeepTheShape()
{
    const QIcon icon = registry().icon(QStringLiteral("ico_fit_map"));
    QCOMPARE(icon.actualSize(QSize(48, 24)), QSize(24, 24));
    QCOMPARE(icon.actualSize(QSize(16, 24)), QSize(16, 16));

    // In a wide picture the drawing keeps its proportions: the outer quarters stay empty.
    const QImage wide = icon.pixmap(96, 24).toImage();
    for (int y = 0; y < wide.height(); ++y) {
        for (int x = 0; x < wide.width() / 4; ++x)
            QCOMPARE(wide.pixelColor(x, y).alpha(), 0);
    }
}

void tst_KelIconRegistry::paintingOnADensePictureFillsIt()
{
    QImage picture(48, 48, QImage::Format_ARGB32_Premultiplied);
    picture.setDevicePixelRatio(2.0);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    registry().icon(QStringLiteral("ico_fit_map")).paint(&painter, QRect(0, 0, 24, 24));
    painter.end();
    // The brackets reach into all four corners.
    for (const QPoint &corner : {QPoint(6, 6), QPoint(41, 6), QPoint(6, 41), QPoint(41, 41)})
        QCOMPARE(picture.pixelColor(corner).alpha(), 255);
}

void tst_KelIconRegistry::unknownName()
{
    QVERIFY(registry().icon(QStringLiteral("ico_nobodyKnows")).isNull());
    QVERIFY(registry().icon(QString()).isNull());

    QToolButton button;
    registry().setIcon(&button, QStringLiteral("ico_fit_map"));
    registry().setIcon(&button, QStringLiteral("ico_nobodyKnows"));
    QVERIFY(button.icon().isNull());
}

void tst_KelIconRegistry::hostsIconComesFirst()
{
    QPixmap blue(24, 24);
    blue.fill(Qt::blue);
    registry().registerIcon(QStringLiteral("ico_fit_map"), QIcon(blue));
    const QColor seen = inkOf(registry().icon(QStringLiteral("ico_fit_map")).pixmap(24, 24));
    registry().registerIcon(QStringLiteral("ico_fit_map"), QIcon());
    QCOMPARE(seen, QColor(Qt::blue));
    QVERIFY(inkOf(registry().icon(QStringLiteral("ico_fit_map")).pixmap(24, 24)) != QColor(Qt::blue));
}

void tst_KelIconRegistry::nullButtonIsIgnored()
{
    registry().setIcon(nullptr, QStringLiteral("ico_fit_map"));
}

void tst_KelIconRegistry::stateLivesInTheLibrary()
{
    // Programs and plugins find one state only if a library shows it to all of them, as the C++ ABI names it.
    QVERIFY(dlsym(RTLD_DEFAULT, "_ZZN12KelSingletonI15KelIconRegistryE5stateEvE8theState") != nullptr);
}

QTEST_MAIN(tst_KelIconRegistry)
#include "tst_KelIconRegistry.moc"
