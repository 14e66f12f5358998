// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

// The renderer takes many short cuts, and not one pixel may tell. Random selections are painted by it and by a plain
// reference and compared bit for bit. KEL_RANDOM_CASES sets another number of random cases, KEL_RANDOM_SEED another
// beginning.

#include "KelReferenceRenderer.h"
#include "KelRenderTestSupport.h"

#include <KelMemoryLimit.h>
#include <KelTestSupport.h>

#include <QColorSpace>
#include <QRegularExpression>
#include <QtTest>

#include <cmath>
#include <random>

using namespace KelRenderTest;

namespace
{

constexpr int RANDOM_CASES = 2000;

class Random
{
public:
    explicit Random(int seed)
        : m_engine(static_cast<unsigned>(seed))
    {
    }

    double real(double from, double to) { return std::uniform_real_distribution<double>(from, to)(m_engine); }
    int integer(int from, int to) { return std::uniform_int_distribution<int>(from, to)(m_engine); }
    bool oneIn(int count) { return integer(1, count) == 1; }
    QColor color()
    {
        return QColor(integer(0, 255), integer(0, 255), integer(0, 255), oneIn(2) ? 255 : integer(0, 255));
    }

    KelGPXTrackSegment segment()
    {
        KelGeoPositionList list;
        double latitude = real(-70, 70);
        double longitude = real(-180, 180);
        const double step = real(0.1, 25);
        const int count = oneIn(12) ? integer(300, 700) : integer(1, 40);
        for (int i = 0; i < count; ++i) {
            list.append(degrees(latitude, longitude));
            latitude = std::clamp(latitude + real(-step, step), -85.0, 85.0);
            longitude += real(-step, step);
            longitude += longitude > 180 ? -360 : longitude < -180 ? 360
                                                                   : 0;
        }
        if (oneIn(3))
            list.append(list.first());
        return KelRenderTest::segment(list);
    }

    KelGPXTrack track()
    {
        QList<KelGPXTrackSegment> segments;
        for (int i = oneIn(4) ? integer(0, 3) : 1; i > 0; --i)
            segments.append(segment());
        KelGPXTrack result = trackOf(segments);
        for (int i = oneIn(4) ? integer(1, 2) : 0; i > 0; --i)
            result.addEnclave(trackOf({segment()}));
        return result;
    }

    KelGPXTrackConfiguration configuration()
    {
        static constexpr KelGPXMarkerShapeEnum MARKERS[] = {MarkerUnknown, MarkerDisk, MarkerCircle, MarkerX, MarkerBlock};
        static constexpr KelGPXTrackShapeEnum SHAPES[] = {TrackShapeAuto, TrackShapeAuto, TrackShapePoint,
                                                          TrackShapeLineString, TrackShapePolygon};
        static constexpr Qt::PenStyle DASHED[] = {Qt::DashLine, Qt::DotLine, Qt::DashDotLine, Qt::DashDotDotLine};
        const int marker = MARKERS[integer(0, 4)] | (oneIn(3) ? MarkerArrow : 0);
        return KelGPXTrackConfiguration(
            color(), KelDistance(oneIn(4) ? integer(0, 3) : real(0.5, 14)), color(), KelDistance(oneIn(2) ? 0 : real(0, 6)),
            KelGPXTrackDisplayOptions(integer(0, 3)), KelGPXMarkerShape(marker), KelGPXTrackShape(SHAPES[integer(0, 4)]),
            KelPenStyle(oneIn(2) ? DASHED[integer(0, 3)] : Qt::SolidLine), oneIn(2) ? 100 : integer(0, 99), integer(1, 4));
    }

    KelGPXTrackSelection selection()
    {
        QList<KelGPXConfiguredTrack> tracks;
        for (int i = integer(1, 3); i > 0; --i)
            tracks.append(KelGPXConfiguredTrack(track(), configuration()));
        KelGPXTrackSelection result = selectionOf(tracks);
        result.setCroppingOpacity(oneIn(8) ? 255 : integer(0, 255));
        return result;
    }

    LinearRenderer renderer(const KelGPXTrackSelection &selection)
    {
        const QSize size(integer(1, 70), integer(1, 60));
        const double pixelsPerDegree = oneIn(6) ? real(0.01, 0.1) : real(0.1, 3);
        return LinearRenderer(selection, size, oneIn(2) ? 1.0 : real(0.3, 2.5), pixelsPerDegree,
                              QPointF(size.width() * real(-0.5, 1.5), size.height() * real(0.0, 1.0)));
    }

