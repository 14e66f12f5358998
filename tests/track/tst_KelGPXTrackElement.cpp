// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelGPXTrackElement.h>
#include <KelGeoPositionRect.h>

#include <QtTest>

#include <bit>
#include <random>
#include <type_traits>

class tst_KelGPXTrackElement : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void safeDouble_data();
    void safeDouble();
    void safeDoubleCutsTextWithoutPointToSevenCharacters();
    void safeDoubleEqualsThePlainForm();
    void timeFrame_data();
    void timeFrame();
    void invalidTimeStampsTakePartInTimeFrame();
    void boundingBox();
    void isSinglePointCountsAllPoints();
};

namespace
{

static_assert(std::has_virtual_destructor_v<KelGPXTrackElement>);
static_assert(std::is_abstract_v<KelGPXTrackElement>);

/// An element of any positions and times.
class Element : public KelGPXTrackElement
{
public:
    explicit Element(const KelGeoPositionList &points, const QList<QDateTime> &timeStamps = {})
        : m_points(points)
        , m_timeStamps(timeStamps)
    {
    }

    KelGeoPositionList allPoints() const override { return m_points; }
    QList<KelGeoPositionList> chunkedPoints() const override { return {m_points}; }
    KelGeoPosition firstPoint() const override { return m_points.first(); }
    KelGeoPosition lastPoint() const override { return m_points.last(); }
    QList<QDateTime> allTimeStamps() const override { return m_timeStamps; }

private:
    KelGeoPositionList m_points;
    QList<QDateTime> m_timeStamps;
};

QDateTime hour(int hour)
{
    return QDateTime(QDate(2023, 11, 14), QTime(hour, 0), Qt::UTC);
}

/// The rule as it is stated, step by step.
double plainSafeDouble(const QString &text)
{
    const qsizetype pointIndex = text.indexOf(QLatin1String("."));
    return (text.size() > pointIndex + 8 ? text.left(pointIndex + 8) : text).toDouble();
}

} // namespace

void tst_KelGPXTrackElement::safeDouble_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("value");

    QTest::newRow("short") << "8.5" << 8.5;
    QTest::newRow("seven decimals stay") << "8.1234567" << 8.1234567;
    QTest::newRow("the eighth decimal is cut off") << "8.12345678" << 8.1234567;
    QTest::newRow("longer") << "8.123456789" << 8.1234567;
    QTest::newRow("cut, not rounded") << "8.99999999" << 8.9999999;
    QTest::newRow("negative") << "-179.123456789" << -179.1234567;
    QTest::newRow("what is cut off need not be a number") << "8.1234567north" << 8.1234567;
    QTest::newRow("letters that are not cut off") << "8.123north" << 0.0;
    QTest::newRow("an exponent after seven decimals is lost") << "8.1234567e2" << 8.1234567;
    QTest::newRow("an exponent that fits counts") << "8.5e1" << 85.0;
    QTest::newRow("the first point counts") << "8.5.123456789" << 0.0;
    QTest::newRow("empty") << "" << 0.0;
    QTest::newRow("letters") << "north" << 0.0;
    QTest::newRow("comma as decimal sign") << "8,5" << 0.0;
}

void tst_KelGPXTrackElement::safeDouble()
{
    QFETCH(QString, text);
    QFETCH(double, value);
    QCOMPARE(std::bit_cast<quint64>(KelGPXTrackElement::safeDouble(text)), std::bit_cast<quint64>(value));
    QCOMPARE(std::bit_cast<quint64>(KelGPXTrackElement::safeDouble(QStringView(text))), std::bit_cast<quint64>(value));
}

void tst_KelGPXTrackElement::safeDoubleCutsTextWithoutPointToSevenCharacters()
{
    QCOMPARE(KelGPXTrackElement::safeDouble(QStringLiteral("1234567")), 1234567.0);
    QCOMPARE(KelGPXTrackElement::safeDouble(QStringLiteral("12345678")), 1234567.0);
    QCOMPARE(KelGPXTrackElement::safeDouble(QStringLiteral("123456789")), 1234567.0);
    QCOMPARE(KelGPXTrackElement::safeDouble(QStringLiteral("-12345678")), -123456.0);
}

