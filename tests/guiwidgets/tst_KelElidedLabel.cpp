// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelElidedLabel.h>

#include <QColor>
#include <QFontMetrics>
#include <QHelpEvent>
#include <QImage>
#include <QObject>
#include <QPalette>
#include <QtTest>

namespace
{

constexpr QChar Ellipsis(0x2026);
const QString LongText = QStringLiteral("Rundweg um den großen See mit Abstecher zum Aussichtsturm");

int widthOf(const KelElidedLabel &label, const QString &text)
{
    return label.fontMetrics().horizontalAdvance(text) + 2;
}

int heightOfLines(const KelElidedLabel &label, int lines)
{
    return (lines - 1) * label.fontMetrics().lineSpacing() + label.fontMetrics().height();
}

/// How many pixels of the label, drawn on its own window colour, have nearly the given colour.
int countPixels(KelElidedLabel &label, const QColor &color)
{
    QImage image(label.size(), QImage::Format_RGB32);
    image.fill(label.palette().color(QPalette::Window));
    label.render(&image);
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor pixel = image.pixelColor(x, y);
            count += qAbs(pixel.red() - color.red()) < 30 && qAbs(pixel.green() - color.green()) < 30
                && qAbs(pixel.blue() - color.blue()) < 30;
        }
    }
    return count;
}

} // namespace

class tst_KelElidedLabel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsShortTextWhole();
    void cutsLongTextOff();
    void followsItsSize();
    void followsItsText();
    void toolTipIsRightWhenItIsWanted();
    void toolTipIsNeverMarkup();
    void markupIsShownAsItIs();
    void lineEndsBecomeBlanksInOneLine();
    void wrapsIntoTheLinesThatFit_data();
    void wrapsIntoTheLinesThatFit();
    void wrappedTextThatFitsIsWhole();
    void wrappedLinesHoldTheWholeText();
    void ownLineEndsAreKeptWhenWrapping();
    void heightForWidth();
    void sizeHints();
    void emptyTextHasALineOfHeight();
    void longestTextThatIsLaidOut_data();
    void longestTextThatIsLaidOut();
    void highlightIsVisible_data();
    void highlightIsVisible();
    void fullTextIsTheLabelsText();
};

void tst_KelElidedLabel::showsShortTextWhole()
{
    KelElidedLabel label;
    label.setFullText(QStringLiteral("Tour"));
    label.resize(widthOf(label, QStringLiteral("Tour")), heightOfLines(label, 1));
    QCOMPARE(label.visibleLines(), QStringList{QStringLiteral("Tour")});
    QVERIFY(!label.isElided());
    QVERIFY(label.toolTip().isEmpty());
}

void tst_KelElidedLabel::cutsLongTextOff()
{
    KelElidedLabel label;
    label.setFullText(LongText);
    label.resize(widthOf(label, LongText) / 2, heightOfLines(label, 1));
    label.grab(); // a hidden widget is told its new size only now
    QVERIFY(label.isElided());
    QCOMPARE(label.visibleLines().size(), 1);
    const QString visible = label.visibleLines().first();
    QVERIFY(visible.endsWith(Ellipsis));
    QVERIFY(visible.size() > 5);
    QVERIFY(LongText.startsWith(visible.chopped(1)));
    QVERIFY(label.fontMetrics().horizontalAdvance(visible) <= label.width());
    QCOMPARE(label.fullText(), LongText);
    QCOMPARE(label.toolTip(), LongText);
}

void tst_KelElidedLabel::followsItsSize()
{
    KelElidedLabel label;
    label.setFullText(LongText);
    label.resize(60, heightOfLines(label, 1));
    QVERIFY(label.isElided());
    label.resize(widthOf(label, LongText), heightOfLines(label, 1));
    label.grab();
    QVERIFY(!label.isElided());
    QVERIFY(label.toolTip().isEmpty());
}

void tst_KelElidedLabel::followsItsText()
{
    KelElidedLabel label;
    label.resize(60, heightOfLines(label, 1));
    label.grab();
    label.setFullText(LongText);
    QCOMPARE(label.toolTip(), LongText);
    label.setFullText(QStringLiteral("a"));
    QVERIFY(label.toolTip().isEmpty());
    label.setFullText(QString());
    QVERIFY(label.toolTip().isEmpty());
    QVERIFY(!label.isElided());
}

