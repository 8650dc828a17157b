#include "App/Platform/Linux/Session/ScriptNotifier.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class ScriptNotifierTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void quotesTitleAndBody_data()
    {
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("body");
        QTest::addColumn<QString>("script");

        QTest::newRow("plain") << u"Done"_s << u"Rest now"_s
                               << u"display notification \"Rest now\" with title \"Done\""_s;
        QTest::newRow("quote") << u"A"_s << u"Read \"Emma\""_s
                               << u"display notification \"Read \\\"Emma\\\"\" with title \"A\""_s;
        QTest::newRow("backslash")
            << u"C:\\"_s << u"a\\b"_s << u"display notification \"a\\\\b\" with title \"C:\\\\\""_s;
        QTest::newRow("both") << u"\"\\"_s << u"\\\""_s
                              << u"display notification \"\\\\\\\"\" with title \"\\\"\\\\\""_s;
        QTest::newRow("empty") << QString() << QString()
                               << u"display notification \"\" with title \"\""_s;
        QTest::newRow("curly quotes")
            << u"“Emma”"_s << u"‘x’"_s << u"display notification \"‘x’\" with title \"“Emma”\""_s;
    }

    void quotesTitleAndBody()
    {
        QFETCH(QString, title);
        QFETCH(QString, body);
        QTEST(ScriptNotifier::script(title, body), "script");
    }

    void handsTheInterpreterTwoArguments()
    {
        const QTemporaryDir dir;
        const auto interpreter = dir.filePath(u"record"_s);
        const auto record = dir.filePath(u"arguments"_s);
        QFile file(interpreter);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(
            "#!/bin/sh\nprintf '%s|' \"$#\" \"$@\" >$0.part\nmv $0.part " + record.toUtf8() + "\n");
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        file.close();

        ScriptNotifier(interpreter).notify(u"Done"_s, u"$HOME \"x\""_s);

        QTRY_VERIFY(QFile::exists(record));
        QFile written(record);
        QVERIFY(written.open(QIODevice::ReadOnly));
        const auto script = u"display notification \"$HOME \\\"x\\\"\" with title \"Done\""_s;
        QCOMPARE(QString::fromUtf8(written.readAll()), u"2|-e|"_s + script + u'|');
    }

    void ignoresAnInterpreterThatIsMissing()
    {
        ScriptNotifier(u"/nonexistent/interpreter"_s).notify(u"Done"_s, u"Rest"_s);
    }
};

QTEST_GUILESS_MAIN(ScriptNotifierTest)
#include "ScriptNotifierTest.moc"
