#include "App/Platform/Linux/Clipboard/X11Clipboard.h"

#include "App/Platform/Linux/Clipboard/ClipboardText.h"
#include "App/Platform/Linux/Screen/X11Connection.h"
#include "Tests/Platform/Linux/Clipboard/ClipboardSetup.h"
#include "Tests/Support/LoopWatch.h"
#include "Tests/Support/PlayedOwner.h"
#include "Tests/Support/VirtualScreen.h"

#include <QApplication>
#include <QClipboard>
#include <QMimeData>
#include <QTemporaryDir>
#include <QWidget>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto longestSilence = 800ms;

PlayedOwner::Manners plainText(const PlayedOwner::Answer& answer)
{
    return { { { "UTF8_STRING", answer } } };
}

bool isOwned(const char* selection)
{
    return X11Connection::selectionOwner(X11Connection::atom(selection)) != XCB_WINDOW_NONE;
}

struct Setup {
    X11Clipboard clipboard { Patience(20s, 20s) };
    X11Clipboard brisk { Patience(longestSilence, 20s) };
    QTemporaryDir folder;
    std::unique_ptr<Daemon> owner;

    QString read() { return Reading(clipboard).awaited(); }

    // With the real program; true when it has the clipboard.
    bool own(const QByteArray& bytes, const QStringList& options = {})
    {
        QFile file(folder.filePath(u"content"_s));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            return false;
        file.close();
        QStringList arguments { u"-selection"_s, u"clipboard"_s, u"-quiet"_s };
        arguments << options << file.fileName();
        owner = std::make_unique<Daemon>(u"xclip"_s, arguments);
        return QTest::qWaitFor([] { return isOwned("CLIPBOARD"); }, 10'000);
    }

    // What another program finds on the clipboard.
    QByteArray pasted(const QStringList& options = {}) const
    {
        const QStringList arguments { u"-selection"_s, u"clipboard"_s, u"-o"_s };
        return outputOf(u"xclip"_s, arguments + options);
    }
};

}

