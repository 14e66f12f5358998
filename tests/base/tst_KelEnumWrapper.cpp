// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelEnumWrapper.h>

#include <QtTest>

#include <atomic>
#include <thread>
#include <type_traits>
#include <vector>

namespace
{

enum SideEnum { SideNone = 0, SideLeft = 1, SideRight = 2, SideTop = 4 };

std::atomic<int> sideFillings{0};

class Side : public KelEnumWrapper<SideEnum>
{
public:
    Side() = default;
    Side(SideEnum value)
        : KelEnumWrapper<SideEnum>(value)
    {
    }
    explicit Side(int value)
        : KelEnumWrapper<SideEnum>(value)
    {
    }
    explicit Side(const QString &text) { setValue(enumToStringTable()->decodeCSV(text)); }

    void fillTable(KelEnumToStringTable<SideEnum> *table) const override
    {
        ++sideFillings;
        table->insert(QStringLiteral("left"), SideLeft);
        table->insert(QStringLiteral("right"), SideRight);
    }
};

enum OtherEnum { OtherOne = 1 };

class Other : public KelEnumWrapper<OtherEnum>
{
public:
    void fillTable(KelEnumToStringTable<OtherEnum> *table) const override
    {
        table->insert(QStringLiteral("one"), OtherOne);
    }
};

// An override of the point where the general operations meet a subclass.
class Pickier : public Side
{
public:
    using Side::Side;
    bool isValid() const override { return toInt() == SideLeft; }
};

} // namespace

class tst_KelEnumWrapper : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tableIsMadeOnceByManyThreads();
    void eachEnumerationHasItsOwnTable();
    void construction();
    void comparison_data();
    void comparison();
    void combination();
    void excludeExpandReduce();
    void isValid();
    void encode_data();
    void encode();
    void operationsAreVirtual();
};

// First, while nothing has asked for the table yet.
void tst_KelEnumWrapper::tableIsMadeOnceByManyThreads()
{
    QCOMPARE(sideFillings.load(), 0);
    std::vector<const KelEnumToStringTable<SideEnum> *> tables(8);
    std::vector<std::thread> threads;
    for (auto &table : tables)
        threads.emplace_back([&table] { table = Side().enumToStringTable(); });
    for (auto &thread : threads)
        thread.join();
    for (const auto *table : tables) {
        QVERIFY(table != nullptr);
        QCOMPARE(table, tables.front());
    }
    QCOMPARE(sideFillings.load(), 1);
    QCOMPARE(Side(SideLeft).enumToStringTable(), tables.front());
    QCOMPARE(sideFillings.load(), 1);
}

void tst_KelEnumWrapper::eachEnumerationHasItsOwnTable()
{
    QCOMPARE(Other().enumToStringTable()->decodeCSV(QStringLiteral("one,left")), OtherOne);
    QCOMPARE(Side().enumToStringTable()->decodeCSV(QStringLiteral("one,left")), SideLeft);
}

void tst_KelEnumWrapper::construction()
{
    QCOMPARE(Side().toInt(), 0);
    QCOMPARE(Side(SideRight).toInt(), 2);
    QCOMPARE(Side(SideRight).value(), SideRight);
    QCOMPARE(Side(5).toInt(), 5);
    QCOMPARE(Side(QStringLiteral("Left , RIGHT")).toInt(), 3);
    QCOMPARE(Side(QString()).toInt(), 0);

    Side side;
    side.setValue(SideTop);
    QCOMPARE(side.toInt(), 4);
    side.setValue(9);
    QCOMPARE(side.toInt(), 9);
    const Side copy = side;
    QCOMPARE(copy.toInt(), 9);
    QVERIFY(std::has_virtual_destructor_v<KelEnumWrapper<SideEnum>>);
}

void tst_KelEnumWrapper::comparison_data()
{
    QTest::addColumn<int>("left");
    QTest::addColumn<int>("right");
    QTest::addColumn<int>("order");

    QTest::newRow("less") << 1 << 2 << -1;
    QTest::newRow("equal") << 2 << 2 << 0;
    QTest::newRow("greater") << 4 << 2 << 1;
    QTest::newRow("negative is less, bits or not") << -1 << 0 << -1;
}

void tst_KelEnumWrapper::comparison()
{
    QFETCH(int, left);
    QFETCH(int, right);
    QFETCH(int, order);
    const Side a(left);
    const Side b(right);
    QCOMPARE(a < b, order < 0);
    QCOMPARE(a <= b, order <= 0);
    QCOMPARE(a > b, order > 0);
    QCOMPARE(a == b, order == 0);
    QCOMPARE(a != b, order != 0);
    if (right >= 0) {
        QCOMPARE(a == static_cast<SideEnum>(right), order == 0);
        QCOMPARE(a != static_cast<SideEnum>(right), order != 0);
    }
}

void tst_KelEnumWrapper::combination()
{
    Side side(SideLeft);
    side |= Side(SideTop);
    QCOMPARE(side.toInt(), 5);
    side |= SideRight;
    QCOMPARE(side.toInt(), 7);
    side &= Side(6);
    QCOMPARE(side.toInt(), 6);
    side &= SideRight;
    QCOMPARE(side.toInt(), 2);
    QCOMPARE(Side(6) & Side(3), 2);
    QCOMPARE(Side(6) | Side(1), 7);
    QCOMPARE(((side |= SideLeft) |= SideTop).toInt(), 7);
}

void tst_KelEnumWrapper::excludeExpandReduce()
{
    Side side(7);
    side.exclude(Side(5));
    QCOMPARE(side.toInt(), 2);
    side.exclude(SideRight);
    QCOMPARE(side.toInt(), 0);
    side.expandTo(Side(3));
    QCOMPARE(side.toInt(), 3);
    side.expandTo(SideTop);
    QCOMPARE(side.toInt(), 7);
    QCOMPARE(side.reducedTo(SideTop), 4);
    QCOMPARE(side.toInt(), 7);
    side.reduceTo(SideLeft);
    QCOMPARE(side.toInt(), 1);
    side.exclude(SideTop);
    QCOMPARE(side.toInt(), 1);
}

void tst_KelEnumWrapper::isValid()
{
    QVERIFY(!Side().isValid());
    QVERIFY(!Side(0).isValid());
    QVERIFY(Side(SideLeft).isValid());
    QVERIFY(Side(-1).isValid());
}

void tst_KelEnumWrapper::encode_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<QString>("text");

    QTest::newRow("nothing") << 0 << QString();
    QTest::newRow("negative") << -3 << QString();
    QTest::newRow("one bit") << 2 << QStringLiteral("right");
    QTest::newRow("two bits") << 3 << QStringLiteral("left, right");
    QTest::newRow("bit without a key") << 7 << QStringLiteral("left, right, ");
    QTest::newRow("bit that the enumeration does not know") << 4096 << QString();
}

void tst_KelEnumWrapper::encode()
{
    QFETCH(int, value);
    QFETCH(QString, text);
    QCOMPARE(Side(value).encode(), text);
}

void tst_KelEnumWrapper::operationsAreVirtual()
{
    const Pickier right(SideRight);
    const KelEnumWrapper<SideEnum> &base = right;
    QVERIFY(!base.isValid());
}

QTEST_GUILESS_MAIN(tst_KelEnumWrapper)
#include "tst_KelEnumWrapper.moc"
