#include "App/Platform/Linux/Clipboard/ClipboardModule.h"
#include "Tests/Platform/Linux/Clipboard/ClipboardSetup.h"
#include "Tests/Support/LoopWatch.h"
#include "Tests/Support/WaylandScreen.h"

#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QMimeData>
#include <QWidget>

#include <array>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto longestSilence = 800ms;

// As in the program, it lives as long as the connection to the compositor.
Clipboard& loaded(const Patience& patience)
{
    const auto module = QStringLiteral(CORVELLA_HELPERS_DIR "/wayland-clipboard.so");
    return *ClipboardModule::load(module, patience).release();
}

Clipboard& brisk()
{
    static auto& clipboard = loaded(Patience(longestSilence, 20s));
    return clipboard;
}

Clipboard& patient()
{
    static auto& clipboard = loaded(Patience(20s, 20s));
    return clipboard;
}

QByteArray pasted(const QStringList& options = { u"--no-newline"_s })
{
    return outputOf(u"wl-paste"_s, options);
}

bool isOffered(const QByteArray& type)
{
    return pasted({ u"--list-types"_s }).split('\n').contains(type);
}

struct Setup {
    Setup() = default;
    Setup(const Setup&) = delete;
    Setup& operator=(const Setup&) = delete;
    ~Setup() { window.hide(); }

    Clipboard& clipboard = patient();
    QTemporaryDir folder;
    std::unique_ptr<Daemon> owner;
    // Never destroyed: Qt's thread for frames may still hold the lock of one that was just shown.
    QLineEdit& window = *new QLineEdit;