void tst_KelElidedLabel::toolTipIsRightWhenItIsWanted()
{
    KelElidedLabel label;
    label.setFullText(LongText);
    label.resize(widthOf(label, LongText) / 2, heightOfLines(label, 3));
    label.grab();
    QCOMPARE(label.toolTip(), LongText);
    label.setWordWrap(true);
    QHelpEvent wanted(QEvent::ToolTip, QPoint(1, 1), label.mapToGlobal(QPoint(1, 1)));
    QCoreApplication::sendEvent(&label, &wanted);
    QVERIFY(label.toolTip().isEmpty());
}

void tst_KelElidedLabel::toolTipIsNeverMarkup()
{
    KelElidedLabel label;
    label.resize(30, heightOfLines(label, 1));
    label.grab();
    label.setFullText(QStringLiteral("<img src=\"file:///x\"> a very long name of a track"));
    QVERIFY(!Qt::mightBeRichText(label.toolTip()) || !label.toolTip().contains(QStringLiteral("<img")));
    QVERIFY(label.toolTip().contains(QStringLiteral("&lt;img")));
}

void tst_KelElidedLabel::markupIsShownAsItIs()
{
    KelElidedLabel label;
    const QString text = QStringLiteral("<b>Tour</b>");
    label.setFullText(text);
    label.resize(widthOf(label, text), heightOfLines(label, 1));
    QCOMPARE(label.visibleLines(), QStringList{text});
    QCOMPARE(label.textFormat(), Qt::PlainText);
}

void tst_KelElidedLabel::lineEndsBecomeBlanksInOneLine()
{
    KelElidedLabel label;
    label.setFullText(QStringLiteral("a\nb\r\nc"));
    label.resize(500, heightOfLines(label, 1));
    QCOMPARE(label.visibleLines(), QStringList{QStringLiteral("a b c")});
    QVERIFY(!label.isElided());
}

void tst_KelElidedLabel::wrapsIntoTheLinesThatFit_data()
{
    QTest::addColumn<int>("lines");
    QTest::addColumn<int>("pixelsLess");
    QTest::addColumn<int>("visible");

    QTest::newRow("one line") << 1 << 0 << 1;
    QTest::newRow("two lines") << 2 << 0 << 2;
    QTest::newRow("three lines") << 3 << 0 << 3;
    QTest::newRow("not quite two lines") << 2 << 1 << 1;
    QTest::newRow("not even one line") << 1 << 5 << 1;
}

void tst_KelElidedLabel::wrapsIntoTheLinesThatFit()
{
    QFETCH(int, lines);
    QFETCH(int, pixelsLess);
    QFETCH(int, visible);
    KelElidedLabel label;
    label.setWordWrap(true);
    label.setFullText(LongText + ' ' + LongText);
    label.resize(widthOf(label, LongText) / 3, heightOfLines(label, lines) - pixelsLess);
    QCOMPARE(label.visibleLines().size(), visible);
    QVERIFY(label.isElided());
    QVERIFY(label.visibleLines().last().endsWith(Ellipsis));
    for (const QString &line : label.visibleLines())
        QVERIFY(label.fontMetrics().horizontalAdvance(line) <= label.width());
}

void tst_KelElidedLabel::wrappedTextThatFitsIsWhole()
{
    KelElidedLabel label;
    label.setWordWrap(true);
    label.setFullText(LongText);
    label.resize(widthOf(label, LongText) / 2, heightOfLines(label, 6));
    label.grab();
    QVERIFY(!label.isElided());
    QVERIFY(label.visibleLines().size() > 1);
    QVERIFY(label.toolTip().isEmpty());
}

void tst_KelElidedLabel::wrappedLinesHoldTheWholeText()
{
    KelElidedLabel label;
    label.setWordWrap(true);
    label.setFullText(LongText);
    label.resize(widthOf(label, LongText) / 2, heightOfLines(label, 6));
    QCOMPARE(label.visibleLines().join(' '), LongText);
}

void tst_KelElidedLabel::ownLineEndsAreKeptWhenWrapping()
{
    KelElidedLabel label;
    label.setWordWrap(true);
    label.setFullText(QStringLiteral("a\nb"));
    label.resize(500, heightOfLines(label, 2));
    QCOMPARE(label.visibleLines(), QStringList({QStringLiteral("a"), QStringLiteral("b")}));
    label.resize(500, heightOfLines(label, 1));
    QVERIFY(label.isElided());
}

void tst_KelElidedLabel::heightForWidth()
{
    KelElidedLabel label;
    label.setFullText(LongText);
    QCOMPARE(label.heightForWidth(100), -1);
    label.setWordWrap(true);
    QCOMPARE(label.heightForWidth(widthOf(label, LongText)), heightOfLines(label, 1));
    const int width = widthOf(label, LongText) / 2;
    label.resize(width, label.heightForWidth(width));
    QVERIFY(label.height() > heightOfLines(label, 1));
    QVERIFY(!label.isElided());
}

