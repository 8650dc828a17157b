#include "App/Platform/Linux/Machine/ProcFile.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <array>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

struct Setup {
    QTemporaryDir folder;
    QString path = folder.filePath(u"figures"_s);
    ProcFile file { path };
    std::array<char, 512> buffer {};

    void write(const QByteArray& text) const
    {
        QFile target(path);
        QVERIFY(target.open(QIODevice::WriteOnly));
        QCOMPARE(target.write(text), text.size());
    }

    QByteArray read()
    {
        const auto text = file.read(buffer);
        return { text.data(), static_cast<qsizetype>(text.size()) };
    }
};

auto openDescriptors()
{
    return QDir(u"/proc/self/fd"_s).entryList(QDir::AllEntries | QDir::System).size();
}

}

class ProcFileTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void readsWhatItSaysNow()
    {
        Setup s;
        s.write("one\n");
        QCOMPARE(s.read(), "one\n");
        s.write("two\n");
        QCOMPARE(s.read(), "two\n");
    }

    void opensItOnce()
    {
        Setup s;
        s.write("one\n");
        s.read();
        const auto before = openDescriptors();
        QVERIFY(QFile::rename(s.path, s.path + u".old"_s));
        QCOMPARE(s.read(), "one\n");
        QCOMPARE(openDescriptors(), before);
    }

    void aFileThatComesLaterIsRead()
    {
        Setup s;
        QCOMPARE(s.read(), QByteArray());
        s.write("one\n");
        QCOMPARE(s.read(), "one\n");
    }

    void aFileThatVanishesAndComesBackIsRead()
    {
        Setup s;
        s.write("one\n");
        QCOMPARE(s.read(), "one\n");
        s.write("");
        QVERIFY(QFile::remove(s.path));
        QCOMPARE(s.read(), QByteArray());
        s.write("two\n");
        QCOMPARE(s.read(), "two\n");
    }

    void whatTookItsPlaceIsReadAtOnce()
    {
        Setup s;
        s.write("one\n");
        QCOMPARE(s.read(), "one\n");
        s.write("");
        QVERIFY(QFile::remove(s.path));
        s.write("two\n");
        QCOMPARE(s.read(), "two\n");
    }

    void onlyTheBeginningOfALongFileIsRead()
    {
        Setup s;
        s.write(QByteArray(1 << 20, 'x'));
        QCOMPARE(s.read(), QByteArray(512, 'x'));
    }

    void whatIsNoFileIsEmptyAndKeepsNobodyWaiting_data()
    {
        QTest::addColumn<QString>("kind");
        for (const char* kind : { "nothing", "an empty file", "a folder", "a pipe", "a dead link" })
            QTest::newRow(kind) << QString::fromLatin1(kind);
    }

    void whatIsNoFileIsEmptyAndKeepsNobodyWaiting()
    {
        QFETCH(QString, kind);
        Setup s;
        if (kind == u"an empty file")
            s.write("");
        else if (kind == u"a folder")
            QVERIFY(QDir().mkdir(s.path));
        else if (kind == u"a pipe")
            QCOMPARE(::mkfifo(QFile::encodeName(s.path).constData(), S_IRUSR | S_IWUSR), 0);
        else if (kind == u"a dead link")
            QVERIFY(QFile::link(s.folder.filePath(u"nowhere"_s), s.path));
        const auto before = openDescriptors();
        for (int time = 0; time < 10; ++time)
            QCOMPARE(s.read(), QByteArray());
        QCOMPARE(openDescriptors(), before);
    }

    void isClosedInTheEnd()
    {
        const auto before = openDescriptors();
        {
            Setup s;
            s.write("one\n");
            QCOMPARE(s.read(), "one\n");
        }
        QCOMPARE(openDescriptors(), before);
    }
};

QTEST_GUILESS_MAIN(ProcFileTest)
#include "ProcFileTest.moc"