    // True when the keyboard has come to the window.
    bool show()
    {
        window.show();
        return QTest::qWaitFor([this] { return window.isActiveWindow(); }, 10'000);
    }

    // Who copies must have typed after all that others copied. True when the window has a new
    // letter.
    bool typed()
    {
        window.clear();
        return QTest::qWaitFor([this] { return !window.text().isEmpty(); }, 10'000);
    }

    QString read() { return Reading(clipboard).awaited(); }

    // With the real program; true when it has the clipboard.
    bool own(const QByteArray& bytes, const QByteArray& type = "text/plain;charset=utf-8")
    {
        QFile file(folder.filePath(u"content"_s));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            return false;
        file.close();
        const auto command = u"exec wl-copy --foreground --type \"$2\" <\"$1\""_s;
        owner = std::make_unique<Daemon>(u"sh"_s,
            QStringList { u"-c"_s, command, u"sh"_s, file.fileName(), QString::fromLatin1(type) });
        return QTest::qWaitFor([&] { return isOffered(type); }, 10'000);
    }
};

}

class WaylandClipboardTest final : public QObject {
    Q_OBJECT

private:
    // A window that is there before the keyboard never gets it.
    static bool keyboardComes()
    {
        for (int attempt = 0; attempt < 50; ++attempt) {
            QWidget window;
            window.show();
            if (QTest::qWaitFor([&] { return window.isActiveWindow(); }, 200))
                return true;
        }
        return false;
    }

private Q_SLOTS:
    void initTestCase()
    {
        if (QGuiApplication::platformName() != u"wayland"_s)
            QSKIP("No compositor would start, so nothing of this was tried");
        QVERIFY(keyboardComes());
    }

    void init()
    {
        outputOf(u"wl-copy"_s, { u"--clear"_s });
        QTRY_VERIFY(!isOffered("text/plain"));
    }

    void readsWhatAnotherProgramCopied()
    {
        Setup s;
        QVERIFY(s.own("Grüße aus Köln 👋\n"));
        QVERIFY(s.show());
        QCOMPARE(s.read(), u"Grüße aus Köln 👋\n"_s);
    }

    void learnsOfWhatIsCopiedMeanwhile()
    {
        Setup s;
        QVERIFY(s.show());
        QCOMPARE(s.read(), QString());
        QVERIFY(s.own("one"));
        QTRY_COMPARE(s.read(), u"one"_s);
        s.owner.reset();
        QVERIFY(s.own("two"));
        QTRY_COMPARE(s.read(), u"two"_s);
    }

    void readsALongText()
    {
        Setup s;
        const auto text = longText(20'000'000);
        QVERIFY(s.own(text));
        QVERIFY(s.show());
        LoopWatch watch;
        QCOMPARE(s.read(), QString::fromUtf8(text));
        QVERIFY2(watch.longestStandstill() < longestStandstill,
            QByteArray::number(watch.longestStandstill()));
    }

    void waitsForTheKeyboard()
    {
        Setup s;
        QVERIFY(s.own("text"));
        Reading reading(s.clipboard);
        QVERIFY(s.show());
        QCOMPARE(reading.awaited(), u"text"_s);
        QCOMPARE(reading.answers, 1);
    }

    void thereIsNoTextForWhoeverNeverGetsTheKeyboard()
    {
        Setup s;
        QVERIFY(s.own("text"));
        QCOMPARE(Reading(brisk()).awaited(), QString());
    }

    void anImageIsNoText()
    {
        Setup s;
        QVERIFY(s.own("\x89PNG", "image/png"));
        QVERIFY(s.show());
        QCOMPARE(s.read(), QString());
    }

    void whatIsNoUtf8IsReplaced()
    {
        Setup s;
        QVERIFY(s.own("a\xff\xc3z"));
        QVERIFY(s.show());
        QCOMPARE(s.read(), u"a\ufffd\ufffdz"_s);
    }

    void anOwnerThatHangsHasNoText()
    {
        Setup s;
        QVERIFY(s.own("text"));
        QVERIFY(s.show());
        QVERIFY(s.owner->hang());
        LoopWatch watch;
        QCOMPARE(Reading(brisk()).awaited(), QString());
        QVERIFY2(watch.longestStandstill() < longestStandstill,
            QByteArray::number(watch.longestStandstill()));
        s.owner->resume();
        QCOMPARE(s.read(), u"text"_s);
    }

    void theTextGoesWithItsOwner()
    {
        Setup s;
        QVERIFY(s.own("text"));
        QVERIFY(s.show());
        QCOMPARE(s.read(), u"text"_s);
        s.owner.reset();
        QTRY_COMPARE(s.read(), QString());
    }

    void aTextBeyondAllMeasureIsNone_data()
    {
        QTest::addColumn<int>("size");
        QTest::newRow("the longest") << 64 * 1024 * 1024;
        QTest::newRow("longer") << 64 * 1024 * 1024 + 1;
    }
    void aTextBeyondAllMeasureIsNone()
    {
        QFETCH(const int, size);
        Setup s;
        QVERIFY(s.own(QByteArray(size, 'a')));
        QVERIFY(s.show());
        QCOMPARE(s.read().size(), size == 64 * 1024 * 1024 ? size : 0);
    }

    void eachReadingGetsItsAnswer()
    {
        Setup s;
        QVERIFY(s.own("text"));
        std::array<Reading, 3> readings { Reading(s.clipboard), Reading(s.clipboard),
            Reading(s.clipboard) };
        QVERIFY(s.show());
        for (auto& reading : readings)
            QCOMPARE(reading.awaited(), u"text"_s);
    }

    void nothingIsCalledOnceTheWaiterIsGone()
    {
        Setup s;
        QVERIFY(s.own("text"));
        Reading early(s.clipboard);
        early.waiter.reset();
        QVERIFY(s.show());
        Reading late(s.clipboard);
        late.waiter.reset();
        QCOMPARE(s.read(), u"text"_s);
        QCOMPARE(s.read(), u"text"_s);
        QCOMPARE(early.answers + late.answers, 0);
    }

    void readsItsOwnText()
    {
        Setup s;
        QVERIFY(s.show());
        const auto text = QString::fromUtf8(longText(20'000'000));
        s.clipboard.setText(text);
        QTRY_COMPARE(s.read(), text);
    }

    void takesThePlainTextBesideMarkup_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("markup alone") << QString();
        QTest::newRow("text beside it") << QString::fromUtf8(longText(1'000'000));
    }
    void takesThePlainTextBesideMarkup()
    {
        QFETCH(const QString, text);
        Setup s;
        QVERIFY(s.show());
        QVERIFY(s.typed());
        auto content = std::make_unique<QMimeData>();
        content->setHtml(u"<b>bold</b>"_s);
        if (!text.isEmpty())
            content->setText(text);
        QGuiApplication::clipboard()->setMimeData(content.release());
        QTRY_VERIFY(isOffered("text/html"));
        QTRY_COMPARE(s.read(), text);
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
        QVERIFY(s.show());
        s.clipboard.setText(text);
        LoopWatch watch;
        QTRY_VERIFY(pasted() == text.toUtf8());
        QVERIFY2(watch.longestStandstill() < longestStandstill,
            QByteArray::number(watch.longestStandstill()));
    }

    void itsTextReplacesWhatWasCopiedMeanwhile()
    {
        Setup s;
        QVERIFY(s.show());
        QVERIFY(s.own("\x89PNG", "image/png"));
        QVERIFY(s.typed());
        s.clipboard.setText(u"text"_s);
        QTRY_COMPARE(s.read(), u"text"_s);
        QVERIFY(!isOffered("image/png"));
        QVERIFY(s.own("another"));
        QTRY_COMPARE(s.read(), u"another"_s);
    }

    void aReaderThatHangsHoldsUpNobody()
    {
        Setup s;
        QVERIFY(s.show());
        s.clipboard.setText(QString::fromUtf8(longText(1'000'000)));
        QTRY_VERIFY(isOffered("text/plain"));
        LoopWatch watch;
        const Daemon reader(u"sh"_s,
            QStringList { u"-c"_s, u"wl-paste | { head -c 1 >\"$1\"; sleep 1000; }"_s, u"sh"_s,
                s.folder.filePath(u"first"_s) });
        QTRY_VERIFY(QFileInfo(s.folder.filePath(u"first"_s)).size() == 1);
        s.clipboard.setText(u"text"_s);
        QTRY_COMPARE(pasted(), "text");
        QVERIFY2(watch.longestStandstill() < longestStandstill,
            QByteArray::number(watch.longestStandstill()));
    }

    void itsTextOutlivesTheWindow()
    {
        Setup s;
        QVERIFY(s.show());
        s.clipboard.setText(u"text"_s);
        s.window.close();
        QTRY_COMPARE(pasted(), "text");
    }
};

// The compositor has to be there before the application is.
int main(int argc, char** argv)
{
    const WaylandScreen screen;
    if (const auto socket = screen.socket(); !socket.isEmpty()) {
        qputenv("WAYLAND_DISPLAY", QFile::encodeName(socket));
        qputenv("QT_QPA_PLATFORM", "wayland");
        qputenv("QT_WAYLAND_DISABLE_HW_INTEGRATION", "1");
    }
    QGuiApplication::setDesktopSettingsAware(false);
    const QApplication app(argc, argv);
    WaylandClipboardTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "WaylandClipboardTest.moc"
