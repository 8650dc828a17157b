#include "App/Notch/NotchView.h"
#include "App/Notch/NotchController.h"
#include "Tests/Notch/NotchPicture.h"
#include "Tests/Notch/NotchSetup.h"

#include <QAccessible>
#include <QElapsedTimer>
#include <QImage>
#include <QPainter>
#include <QScopeGuard>
#include <QTest>
#include <private/qguiapplication_p.h>
#include <qpa/qplatformaccessibility.h>
#include <qpa/qplatformintegration.h>

#include <utility>

using namespace Qt::StringLiterals;

struct Setup : NotchSetup {
    Setup() { collapse(); }

    void collapse() { setTab(NotchController::collapsed); }
    void expand() { setTab(NotchController::expandedSize); }
    void setTab(const QSize& tab)
    {
        view->resize(tab);
        view->setTab(tab);
    }

    void show()
    {
        view->show();
        QVERIFY(QTest::qWaitForWindowExposed(view.get()));
        QCoreApplication::processEvents();
    }

    // On white, so that what the tab leaves out is seen.
    QImage picture(int scale = 1) const
    {
        QImage image(view->size() * scale, QImage::Format_RGB32);
        image.setDevicePixelRatio(scale);
        image.fill(Qt::white);
        view->render(&image, {}, {}, QWidget::RenderFlags());
        return image;
    }

    QRegion repaintedBy(const std::function<void()>& change)
    {
        const Repaints repaints(*view);
        change();
        static_cast<void>(QTest::qWaitFor([&] { return repaints.count > 0; }, 200));
        return repaints.region;
    }

    // The ink of words in a font of that size and weight, on four pixels a point.
    static QSize inkOf(const QString& words, int pixels, int weight)
    {
        QImage image(1200, 100, QImage::Format_RGB32);
        image.setDevicePixelRatio(4);
        image.fill(Qt::black);
        QFont font(Theme::current().fontFamily());
        font.setPixelSize(pixels);
        font.setWeight(QFont::Weight(weight));
        font.setHintingPreference(QFont::PreferNoHinting);
        QPainter painter(&image);
        painter.setFont(font);
        painter.setPen(Qt::white);
        painter.drawText(QPointF(10, 18), words);
        return inked(image, image.rect()).size();
    }

    std::unique_ptr<NotchView> view = makeView();
};

static const QRect taskSymbol(16, 46, 12, 16);
static const QRect taskWords(34, 46, 270, 16);
static const QRect meetingSymbol(16, 65, 12, 16);
static const QRect meetingWords(34, 65, 270, 16);

class NotchViewTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theDotIsRedGreenOrGray()
    {
        Setup s;
        // The dot stands before the words, and its middle pixel has its colour alone.
        const auto dot = [&] {
            const auto image = s.picture();
            const int left = inked(image, { 30, 7, 90, 20 }).left();
            return image.pixelColor(left + 3, 17);
        };
        QCOMPARE(dot(), QColor(0x8E8E93));
        s.focus.model.start();
        QCoreApplication::processEvents();
        QCOMPARE(dot(), QColor(0xFF5A4F));
        s.focus.model.pause();
        QCoreApplication::processEvents();
        QCOMPARE(dot(), QColor(0x8E8E93));
        s.focus.model.skip();
        s.focus.model.start();
        QCoreApplication::processEvents();
        QCOMPARE(dot(), QColor(0x3BC463));
    }

    void theHeaderStandsInTheMiddle_data()
    {
        QTest::addColumn<QSize>("tab");
        QTest::addColumn<int>("middle");
        QTest::newRow("collapsed") << NotchController::collapsed << 17;
        QTest::newRow("expanded") << NotchController::expandedSize << 29;
    }

    void theHeaderStandsInTheMiddle()
    {
        QFETCH(QSize, tab);
        QFETCH(int, middle);
        Setup s;
        s.focus.model.start();
        QCoreApplication::processEvents();
        s.setTab(tab);
        const auto image = s.picture(4);
        const QRect header(40 * 4, (middle - 11) * 4, (tab.width() - 80) * 4, 22 * 4);
        const auto all = inked(image, header);
        QVERIFY(qAbs(all.left() + all.right() + 1 - tab.width() * 4) <= 8);
        // Dot, gap and words; the colon's and digits' sides are not inked to the last pixel.
        const auto dot = inked(image, { all.left(), header.top(), 7 * 4 + 4, header.height() });
        QCOMPARE(dot.size(), QSize(28, 28));
        QVERIFY(qAbs(dot.center().y() - (middle * 4 - 1)) <= 1);
        const auto words = inked(image, all.adjusted(dot.width(), 0, 0, 0));
        const int gap = words.left() - dot.right() - 1;
        QVERIFY2(gap >= 6 * 4 && gap <= 8 * 4, QByteArray::number(gap));
        QVERIFY(qAbs(words.center().y() - (middle * 4 - 1)) <= 2);
        QCOMPARE(brightest(image, words), 255);
    }

    void wordsHaveTheirSizeAndWeight()
    {
        Setup s;
        s.focus.model.setTaskName(u"Write a long letter"_s);
        QCoreApplication::processEvents();
        s.expand();
        const auto image = s.picture(4);
        const auto isAsLarge = [&](const QRect& box, const QSize& expected) {
            const auto drawn
                = inked(image, { box.topLeft() * 4, box.bottomRight() * 4 + QPoint(3, 3) }).size();
            return qAbs(drawn.width() - expected.width()) <= 2
                && qAbs(drawn.height() - expected.height()) <= 2;
        };
        const int left = inked(image, { 400, 80, 480, 80 }).left() / 4 + 10; // Behind the dot.
        QVERIFY(isAsLarge({ left, 18, 120, 22 }, Setup::inkOf(u"Corvella"_s, 13, 500)));
        QVERIFY(isAsLarge(taskWords, Setup::inkOf(u"Write a long letter"_s, 11, 400)));
    }

    void aRunningTimeDoesNotMoveTheDot()
    {
        Setup s;
        s.focus.model.start();
        const auto dotOf = [&](const QString& time, int seconds) {
            s.focus.tickAfter(seconds);
            QCoreApplication::processEvents();
            return s.focus.model.timeString() == time
                ? inked(s.picture(4), { 120, 40, 360, 60 }).left()
                : -1;
        };
        const int dot = dotOf(u"20:00"_s, 300);
        QVERIFY(dot > 0);
        QCOMPARE(dotOf(u"11:11"_s, 529), dot);
    }

    void hiddenItTellsOfNoPointer()
    {
        Setup s;
        QEnterEvent enter({ 1, 1 }, { 1, 1 }, { 1, 1 });
        QCoreApplication::sendEvent(s.view.get(), &enter);
        QEvent leave(QEvent::Leave);
        QCoreApplication::sendEvent(s.view.get(), &leave);
        QVERIFY(s.hovers.isEmpty());
    }

    void rowsStandAsDrawn()
    {
        Setup s;
        s.expand();
        const auto image = s.picture();
        for (const auto& [symbol, words] :
            { std::pair(taskSymbol, taskWords), std::pair(meetingSymbol, meetingWords) }) {
            const auto drawn = inked(image, symbol.adjusted(-14, 0, 5, 0));
            QVERIFY(drawn.width() >= 9 && drawn.width() <= 13);
            QVERIFY(qAbs(drawn.center().x() - symbol.center().x()) <= 1);
            const auto text = inked(image, words);
            QVERIFY(text.left() >= 34 && text.left() <= 35);
            QVERIFY(!text.isEmpty());
        }
        // Nothing between the lines, nor below them.
        QVERIFY(inked(image, { 20, 62, 280, 3 }).isEmpty());
        QVERIFY(inked(image, { 30, 81, 260, 15 }).isEmpty());
        QVERIFY(s.picture().copy(taskSymbol) != s.picture().copy(meetingSymbol));
    }

    void wordsAreBrighterThanSymbols()
    {
        Setup s;
        s.focus.model.setTaskName(u"HHHH"_s);
        QCoreApplication::processEvents();
        s.expand();
        const auto image = s.picture(4);
        const auto at4 = [](const QRect& box) { return QRect(box.topLeft() * 4, box.size() * 4); };
        QCOMPARE(brightest(image, at4(taskWords)), qRound(255 * 0.9));
        QCOMPARE(brightest(image, at4(taskSymbol)), qRound(255 * 0.6));
    }

    void detailsFadeInWithTheHeight()
    {
        Setup s;
        s.expand();
        const int full = brightest(s.picture(), taskWords);
        s.setTab({ 235, 63 });
        const int half = brightest(s.picture(), { 34, 30, 180, 33 });
        QVERIFY(half > full / 4 && half < full * 3 / 4);
        s.setTab(NotchController::collapsed);
        QVERIFY(inked(s.picture(), { 30, 24, 90, 6 }).isEmpty());
    }

    void theTabIsSquareAboveAndRoundBelow()
    {
        Setup s;
        for (const auto& tab : { NotchController::collapsed, NotchController::expandedSize }) {
            s.setTab(tab);
            const auto image = s.picture();
            const int right = tab.width() - 1;
            const int bottom = tab.height() - 1;
            QCOMPARE(image.pixelColor(0, 0), Qt::black);
            QCOMPARE(image.pixelColor(right, 0), Qt::black);
            QCOMPARE(image.pixelColor(tab.width() / 2, bottom), Qt::black);
            QCOMPARE(image.pixelColor(0, bottom), Qt::white);
            QCOMPARE(image.pixelColor(right, bottom), Qt::white);
            QCOMPARE(image.pixelColor(3, bottom - 3), Qt::white);
            QCOMPARE(image.pixelColor(6, bottom - 6), Qt::black);
            // The edge goes through this one, with most of it outside.
            const int gray = qGray(image.pixel(4, bottom - 4));
            QVERIFY2(gray > 128 && gray < 255, QByteArray::number(gray));
        }
    }

    void theShapeIsWhatIsBlack()
    {
        Setup s;
        for (const auto& tab : { NotchController::collapsed, NotchController::expandedSize }) {
            s.setTab(tab);
            const auto image = s.picture();
            const auto shape = s.view->shape();
            QCOMPARE(shape.boundingRect(), QRect({}, tab));
            for (int y = tab.height() - 20; y < tab.height(); ++y) {
                for (int x = 0; x < 20; ++x) {
                    const int gray = qGray(image.pixel(x, y));
                    if (gray < 64)
                        QVERIFY2(
                            shape.contains(QPoint(x, y)), qPrintable(u"%1 %2"_s.arg(x).arg(y)));
                    if (gray > 191)
                        QVERIFY(!shape.contains(QPoint(x, y)));
                }
            }
        }
    }

    void itHangsInTheMiddleOfALargerWindow()
    {
        Setup s;
        s.view->resize(320, 96);
        QCOMPARE(s.view->shape().boundingRect(), QRect(85, 0, 150, 30));
        QCOMPARE(s.picture().pixelColor(84, 0), Qt::white);
        QCOMPARE(s.picture().pixelColor(85, 0), Qt::black);
        QCOMPARE(s.picture().pixelColor(160, 31), Qt::white);
        s.show();
        QVERIFY(!s.repaintedBy([&] { s.view->setTab({ 200, 50 }); }).isEmpty());
        QCOMPARE(s.view->shape().boundingRect(), QRect(60, 0, 200, 50));
    }

    void aTickRepaintsTheHeaderOnly()
    {
        Setup s;
        s.focus.model.start();
        s.expand();
        s.show();
        const auto repainted = s.repaintedBy([&] { s.focus.tickAfter(1); });
        QCOMPARE(repainted, QRegion(0, 18, 320, 22));
    }

    void whatShowsNothingNewRepaintsNothing()
    {
        Setup s;
        s.focus.model.start();
        s.expand();
        s.show();
        const auto change = [&] {
            s.focus.tickAfter(0.1);
            s.focus.model.setShortMinutes(7);
            s.focus.model.setTaskName({});
            s.view->setTab(s.view->tab());
        };
        QVERIFY(s.repaintedBy(change).isEmpty());
    }

    void aNewTaskOrMeetingRepaintsItsRow()
    {
        Setup s;
        s.expand();
        s.show();
        const auto row = [](int top) { return QRegion(16, top, 288, 16); };
        QCOMPARE(s.repaintedBy([&] { s.focus.model.setTaskName(u"Write"_s); }), row(46));
        QCOMPARE(s.repaintedBy([&] { s.grantCalendars(); }), row(65));
    }

    void collapsedNoRowIsRepainted()
    {
        Setup s;
        s.show();
        const auto change = [&] {
            s.focus.model.setTaskName(u"Write"_s);
            s.grantCalendars();
        };
        QVERIFY(s.repaintedBy(change).isEmpty());
        s.expand();
        QCOMPARE(s.view->content().task, u"Write"_s);
    }

    void aLongTextEndsInAnEllipsis()
    {
        Setup s;
        s.focus.model.setTaskName(QString(1'000'000, u'W'));
        s.today.add(QString(1'000'000, u'M'), s.today.at(10, 30), s.today.at(11, 0));
        s.grantCalendars();
        QCoreApplication::processEvents();
        s.expand();
        QElapsedTimer elapsed;
        elapsed.start();
        const auto image = s.picture();
        QVERIFY2(elapsed.elapsed() < 500, QByteArray::number(elapsed.elapsed()));
        for (const auto& words : { taskWords, meetingWords }) {
            QVERIFY(inked(image, { 305, words.top(), 10, 16 }).isEmpty());
            // The dots of the ellipsis: nothing at the height of capitals.
            QVERIFY(!inked(image, { 295, words.top(), 10, 16 }).isEmpty());
            QVERIFY(inked(image, { 297, words.top(), 8, 9 }).isEmpty());
        }
    }

    void wordsOfTheOtherDirectionStartAtTheSymbolToo()
    {
        Setup s;
        s.focus.model.setTaskName(u"كتابة التقرير"_s);
        QCoreApplication::processEvents();
        s.expand();
        const int left = inked(s.picture(), taskWords).left();
        QVERIFY(left >= 34 && left <= 36);
    }

    void fromRightToLeftTheRowsAreMirrored()
    {
        Setup s;
        s.view->setLayoutDirection(Qt::RightToLeft);
        s.expand();
        const auto image = s.picture();
        const auto symbol = inked(image, { 291, 46, 29, 16 });
        QVERIFY(qAbs(symbol.center().x() - 297) <= 1);
        const int right = inked(image, { 16, 46, 270, 16 }).right();
        QVERIFY2(qAbs(right - 285) <= 1, QByteArray::number(right));
        QVERIFY(inked(image, { 16, 46, 40, 16 }).isEmpty());
    }

    void hostileTextsArePainted_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("control characters") << u"a\u0000b\u0001\u001b[31m\u0085c"_s;
        QTest::newRow("overrides") << u"\u202E\u2066abc\u200F"_s;
        QTest::newRow("lone surrogates") << QString(QChar(0xD800)) + QChar(0xDC00) + QChar(0xDFFF);
        QTest::newRow("cut pair") << QString(499, u'a') + u"😀"_s;
        QTest::newRow("marks") << QString(1'000'000, QChar(0x0301));
        QTest::newRow("markup") << u"<b>&amp;</b>"_s;
    }

    void hostileTextsArePainted()
    {
        QFETCH(QString, text);
        Setup s;
        s.focus.model.setTaskName(text);
        QCoreApplication::processEvents();
        s.expand();
        const auto image = s.picture();
        QVERIFY(inked(image, { 305, 40, 10, 30 }).isEmpty());
        QVERIFY(!inked(image, meetingWords).isEmpty());
    }

    void theWidgetIsTheSameInEveryTheme()
    {
        Setup s;
        s.expand();
        const auto light = s.picture();
        Theme::apply({ .dark = true });
        QCoreApplication::processEvents();
        QCOMPARE(s.picture(), light);
    }

    void hoveringIsTold()
    {
        Setup s;
        s.view->show();
        QEnterEvent enter({ 1, 1 }, { 1, 1 }, { 1, 1 });
        QCoreApplication::sendEvent(s.view.get(), &enter);
        QEvent leave(QEvent::Leave);
        QCoreApplication::sendEvent(s.view.get(), &leave);
        QCOMPARE(s.hovers, QList<bool>({ true, false }));
    }

    void assistiveTechnologyLearnsWhatIsSeen()
    {
        Setup s;
        auto* const accessible = QAccessible::queryAccessibleInterface(s.view.get());
        QCOMPARE(accessible->role(), QAccessible::Pane);
        QCOMPARE(accessible->text(QAccessible::Name), u"Notch widget"_s);
        s.focus.model.start();
        s.focus.model.setTaskName(u"Write"_s);
        QCoreApplication::processEvents();
        QCOMPARE(accessible->text(QAccessible::Description),
            u"25:00, focus; Write; Meetings: calendar access off"_s);
        QVERIFY(accessible->state().expandable);
        QVERIFY(!accessible->state().expanded);
        s.state.setExpanded(true);
        QVERIFY(accessible->state().expanded);
    }

    void changesAreToldButNotEachSecond()
    {
        Setup s;
        static int told = 0;
        static auto counted = QAccessible::DescriptionChanged;
        auto& listener = *QGuiApplicationPrivate::platformIntegration()->accessibility();
        listener.setActive(true);
        const auto before = QAccessible::installUpdateHandler(
            [](QAccessibleEvent* event) { told += event->type() == counted ? 1 : 0; });
        const auto restored = qScopeGuard([&] {
            QAccessible::installUpdateHandler(before);
            listener.setActive(false);
        });
        const auto tellsOf = [&](const std::function<void()>& change) {
            told = 0;
            change();
            QCoreApplication::processEvents();
            return told;
        };
        QCOMPARE(tellsOf([&] { s.focus.model.start(); }), 1);
        QCOMPARE(tellsOf([&] { s.focus.tickAfter(1); }), 0);
        QCOMPARE(tellsOf([&] { s.focus.model.setTaskName(u"Write"_s); }), 1);
        QCOMPARE(tellsOf([&] { s.grantCalendars(); }), 1);
        counted = QAccessible::StateChanged;
        QCOMPARE(tellsOf([&] { s.state.setExpanded(true); }), 1);
    }
};

QTEST_MAIN(NotchViewTest)
#include "NotchViewTest.moc"