void tst_KelElidedLabel::sizeHints()
{
    KelElidedLabel label;
    label.setFullText(LongText);
    label.resize(label.sizeHint());
    QVERIFY(!label.isElided());
    QCOMPARE(label.sizeHint().height(), heightOfLines(label, 1));
    QVERIFY(label.minimumSizeHint().width() < label.sizeHint().width() / 4);
    QCOMPARE(label.minimumSizeHint().height(), heightOfLines(label, 1));

    label.setMargin(5);
    QCOMPARE(label.sizeHint().height(), heightOfLines(label, 1) + 10);
    label.resize(label.sizeHint());
    QVERIFY(!label.isElided());
}

void tst_KelElidedLabel::emptyTextHasALineOfHeight()
{
    KelElidedLabel label;
    label.setWordWrap(true);
    QCOMPARE(label.sizeHint().height(), heightOfLines(label, 1));
    QCOMPARE(label.heightForWidth(100), heightOfLines(label, 1));
    label.resize(100, 20);
    QVERIFY(!label.isElided());
}

void tst_KelElidedLabel::longestTextThatIsLaidOut_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<bool>("wraps");
    QTest::addColumn<bool>("isElided");

    QTest::newRow("one line, just fits") << 5000 << false << false;
    QTest::newRow("one line, one too many") << 5001 << false << true;
    QTest::newRow("one line of a million") << 1000000 << false << true;
    QTest::newRow("wrapped, just fits") << 5000 << true << false;
    QTest::newRow("wrapped, one too many") << 5001 << true << true;
    QTest::newRow("wrapped million") << 1000000 << true << true;
}

void tst_KelElidedLabel::longestTextThatIsLaidOut()
{
    QFETCH(int, size);
    QFETCH(bool, wraps);
    QFETCH(bool, isElided);
    KelElidedLabel label;
    label.setWordWrap(wraps);
    label.setFullText(QString(size, QLatin1Char('x')));
    // As much room as the label asks for, whatever the text.
    const int width = wraps ? 400 : label.sizeHint().width();
    label.resize(width, wraps ? label.heightForWidth(width) : heightOfLines(label, 1));

    QCOMPARE(label.isElided(), isElided);
    const QString visible = label.visibleLines().join(QString());
    QCOMPARE(visible.size(), isElided ? 5001 : 5000);
    QCOMPARE(visible.endsWith(Ellipsis), isElided);
    QCOMPARE(label.fullText().size(), size);
}

void tst_KelElidedLabel::highlightIsVisible_data()
{
    QTest::addColumn<QColor>("window");
    QTest::addColumn<QColor>("text");

    QTest::newRow("light palette") << QColor(250, 250, 250) << QColor(20, 20, 20);
    QTest::newRow("dark palette") << QColor(30, 30, 30) << QColor(230, 230, 230);
}

void tst_KelElidedLabel::highlightIsVisible()
{
    QFETCH(QColor, window);
    QFETCH(QColor, text);
    const QColor highlight(200, 60, 0);
    KelElidedLabel label;
    QPalette palette = label.palette();
    palette.setColor(QPalette::Window, window);
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Highlight, highlight);
    palette.setColor(QPalette::HighlightedText, QColor(255, 255, 0));
    label.setPalette(palette);
    label.setFullText(QStringLiteral("Tour"));
    label.resize(80, 24);

    QCOMPARE(label.animationState(), 0);
    QCOMPARE(countPixels(label, highlight), 0);
    QVERIFY(countPixels(label, text) > 0);
    label.setAnimationState(1);
    QCOMPARE(label.animationState(), 1);
    QVERIFY(countPixels(label, highlight) > 80 * 24 / 2);
    QVERIFY(countPixels(label, QColor(255, 255, 0)) > 0);
    label.setAnimationState(2);
    QVERIFY(countPixels(label, highlight) > 80 * 24 / 2);
    label.setAnimationState(0);
    QCOMPARE(countPixels(label, highlight), 0);
}

void tst_KelElidedLabel::fullTextIsTheLabelsText()
{
    KelElidedLabel label;
    label.resize(30, 20);
    label.setFullText(LongText);
    QCOMPARE(label.text(), LongText);
}

QTEST_MAIN(tst_KelElidedLabel)
#include "tst_KelElidedLabel.moc"
