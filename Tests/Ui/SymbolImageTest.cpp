#include "App/Ui/SymbolImage.h"

#include "App/Ui/SymbolNames.h"
#include "App/Ui/Symbols.h"
#include "App/Ui/Theme.h"
#include "Tests/Support/IconFolder.h"

#include <QElapsedTimer>
#include <QPainter>
#include <QRegularExpression>
#include <QTest>
#include <QWidget>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

const QColor ink(10, 20, 30);
const QColor chalk(240, 250, 230);

template <typename Paint>
QImage canvas(qreal scale, Paint paint)
{
    QImage image(QSize(30, 30) * scale, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    paint(painter, QRectF(0, 0, 30, 30));
    return image;
}

QImage drawn(const QString& name, const QColor& color = ink, qreal scale = 1)
{
    return canvas(scale, [&](QPainter& painter, const QRectF& box) {
        SymbolImage::paint(painter, name, box, color);
    });
}

QImage own(const QString& name)
{
    return canvas(
        1, [&](QPainter& painter, const QRectF& box) { Symbols::paint(painter, name, box, ink); });
}

// Where the colour is, if it is in one rectangle and nothing else is in the picture.
QRect solid(const QImage& image, const QColor& color)
{
    QRect found;
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixel(x, y) == color.rgba()) {
                found |= QRect(x, y, 1, 1);
                ++count;
            } else if (image.pixel(x, y) != 0) {
                return {};
            }
        }
    }
    return count == found.width() * found.height() ? found : QRect();
}

struct Setup {
    Setup()
    {
        isReady = folder.addTheme(folder.theme()) && addSymbolic(folder.theme(), "lefthalf");
        Theme::apply({ .iconTheme = folder.theme() });
    }

    // A bar at the left of the picture.
    bool addSymbolic(const QString& theme, const QByteArray& name) const
    {
        return folder.addShape(theme + u"/any/"_s + QString::fromLatin1(name) + u"-symbolic.svg"_s,
            "width='8' height='16'");
    }

    IconFolder folder;
    bool isReady = false;
};

class Painted final : public QWidget {
public:
    int paints = 0;

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        SymbolImage::paint(painter, u"lefthalf"_s, QRectF(0, 0, 30, 30), ink);
        ++paints;
    }
};

}

class SymbolImageTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aSymbolicIconIsSharpInTheColorAtEveryScale_data()
    {
        QTest::addColumn<qreal>("scale");
        QTest::addColumn<QRect>("where");
        QTest::newRow("1") << 1.0 << QRect(3, 3, 12, 24);
        QTest::newRow("1.5") << 1.5 << QRect(5, 5, 18, 36);
        QTest::newRow("2") << 2.0 << QRect(6, 6, 24, 48);
    }

    void aSymbolicIconIsSharpInTheColorAtEveryScale()
    {
        QFETCH(qreal, scale);
        const Setup s;
        QVERIFY(s.isReady);
        QVERIFY(SymbolImage::exists(u"lefthalf"_s));
        QTEST(solid(drawn(u"lefthalf"_s, ink, scale), ink), "where");
        QCOMPARE(solid(drawn(u"lefthalf"_s, chalk, scale), chalk).size(),
            solid(drawn(u"lefthalf"_s, ink, scale), ink).size());
    }

    void aTranslucentColorStaysTranslucent()
    {
        const Setup s;
        const QImage image = drawn(u"lefthalf"_s, QColor(0, 0, 0, 100));
        QCOMPARE(qAlpha(image.pixel(8, 15)), 100);
    }

    void theSymbolicIconComesBeforeTheColorful()
    {
        const Setup s;
        QVERIFY(
            s.folder.addHalves(s.folder.theme() + u"/48/lefthalf.png"_s, 48, Qt::blue, Qt::blue));
        QCOMPARE(solid(drawn(u"lefthalf"_s), ink), QRect(3, 3, 12, 24));
    }

    void theIconNearestInSizeIsTaken()
    {
        const Setup s;
        const QString theme = s.folder.theme();
        QVERIFY(s.folder.addHalves(theme + u"/16/sized.png"_s, 16, Qt::blue, Qt::transparent));
        QVERIFY(s.folder.addHalves(theme + u"/48/sized.png"_s, 48, Qt::transparent, Qt::blue));
        QCOMPARE(solid(drawn(u"sized"_s, ink, 2), ink), QRect(30, 6, 24, 48));
        // Smaller than both, and between them.
        const QImage small = canvas(1, [](QPainter& painter, const QRectF&) {
            SymbolImage::paint(painter, u"sized"_s, QRectF(0, 0, 15, 15), ink);
        });
        QCOMPARE(small.pixel(4, 7), ink.rgba());
        QCOMPARE(drawn(u"sized"_s).pixel(22, 15), ink.rgba());
    }

    void whatIsInAColorfulIconCanBeSeen()
    {
        const Setup s;
        QVERIFY(s.folder.addHalves(
            s.folder.theme() + u"/48/halves.png"_s, 48, QColor(0x303030), Qt::yellow));
        const QImage dark = drawn(u"halves"_s, ink, 2);
        QCOMPARE(dark.pixel(20, 30), ink.rgba());
        QVERIFY(qAlpha(dark.pixel(40, 30)) > 40);
        QVERIFY(qAlpha(dark.pixel(40, 30)) < 120);
        const QImage light = drawn(u"halves"_s, chalk, 2);
        QCOMPARE(light.pixel(40, 30), chalk.rgba());
        QVERIFY(qAlpha(light.pixel(20, 30)) < 120);
    }

    void anIconOfOneColorIsAllShape()
    {
        const Setup s;
        QVERIFY(s.folder.addHalves(
            s.folder.theme() + u"/48/flat.png"_s, 48, QColor(0x808080), QColor(0x888888)));
        QCOMPARE(solid(drawn(u"flat"_s, ink, 2), ink), QRect(6, 6, 48, 48));
    }

    void anUnknownNameIsPaintedAsTheStar()
    {
        const Setup s;
        for (const QString& name : { u"no.such.symbol"_s, u"no-such-icon"_s, QString(), u"."_s }) {
            QVERIFY2(!SymbolImage::exists(name), qPrintable(name));
            QCOMPARE(drawn(name), own(u"star"_s));
        }
    }

    void ourOwnSymbolsComeFirstButNotThoseOfControls()
    {
        const Setup s;
        QVERIFY(s.addSymbolic(s.folder.theme(), "timer"));
        QVERIFY(s.addSymbolic(s.folder.theme(), "check"));
        QVERIFY(SymbolImage::exists(u"timer"_s));
        QCOMPARE(drawn(u"timer"_s), own(u"timer"_s));
        QCOMPARE(drawn(u"timer.circle.fill"_s), own(u"timer"_s));
        QVERIFY(!SymbolImage::exists(u"ui.check"_s));
        QCOMPARE(drawn(u"ui.check"_s), own(u"star"_s));
    }

    void aVariedNameLeadsToThePlainerSymbol()
    {
        const Setup s;
        QVERIFY(s.addSymbolic(s.folder.theme(), "user-trash"));
        for (const QString& name :
            { u"trash"_s, u"trash.fill"_s, u"trash.circle.fill"_s, u"trash.badge.clock"_s }) {
            QVERIFY2(SymbolImage::exists(name), qPrintable(name));
            QCOMPARE(drawn(name), drawn(u"user-trash"_s));
        }
        QVERIFY(!SymbolImage::exists(u"trash.unheard.of"_s));
    }

    void aNameIsNoWayToAFile_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("file");
        QTest::newRow("up") << u"../above"_s << u"above.svg"_s;
        QTest::newRow("down") << u"below/it"_s << u"any/below/it.svg"_s;
        QTest::newRow("hidden") << u".hidden"_s << u"any/.hidden.svg"_s;
        QTest::newRow("two dots") << u"two..dots"_s << u"any/two..dots.svg"_s;
        QTest::newRow("nul") << u"nul.svg\0x"_s << u"any/nul.svg"_s;
        const QString endless(201, u'n');
        QTest::newRow("endless") << endless << u"any/"_s + endless + u".svg"_s;
    }

    void aNameIsNoWayToAFile()
    {
        QFETCH(QString, name);
        QFETCH(QString, file);
        const Setup s;
        QVERIFY(s.folder.addShape(s.folder.theme() + u'/' + file, "width='16' height='16'"));
        // Qt's own, where a name has what no file name has.
        QTest::failOnWarning(QRegularExpression(u"."_s));
        QVERIFY(!SymbolImage::exists(name));
        QCOMPARE(drawn(name), own(u"star"_s));
    }

    void anAbsolutePathIsNoName()
    {
        const Setup s;
        const QString path
            = s.folder.path(u"icons/%1/any/lefthalf-symbolic"_s.arg(s.folder.theme()));
        QVERIFY(QFileInfo::exists(path + u".svg"_s));
        QVERIFY(!SymbolImage::exists(path));
        QVERIFY(!SymbolImage::exists(path + u".svg"_s));
    }

    void whatIsNoPictureIsPaintedAsTheStar()
    {
        const Setup s;
        const QString any = u"icons/%1/any/"_s.arg(s.folder.theme());
        QVERIFY(s.folder.write(any + u"empty.svg"_s, {}));
        QVERIFY(s.folder.write(any + u"broken.svg"_s, "<svg width='16' height='16'><rect"));
        QVERIFY(s.folder.write(any + u"text.png"_s, "no picture"));
        QVERIFY(s.folder.addShape(s.folder.theme() + u"/any/long.svg"_s, "width='9' height='9'"));
        QVERIFY(QFile::resize(s.folder.path(any + u"long.svg"_s), qint64 { 100 } << 20));
        QCOMPARE(
            mkfifo(QFile::encodeName(s.folder.path(any + u"pipe.svg"_s)).constData(), 0600), 0);
        QVERIFY(s.folder.write(any + u"outside.svg"_s,
            "<svg xmlns='http://www.w3.org/2000/svg' width='16' height='16'>"
            "<image href='pipe.svg' width='16' height='16'/></svg>"));
        for (const QString& name : { u"empty"_s, u"text"_s, u"long"_s, u"pipe"_s, u"outside"_s }) {
            QVERIFY2(!SymbolImage::exists(name), qPrintable(name));
            QCOMPARE(drawn(name), own(u"star"_s));
        }
        // Whatever was drawn of it until there.
        drawn(u"broken"_s);
    }

    void aThemeFallsBackToItsParents()
    {
        const Setup s;
        QVERIFY(s.folder.addTheme(u"Child"_s, "Parent, Child"));
        QVERIFY(s.folder.addTheme(u"Parent"_s, "Child"));
        QVERIFY(s.addSymbolic(u"Parent"_s, "inherited"));
        Theme::apply({ .iconTheme = u"Child"_s });
        QCOMPARE(solid(drawn(u"inherited"_s), ink), QRect(3, 3, 12, 24));
    }

    void applicationsHaveTheirIconsInEveryTheme()
    {
        const Setup s;
        QVERIFY(s.folder.addTheme(u"hicolor"_s));
        QVERIFY(s.folder.addHalves(u"hicolor/48/someapp.png"_s, 48, Qt::black, Qt::white));
        QVERIFY(s.folder.addHalves(u"../pixmaps/oldapp.png"_s, 48, Qt::black, Qt::white));
        QVERIFY(SymbolImage::exists(u"someapp"_s));
        QVERIFY(SymbolImage::exists(u"oldapp"_s));
    }

    void aThemeElsewhereIsNone()
    {
        const Setup s;
        QVERIFY(s.addSymbolic(s.folder.theme(), "hereonly"));
        for (const QString& theme :
            { u"./"_s + s.folder.theme(), s.folder.path(u"icons/"_s + s.folder.theme()) }) {
            Theme::apply({ .iconTheme = theme });
            QVERIFY2(!SymbolImage::exists(u"hereonly"_s), qPrintable(theme));
        }
    }

    void anIconIsReadOnceUntilItIsAskedForAgain()
    {
        const Setup s;
        const QImage before = drawn(u"lefthalf"_s);
        QVERIFY(before != own(u"star"_s));
        QVERIFY(QFile::remove(
            s.folder.path(u"icons/%1/any/lefthalf-symbolic.svg"_s.arg(s.folder.theme()))));
        QCOMPARE(drawn(u"lefthalf"_s), before);
        QVERIFY(!SymbolImage::exists(u"lefthalf"_s));
        QCOMPARE(drawn(u"lefthalf"_s), own(u"star"_s));
    }

    void anotherThemeIsShownAtOnce()
    {
        const Setup s;
        QVERIFY(s.folder.addTheme(u"Other"_s));
        QVERIFY(s.folder.addShape(u"Other/any/lefthalf-symbolic.svg"_s, "width='16' height='8'"));
        Painted widget;
        widget.resize(30, 30);
        widget.show();
        QVERIFY(QTest::qWaitForWindowExposed(&widget));
        QTRY_VERIFY(widget.paints > 0);
        QCoreApplication::processEvents();
        const int before = widget.paints;
        Theme::apply({ .iconTheme = u"Other"_s });
        QTRY_VERIFY(widget.paints > before);
        QCOMPARE(solid(drawn(u"lefthalf"_s), ink), QRect(3, 3, 24, 12));
    }

    void everyListedNameHasAnIcon()
    {
        const Setup s;
        qputenv("XDG_DATA_DIRS", "/usr/share");
        if (!QFileInfo::exists(u"/usr/share/icons/Adwaita/index.theme"_s))
            QSKIP("No icon theme is installed: that the listed names have icons was not tried.");
        Theme::apply({ .iconTheme = u"Adwaita"_s });
        const QStringList names = SymbolNames::all();
        QVERIFY(names.size() >= 250);
        for (const QString& name : names) {
            QVERIFY2(!SymbolNames::icons(name).isEmpty(), qPrintable(name));
            QVERIFY2(drawn(name) != own(u"star"_s), qPrintable(name));
        }
    }

    void anEndlessNameOfVariationsEnds()
    {
        QElapsedTimer elapsed;
        elapsed.start();
        QVERIFY(!SymbolImage::exists(u"folder"_s + u".fill"_s.repeated(200'000)));
        QVERIFY(elapsed.elapsed() < 1000);
    }
};

QTEST_MAIN(SymbolImageTest)
#include "SymbolImageTest.moc"