class X11ClipboardTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QGuiApplication::clipboard()->clear();
        QTRY_VERIFY(!isOwned("CLIPBOARD"));
    }

    void readsWhatAnotherProgramCopied()
    {
        Setup s;
        QVERIFY(s.own("Grüße aus Köln 👋\n"));
        QCOMPARE(s.read(), u"Grüße aus Köln 👋\n"_s);
    }

    void readsWhatIsSelected()
    {
        Setup s;
        QVERIFY(s.own("copied"));
        QGuiApplication::clipboard()->setText(u"selected"_s, QClipboard::Selection);
        QCOMPARE(Reading(s.clipboard, QClipboard::Selection).awaited(), u"selected"_s);
        QCOMPARE(s.read(), u"copied"_s);
        QGuiApplication::clipboard()->clear(QClipboard::Selection);
        QTRY_COMPARE(Reading(s.clipboard, QClipboard::Selection).awaited(), QString());
    }

    void readsALongTextInItsParts()
    {
        Setup s;
        const auto text = longText(20'000'000);
        QVERIFY(s.own(text));
        LoopWatch watch;
        QCOMPARE(s.read(), QString::fromUtf8(text));
        QCOMPARE(s.read(), QString::fromUtf8(text));
        QVERIFY2(watch.longestStandstill() < longestStandstill,
            QByteArray::number(watch.longestStandstill()));
    }

    void readsALongTextOfAQtProgram()
    {
        Setup s;
        s.owner = std::make_unique<Daemon>(
            QCoreApplication::applicationFilePath(), QStringList { u"--own"_s });
        QTRY_VERIFY_WITH_TIMEOUT(isOwned("CLIPBOARD"), 10'000);
        QCOMPARE(s.read(), QString::fromUtf8(longText(20'000'000)));
    }

    void readsItsOwnText()
    {
        Setup s;
        const auto text = QString::fromUtf8(longText(20'000'000));
        s.clipboard.setText(text);
        QCOMPARE(s.read(), text);
    }

    void answersInALaterTurn()
    {
        Setup s;
        s.clipboard.setText(u"text"_s);
        Reading reading(s.clipboard);
        QVERIFY(!reading.text);
        QCOMPARE(reading.awaited(), u"text"_s);
        QCOMPARE(reading.answers, 1);
    }

    void anEmptyClipboardHasNoText()
    {
        Setup s;
        QCOMPARE(s.read(), QString());
    }

    void anImageIsNoText()
    {
        Setup s;
        QVERIFY(s.own("\x89PNG", { u"-t"_s, u"image/png"_s }));
        QCOMPARE(s.read(), QString());
    }

    void markupAloneIsNoText()
    {
        Setup s;
        QVERIFY(s.own("<b>bold</b>", { u"-t"_s, u"text/html"_s }));
        QCOMPARE(s.read(), QString());
    }

    void takesThePlainTextBesideMarkup()
    {
        Setup s;
        const PlayedOwner owner({ { { "text/html", { "text/html", 8, { "<b>bold</b>" } } },
            { "STRING", { "STRING", 8, { "bold" } } } } });
        QCOMPARE(s.read(), u"bold"_s);
    }

    void decodesAsTheOwnerSays_data()
    {
        QTest::addColumn<QByteArray>("target");
        QTest::addColumn<QByteArray>("type");
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("text");
        const QByteArray utf8("text/plain;charset=utf-8");
        QTest::newRow("UTF-8") << utf8 << utf8 << QByteArray("\xc3\xbc") << u"ü"_s;
        QTest::newRow("no UTF-8") << utf8 << utf8 << QByteArray("a\xff\xc3z")
                                  << u"a\ufffd\ufffdz"_s;
        QTest::newRow("zero bytes") << utf8 << utf8 << QByteArray("a\0b\0", 4) << u"a\0b\0"_s;
        QTest::newRow("Latin-1") << QByteArray("STRING") << QByteArray("STRING")
                                 << QByteArray("\xc3\xbc") << u"Ã¼"_s;
        QTest::newRow("plain") << QByteArray("text/plain") << QByteArray("text/plain")
                               << QByteArray("\xc3\xbc") << u"ü"_s;
        QTest::newRow("plain Latin-1")
            << QByteArray("text/plain") << QByteArray("text/plain") << QByteArray("\xfc") << u"ü"_s;
        QTest::newRow("TEXT in UTF-8")
            << QByteArray("TEXT") << QByteArray("UTF8_STRING") << QByteArray("\xc3\xbc") << u"ü"_s;
        QTest::newRow("TEXT in Latin-1")
            << QByteArray("TEXT") << QByteArray("STRING") << QByteArray("\xfc") << u"ü"_s;
        QTest::newRow("TEXT in another way")
            << QByteArray("TEXT") << QByteArray("COMPOUND_TEXT") << QByteArray("text") << QString();
        QTest::newRow("STRING where UTF-8 was asked for")
            << utf8 << QByteArray("STRING") << QByteArray("\xfc") << u"ü"_s;
    }
    void decodesAsTheOwnerSays()
    {
        QFETCH(const QByteArray, target);
        QFETCH(const QByteArray, type);
        QFETCH(const QByteArray, bytes);
        Setup s;
        const PlayedOwner owner({ { { target, { type, 8, { bytes } } } } });
        QTEST(s.read(), "text");
    }

    void prefersWhatCanHoldAllCharacters()
    {
        Setup s;
        const PlayedOwner owner({ { { "STRING", { "STRING", 8, { "?" } } },
            { "TEXT", { "STRING", 8, { "?" } } }, { "text/plain", { "text/plain", 8, { "?" } } },
            { "UTF8_STRING", { "UTF8_STRING", 8, { "\xe2\x82\xac" } } } } });
        QCOMPARE(s.read(), u"€"_s);
    }

    void asksWhoeverDoesNotTellWhatThereIs()
    {
        Setup s;
        const PlayedOwner owner({ { { "STRING", { "STRING", 8, { "old" } } } }, false });
        QCOMPARE(s.read(), u"old"_s);
    }

    void whatIsNoTextInOneWayMayBeInAnother_data()
    {
        using Answer = PlayedOwner::Answer;
        QTest::addColumn<Answer>("bad");
        const QByteArray bytes("sixteen bytes...");
        QTest::newRow("another type") << Answer { "INTEGER", 8, { bytes } };
        QTest::newRow("16 bits") << Answer { "UTF8_STRING", 16, { bytes } };
        QTest::newRow("32 bits") << Answer { "UTF8_STRING", 32, { bytes } };
        QTest::newRow("32 bits in parts") << Answer { "UTF8_STRING", 32, { bytes, bytes } };
        QTest::newRow("nothing") << Answer { "UTF8_STRING", 8, {}, false };
    }
    void whatIsNoTextInOneWayMayBeInAnother()
    {
        QFETCH(const PlayedOwner::Answer, bad);
        Setup s;
        auto manners = plainText(bad);
        {
            const PlayedOwner owner(manners);
            QCOMPARE(s.read(), QString());
        }
        manners.answers["STRING"] = { "STRING", 8, { "good" } };
        const PlayedOwner owner(manners);
        QCOMPARE(s.read(), u"good"_s);
    }

    void waitsForAnOwnerThatGoesOn()
    {
        Setup s;
        const QList<QByteArray> parts { "one ", "two ", "\xc3", "\xbc" };
        const PlayedOwner owner(plainText({ "UTF8_STRING", 8, parts }));
        QCOMPARE(s.read(), u"one two ü"_s);
    }

    void anOwnerThatNeverAnswersHasNoText_data()
    {
        QTest::addColumn<QByteArray>("unanswered");
        QTest::newRow("at once") << QByteArray("TARGETS");
        QTest::newRow("when asked for the text") << QByteArray("UTF8_STRING");
    }
    void anOwnerThatNeverAnswersHasNoText()
    {
        QFETCH(const QByteArray, unanswered);
        Setup s;
        const PlayedOwner owner(
            { { { "STRING", { "STRING", 8, { "text" } } } }, true, { unanswered } });
        LoopWatch watch;
        QElapsedTimer waited;
        waited.start();
        QCOMPARE(Reading(s.brisk).awaited(), QString());
        QVERIFY2(waited.elapsed() >= longestSilence.count(), QByteArray::number(waited.elapsed()));
        QVERIFY2(watch.longestStandstill() < longestStandstill,
            QByteArray::number(watch.longestStandstill()));
    }

    void aProgramThatHangsHasNoText()
    {
        Setup s;
        QVERIFY(s.own("text"));
        QVERIFY(s.owner->hang());
        LoopWatch watch;
        QCOMPARE(Reading(s.brisk).awaited(), QString());
        QVERIFY2(watch.longestStandstill() < longestStandstill,
            QByteArray::number(watch.longestStandstill()));
        // It does not survive an answer to someone who is gone.
        s.owner->resume();
        QCOMPARE(s.read(), u"text"_s);
    }

    void halfATextIsNone()
    {
        Setup s;
        const PlayedOwner owner(plainText({ "UTF8_STRING", 8, { "one", "two" }, true, 1 }));
        QElapsedTimer waited;
        waited.start();
        QCOMPARE(s.read(), QString());
        QVERIFY2(waited.elapsed() < 10'000, QByteArray::number(waited.elapsed()));
    }

    void nobodyIsWaitedForBeyondTheWhole()
    {
        X11Clipboard clipboard(Patience(20s, longestSilence));
        const PlayedOwner owner(
            plainText({ "UTF8_STRING", 8, QList<QByteArray>(10'000'000, "word ") }));
        QElapsedTimer waited;
        waited.start();
        QCOMPARE(Reading(clipboard).awaited(), QString());
        QVERIFY2(waited.elapsed() < 10'000, QByteArray::number(waited.elapsed()));
    }

    void aTextBeyondAllMeasureIsNone_data()
    {
        QTest::addColumn<int>("beyond");
        QTest::newRow("the longest") << 0;
        QTest::newRow("longer") << 1;
    }
    void aTextBeyondAllMeasureIsNone()
    {
        QFETCH(const int, beyond);
        Setup s;
        QList<QByteArray> parts(64, QByteArray(ClipboardText::maximumSize / 64, 'a'));
        parts << QByteArray(beyond, 'a');
        const PlayedOwner owner(plainText({ "UTF8_STRING", 8, parts }));
        QCOMPARE(s.read().size(), beyond == 0 ? ClipboardText::maximumSize : 0);
    }

    void eachReadingGetsItsAnswer()
    {
        Setup s;
        const PlayedOwner owner(plainText({ "UTF8_STRING", 8, { "one ", "two" } }));
        std::array<Reading, 3> readings { Reading(s.clipboard), Reading(s.clipboard),
            Reading(s.clipboard) };
        for (auto& reading : readings)
            QCOMPARE(reading.awaited(), u"one two"_s);
    }

    void aReadingThatHangsHoldsUpNoOther()
    {
        Setup s;
        const PlayedOwner owner({ {}, true, { "TARGETS" } });
        const Reading hanging(s.clipboard);
        QTRY_COMPARE(owner.requests(), 1);
        s.clipboard.setText(u"new"_s);
        QCOMPARE(s.read(), u"new"_s);
        QVERIFY(!hanging.text);
    }

    void nothingIsCalledOnceTheWaiterIsGone()
    {
        Setup s;
        const PlayedOwner owner(plainText({ "UTF8_STRING", 8, { "text" } }));
        Reading gone(s.clipboard);
        gone.waiter.reset();
        QCOMPARE(s.read(), u"text"_s);
        QTRY_VERIFY(owner.requests() >= 4);
        QCOMPARE(s.read(), u"text"_s);
        QCOMPARE(gone.answers, 0);
    }

    void theWaiterMayGoWithTheAnswer()
    {
        Setup s;
        s.clipboard.setText(u"text"_s);
        auto waiter = std::make_unique<QObject>();
        s.clipboard.readText(
            QClipboard::Clipboard, waiter.get(), [&](const QString&) { waiter.reset(); });
        QTRY_VERIFY(!waiter);
    }

    void otherProgramsGetExactlyTheText_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("short") << u"Grüße 👋"_s;
        QTest::newRow("lines") << u"\r\none\n\ntwo\r\n"_s;
        QTest::newRow("zero") << u"a\0b"_s;
        QTest::newRow("half a pair") << u"a"_s + QChar(0xd83d) + u"b"_s;
        QTest::newRow("long") << QString::fromUtf8(longText(20'000'000));
    }
    void otherProgramsGetExactlyTheText()
    {
        QFETCH(const QString, text);
        Setup s;
        s.clipboard.setText(text);
        LoopWatch watch;
        QVERIFY(s.pasted() == text.toUtf8());
        QVERIFY2(watch.longestStandstill() < longestStandstill,
            QByteArray::number(watch.longestStandstill()));
    }

    void itsTextReplacesAllThatWasThere()
    {
        Setup s;
        auto content = std::make_unique<QMimeData>();
        content->setHtml(u"<b>bold</b>"_s);
        content->setImageData(QImage(1, 1, QImage::Format_RGB32));
        QGuiApplication::clipboard()->setMimeData(content.release());
        QVERIFY(s.pasted({ u"-t"_s, u"TARGETS"_s }).contains("text/html"));
        s.clipboard.setText(u"text"_s);
        const auto targets = s.pasted({ u"-t"_s, u"TARGETS"_s });
        QVERIFY(targets.contains("UTF8_STRING"));
        QVERIFY(!targets.contains("html") && !targets.contains("image"));
    }

    void whatIsMarkedElsewhereStays()
    {
        Setup s;
        s.clipboard.setText(u"text"_s);
        QVERIFY(!isOwned("PRIMARY"));
    }

    void itsTextOutlivesTheWindow()
    {
        Setup s;
        {
            QWidget window;
            window.show();
            s.clipboard.setText(u"text"_s);
        }
        QCOMPARE(s.pasted(), "text");
    }
};

Q_DECLARE_METATYPE(PlayedOwner::Answer)

namespace {

int own(int argc, char** argv)
{
    const QGuiApplication app(argc, argv);
    QGuiApplication::clipboard()->setText(QString::fromUtf8(longText(20'000'000)));
    return QGuiApplication::exec();
}

}

// The display has to be there before the application is.
int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "xcb");
    QGuiApplication::setDesktopSettingsAware(false);
    if (argc == 2 && std::string_view(argv[1]) == "--own")
        return own(argc, argv);
    const VirtualScreen screen;
    if (screen.name().isEmpty())
        return 1;
    qputenv("DISPLAY", screen.name().toLatin1());
    const QApplication app(argc, argv);
    X11ClipboardTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "X11ClipboardTest.moc"