    QImage map(const QSize &size)
    {
        static constexpr QImage::Format FORMATS[] = {QImage::Format_ARGB32, QImage::Format_RGB32,
                                                     QImage::Format_ARGB32_Premultiplied, QImage::Format_RGB888,
                                                     QImage::Format_Indexed8, QImage::Format_RGBA8888,
                                                     QImage::Format_Grayscale8, QImage::Format_RGB16};
        QImage result(oneIn(4) ? QSize(integer(1, 80), integer(1, 80)) : size, QImage::Format_ARGB32);
        for (int y = 0; y < result.height(); ++y) {
            for (int x = 0; x < result.width(); ++x)
                result.setPixel(x, y, m_engine());
        }
        result.setDotsPerMeterX(integer(1000, 9000));
        result.setText(QStringLiteral("Title"), QStringLiteral("map"));
        return result.convertToFormat(FORMATS[integer(0, 7)]);
    }

private:
    std::mt19937 m_engine;
};

// Of a track below all pictures; without any track there is no cropping.
KelGPXTrackSelection unseenTrack(int croppingOpacity)
{
    KelGPXTrackSelection result = selectionOf(trackThrough({{0, 800}, {20, 800}}), configuration());
    result.setCroppingOpacity(croppingOpacity);
    return result;
}

QString firstDifference(const QImage &actual, const QImage &expected)
{
    if (actual.size() != expected.size() || actual.format() != expected.format())
        return QStringLiteral("another size or format");
    for (int y = 0; y < expected.height(); ++y) {
        for (int x = 0; x < expected.width(); ++x) {
            if (actual.pixel(x, y) != expected.pixel(x, y))
                return QStringLiteral("pixel %1,%2 of %3x%4 is %5, not %6")
                    .arg(x)
                    .arg(y)
                    .arg(expected.width())
                    .arg(expected.height())
                    .arg(actual.pixel(x, y), 8, 16)
                    .arg(expected.pixel(x, y), 8, 16);
        }
    }
    return actual == expected ? QString() : QStringLiteral("other data");
}

} // namespace

class tst_RenderingExactly : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void randomSelections();
    void colorsAndOpacities();
    void croppingKeepsWhatIsSaidAboutTheMap();
    void mapsOfAnotherSize();
    void overPicturesOfAnyFormat_data();
    void overPicturesOfAnyFormat();
    void overPicturesThatCannotBePaintedOn_data();
    void overPicturesThatCannotBePaintedOn();
    void randomStrokesOverPictures();
    void picturesTooLargeForTheMemory();
    void croppingWithLittleMemory();
};

void tst_RenderingExactly::randomSelections()
{
    const int first = int(KelTestSupport::randomSeed(1));
    const int cases = KelTestSupport::randomCases(RANDOM_CASES);
    int painted = 0;
    for (int seed = first; seed < first + cases; ++seed) {
        Random random(seed);
        const KelGPXTrackSelection selection = random.selection();
        const LinearRenderer renderer = random.renderer(selection);
        const KelReferenceRenderer reference(renderer, selection);
        const auto option = random.oneIn(2) ? KelGPXTrackRenderer::Normal : KelGPXTrackRenderer::Foreground;
        const QImage map = random.map(renderer.targetImageSize());

        QImage actual;
        QImage expected;
        const int kind = random.integer(0, 3);
        if (kind == 0) {
            actual = renderer.render(option);
            expected = reference.render(option);
        } else if (kind == 1) {
            actual = renderer.renderQuickAndDirty(option);
            expected = reference.renderQuickAndDirty(option);
        } else if (kind == 2) {
            actual = renderer.crop(map);
            expected = reference.crop(map);
        } else {
            actual = map.convertToFormat(QImage::Format_ARGB32_Premultiplied);
            expected = actual;
            renderer.renderOver(&actual, option);
            reference.renderOver(&expected, option);
            painted += actual != map.convertToFormat(QImage::Format_ARGB32_Premultiplied) ? 1 : 0;
        }
        const QString difference = firstDifference(actual, expected);
        QVERIFY2(difference.isEmpty(), qPrintable(QStringLiteral("Seed %1, kind %2: ").arg(seed).arg(kind) + difference));
    }
    // Otherwise there is nothing that was compared.
    QVERIFY(painted > cases / 16);
}

// Every value of a channel with every alpha that a crop can give.
void tst_RenderingExactly::colorsAndOpacities()
{
    QImage map(16, 16, QImage::Format_RGB32);
    for (int i = 0; i < 256; ++i)
        map.setPixel(i % 16, i / 16, qRgb(i, 255 - i, i ^ 0x55));
    for (int opacity = 0; opacity < 256; ++opacity) {
        const KelGPXTrackSelection selection = unseenTrack(opacity);
        const LinearRenderer renderer(selection, map.size());
        const QImage actual = renderer.crop(map);
        for (int i = 0; i < 256 && opacity < 255; ++i) {
            // Rounded; ties and what is near them may go either way.
            const auto isProduct = [&](int result, int channel) { return std::abs(result * 255 - channel * opacity) <= 130; };
            const QRgb pixel = reinterpret_cast<const QRgb *>(actual.constScanLine(i / 16))[i % 16];
            QCOMPARE(qAlpha(pixel), opacity);
            QVERIFY(isProduct(qRed(pixel), i));
            QVERIFY(isProduct(qGreen(pixel), 255 - i));
        }
        QCOMPARE(actual, KelReferenceRenderer(renderer, selection).crop(map));
    }
}

