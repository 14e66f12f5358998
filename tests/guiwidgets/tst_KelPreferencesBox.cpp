// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelPreferencesBox.h>

#include <QObject>
#include <QVBoxLayout>
#include <QWidget>
#include <QtTest>

namespace
{

class CountingBox : public KelPreferencesBox
{
public:
    using KelPreferencesBox::KelPreferencesBox;

    void readFromConfig() override
    {
        ++readCount;
    }

    void writeToConfig() override
    {
        ++writeCount;
    }

    int readCount = 0;
    int writeCount = 0;
};

} // namespace

class tst_KelPreferencesBox : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isATitledBox();
    void dialogReachesThePageThroughTheItem();
    void revertReadsAgain();
    void mayBeLeftByDefault();
    void stacksIntoADialog();
    void doesNothingByItself();
};

void tst_KelPreferencesBox::isATitledBox()
{
    QWidget parent;
    const auto *box = new KelPreferencesBox(&parent, QStringLiteral("Landkarten"), KelPreferencesType::General);
    QCOMPARE(box->title(), QStringLiteral("Landkarten"));
    QCOMPARE(box->parentWidget(), &parent);
    QCOMPARE(static_cast<int>(box->type()), 0);
    QCOMPARE(KelPreferencesBox(nullptr, QString(), KelPreferencesType::Expert).type(), KelPreferencesType::Expert);
}

void tst_KelPreferencesBox::dialogReachesThePageThroughTheItem()
{
    CountingBox box(nullptr, QStringLiteral("a"), KelPreferencesType::General);
    KelPreferencesItem &item = box;
    item.readFromConfig();
    QCOMPARE(box.readCount, 1);
    QCOMPARE(box.writeCount, 0);
    item.writeToConfig();
    QCOMPARE(box.readCount, 1);
    QCOMPARE(box.writeCount, 1);
}

void tst_KelPreferencesBox::revertReadsAgain()
{
    CountingBox box(nullptr, QStringLiteral("a"), KelPreferencesType::General);
    box.revert();
    QCOMPARE(box.readCount, 1);
    QCOMPARE(box.writeCount, 0);
}

void tst_KelPreferencesBox::mayBeLeftByDefault()
{
    QVERIFY(KelPreferencesBox(nullptr, QStringLiteral("a"), KelPreferencesType::General).mayBeLeft());
}

void tst_KelPreferencesBox::stacksIntoADialog()
{
    QWidget dialog;
    auto *layout = new QVBoxLayout(&dialog);
    auto *first = new CountingBox(nullptr, QStringLiteral("a"), KelPreferencesType::General);
    auto *second = new CountingBox(nullptr, QStringLiteral("b"), KelPreferencesType::General);
    first->stackInto(layout);
    second->stackInto(layout);
    QCOMPARE(layout->count(), 2);
    QCOMPARE(layout->itemAt(0)->widget(), first);
    QCOMPARE(layout->itemAt(1)->widget(), second);
    QCOMPARE(first->parentWidget(), &dialog);
    QCOMPARE(first->readCount, 1);
}

void tst_KelPreferencesBox::doesNothingByItself()
{
    KelPreferencesBox box(nullptr, QStringLiteral("a"), KelPreferencesType::General);
    box.readFromConfig();
    box.writeToConfig();
    QVERIFY(box.children().isEmpty());
}

QTEST_MAIN(tst_KelPreferencesBox)
#include "tst_KelPreferencesBox.moc"
