// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelIntRange.h>
#include <KelRange.h>

#include <QDateTime>
#include <QObject>
#include <QtTest>

#include <cmath>
#include <cstddef>
#include <cstring>
#include <limits>

namespace
{

/// What the range asks of an angle: 720 by default, equality within a millionth, exact `<` and `>`.
class Angle
{
public:
    Angle(double degrees = 720.0)
        : m_degrees(degrees)
    {
    }

    double degrees() const
    {
        return m_degrees;
    }

    friend bool operator==(const Angle &a, const Angle &b)
    {
        return std::abs(a.m_degrees - b.m_degrees) <= 1e-6;
    }
    friend bool operator!=(const Angle &a, const Angle &b)
    {
        return !(a == b);
    }
    friend bool operator<(const Angle &a, const Angle &b)
    {
        return a.m_degrees < b.m_degrees;
    }
    friend bool operator>(const Angle &a, const Angle &b)
    {
        return a.m_degrees > b.m_degrees;
    }
    friend bool operator<=(const Angle &a, const Angle &b)
    {
        return a < b || a == b;
    }
    friend bool operator>=(const Angle &a, const Angle &b)
    {
        return a > b || a == b;
    }
    friend Angle operator+(const Angle &a, const Angle &b)
    {
        return Angle(a.m_degrees + b.m_degrees);
    }
    friend Angle operator/(const Angle &a, double divisor)
    {
        return Angle(a.m_degrees / divisor);
    }

private:
    double m_degrees;
};

using AngleRange = KelRange<Angle>;
using TimeRange = KelRange<QDateTime>;

QDateTime at(int second, int millisecond = 0)
{
    return QDateTime(QDate(2020, 5, 17), QTime(12, 0, second, millisecond), Qt::UTC);
}

/// Counts its own points only from 100 on, to see which operations ask the point test.
class ShiftedRange : public KelRange<int>
{
public:
    using KelRange<int>::KelRange;
    using KelRange<int>::contains;

    bool contains(const int &value) const override
    {
        return KelRange<int>::contains(value - 100);
    }
};

/// Writes down which range is asked for which point, and answers by a list of the points that count as contained.
class AskedRange : public KelRange<int>
{
public:
    AskedRange(int min, int max, const QList<int> &contained, QList<int> *asked)
        : KelRange<int>(min, max)
        , m_contained(contained)
        , m_asked(asked)
    {
    }
    using KelRange<int>::contains;

    bool contains(const int &value) const override
    {
        m_asked->append(value);
        return m_contained.contains(value);
    }

private:
    QList<int> m_contained;
    QList<int> *m_asked;
};

/// Where the compiler puts a virtual operation into the table of its class.
template<class Operation>
std::ptrdiff_t slotOf(Operation operation)
{
    std::ptrdiff_t offset = 0;
    static_assert(sizeof operation >= sizeof offset);
    std::memcpy(&offset, &operation, sizeof offset);
    return offset;
}

class NeverValidRange : public KelRange<int>
{
public:
    using KelRange<int>::KelRange;

    bool isValid() const override
    {
        return false;
    }
};

} // namespace

class tst_KelRange : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void defaultIsUnset();
    void boundsAreKeptAsGiven();
    void isUnset_data();
    void isUnset();
    void isValid_data();
    void isValid();
    void validityOfAnglesHasTheirTolerance();
    void center_data();
    void center();
    void centerOfOtherTypes();
    void containsValue_data();
    void containsValue();
    void containsAngleWithinTolerance();
    void containsRange_data();
    void containsRange();
    void intersects_data();
    void intersects();
    void intersectsAsksInOrderUntilTheFirstTrue_data();
    void intersectsAsksInOrderUntilTheFirstTrue();
    void containsRangeAsksForBothEndsInOrder();
    void equality();
    void lessThan_data();
    void lessThan();
    void lessThanTakesNearlyEqualAnglesAsEqual();
    void expandTo_data();
    void expandTo();
    void expandUnsetAngleRange();
    void expandUnsetTimeRange();
    void rangeTestsAskTheOverriddenPointTest();
    void orderAsksTheOverriddenValidity();
    void virtualOperationsKeepTheirOrder();
};