void tst_RenderingExactly::croppingKeepsWhatIsSaidAboutTheMap()
{
    QImage map(20, 10, QImage::Format_RGB32);
    map.fill(Qt::red);
    map.setDotsPerMeterX(1234);
    map.setDotsPerMeterY(2345);
    map.setDevicePixelRatio(2.0);
    map.setOffset(QPoint(3, 4));
    map.setText(QStringLiteral("Author"), QStringLiteral("somebody"));
    map.setColorSpace(QColorSpace(QColorSpace::SRgb));
    const QImage cropped = LinearRenderer(unseenTrack(100), map.size()).crop(map);
    QCOMPARE(cropped.format(), QImage::Format_ARGB32_Premultiplied);
    QCOMPARE(cropped.dotsPerMeterX(), 1234);
    QCOMPARE(cropped.dotsPerMeterY(), 2345);
    QCOMPARE(cropped.devicePixelRatio(), 2.0);
    QCOMPARE(cropped.offset(), QPoint(3, 4));
    QCOMPARE(cropped.text(QStringLiteral("Author")), QStringLiteral("somebody"));
    QCOMPARE(cropped.colorSpace(), QColorSpace(QColorSpace::SRgb));
    QCOMPARE(map.pixel(0, 0), qRgb(255, 0, 0));
}

void tst_RenderingExactly::mapsOfAnotherSize()
{
    const LinearRenderer renderer(unseenTrack(100), QSize(8, 6));
    QVERIFY(renderer.crop(QImage()).isNull());
    for (const QImage::Format format : {QImage::Format_RGB32, QImage::Format_ARGB32}) {
        QImage map(10, 7, format);
        map.fill(QColor(200, 100, 50, 40));
        const QImage cropped = renderer.crop(map);
        QCOMPARE(cropped.size(), map.size());
        QCOMPARE(qAlpha(cropped.pixel(7, 5)), 100);
        const int own = format == QImage::Format_RGB32 ? 255 : 40;
        QCOMPARE(qAlpha(cropped.pixel(8, 5)), own);
        QCOMPARE(qAlpha(cropped.pixel(7, 6)), own);
    }
    QCOMPARE(qAlpha(LinearRenderer(unseenTrack(100), QSize()).crop(QImage(3, 3, QImage::Format_RGB32)).pixel(1, 1)), 255);
}

void tst_RenderingExactly::overPicturesOfAnyFormat_data()
{
    QTest::addColumn<QImage::Format>("format");
    QTest::addColumn<double>("ratio");
    QTest::newRow("premultiplied") << QImage::Format_ARGB32_Premultiplied << 1.0;
    QTest::newRow("not premultiplied") << QImage::Format_ARGB32 << 1.0;
    QTest::newRow("opaque") << QImage::Format_RGB32 << 1.0;
    QTest::newRow("high density") << QImage::Format_ARGB32_Premultiplied << 2.0;
    QTest::newRow("null") << QImage::Format_Invalid << 1.0;
}

void tst_RenderingExactly::overPicturesOfAnyFormat()
{
    QFETCH(QImage::Format, format);
    QFETCH(double, ratio);
    QImage expected(QSize(60, 50), format);
    if (!expected.isNull())
        expected.fill(QColor(10, 120, 30, 200));
    expected.setDevicePixelRatio(ratio);
    QImage actual = expected;
    const QImage before = actual; // shares its pixels
    const KelGPXTrackSelection selection =
        selectionOf(trackThrough({{5, 5}, {50, 10}, {10, 40}, {45, 45}}), configuration());
    const LinearRenderer renderer(selection, QSize(60, 50));
    renderer.renderOver(&actual, KelGPXTrackRenderer::Normal);
    if (!expected.isNull()) {
        KelReferenceRenderer(renderer, selection).renderOver(&expected, KelGPXTrackRenderer::Normal);
        QVERIFY(actual != before);
    }
    QCOMPARE(actual, expected);
}

