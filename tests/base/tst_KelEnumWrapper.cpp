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

/// Overrides whatever may be overridden and remembers what was called last.
class Watched : public Side
{
public:
    using Wrapper = KelEnumWrapper<SideEnum>;
    using Side::Side;

    bool operator<(const Wrapper &) const override { return called("<"); }
    bool operator<=(const Wrapper &) const override { return called("<="); }
    bool operator>(const Wrapper &) const override { return called(">"); }
    bool operator==(const Wrapper &) const override { return called("=="); }
    bool operator==(SideEnum) const override { return called("== enum"); }
    bool operator!=(const Wrapper &) const override { return called("!="); }
    bool operator!=(SideEnum) const override { return called("!= enum"); }
    Wrapper &operator|=(const Wrapper &) override { return changed("|="); }
    Wrapper &operator|=(SideEnum) override { return changed("|= enum"); }
    Wrapper &operator&=(const Wrapper &) override { return changed("&="); }
    Wrapper &operator&=(SideEnum) override { return changed("&= enum"); }
    int operator&(const Wrapper &) const override { return called("&"); }
    int operator|(const Wrapper &) const override { return called("|"); }
    void exclude(const Wrapper &) override { called("exclude"); }
    void exclude(SideEnum) override { called("exclude enum"); }
    void expandTo(const Wrapper &) override { called("expandTo"); }
    void expandTo(SideEnum) override { called("expandTo enum"); }
    void reduceTo(SideEnum) override { called("reduceTo"); }
    int reducedTo(SideEnum) const override { return called("reducedTo"); }
    bool isValid() const override { return called("isValid"); }

    mutable QByteArray last;

private:
    bool called(const char *operation) const
    {
        last = operation;
        return true;
    }
    Wrapper &changed(const char *operation)
    {
        last = operation;
        return *this;
    }
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
    using Wrapper = KelEnumWrapper<SideEnum>;
    Watched watched(SideRight);
    Wrapper &base = watched;
    const Side left(SideLeft);
    const auto calledBy = [&](auto operation) {
        watched.last.clear();
        static_cast<void>(operation(base));
        return watched.last;
    };

    QCOMPARE(calledBy([&](Wrapper &w) { return w < left; }), "<");
    QCOMPARE(calledBy([&](Wrapper &w) { return w <= left; }), "<=");
    QCOMPARE(calledBy([&](Wrapper &w) { return w > left; }), ">");
    QCOMPARE(calledBy([&](Wrapper &w) { return w == left; }), "==");
    QCOMPARE(calledBy([&](Wrapper &w) { return w == SideLeft; }), "== enum");
    QCOMPARE(calledBy([&](Wrapper &w) { return w != left; }), "!=");
    QCOMPARE(calledBy([&](Wrapper &w) { return w != SideLeft; }), "!= enum");
    QCOMPARE(calledBy([&](Wrapper &w) { return &(w |= left); }), "|=");
    QCOMPARE(calledBy([&](Wrapper &w) { return &(w |= SideLeft); }), "|= enum");
    QCOMPARE(calledBy([&](Wrapper &w) { return &(w &= left); }), "&=");
    QCOMPARE(calledBy([&](Wrapper &w) { return &(w &= SideLeft); }), "&= enum");
    QCOMPARE(calledBy([&](Wrapper &w) { return w & left; }), "&");
    QCOMPARE(calledBy([&](Wrapper &w) { return w | left; }), "|");
    QCOMPARE(calledBy([&](Wrapper &w) { w.exclude(left); return 0; }), "exclude");
    QCOMPARE(calledBy([&](Wrapper &w) { w.exclude(SideLeft); return 0; }), "exclude enum");
    QCOMPARE(calledBy([&](Wrapper &w) { w.expandTo(left); return 0; }), "expandTo");
    QCOMPARE(calledBy([&](Wrapper &w) { w.expandTo(SideLeft); return 0; }), "expandTo enum");
    QCOMPARE(calledBy([&](Wrapper &w) { w.reduceTo(SideLeft); return 0; }), "reduceTo");
    QCOMPARE(calledBy([&](Wrapper &w) { return w.reducedTo(SideLeft); }), "reducedTo");
    QCOMPARE(calledBy([&](Wrapper &w) { return w.isValid(); }), "isValid");
}

QTEST_GUILESS_MAIN(tst_KelEnumWrapper)
#include "tst_KelEnumWrapper.moc"
