#include "App/QuickActions/QuickActionsModel.h"
#include "Tests/QuickActions/ActionsSetup.h"

#include <QTest>

using namespace Qt::StringLiterals;

struct Setup : ActionsSetup {
    Setup(const QString& input = {}, const QStringList& models = {})
    {
        if (!input.isEmpty())
            model.setInput(input);
        if (!models.isEmpty())
            load(tags(models));
    }

    void load(const HttpResult& result)
    {
        model.loadModels();
        answerModels(result);
    }

    void rewrite(const HttpResult& result)
    {
        model.rewrite();
        answerRewrite(result);
    }

    QuickActionsModel model { clipboard, client };
};

class QuickActionsModelTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everythingIsEmptyAtFirst()
    {
        Setup s;
        QCOMPARE(s.model.input(), QString());
        QCOMPARE(s.model.output(), QString());
        QCOMPARE(s.model.status(), QString());
        QCOMPARE(s.model.models(), QStringList());
        QCOMPARE(s.model.model(), QString());
        QVERIFY(!s.model.ollamaDown());
        QVERIFY(!s.model.busy());
    }

    void theClipboardFillsTheInputAndClearsTheStatus()
    {
        Setup s;
        s.model.copy();
        s.model.readClipboard();
        QCOMPARE(s.model.input(), QString());
        s.copyElsewhere(u" some text\n"_s);
        QCOMPARE(s.model.input(), u" some text\n"_s);
        QCOMPARE(s.model.status(), QString());
    }

    void aClipboardWithoutTextEmptiesTheInputAndSaysSo()
    {
        Setup s(u"before"_s);
        s.model.readClipboard();
        s.copyElsewhere({});
        QCOMPARE(s.model.input(), QString());
        QCOMPARE(s.model.status(), u"Clipboard has no text"_s);
        QVERIFY(!s.model.canTransform());
    }

    void whatIsTypedIsNotOverwrittenByALateClipboard()
    {
        Setup s;
        s.model.readClipboard();
        s.model.setInput(u"typed"_s);
        s.copyElsewhere(u"late"_s);
        QCOMPARE(s.model.input(), u"typed"_s);
    }

    void onlyTheLastReadingCounts()
    {
        Setup s;
        int announced = 0;
        s.model.readClipboard();
        s.model.readClipboard();
        connect(&s.model, &Model::willChange, this, [&] { ++announced; });
        s.copyElsewhere(u"text"_s);
        QCOMPARE(announced, 2);
    }

    void theFourToolsSetTheOutputAndNothingElse()
    {
        Setup s(u"1. so  do i\n2. it"_s);
        s.model.copy();
        s.model.summarize();
        QCOMPARE(s.model.output(), u"1. so  do i\n2. it"_s);
        s.model.fixSpacingAndCase();
        QCOMPARE(s.model.output(), u"1. So do i\n2. It"_s);
        s.model.bullets();
        QCOMPARE(s.model.output(), u"• so  do i\n• it"_s);
        s.model.count();
        QVERIFY(s.model.output().endsWith(u" min read"));
        QCOMPARE(s.model.status(), u"Copied to clipboard"_s);
        QCOMPARE(s.clipboard.text, QString());
        QCOMPARE(s.model.input(), u"1. so  do i\n2. it"_s);
    }

    void copyPutsExactlyTheResultOnTheClipboard()
    {
        Setup s(u"a\u00a0b\r\n"_s);
        QVERIFY(!s.model.canCopy());
        s.model.bullets();
        QVERIFY(s.model.canCopy());
        s.model.copy();
        QCOMPARE(s.clipboard.text, s.model.output());
        QCOMPARE(s.model.status(), u"Copied to clipboard"_s);
    }

    void theFirstModelIsChosen()
    {
        Setup s;
        s.load(s.tags({ u"b"_s, u"a"_s }));
        QCOMPARE(s.model.models(), QStringList({ u"b"_s, u"a"_s }));
        QCOMPARE(s.model.model(), u"b"_s);
        QVERIFY(!s.model.ollamaDown());
    }

    void aModelThatIsStillInstalledStaysChosen()
    {
        Setup s({}, { u"a"_s, u"b"_s });
        s.model.setModel(u"b"_s);
        s.load(s.tags({ u"c"_s, u"a"_s, u"b"_s }));
        QCOMPARE(s.model.model(), u"b"_s);
        s.load(s.tags({ u"c"_s, u"a"_s }));
        QCOMPARE(s.model.model(), u"c"_s);
    }

    void aServerWithoutModelsTellsHowToGetOne()
    {
        Setup s({}, { u"a"_s });
        s.load(s.tags({}));
        QCOMPARE(s.model.model(), QString());
        QCOMPARE(
            s.model.status(), u"Ollama is running but has no models. Try: ollama pull llama3.2"_s);
        QVERIFY(!s.model.ollamaDown());
    }

    void foundModelsLeaveTheStatusAsItWas()
    {
        Setup s;
        s.model.copy();
        s.load(s.tags({ u"a"_s }));
        QCOMPARE(s.model.status(), u"Copied to clipboard"_s);
    }

    void anyFailedListMeansThatTheServerIsDown_data()
    {
        QTest::addColumn<HttpResult>("result");
        using Kind = TransportError::Kind;
        for (const auto kind : { Kind::cannotConnectToHost, Kind::cannotFindHost,
                 Kind::networkConnectionLost, Kind::timedOut, Kind::other })
            QTest::addRow("%d", int(kind)) << ActionsSetup::failure(kind);
        QTest::newRow("no JSON") << HttpResult(QByteArray("<html>"));
    }
    void anyFailedListMeansThatTheServerIsDown()
    {
        QFETCH(HttpResult, result);
        Setup s(u"text"_s, { u"a"_s });
        s.model.copy();
        s.load(result);
        QVERIFY(s.model.ollamaDown());
        QCOMPARE(s.model.models(), QStringList());
        QCOMPARE(s.model.model(), QString());
        QCOMPARE(s.model.status(), u"Copied to clipboard"_s);
        QVERIFY(!s.model.canRewrite());
    }

    void aServerThatCameBackIsFound()
    {
        Setup s;
        s.load(s.stopped());
        QVERIFY(s.model.ollamaDown());
        s.load(s.tags({ u"a"_s }));
        QVERIFY(!s.model.ollamaDown());
        QCOMPARE(s.model.model(), u"a"_s);
    }

    void theLastListToArriveWins()
    {
        Setup s;
        s.model.loadModels();
        s.model.loadModels();
        s.answerModels(s.tags({ u"a"_s }));
        QCOMPARE(s.model.model(), u"a"_s);
        s.answerModels(s.stopped());
        QVERIFY(s.model.ollamaDown());
    }

    void aRewriteNeedsATextAndAModel()
    {
        Setup s;
        QVERIFY(!s.model.canRewrite());
        s.model.setInput(u"x"_s);
        QVERIFY(s.model.canTransform());
        QVERIFY(!s.model.canRewrite());
        s.model.rewrite();
        ActionsSetup::settle();
        QVERIFY(s.client.exchanges.isEmpty());
        s.load(s.tags({ u"a"_s }));
        QVERIFY(s.model.canRewrite());
        s.model.setInput({});
        QVERIFY(!s.model.canRewrite());
    }

    void aRewriteIsBusyUntilItsTextComes()
    {
        Setup s(u"text"_s, { u"a"_s });
        s.model.copy();
        s.model.rewrite();
        QVERIFY(s.model.busy());
        QCOMPARE(s.model.status(), QString());
        QVERIFY(!s.model.canRewrite());
        QVERIFY(s.model.canTransform());
        s.answerRewrite(QByteArray(R"({"response": " Better.\n"})"));
        QVERIFY(!s.model.busy());
        QVERIFY(s.model.canRewrite());
        QCOMPARE(s.model.output(), u"Better."_s);
        QCOMPARE(s.clipboard.text, QString());
    }

    void aSecondRewriteWaitsForTheFirst()
    {
        Setup s(u"text"_s, { u"a"_s });
        s.model.rewrite();
        s.model.rewrite();
        ActionsSetup::settle();
        QCOMPARE(s.client.exchanges.size(), 1);
    }

    void aRewriteClearsTheDownState()
    {
        Setup s(u"text"_s, { u"a"_s });
        s.model.rewrite();
        s.load(s.stopped());
        QVERIFY(s.model.ollamaDown());
        s.answerRewrite(QByteArray(R"({"response": "x"})"));
        QVERIFY(!s.model.ollamaDown());
    }

    void aServerThatVanishesIsDownWithoutAWord_data()
    {
        QTest::addColumn<TransportError::Kind>("kind");
        using Kind = TransportError::Kind;
        QTest::newRow("connect") << Kind::cannotConnectToHost;
        QTest::newRow("host") << Kind::cannotFindHost;
        QTest::newRow("lost") << Kind::networkConnectionLost;
        QTest::newRow("time-out") << Kind::timedOut;
    }
    void aServerThatVanishesIsDownWithoutAWord()
    {
        QFETCH(TransportError::Kind, kind);
        Setup s(u"text"_s, { u"a"_s });
        s.model.bullets();
        s.rewrite(s.failure(kind));
        QVERIFY(s.model.ollamaDown());
        QCOMPARE(s.model.models(), QStringList());
        QCOMPARE(s.model.model(), QString());
        QVERIFY(!s.model.busy());
        QCOMPARE(s.model.status(), QString());
        QCOMPARE(s.model.output(), u"• text"_s);
    }

    void anyOtherFailureIsSaid_data()
    {
        QTest::addColumn<HttpResult>("result");
        QTest::addColumn<QString>("status");
        QTest::newRow("server") << HttpResult(QByteArray(R"({"error": "model 'x' not found"})"))
                                << u"Rewrite failed: model 'x' not found"_s;
        QTest::newRow("JSON") << HttpResult(QByteArray("<html>"))
                              << u"Rewrite failed: The reply is not what Ollama would send"_s;
        QTest::newRow("transport")
            << ActionsSetup::failure(TransportError::Kind::other) << u"Rewrite failed: It failed"_s;
    }
    void anyOtherFailureIsSaid()
    {
        QFETCH(HttpResult, result);
        QFETCH(QString, status);
        Setup s(u"text"_s, { u"a"_s });
        s.model.bullets();
        s.rewrite(result);
        QCOMPARE(s.model.status(), status);
        QVERIFY(!s.model.busy());
        QVERIFY(!s.model.ollamaDown());
        QCOMPARE(s.model.model(), u"a"_s);
        QCOMPARE(s.model.output(), u"• text"_s);
    }

    void nothingIsWaitedForAfterItsEnd()
    {
        ActionsSetup services;
        {
            QuickActionsModel model(services.clipboard, services.client);
            model.readClipboard();
            model.loadModels();
        }
        QVERIFY(!services.clipboard.readings.first().waiter);
        QVERIFY(!services.client.exchanges.first().waiter);
        services.copyElsewhere(u"text"_s);
        services.answerModels(services.stopped());
    }
};

QTEST_GUILESS_MAIN(QuickActionsModelTest)
#include "QuickActionsModelTest.moc"
