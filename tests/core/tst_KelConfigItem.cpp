// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelConfigItem.h>

#include <QObject>
#include <QtTest>

class tst_KelConfigItem : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void beginsWithItsDefault();
    void setValueTellsWhetherSomethingChanged();
};

void tst_KelConfigItem::beginsWithItsDefault()
{
    const KelConfigItem<int> item(QStringLiteral("count"), 7);
    QCOMPARE(item.key(), QStringLiteral("count"));
    QCOMPARE(item.defaultValue(), 7);
    QCOMPARE(item.value(), 7);
    QVERIFY(item.isDefault());
}

void tst_KelConfigItem::setValueTellsWhetherSomethingChanged()
{
    KelConfigItem<QString> item(QStringLiteral("name"), QStringLiteral("a"));
    QVERIFY(!item.setValue(QStringLiteral("a")));
    QVERIFY(item.setValue(QStringLiteral("b")));
    QCOMPARE(item.value(), QStringLiteral("b"));
    QCOMPARE(item.defaultValue(), QStringLiteral("a"));
    QVERIFY(!item.isDefault());
    QVERIFY(!item.setValue(QStringLiteral("b")));
    QVERIFY(item.setValue(QStringLiteral("a")));
    QVERIFY(item.isDefault());
}

QTEST_GUILESS_MAIN(tst_KelConfigItem)
#include "tst_KelConfigItem.moc"
