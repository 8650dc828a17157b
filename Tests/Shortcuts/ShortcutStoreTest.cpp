#include "App/Shortcuts/ShortcutStore.h"
#include "Tests/Shortcuts/ShortcutsSetup.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

static const QStringList defaultNames { u"Safari"_s, u"Notes"_s, u"GitHub"_s, u"Terminal"_s };

struct Setup : ShortcutsSetup {
    using ShortcutsSetup::ShortcutsSetup;

    // In which state the store is left by a command that ends so.
    QString errorAfter(const CommandEnd& end)
    {
        store.run(shortcut(u"Any"_s));
        runner.end(end);
        return store.lastError();
    }
};

class ShortcutStoreTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void withNothingStoredThereAreFourButtons()
    {
        Setup s;
        const auto& items = s.store.items();
        QCOMPARE(s.names(), defaultNames);
        QStringList described;
        for (const auto& item : items)
            described << rawValue(item.kind) + u' ' + item.target + u' ' + item.symbol;
        QCOMPARE(described,
            QStringList({ u"App Safari safari"_s, u"App Notes note.text"_s,
                u"URL https://github.com chevron.left.forwardslash.chevron.right"_s,
                u"App Terminal terminal"_s }));
        QVERIFY(items[0].id != items[1].id);
        QVERIFY(items[0].id != Setup().store.items()[0].id);
        QCOMPARE(s.defaults.writes, 0);
        QCOMPARE(s.store.lastError(), QString());
    }

    void whatIsStoredIsThereAgain()
    {
        const QList<ShortcutItem> items { Setup::url(u"example.com"_s), Setup::app(u"Mail"_s) };
        Setup s(items);
        QVERIFY(s.store.items() == items);
    }

    void anEmptyListStaysEmpty()
    {
        Setup s(QByteArray("[]"));
        QVERIFY(s.store.items().isEmpty());
    }

    void whatCannotBeReadStaysUntilTheFirstChange()
    {
        Setup s(QByteArray("not JSON"));
        QCOMPARE(s.names(), defaultNames);
        QCOMPARE(s.store.lastError(), QString());
        QCOMPARE(s.defaults.data(s.itemsKey), QByteArray("not JSON"));
        const auto items = withItem(s.store.items(), Setup::app(u"Mail"_s));
        s.store.setItems(items);
        QVERIFY(s.stored() == items);
    }

    void dataOfAnotherTypeIsNoData()
    {
        FakeUserDefaults defaults({ { Setup::itemsKey, u"text"_s } });
        FakeWorkspace workspace;
        FakeCommandRunner runner;
        const ShortcutStore store(defaults, workspace, runner, {});
        QCOMPARE(store.items().size(), 4);
    }

    void everyChangeIsStoredAtOnce()
    {
        Setup s;
        s.store.setItems({ Setup::app(u"A"_s) });
        QVERIFY(s.stored() == s.store.items());
        s.store.setItems({});
        QCOMPARE(s.defaults.data(s.itemsKey), QByteArray("[]"));
        QCOMPARE(s.defaults.writes, 2);
    }

    void aChangeIsAnnouncedBeforeItIsMade()
    {
        Setup s;
        QStringList before;
        connect(&s.store, &Model::willChange, &s.store, [&] { before << s.names().join(u' '); });
        s.store.setItems({ Setup::app(u"A"_s) });
        QCOMPARE(before, QStringList { defaultNames.join(u' ') });
    }

    void tenThousandButtonsAreReadAndWritten()
    {
        QList<ShortcutItem> items;
        for (int i = 0; i < 10'000; ++i)
            items << Setup::url(u"https://example.com/%1"_s.arg(i));
        Setup s(items);
        QVERIFY(s.store.items() == items);
        s.store.setItems(withoutItem(items, items[5'000].id));
        QCOMPARE(s.stored()->size(), 9'999);
    }

    void whatIsChangedElsewhereIsAdopted()
    {
        Setup s;
        const QList<ShortcutItem> items { Setup::app(u"Elsewhere"_s) };
        s.storeElsewhere(ShortcutItem::encoded(items));
        QVERIFY(s.store.items() == items);
        QCOMPARE(s.defaults.writes, 1); // That of the other.
    }

    void whatIsBrokenElsewhereChangesNothing()
    {
        Setup s({ Setup::app(u"Mine"_s) });
        s.storeElsewhere("[{]");
        QCOMPARE(s.names(), QStringList(u"Mine"_s));
        QCOMPARE(s.defaults.data(s.itemsKey), QByteArray("[{]"));
        s.store.setItems({ Setup::app(u"Next"_s) });
        QVERIFY(s.stored() == s.store.items());
    }

    void otherSettingsChangeNothing()
    {
        Setup s;
        QSignalSpy announced(&s.store, &Model::willChange);
        s.defaults.setText(u"taskName"_s, u"Write"_s);
        QCOMPARE(announced.count(), 0);
        s.store.setItems({ Setup::app(u"A"_s) });
        QCOMPARE(announced.count(), 1); // Its own change is none from elsewhere.
    }

    void anAddressIsCompletedAndTrimmed_data()
    {
        QTest::addColumn<QString>("target");
        QTest::addColumn<QString>("opened");
        QTest::newRow("host and path") << u"example.com/a/b"_s << u"https://example.com/a/b"_s;
        QTest::newRow("its own scheme")
            << u" \tftp://example.com/x \t"_s << u"ftp://example.com/x"_s;
        QTest::newRow("http") << u"http://example.com"_s << u"http://example.com"_s;
        QTest::newRow("an unheard-of scheme") << u"todo://add?title=A"_s << u"todo://add?title=A"_s;
        QTest::newRow("a scheme without slashes")
            << u"example.com:8080/a"_s << u"https://example.com:8080/a"_s;
        QTest::newRow("spaces inside") << u"example.com/a b"_s << u"https://example.com/a%20b"_s;
        QTest::newRow("letters of any script")
            << u"https://müller.example/ä?ö"_s << u"https://xn--mller-kva.example/%C3%A4?%C3%B6"_s;
        QTest::newRow("escapes") << u"example.com/%2F%20?a=%26&b#c"_s
                                 << u"https://example.com/%2F%20?a=%26&b#c"_s;
        QTest::newRow("a file") << u"file:///home/me/a b.pdf"_s << u"file:///home/me/a%20b.pdf"_s;
        QTest::newRow("a no-break space around it")
            << u"\u00a0example.com\u00a0"_s << u"https://example.com"_s;
    }

    void anAddressIsCompletedAndTrimmed()
    {
        QFETCH(QString, target);
        QFETCH(QString, opened);
        Setup s;
        s.store.run(Setup::url(target));
        QCOMPARE(s.store.lastError(), QString());
        QCOMPARE(s.workspace.opened.size(), 1);
        QCOMPARE(s.workspace.opened.first().toString(QUrl::FullyEncoded), opened);
        QVERIFY(s.runner.commands.isEmpty());
    }

    void whatIsNoAddressIsSaid_data()
    {
        QTest::addColumn<QString>("target");
        QTest::newRow("empty") << QString();
        QTest::newRow("spaces") << u"  \t "_s;
        QTest::newRow("a space in the host") << u"http://exa mple.com"_s;
        QTest::newRow("an open bracket") << u"https://[::1"_s;
        QTest::newRow("a port of letters") << u"https://example.com:port/"_s;
        QTest::newRow("no scheme") << u"://example.com"_s;
        QTest::newRow("a space in the scheme") << u"ht tp://example.com"_s;
        QTest::newRow("a line feed behind the host") << u"example.com\n"_s;
        QTest::newRow("a scheme in the query only") << u"example.com/?u=http://a"_s;
        QTest::newRow("no host") << u"https:///path"_s;
    }

    void whatIsNoAddressIsSaid()
    {
        QFETCH(QString, target);
        Setup s;
        s.store.run(Setup::url(target));
        QCOMPARE(s.store.lastError(), u"Invalid URL"_s);
        QVERIFY(s.workspace.opened.isEmpty());
    }

    void aShortcutIsRunByItsNameAsItIs()
    {
        Setup s;
        s.store.run(Setup::shortcut(u"  Deep \"work\" $HOME  "_s));
        QCOMPARE(s.runner.commands.size(), 1);
        QCOMPARE(s.runner.commands.first().path, u"/tools/shortcuts"_s);
        QCOMPARE(s.runner.commands.first().arguments,
            QStringList({ u"run"_s, u"  Deep \"work\" $HOME  "_s }));
    }

    void anApplicationIsOpenedByItsName()
    {
        Setup s;
        s.store.run(Setup::app(u"Input/Output"_s));
        QCOMPARE(s.runner.commands.takeFirst().arguments.last(), u"Input/Output"_s);
        s.store.run(Setup::app(u"Text Editor"_s));
        QCOMPARE(s.runner.commands.size(), 1);
        QCOMPARE(s.runner.commands.first().path, u"/tools/open"_s);
        QCOMPARE(s.runner.commands.first().arguments, QStringList({ u"-a"_s, u"Text Editor"_s }));
    }

    void anApplicationIsOpenedByItsPath_data()
    {
        QTest::addColumn<QString>("target");
        QTest::addColumn<QString>("opened");
        QTest::newRow("any characters")
            << u"/opt/my apps/A#1?.desktop"_s << u"file:///opt/my%20apps/A%231%3F.desktop"_s;
        QTest::newRow("no other machine's") << u"//opt//A"_s << u"file:///opt//A"_s;
        QTest::newRow("all of it") << u"/"_s << u"file:///"_s;
    }

    void anApplicationIsOpenedByItsPath()
    {
        QFETCH(QString, target);
        QFETCH(QString, opened);
        Setup s;
        s.store.run(Setup::app(target));
        QVERIFY(s.runner.commands.isEmpty());
        QCOMPARE(s.workspace.opened.size(), 1);
        QCOMPARE(s.workspace.opened.first().toString(QUrl::FullyEncoded), opened);
    }

    void whatACommandSaysIsTheError()
    {
        Setup s;
        QCOMPARE(s.errorAfter({ false, "\n  No such shortcut: Any\nTry another \n\n" }),
            u"No such shortcut: Any\nTry another"_s);
        QCOMPARE(s.errorAfter({ false, "Übel" }), u"Übel"_s);
    }

    void aFailureWithoutWordsIsSaidToo_data()
    {
        QTest::addColumn<QByteArray>("errors");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("white space") << QByteArray(" \n\t\r\n");
        QTest::newRow("not UTF-8") << QByteArray("caf\xe9 is closed");
        QTest::newRow("cut in a character") << QByteArray("caf\xc3");
    }

    void aFailureWithoutWordsIsSaidToo()
    {
        QFETCH(QByteArray, errors);
        Setup s;
        QCOMPARE(s.errorAfter({ false, errors }), u"Command failed"_s);
    }

    void aSuccessSaysNothing()
    {
        Setup s;
        QCOMPARE(s.errorAfter({ true, "just a warning" }), QString());
    }

    void theNextRunClearsTheErrorNotItsSuccess()
    {
        Setup s;
        QCOMPARE(s.errorAfter({ false, "Failed" }), u"Failed"_s);
        s.store.run(Setup::shortcut(u"Good"_s));
        QCOMPARE(s.store.lastError(), QString());
        s.store.run(Setup::url(u"://"_s));
        QCOMPARE(s.store.lastError(), u"Invalid URL"_s);
        s.runner.end({ true, {} });
        QCOMPARE(s.store.lastError(), u"Invalid URL"_s);
    }

    void whatCannotBeStartedIsSaidAtOnce()
    {
        Setup s;
        s.runner.failure = u"No such file or directory"_s;
        s.store.run(Setup::app(u"Mail"_s));
        QCOMPARE(s.store.lastError(), u"No such file or directory"_s);
    }

    void aCommandDoesNotKeepTheStore()
    {
        FakeCommandRunner runner;
        {
            FakeUserDefaults defaults;
            FakeWorkspace workspace;
            ShortcutStore store(defaults, workspace, runner, {});
            store.run(Setup::shortcut(u"Slow"_s));
        }
        QVERIFY(!runner.commands.first().waiter);
        runner.end({ false, "too late" });
    }
};

QTEST_GUILESS_MAIN(ShortcutStoreTest)
#include "ShortcutStoreTest.moc"
