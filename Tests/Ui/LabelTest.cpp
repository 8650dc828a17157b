#include "App/Ui/Label.h"
#include "App/Ui/Theme.h"

#include <QAccessible>
#include <QTest>

using namespace Qt::StringLiterals;

class LabelTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { Theme::apply({}); }

    void markupIsShownAsItIs()
    {
        Label label(TextRole::body, &Colors::text);
        label.setText(u"<b>bold</b>"_s);
        Label plain(TextRole::body, &Colors::text);
        plain.setText(u"bold"_s);
        QVERIFY(label.sizeHint().width() > plain.sizeHint().width() * 2);
    }

    void roleAndColourFollowTheTheme()
    {
        QWidget window;
        Label label(TextRole::captionHeading, &Colors::secondary, &window);
        window.show();
        QCOMPARE(label.font().pixelSize(), 11);
        QCOMPARE(label.font().weight(), QFont::DemiBold);
        QCOMPARE(label.palette().color(QPalette::WindowText), QColor(0x616168));
        Theme::apply({ .dark = true, .fontFamily = u"DejaVu Sans"_s });
        QTRY_COMPARE(label.palette().color(QPalette::WindowText), QColor(0xABABB2));
        QTRY_COMPARE(label.font().family(), u"DejaVu Sans"_s);
        QCOMPARE(label.font().pixelSize(), 11);
    }

    void anElidedTextStaysWholeForAssistiveTechnology()
    {
        Label label(TextRole::body, &Colors::text);
        label.setElided(true);
        label.setText(u"A title that is far too long"_s);
        label.resize(40, 16);
        const QImage cut = label.grab().toImage();
        label.setText(u"A title that is far too long, and longer"_s);
        QCOMPARE(label.grab().toImage(), cut);
        label.setElided(false);
        QVERIFY(label.grab().toImage() != cut);
        auto* accessible = QAccessible::queryAccessibleInterface(&label);
        QCOMPARE(accessible->text(QAccessible::Name), label.text());
    }

    void ofManyLinesOnlyTheFirstAreShown()
    {
        Label label(TextRole::caption, &Colors::text);
        label.setMostLines(3);
        label.setText(u"One"_s);
        QCOMPARE(label.heightForWidth(200), 14);
        label.setText(u"One\nTwo"_s);
        QCOMPARE(label.heightForWidth(200), 2 * 14);
        label.setText(u"word "_s.repeated(500));
        QCOMPARE(label.heightForWidth(200), 3 * 14);
        label.resize(200, 3 * 14);
        const QImage cut = label.grab().toImage();
        label.setText(u"word "_s.repeated(501));
        QCOMPARE(label.grab().toImage(), cut);
        QCOMPARE(cut.copy(0, 14, 200, 14), cut.copy(0, 0, 200, 14));
        QVERIFY(cut.copy(0, 28, 200, 14) != cut.copy(0, 0, 200, 14)); // It ends in an ellipsis.
    }
};

QTEST_MAIN(LabelTest)
#include "LabelTest.moc"
