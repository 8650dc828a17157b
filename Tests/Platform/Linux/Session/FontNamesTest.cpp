#include "App/Platform/Linux/Session/FontNames.h"

#include <QTest>

using namespace Qt::StringLiterals;

class FontNamesTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void findsTheFamilyInPangosWay_data()
    {
        QTest::addColumn<QString>("description");
        QTest::addColumn<QString>("family");
        QTest::newRow("size") << u"Cantarell 11"_s << u"Cantarell"_s;
        QTest::newRow("broken size") << u"Noto Sans 10.5"_s << u"Noto Sans"_s;
        QTest::newRow("pixels") << u"Inter 13px"_s << u"Inter"_s;
        QTest::newRow("no size") << u"Inter"_s << u"Inter"_s;
        QTest::newRow("style") << u"Ubuntu Semi-Bold Italic 11"_s << u"Ubuntu"_s;
        QTest::newRow("style's case") << u"Ubuntu bold 11"_s << u"Ubuntu"_s;
        QTest::newRow("number in the name") << u"Source Sans 3 11"_s << u"Source Sans 3"_s;
        QTest::newRow("style in the name") << u"Bold Sans 11"_s << u"Bold Sans"_s;
        QTest::newRow("comma") << u"Arial Black, 10"_s << u"Arial Black"_s;
        QTest::newRow("list") << u"Inter,Cantarell Bold 10"_s << u"Inter"_s;
        QTest::newRow("axes") << u"Cantarell 11 @wght=200"_s << u"Cantarell"_s;
        QTest::newRow("only a size") << u"11"_s << QString();
        QTest::newRow("empty") << QString() << QString();
        QTest::newRow("blanks") << u"  Noto  Sans   11 "_s << u"Noto Sans"_s;
    }

    void findsTheFamilyInPangosWay()
    {
        QFETCH(QString, description);
        QTEST(FontNames::pangoFamily(description), "family");
    }

    void findsTheFamilyInKdesWay()
    {
        QCOMPARE(FontNames::kdeFamily(u"Noto Sans,10,-1,5,50,0,0,0,0,0,Bold"_s), u"Noto Sans"_s);
        QCOMPARE(FontNames::kdeFamily(u"Hack"_s), u"Hack"_s);
        QCOMPARE(FontNames::kdeFamily(QString()), QString());
    }
};

QTEST_GUILESS_MAIN(FontNamesTest)
#include "FontNamesTest.moc"