void tst_RenderingExactly::overPicturesThatCannotBePaintedOn_data()
{
    QTest::addColumn<QImage::Format>("format");
    QTest::addColumn<bool>("busy");
    QTest::newRow("null") << QImage::Format_Invalid << false;
    QTest::newRow("with a table of colours") << QImage::Format_Indexed8 << false;
    QTest::newRow("painted on by somebody else") << QImage::Format_ARGB32_Premultiplied << true;
}

void tst_RenderingExactly::overPicturesThatCannotBePaintedOn()
{
    QFETCH(QImage::Format, format);
    QFETCH(bool, busy);
    QImage image(QSize(60, 50), format);
    if (format == QImage::Format_Indexed8)
        image.setColorTable({qRgb(1, 2, 3), qRgb(200, 100, 50)});
    image.fill(1);
    const QImage before = image.copy();
    QPainter other;
    if (busy)
        QVERIFY(other.begin(&image));
    // That is Qt's own.
    if (!image.isNull())
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^QPainter::begin: ")));
    const LinearRenderer renderer(selectionOf(trackThrough({{5, 5}, {50, 10}, {10, 40}}), configuration()), QSize(60, 50));
    renderer.renderOver(&image, KelGPXTrackRenderer::Normal);
    QCOMPARE(image, before);
    if (!image.isNull())
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^QPainter::begin: ")));
    QPainterPath path(QPointF(5, 5));
    path.lineTo(50, 10);
    renderer.strokeOver(&image, path, QPen(Qt::red, 4));
    QCOMPARE(image, before);
}

// Any path with any pen, on all copies of the world.
void tst_RenderingExactly::randomStrokesOverPictures()
{
    int painted = 0;
    const int cases = KelTestSupport::randomCases(RANDOM_CASES / 4);
    for (int seed = 1; seed <= cases; ++seed) {
        Random random(seed);
        const KelGPXTrackSelection selection = random.selection();
        const LinearRenderer renderer = random.renderer(selection);
        const QPainterPath path = renderer.createPainterPath(selection.value(0));
        QPen pen = renderer.penFromTrack(selection.configuration(0), KelGPXTrackRenderer::Normal);
        if (random.oneIn(4))
            pen.setJoinStyle(Qt::MiterJoin);
        pen.setCosmetic(random.oneIn(10));
        QImage actual = random.map(renderer.targetImageSize())
                            .convertToFormat(random.oneIn(3) ? QImage::Format_RGB32 : QImage::Format_ARGB32_Premultiplied);
        QImage expected = actual.copy();
        const QImage before = expected.copy();
        renderer.strokeOver(&actual, path, pen);

        QPainter painter(&expected);
        painter.setRenderHint(QPainter::Antialiasing);
        const KelIntRange shifts = renderer.visibleShifts(&painter);
        for (int shift = shifts.min(); shift <= shifts.max(); ++shift) {
            painter.resetTransform();
            painter.translate(renderer.aroundTheWorldOffset() * shift);
            painter.strokePath(path, pen);
        }
        painter.end();
        const QString difference = firstDifference(actual, expected);
        QVERIFY2(difference.isEmpty(), qPrintable(QStringLiteral("Seed %1: ").arg(seed) + difference));
        painted += actual != before ? 1 : 0;
    }
    QVERIFY(painted > cases / 8);
}

// More than any computer can address.
void tst_RenderingExactly::picturesTooLargeForTheMemory()
{
    if (!KelMemoryLimit::IS_POSSIBLE)
        QSKIP("Not with sanitizers");
    const LinearRenderer renderer(unseenTrack(100), QSize(20'000'000, 20'000'000));
    QVERIFY(renderer.render(KelGPXTrackRenderer::Normal).isNull());
    QVERIFY(renderer.renderForeground().isNull());
    QImage map(3, 3, QImage::Format_RGB32);
    map.fill(Qt::red);
    QVERIFY(renderer.crop(map).isNull());
}

void tst_RenderingExactly::croppingWithLittleMemory()
{
    if (!KelMemoryLimit::IS_POSSIBLE)
        QSKIP("Not with sanitizers");
    constexpr int MEGABYTE = 1024 * 1024;
    const LinearRenderer renderer(unseenTrack(100), QSize(1024, 1024));
    QImage map(4096, 4096, QImage::Format_RGB32);
    map.fill(Qt::red);
    QCOMPARE(qAlpha(renderer.crop(map).pixel(1, 1)), 100);
    {
        const KelMemoryLimit enoughForTheMaskOnly(16 * MEGABYTE);
        QVERIFY(renderer.crop(map).isNull());
    }
    const QImage converted = map.convertToFormat(QImage::Format_RGB888);
    const KelMemoryLimit enoughForTheMaskOnly(16 * MEGABYTE);
    QVERIFY(renderer.crop(converted).isNull());
}

QTEST_MAIN(tst_RenderingExactly)
#include "tst_RenderingExactly.moc"
