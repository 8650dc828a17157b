#include "App/Helpers/Launch/CommandLine.h"

#include <QTest>

using CommandLine::Arguments;

class CommandLineTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void quotesAreTakenAway()
    {
        const Arguments expected { "my program", "a\"b`c$d\\e", "", "f g" };
        const std::string command("\"my program\" \"a\\\"b\\`c\\$d\\\\e\" \"\" f\\ g");
        QCOMPARE(CommandLine::split(command), expected);
    }

    void whatIsNotClosedIsNoCommandLine()
    {
        QCOMPARE(CommandLine::split("\"program"), Arguments());
        QCOMPARE(CommandLine::split({}), Arguments());
    }

    void theProgramIsTheOneThatIsMeant_data()
    {
        QTest::addColumn<std::string>("command");
        QTest::addColumn<Arguments>("programs");
        const auto row = [](const char* command, const Arguments& programs) {
            QTest::newRow(command) << std::string(command) << programs;
        };
        row("/usr/bin/gedit %U", { "gedit" });
        row("env A=b C=d gedit", { "gedit" });
        row("/usr/bin/env -u LANG --chdir /tmp -i A=b /opt/x/gedit", { "gedit" });
        row("env BAMF_DESKTOP_FILE_HINT=/x /snap/bin/firefox %u", { "firefox" });
        row("snap run firefox", { "firefox" });
        row("pkexec gparted", { "gparted" });
        row("flatpak run --branch=stable --command=/app/bin/gimp-2.10 org.gimp.GIMP @@u %U @@",
            { "gimp-2.10", "org.gimp.GIMP" });
        row("flatpak run org.gimp.GIMP", { "org.gimp.GIMP" });
        row("flatpak update", { "flatpak" });
        row("flatpak run", { "flatpak" });
        row("sh -c 'exec something'", {});
        row("bash", { "bash" });
        row("env A=b", {});
        row("env -u", {});
    }

    void theProgramIsTheOneThatIsMeant()
    {
        QFETCH(std::string, command);
        QFETCH(Arguments, programs);
        QCOMPARE(CommandLine::programs(CommandLine::split(command)), programs);
    }

    void fieldCodesAreReplaced_data()
    {
        QTest::addColumn<Arguments>("arguments");
        QTest::addColumn<Arguments>("expected");
        const auto row
            = [](const char* name, const Arguments& arguments, const Arguments& expected) {
                  QTest::newRow(name) << arguments << expected;
              };
        row("address", { "x", "%u" }, { "x", "file:///a%20b" });
        row("addresses", { "x", "%U" }, { "x", "file:///a%20b" });
        row("path", { "x", "%f" }, { "x", "/a b" });
        row("inside", { "x", "--open=%F!" }, { "x", "--open=/a b!" });
        row("nowhere", { "x" }, { "x", "/a b" });
        row("icon", { "x", "%i", "%u" }, { "x", "--icon", "pen", "file:///a%20b" });
        row("name and file", { "x", "%c", "%k", "%u" },
            { "x", "It's \"$HOME\"", "/x.desktop", "file:///a%20b" });
        row("percent", { "x", "100%%u", "%u" }, { "x", "100%u", "file:///a%20b" });
        row("of old", { "x", "%m", "%d%D", "%u" }, { "x", "file:///a%20b" });
        row("cut off", { "x", "%u", "%" }, { "x", "file:///a%20b" });
        row("an empty one", { "x", "", "%u" }, { "x", "", "file:///a%20b" });
    }

    void fieldCodesAreReplaced()
    {
        QFETCH(Arguments, arguments);
        QFETCH(Arguments, expected);
        const CommandLine::Fields fields { .address = "file:///a%20b",
            .path = "/a b",
            .name = "It's \"$HOME\"",
            .icon = "pen",
            .file = "/x.desktop" };
        QCOMPARE(CommandLine::expanded(arguments, fields), expected);
    }

    void withNothingToOpenNothingIsHandedOn()
    {
        const Arguments expected { "x", "--url=" };
        QCOMPARE(CommandLine::expanded({ "x", "%f", "%i", "--url=%u" }, {}), expected);
    }

    void anAddressWithoutAPathIsHandedOnAsItIs()
    {
        const Arguments expected { "x", "https://a" };
        QCOMPARE(CommandLine::expanded({ "x", "%f" }, { .address = "https://a" }), expected);
        QCOMPARE(CommandLine::expanded({ "x" }, { .address = "https://a" }), expected);
    }
};

QTEST_GUILESS_MAIN(CommandLineTest)
#include "CommandLineTest.moc"
