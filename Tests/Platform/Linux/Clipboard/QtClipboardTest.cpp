#include "App/Platform/Linux/Clipboard/QtClipboard.h"

#include "App/Platform/Linux/Clipboard/ClipboardModule.h"
#include "Tests/Platform/Linux/Clipboard/ClipboardSetup.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

using namespace Qt::StringLiterals;

class QtClipboardTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QGuiApplication::clipboard()->clear(); }

    void readsWhatWasSet()
    {
        QtClipboard clipboard;
        clipboard.setText(u"Grüße\n👋"_s);
        QCOMPARE(QGuiApplication::clipboard()->text(), u"Grüße\n👋"_s);
        QCOMPARE(Reading(clipboard).awaited(), u"Grüße\n👋"_s);
    }

    void anEmptyClipboardHasNoText()
    {
        QtClipboard clipboard;
        QCOMPARE(Reading(clipboard).awaited(), QString());
    }

    void markupAloneIsNoText()
    {
        auto content = std::make_unique<QMimeData>();
        content->setData(u"text/html"_s, "<b>bold</b>");
        QGuiApplication::clipboard()->setMimeData(content.release());
        QtClipboard clipboard;
        QCOMPARE(Reading(clipboard).awaited(), QString());
    }

    void answersInALaterTurn()
    {
        QtClipboard clipboard;
        clipboard.setText(u"text"_s);
        Reading reading(clipboard);
        QCOMPARE(reading.answers, 0);
        QCOMPARE(reading.awaited(), u"text"_s);
        QCOMPARE(reading.answers, 1);
    }

    void nothingIsCalledOnceTheWaiterIsGone()
    {
        QtClipboard clipboard;
        Reading gone(clipboard);
        gone.waiter.reset();
        QCOMPARE(Reading(clipboard).awaited(), QString());
        QCOMPARE(gone.answers, 0);
    }

    void aModuleThatIsMissingHasNoClipboard()
    {
        QVERIFY(!ClipboardModule::load(u"/nowhere/clipboard.so"_s));
    }

    void theModuleHasNoClipboardOnAnotherPlatform()
    {
        QVERIFY(
            !ClipboardModule::load(QStringLiteral(CORVELLA_HELPERS_DIR "/wayland-clipboard.so")));
    }
};

QTEST_MAIN(QtClipboardTest)
#include "QtClipboardTest.moc"