void tst_KelGPXTrackElement::safeDoubleEqualsThePlainForm()
{
    std::mt19937 random(3);
    const QString alphabet = QStringLiteral("00112233445566778899..-+e \tx");
    for (int i = 0; i < 200000; ++i) {
        QString text;
        for (uint length = random() % 20; length > 0; --length)
            text.append(alphabet.at(int(random() % uint(alphabet.size()))));
        QVERIFY2(std::bit_cast<quint64>(KelGPXTrackElement::safeDouble(text))
                     == std::bit_cast<quint64>(plainSafeDouble(text)),
                 qPrintable(text));
    }
}

void tst_KelGPXTrackElement::timeFrame_data()
{
    QTest::addColumn<QList<QDateTime>>("timeStamps");
    QTest::addColumn<QDateTime>("min");
    QTest::addColumn<QDateTime>("max");

    QTest::newRow("none") << QList<QDateTime>() << QDateTime() << QDateTime();
    QTest::newRow("one") << QList<QDateTime>{hour(5)} << hour(5) << hour(5);
    QTest::newRow("ascending") << QList<QDateTime>{hour(5), hour(6), hour(7)} << hour(5) << hour(7);
    QTest::newRow("descending") << QList<QDateTime>{hour(7), hour(6), hour(5)} << hour(5) << hour(7);
    QTest::newRow("mixed") << QList<QDateTime>{hour(6), hour(7), hour(5), hour(6)} << hour(5) << hour(7);
}

void tst_KelGPXTrackElement::timeFrame()
{
    QFETCH(QList<QDateTime>, timeStamps);
    QFETCH(QDateTime, min);
    QFETCH(QDateTime, max);
    const KelRange<QDateTime> frame = Element({}, timeStamps).timeFrame();
    QCOMPARE(frame.min(), min);
    QCOMPARE(frame.max(), max);
}

void tst_KelGPXTrackElement::invalidTimeStampsTakePartInTimeFrame()
{
    // An invalid time stamp is earlier than every valid one ...
    const KelRange<QDateTime> after = Element({}, {hour(5), QDateTime()}).timeFrame();
    QVERIFY(!after.min().isValid());
    QCOMPARE(after.max(), hour(5));
    // ... but as long as both ends are null, the next one replaces both.
    const KelRange<QDateTime> before = Element({}, {QDateTime(), hour(5)}).timeFrame();
    QCOMPARE(before.min(), hour(5));
    QCOMPARE(before.max(), hour(5));
    QVERIFY(Element({}, {QDateTime(), QDateTime()}).timeFrame().isUnset());
}

void tst_KelGPXTrackElement::boundingBox()
{
    const Element element({KelGeoPosition(53.0, 8.0), KelGeoPosition(52.0, 9.0), KelGeoPosition(52.5, 7.0)});
    QCOMPARE(element.boundingBox().south().decimalDegrees(), 52.0);
    QCOMPARE(element.boundingBox().north().decimalDegrees(), 53.0);
    QCOMPARE(element.boundingBox().west().decimalDegrees(), 7.0);
    QCOMPARE(element.boundingBox().east().decimalDegrees(), 9.0);
    QVERIFY(!Element({}).boundingBox().isValid());
}

void tst_KelGPXTrackElement::isSinglePointCountsAllPoints()
{
    QVERIFY(!Element({}).isSinglePoint());
    QVERIFY(Element({KelGeoPosition(53.0, 8.0)}).isSinglePoint());
    QVERIFY(!Element({KelGeoPosition(53.0, 8.0), KelGeoPosition(53.0, 8.0)}).isSinglePoint());
}

QTEST_GUILESS_MAIN(tst_KelGPXTrackElement)
#include "tst_KelGPXTrackElement.moc"