void tst_KelRange::defaultIsUnset()
{
    QVERIFY(KelRange<int>().isUnset());
    QCOMPARE(KelRange<int>().min(), 0);
    QCOMPARE(KelRange<int>().max(), 0);
    QVERIFY(AngleRange().isUnset());
    QCOMPARE(AngleRange().min().degrees(), 720.0);
    QCOMPARE(AngleRange().max().degrees(), 720.0);
    QVERIFY(TimeRange().isUnset());
    QVERIFY(TimeRange().min().isNull());
}

void tst_KelRange::boundsAreKeptAsGiven()
{
    KelRange<int> range(7, 3);
    QCOMPARE(range.min(), 7);
    QCOMPARE(range.max(), 3);
    range.setMin(1);
    QCOMPARE(range.min(), 1);
    QCOMPARE(range.max(), 3);
    range.setMax(-4);
    QCOMPARE(range.min(), 1);
    QCOMPARE(range.max(), -4);
}

void tst_KelRange::isUnset_data()
{
    QTest::addColumn<double>("min");
    QTest::addColumn<double>("max");
    QTest::addColumn<bool>("unset");

    QTest::newRow("both invalid") << 720.0 << 720.0 << true;
    QTest::newRow("both invalid within the tolerance") << 720.0000005 << 719.9999995 << true;
    QTest::newRow("only min invalid") << 720.0 << 10.0 << false;
    QTest::newRow("only max invalid") << 10.0 << 720.0 << false;
    QTest::newRow("zero is a real angle") << 0.0 << 0.0 << false;
}

void tst_KelRange::isUnset()
{
    QFETCH(double, min);
    QFETCH(double, max);
    QTEST(AngleRange(Angle(min), Angle(max)).isUnset(), "unset");
}

void tst_KelRange::isValid_data()
{
    QTest::addColumn<int>("min");
    QTest::addColumn<int>("max");
    QTest::addColumn<bool>("valid");

    QTest::newRow("ascending") << 1 << 2 << true;
    QTest::newRow("one point") << 2 << 2 << true;
    QTest::newRow("inverted") << 3 << 2 << false;
    QTest::newRow("unset") << 0 << 0 << true;
}

void tst_KelRange::isValid()
{
    QFETCH(int, min);
    QFETCH(int, max);
    QTEST(KelRange<int>(min, max).isValid(), "valid");
}

void tst_KelRange::validityOfAnglesHasTheirTolerance()
{
    QVERIFY(AngleRange(Angle(10.0000005), Angle(10.0)).isValid());
    QVERIFY(!AngleRange(Angle(10.00001), Angle(10.0)).isValid());
    QVERIFY(TimeRange(at(1), at(1)).isValid());
    QVERIFY(!TimeRange(at(1, 1), at(1)).isValid());
}

void tst_KelRange::center_data()
{
    QTest::addColumn<int>("min");
    QTest::addColumn<int>("max");
    QTest::addColumn<int>("center");

    QTest::newRow("exact") << 2 << 6 << 4;
    QTest::newRow("truncated down above zero") << 0 << 3 << 1;
    QTest::newRow("truncated up below zero") << -3 << 0 << -1;
    QTest::newRow("around zero") << -2 << 1 << 0;
    QTest::newRow("sum beyond the range of int") << std::numeric_limits<int>::max() - 2
                                                 << std::numeric_limits<int>::max()
                                                 << std::numeric_limits<int>::max() - 1;
    QTest::newRow("inverted") << 6 << 2 << 4;
}

void tst_KelRange::center()
{
    QFETCH(int, min);
    QFETCH(int, max);
    QTEST(KelRange<int>(min, max).center(), "center");
}

