// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelPenStyle.h>

#include <QDomDocument>
#include <QObject>
#include <QPen>
#include <QtTest>

#include <KelTestSupport.h>

class tst_KelPenStyle : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void styles_data();
    void styles();
    void defaultIsSolid();
    void unknownNumberIsSolid();
    void fromXmlReadsWhatIsThere_data();
    void fromXmlReadsWhatIsThere();
    void fromKeyIsLenient_data();
    void fromKeyIsLenient();
    void modifyPenChangesTheStyleOnly();
    void customDashKeepsThePensPattern();
    void allStyles();
    void equality();
};

void tst_KelPenStyle::styles_data()
{
    QTest::addColumn<Qt::PenStyle>("style");
    QTest::addColumn<QString>("key");

    QTest::newRow("none") << Qt::NoPen << "NoPen";
    QTest::newRow("solid") << Qt::SolidLine << "SolidLine";
    QTest::newRow("dash") << Qt::DashLine << "DashLine";
    QTest::newRow("dot") << Qt::DotLine << "DotLine";
    QTest::newRow("dash dot") << Qt::DashDotLine << "DashDotLine";
    QTest::newRow("dash dot dot") << Qt::DashDotDotLine << "DashDotDotLine";
    QTest::newRow("custom") << Qt::CustomDashLine << "CustomDashLine";
}

void tst_KelPenStyle::styles()
{
    QFETCH(Qt::PenStyle, style);
    QFETCH(QString, key);
    QCOMPARE(KelPenStyle(style).value(), style);
    QCOMPARE(KelPenStyle(style).key(), key);
    QCOMPARE(KelPenStyle::fromKey(key).value(), style);

    QDomDocument document = KelTestSupport::document(QStringLiteral("<config/>"));
    QDomElement parent = document.documentElement();
    KelPenStyle(style).toXml(parent);
    QCOMPARE(document.toString(-1), QStringLiteral("<config><penStyle>%1</penStyle></config>").arg(key));
    QCOMPARE(KelPenStyle::fromXml(parent).value(), style);
}

void tst_KelPenStyle::defaultIsSolid()
{
    QCOMPARE(KelPenStyle().value(), Qt::SolidLine);
}

void tst_KelPenStyle::unknownNumberIsSolid()
{
    QCOMPARE(KelPenStyle(static_cast<Qt::PenStyle>(15)).value(), Qt::SolidLine);
}

void tst_KelPenStyle::fromXmlReadsWhatIsThere_data()
{
    QTest::addColumn<QString>("xml");
    QTest::addColumn<Qt::PenStyle>("style");

    QTest::newRow("missing") << "<config/>" << Qt::SolidLine;
    QTest::newRow("empty") << "<config><penStyle/></config>" << Qt::SolidLine;
    QTest::newRow("unknown") << "<config><penStyle>WavyLine</penStyle></config>" << Qt::SolidLine;
    QTest::newRow("the first counts") << "<config><penStyle>DotLine</penStyle><penStyle>NoPen</penStyle></config>"
                                      << Qt::DotLine;
    QTest::newRow("a grandchild does not count") << "<config><x><penStyle>DotLine</penStyle></x></config>"
                                                 << Qt::SolidLine;
}

void tst_KelPenStyle::fromXmlReadsWhatIsThere()
{
    QFETCH(QString, xml);
    QTEST(KelPenStyle::fromXml(KelTestSupport::document(xml).documentElement()).value(), "style");
    QCOMPARE(KelPenStyle::fromXml(QDomElement()).value(), Qt::SolidLine);
}

void tst_KelPenStyle::fromKeyIsLenient_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<Qt::PenStyle>("style");

    QTest::newRow("lower case") << "dashdotline" << Qt::DashDotLine;
    QTest::newRow("blanks around") << " DotLine\n" << Qt::DotLine;
    QTest::newRow("empty") << "" << Qt::SolidLine;
    QTest::newRow("part of a key") << "Dash" << Qt::SolidLine;
}

void tst_KelPenStyle::fromKeyIsLenient()
{
    QFETCH(QString, key);
    QTEST(KelPenStyle::fromKey(key).value(), "style");
}

void tst_KelPenStyle::modifyPenChangesTheStyleOnly()
{
    QPen pen(QBrush(Qt::red), 7.0, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    KelPenStyle(Qt::DotLine).modifyPen(pen);
    QCOMPARE(pen, QPen(QBrush(Qt::red), 7.0, Qt::DotLine, Qt::RoundCap, Qt::RoundJoin));
    KelPenStyle(Qt::NoPen).modifyPen(pen);
    QCOMPARE(pen.style(), Qt::NoPen);
    QCOMPARE(pen.widthF(), 7.0);
}

void tst_KelPenStyle::customDashKeepsThePensPattern()
{
    QPen pen(Qt::red);
    pen.setDashPattern({3.0, 1.0});
    KelPenStyle(Qt::CustomDashLine).modifyPen(pen);
    QCOMPARE(pen.style(), Qt::CustomDashLine);
    QCOMPARE(pen.dashPattern(), QList<qreal>({3.0, 1.0}));

    QPen solid(Qt::red);
    KelPenStyle(Qt::CustomDashLine).modifyPen(solid);
    QCOMPARE(solid.style(), Qt::SolidLine);
}

void tst_KelPenStyle::allStyles()
{
    QList<Qt::PenStyle> values;
    for (const KelPenStyle &style : KelPenStyle::allStyles())
        values.append(style.value());
    QCOMPARE(values, QList<Qt::PenStyle>({Qt::SolidLine, Qt::DashLine, Qt::DotLine, Qt::DashDotLine,
                                          Qt::DashDotDotLine, Qt::NoPen}));
}

void tst_KelPenStyle::equality()
{
    QVERIFY(KelPenStyle(Qt::DotLine) == KelPenStyle(Qt::DotLine));
    QVERIFY(!(KelPenStyle(Qt::DotLine) != KelPenStyle(Qt::DotLine)));
    QVERIFY(KelPenStyle(Qt::DotLine) != KelPenStyle());
}

QTEST_GUILESS_MAIN(tst_KelPenStyle)
#include "tst_KelPenStyle.moc"
