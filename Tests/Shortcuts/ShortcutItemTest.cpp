#include "App/Shortcuts/ShortcutItem.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>
#include <QTest>

using namespace Qt::StringLiterals;

static const auto someId = u"0F8FAD5B-D9CB-469F-A165-70867728950E"_s;

static QJsonObject someObject()
{
    return {
        { u"id"_s, someId },
        { u"name"_s, u"Timesheet"_s },
        { u"kind"_s, u"URL"_s },
        { u"target"_s, u"example.com/t"_s },
        { u"symbol"_s, u"calendar"_s },
    };
}

static QByteArray listOf(const QJsonValue& value)
{
    return QJsonDocument(QJsonArray { value }).toJson();
}

static ShortcutItem item(const QString& name)
{
    return { .name = name, .target = u"Target of "_s + name };
}

class ShortcutItemTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aNewOneHasAnIdOfItsOwn()
    {
        QVERIFY(!ShortcutItem().id.isNull());
        QVERIFY(ShortcutItem().id != ShortcutItem().id);
    }

    void theKindsAreInTheOrderOfThePicker()
    {
        QStringList values;
        for (const auto kind : shortcutKinds)
            values << rawValue(kind);
        QCOMPARE(values, QStringList({ u"App"_s, u"URL"_s, u"Shortcut"_s }));
    }

    void itIsStoredUnderFiveKeys()
    {
        const ShortcutItem stored { QUuid::fromString(someId), u"Timesheet"_s, ShortcutKind::url,
            u"example.com/t"_s, u"calendar"_s };
        const auto json = ShortcutItem::encoded({ stored });
        QCOMPARE(QJsonDocument::fromJson(json).array(), QJsonArray { someObject() });
    }

    void itIsReadFromFiveKeys()
    {
        const auto items = ShortcutItem::decoded(listOf(someObject()));
        QVERIFY(items);
        const ShortcutItem expected { QUuid::fromString(someId), u"Timesheet"_s, ShortcutKind::url,
            u"example.com/t"_s, u"calendar"_s };
        QCOMPARE(items->size(), 1);
        QVERIFY(items->first() == expected);
    }

    void otherKeysArePassedOver()
    {
        auto object = someObject();
        object[u"color"_s] = u"red"_s;
        QVERIFY(ShortcutItem::decoded(listOf(object)));
    }

    void anIdInSmallLettersIsAnIdToo()
    {
        auto object = someObject();
        object[u"id"_s] = someId.toLower();
        const auto items = ShortcutItem::decoded(listOf(object));
        QVERIFY(items);
        QCOMPARE(items->first().id, QUuid::fromString(someId));
    }

    void anyTextComesBackAsItWas_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("empty") << QString();
        QTest::newRow("quotes") << u"\"Say\" \\ 'hi' `now`"_s;
        QTest::newRow("lines") << u"one\ntwo\r\n\tthree"_s;
        QTest::newRow("controls") << u"\u0001\u001b[31m\u007f"_s;
        QTest::newRow("scripts") << u"日本語 العربية ünïcödé 👩‍🚀"_s;
        QTest::newRow("zero") << QString(u'\0') + u"after"_s;
        QTest::newRow("long") << QString(1'000'000, u'x');
    }

    void anyTextComesBackAsItWas()
    {
        QFETCH(QString, text);
        QList<ShortcutItem> items { { .name = text, .target = text, .symbol = text } };
        const auto decoded = ShortcutItem::decoded(ShortcutItem::encoded(items));
        QVERIFY(decoded);
        QVERIFY(*decoded == items);
    }

    void anEmptyListIsAList()
    {
        const auto items = ShortcutItem::decoded("[]");
        QVERIFY(items);
        QVERIFY(items->isEmpty());
    }

    void whatIsNoListIsAbsent_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("prose") << QByteArray("no JSON");
        QTest::newRow("an object") << QByteArray("{}");
        QTest::newRow("null") << QByteArray("null");
        QTest::newRow("cut off") << listOf(someObject()).chopped(3);
        QTest::newRow("more behind it") << listOf(someObject()) + "x";
        QTest::newRow("a list of texts") << QByteArray("[\"Safari\"]");
        QTest::newRow("null in a list") << QByteArray("[null]");
        QTest::newRow("depth") << QByteArray(100'000, '[');
        for (const auto& key : someObject().keys()) {
            auto without = someObject();
            without.remove(key);
            QTest::addRow("without %s", qPrintable(key)) << listOf(without);
            auto number = someObject();
            number[key] = 7;
            QTest::addRow("a number as %s", qPrintable(key)) << listOf(number);
        }
        auto kind = someObject();
        kind[u"kind"_s] = u"app"_s;
        QTest::newRow("a kind in small letters") << listOf(kind);
        for (const auto& id : { u"{"_s + someId + u'}', QString(someId).remove(u'-'), QString(),
                 someId + u'0', someId.chopped(1) + u'G' }) {
            auto object = someObject();
            object[u"id"_s] = id;
            QTest::addRow("the id %s", qPrintable(id)) << listOf(object);
        }
    }

    void whatIsNoListIsAbsent()
    {
        QFETCH(QByteArray, json);
        QVERIFY(!ShortcutItem::decoded(json));
    }

    void oneBadItemMakesAllAbsent()
    {
        const QJsonArray both { someObject(), QJsonObject() };
        QVERIFY(!ShortcutItem::decoded(QJsonDocument(both).toJson()));
    }

    // Seeded: the same every time.
    void damagedTextIsReadWholeOrNotAtAll()
    {
        const auto whole = ShortcutItem::encoded({ item(u"One"_s), item(u"Two"_s) });
        QRandomGenerator random(7);
        int read = 0;
        for (int i = 0; i < 20'000; ++i) {
            auto damaged = whole;
            for (int changes = random.bounded(1, 4); changes > 0; --changes)
                damaged[random.bounded(int(damaged.size()))] = char(random.bounded(256));
            if (const auto items = ShortcutItem::decoded(damaged)) {
                QCOMPARE(items->size(), 2);
                ++read;
            }
        }
        QVERIFY(read > 0);
    }

    void aChangedItemKeepsItsPlace()
    {
        const QList<ShortcutItem> items { item(u"A"_s), item(u"B"_s), item(u"C"_s) };
        auto changed = items[1];
        changed.name = u"New"_s;
        const auto all = withItem(items, changed);
        QCOMPARE(all.size(), 3);
        QVERIFY(all[1] == changed);
        QVERIFY(all[0] == items[0] && all[2] == items[2]);
    }

    void aNewItemGoesLast()
    {
        const QList<ShortcutItem> items { item(u"A"_s), item(u"B"_s) };
        const auto added = item(u"C"_s);
        const auto all = withItem(items, added);
        QCOMPARE(all.size(), 3);
        QVERIFY(all.last() == added);
    }

    void aDeletedItemIsGone()
    {
        const QList<ShortcutItem> items { item(u"A"_s), item(u"B"_s), item(u"C"_s) };
        QVERIFY(withoutItem(items, items[1].id) == QList<ShortcutItem>({ items[0], items[2] }));
        QVERIFY(withoutItem(items, QUuid::createUuid()) == items);
    }
};

QTEST_GUILESS_MAIN(ShortcutItemTest)
#include "ShortcutItemTest.moc"