void tst_KelRange::centerOfOtherTypes()
{
    QCOMPARE(AngleRange(Angle(-10.0), Angle(25.0)).center().degrees(), 7.5);

    QCOMPARE(TimeRange(at(10), at(11)).center(), at(10, 500));
    QCOMPARE(TimeRange(at(10), at(10, 3)).center(), at(10, 1));
    const QDateTime offset = at(10).toOffsetFromUtc(7200);
    QCOMPARE(TimeRange(offset, at(20)).center().offsetFromUtc(), 7200);
    QCOMPARE(TimeRange(offset, at(20)).center(), at(15));
    QVERIFY(!TimeRange().center().isValid());
}

void tst_KelRange::containsValue_data()
{
    QTest::addColumn<int>("min");
    QTest::addColumn<int>("max");
    QTest::addColumn<int>("value");
    QTest::addColumn<bool>("contained");

    QTest::newRow("below") << 2 << 5 << 1 << false;
    QTest::newRow("lower end") << 2 << 5 << 2 << true;
    QTest::newRow("inside") << 2 << 5 << 3 << true;
    QTest::newRow("upper end") << 2 << 5 << 5 << true;
    QTest::newRow("above") << 2 << 5 << 6 << false;
    QTest::newRow("an inverted range holds nothing") << 5 << 2 << 3 << false;
    QTest::newRow("the unset range holds zero") << 0 << 0 << 0 << true;
}

void tst_KelRange::containsValue()
{
    QFETCH(int, min);
    QFETCH(int, max);
    QFETCH(int, value);
    QTEST(KelRange<int>(min, max).contains(value), "contained");
}

void tst_KelRange::containsAngleWithinTolerance()
{
    const AngleRange range(Angle(10.0), Angle(20.0));
    QVERIFY(range.contains(Angle(9.9999995)));
    QVERIFY(!range.contains(Angle(9.99999)));
    QVERIFY(range.contains(Angle(20.0000005)));
    QVERIFY(!range.contains(Angle(20.00001)));
}

void tst_KelRange::containsRange_data()
{
    QTest::addColumn<int>("min");
    QTest::addColumn<int>("max");
    QTest::addColumn<bool>("contained");

    QTest::newRow("itself") << 10 << 20 << true;
    QTest::newRow("inner") << 11 << 19 << true;
    QTest::newRow("sticks out below") << 9 << 15 << false;
    QTest::newRow("sticks out above") << 15 << 21 << false;
    QTest::newRow("around it") << 9 << 21 << false;
    QTest::newRow("inverted, both ends inside") << 19 << 11 << true;
}

void tst_KelRange::containsRange()
{
    QFETCH(int, min);
    QFETCH(int, max);
    QTEST(KelRange<int>(10, 20).contains(KelRange<int>(min, max)), "contained");
}

void tst_KelRange::intersects_data()
{
    QTest::addColumn<int>("min");
    QTest::addColumn<int>("max");
    QTest::addColumn<bool>("intersecting");

    QTest::newRow("below") << 5 << 9 << false;
    QTest::newRow("touches the lower end") << 5 << 10 << true;
    QTest::newRow("overlaps the lower end") << 5 << 15 << true;
    QTest::newRow("inside") << 12 << 13 << true;
    QTest::newRow("around it") << 5 << 25 << true;
    QTest::newRow("overlaps the upper end") << 15 << 25 << true;
    QTest::newRow("touches the upper end") << 20 << 25 << true;
    QTest::newRow("above") << 21 << 25 << false;
}

void tst_KelRange::intersects()
{
    QFETCH(int, min);
    QFETCH(int, max);
    const KelRange<int> range(10, 20);
    const KelRange<int> other(min, max);
    QTEST(range.intersects(other), "intersecting");
    QTEST(other.intersects(range), "intersecting");
}

void tst_KelRange::intersectsAsksInOrderUntilTheFirstTrue_data()
{
    QTest::addColumn<QList<int>>("contained");
    QTest::addColumn<QList<int>>("asked");
    QTest::addColumn<bool>("intersecting");

    // The range is [1, 2], the other one [3, 4].
    QTest::newRow("min of the other") << QList<int>{3} << QList<int>{3} << true;
    QTest::newRow("max of the other") << QList<int>{4} << QList<int>{3, 4} << true;
    QTest::newRow("own min in the other") << QList<int>{1} << QList<int>{3, 4, 1} << true;
    QTest::newRow("own max in the other") << QList<int>{2} << QList<int>{3, 4, 1, 2} << true;
    QTest::newRow("none") << QList<int>{} << QList<int>{3, 4, 1, 2} << false;
}

void tst_KelRange::intersectsAsksInOrderUntilTheFirstTrue()
{
    QFETCH(QList<int>, contained);
    QList<int> asked;
    const AskedRange range(1, 2, contained, &asked);
    QTEST(range.intersects(AskedRange(3, 4, contained, &asked)), "intersecting");
    QTEST(asked, "asked");
}

void tst_KelRange::containsRangeAsksForBothEndsInOrder()
{
    QList<int> asked;
    QVERIFY(AskedRange(1, 2, {3, 4}, &asked).contains(KelRange<int>(3, 4)));
    QCOMPARE(asked, (QList<int>{3, 4}));
    asked.clear();
    QVERIFY(!AskedRange(1, 2, {4}, &asked).contains(KelRange<int>(3, 4)));
    QCOMPARE(asked, QList<int>{3});
}

void tst_KelRange::equality()
{
    const KelRange<int> range(1, 2);
    QVERIFY(range == KelRange<int>(1, 2));
    QVERIFY(!(range != KelRange<int>(1, 2)));
    QVERIFY(range != KelRange<int>(1, 3));
    QVERIFY(!(range == KelRange<int>(1, 3)));
    QVERIFY(range != KelRange<int>(0, 2));
    QVERIFY(!(range == KelRange<int>(0, 2)));

    const AngleRange angles(Angle(1.0), Angle(2.0));
    QVERIFY(angles == AngleRange(Angle(1.0000005), Angle(1.9999995)));
    QVERIFY(angles != AngleRange(Angle(1.00001), Angle(2.0)));
    QVERIFY(angles != AngleRange(Angle(1.0), Angle(2.00001)));
}

void tst_KelRange::lessThan_data()
{
    QTest::addColumn<int>("min");
    QTest::addColumn<int>("max");
    QTest::addColumn<int>("otherMin");
    QTest::addColumn<int>("otherMax");
    QTest::addColumn<bool>("less");

    QTest::newRow("by min") << 1 << 9 << 2 << 3 << true;
    QTest::newRow("by min, other way round") << 2 << 3 << 1 << 9 << false;
    QTest::newRow("same min, by max") << 1 << 2 << 1 << 3 << true;
    QTest::newRow("same min, by max, other way round") << 1 << 3 << 1 << 2 << false;
    QTest::newRow("equal") << 1 << 2 << 1 << 2 << false;
    QTest::newRow("valid before invalid, though its min is greater") << 8 << 9 << 3 << 2 << true;
    QTest::newRow("invalid is not less than valid, though its min is lesser") << 3 << 2 << 8 << 9 << false;
    QTest::newRow("invalid is not less than invalid") << 3 << 2 << 9 << 8 << false;
}

void tst_KelRange::lessThan()
{
    QFETCH(int, min);
    QFETCH(int, max);
    QFETCH(int, otherMin);
    QFETCH(int, otherMax);
    QTEST(KelRange<int>(min, max) < KelRange<int>(otherMin, otherMax), "less");
}

void tst_KelRange::lessThanTakesNearlyEqualAnglesAsEqual()
{
    const AngleRange slightlyLower(Angle(1.0), Angle(9.0));
    const AngleRange slightlyHigher(Angle(1.0000005), Angle(5.0));
    QVERIFY(!(slightlyLower < slightlyHigher));
    QVERIFY(slightlyHigher < slightlyLower);
}

void tst_KelRange::expandTo_data()
{
    QTest::addColumn<int>("min");
    QTest::addColumn<int>("max");
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("newMin");
    QTest::addColumn<int>("newMax");

    QTest::newRow("[0, 0] counts as unset and collapses to the value") << 0 << 0 << 5 << 5 << 5;
    QTest::newRow("down") << 0 << 3 << -2 << -2 << 3;
    QTest::newRow("up") << 0 << 3 << 4 << 0 << 4;
    QTest::newRow("lower end") << 1 << 3 << 1 << 1 << 3;
    QTest::newRow("inside") << 1 << 3 << 2 << 1 << 3;
    QTest::newRow("upper end") << 1 << 3 << 3 << 1 << 3;
    QTest::newRow("only one bound zero is not unset") << 0 << 1 << 5 << 0 << 5;
    QTest::newRow("inverted, above max is asked first") << 5 << 1 << 3 << 5 << 3;
}

void tst_KelRange::expandTo()
{
    QFETCH(int, min);
    QFETCH(int, max);
    QFETCH(int, value);
    KelRange<int> range(min, max);
    range.expandTo(value);
    QTEST(range.min(), "newMin");
    QTEST(range.max(), "newMax");
}

void tst_KelRange::expandUnsetAngleRange()
{
    AngleRange range;
    range.expandTo(Angle(10.0));
    QCOMPARE(range.min().degrees(), 10.0);
    QCOMPARE(range.max().degrees(), 10.0);
    range.expandTo(Angle(-3.0));
    QCOMPARE(range.min().degrees(), -3.0);
    QCOMPARE(range.max().degrees(), 10.0);
}

void tst_KelRange::expandUnsetTimeRange()
{
    TimeRange range;
    range.expandTo(at(5));
    QCOMPARE(range.min(), at(5));
    QCOMPARE(range.max(), at(5));
    range.expandTo(at(9));
    range.expandTo(at(2));
    QCOMPARE(range.min(), at(2));
    QCOMPARE(range.max(), at(9));
}

void tst_KelRange::rangeTestsAskTheOverriddenPointTest()
{
    const ShiftedRange shifted(1, 5);
    QVERIFY(!shifted.contains(KelRange<int>(2, 3)));
    QVERIFY(shifted.contains(KelRange<int>(102, 103)));
    QVERIFY(shifted.intersects(KelRange<int>(105, 110)));
    QVERIFY(!shifted.intersects(KelRange<int>(106, 110)));
    // The other range is asked through its slot too: it counts 1 and 5 as outside, 101 as inside.
    QVERIFY(!KelRange<int>(200, 300).intersects(shifted));
    QVERIFY(KelRange<int>(101, 101).intersects(shifted));
}

void tst_KelRange::orderAsksTheOverriddenValidity()
{
    QVERIFY(!(NeverValidRange(1, 2) < KelRange<int>(8, 9)));
    QVERIFY(KelRange<int>(8, 9) < NeverValidRange(1, 2));
}

void tst_KelRange::virtualOperationsKeepTheirOrder()
{
    using Range = KelRange<int>;
    const QList<std::ptrdiff_t> places{
        slotOf(&Range::operator==),
        slotOf(&Range::operator!=),
        slotOf(&Range::operator<),
        slotOf(&Range::expandTo),
        slotOf(&Range::center),
        slotOf(&Range::isValid),
        slotOf(qOverload<const int &>(&Range::contains)),
        slotOf(qOverload<const Range &>(&Range::contains)),
        slotOf(&Range::intersects),
    };
    for (qsizetype i = 1; i < places.size(); ++i)
        QCOMPARE(places.at(i) - places.at(i - 1), std::ptrdiff_t(sizeof(void *)));
    // The destructor comes first, in the two forms that the compiler makes of it.
    QCOMPARE(places.first() / std::ptrdiff_t(sizeof(void *)), std::ptrdiff_t(2));
}

QTEST_GUILESS_MAIN(tst_KelRange)
#include "tst_KelRange.moc"
