#include "App/Helpers/Launch/FindApplication.h"
#include "App/Helpers/Launch/ApplicationNames.h"
#include "App/Helpers/Launch/Surroundings.h"
#include "App/Helpers/Launch/Terminals.h"
#include "App/Helpers/Launch/Wording.h"

#include <QTest>

#include <algorithm>
#include <map>
#include <set>

static Application named(const std::string& id, const std::string& name,
    const std::string& command = "program", const std::string& plainName = {})
{
    return { .id = id + ".desktop",
        .name = name,
        .plainName = plainName.empty() ? name : plainName,
        .command = command };
}

static Application hidden(Application application)
{
    application.isShown = false;
    return application;
}

static Application withCategory(Application application, const std::string& category)
{
    application.categories = { "Utility", category };
    return application;
}

struct Setup {
    Applications applications = {};
    std::map<std::string, std::string> defaults = {};
    std::set<std::string> programs = {};
    std::string desktops = {};

    Surroundings around() const
    {
        return { .desktops = desktops,
            .defaultFor =
                [this](const std::string& type) {
                    const auto found = defaults.find(type);
                    return found != defaults.end() ? found->second : std::string();
                },
            .hasProgram = [this](const std::string& name) { return programs.contains(name); } };
    }

    // The id, or else the command; empty when nothing is found.
    std::string found(std::string_view name) const
    {
        const auto application = findApplication(name, applications, around());
        if (!application)
            return {};
        return application->id.empty() ? application->command : application->id;
    }
};

class FindApplicationTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyNameOfAnApplicationFindsIt_data()
    {
        QTest::addColumn<QByteArray>("name");
        for (const char* const name :
            { "Dateien", "dateien", "  DATEIEN\t", "Files", "fILES", "org.gnome.Nautilus",
                "org.gnome.nautilus.desktop", "Nautilus", "nautilus-bin", "Ｄａｔｅｉｅｎ",
                "\u00a0Dateien\u2003", "Dat", "fil", "naut", "org.gnome.Naut", "nautilus-b" })
            QTest::newRow(name) << QByteArray(name);
    }

    void everyNameOfAnApplicationFindsIt()
    {
        QFETCH(QByteArray, name);
        const Setup s { { named("other", "Andere"),
            named("org.gnome.Nautilus", "Dateien", "env A=b /usr/bin/nautilus-bin %U", "Files") } };
        QCOMPARE(s.found(name.toStdString()), std::string("org.gnome.Nautilus.desktop"));
    }

    void lettersOfEveryLanguageHaveNoCase()
    {
        const Setup s { { named("a", "Škoda Straße"), named("b", "Заметки") } };
        QCOMPARE(s.found("škoda STRASSE"), std::string("a.desktop"));
        QCOMPARE(s.found("ЗАМЕТКИ"), std::string("b.desktop"));
    }

    void theBetterNameWins_data()
    {
        QTest::addColumn<int>("best");
        QTest::addColumn<int>("count");
        for (int best = 0; best < 9; ++best)
            QTest::addRow("%d", best) << best << 9;
    }

    // Each of these fits, and each less well than those before it.
    void theBetterNameWins()
    {
        QFETCH(int, best);
        QFETCH(int, count);
        const Applications all { named("z1", "Pen"), named("z2", "PEN"),
            named("z3", "Stift", "program", "Pen"), named("z4", "Griffel", "program", "pEn"),
            named("org.z5.Pen", "Five"), named("z6", "Six", "/usr/bin/Pen"),
            hidden(named("z7", "Pen")), named("z8", "Pencil"), named("a9", "Pencil Box") };
        Setup s { Applications(all.begin() + best, all.begin() + count) };
        std::ranges::reverse(s.applications);
        QCOMPARE(s.found("Pen"), all.at(static_cast<size_t>(best)).id);
    }

    void ofEqualNamesTheFirstIdIsTaken()
    {
        const Setup s { { named("b", "Files"), named("a", "Files"), named("c", "Files") } };
        QCOMPARE(s.found("Files"), std::string("a.desktop"));
        QCOMPARE(s.found("Fil"), std::string("a.desktop"));
    }

    void theBeginningOfAnIdIsNoName()
    {
        const Setup s { { named("org.gnome.Nautilus", "Files") } };
        for (const char* const name : { "org", "org.gnome", "org.gnome." })
            QCOMPARE(s.found(name), std::string());
    }

    void whatIsNoNameFindsNothing_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("spaces") << QByteArray(" \t\n");
        QTest::newRow("long") << QByteArray(1 << 20, 'x');
        QTest::newRow("broken") << QByteArray("\xff\xfe\xc0");
        QTest::newRow("zero") << QByteArray("\0x", 2);
        QTest::newRow("unknown") << QByteArray("Fierfox");
    }

    void whatIsNoNameFindsNothing()
    {
        QFETCH(QByteArray, name);
        const Setup s { { named("", "", ""), named("x", std::string(1 << 20, 'x')) } };
        QCOMPARE(s.found(name.toStdString()), std::string());
    }

    void theDefaultButtonsFindWhatPlaysTheirPart()
    {
        Setup s { { withCategory(named("another-browser", "Another"), "WebBrowser"),
            named("browser", "Browser"), named("gnote", "Gnote"),
            named("org.kde.konsole", "Konsole", "konsole") } };
        s.defaults = { { "x-scheme-handler/https", "browser.desktop" } };
        s.desktops = "KDE";
        QCOMPARE(s.found("Safari"), std::string("browser.desktop"));
        QCOMPARE(s.found("notes"), std::string("gnote.desktop"));
        QCOMPARE(s.found("Terminal "), std::string("org.kde.konsole.desktop"));
    }

    void aPartComesAfterTheVeryNameAndBeforeABeginning()
    {
        Setup s { { named("a", "Notes Server"), named("b", "Terminal Settings"),
            named("gnote", "Gnote"), hidden(named("c", "Notes")) } };
        s.programs = { "x-terminal-emulator" };
        QCOMPARE(s.found("Notes"), std::string("gnote.desktop"));
        QCOMPARE(s.found("Terminal"), std::string("x-terminal-emulator"));
        s.programs = {};
        QCOMPARE(s.found("Terminal"), std::string("b.desktop"));
        s.applications.push_back(named("d", "Notes"));
        QCOMPARE(s.found("Notes"), std::string("d.desktop"));
    }

    void aBrowserIsWhatTheUserOpensPagesWith()
    {
        Setup s { { withCategory(named("any", "Any"), "WebBrowser"), named("editor", "Editor"),
            withCategory(named("own", "Own"), "WebBrowser"), named("plain", "Plain") } };
        QCOMPARE(s.found("Safari"), std::string("any.desktop"));
        s.defaults = { { "text/html", "editor.desktop" } };
        QCOMPARE(s.found("Safari"), std::string("any.desktop"));
        s.defaults = { { "text/html", "own.desktop" } };
        QCOMPARE(s.found("Safari"), std::string("own.desktop"));
        s.defaults["x-scheme-handler/http"] = "plain.desktop";
        QCOMPARE(s.found("Safari"), std::string("plain.desktop"));
        s.defaults["x-scheme-handler/https"] = "removed.desktop";
        QCOMPARE(s.found("Safari"), std::string("plain.desktop"));
    }

    void notesAreKeptByWhatSaysSoOrElseByAnEditor()
    {
        Setup s { { hidden(named("gnote", "Gnote")), named("editor", "Editor"),
            named("pad", "Pad") } };
        QCOMPARE(s.found("Notes"), std::string());
        s.defaults = { { "text/plain", "editor.desktop" } };
        QCOMPARE(s.found("Notes"), std::string("editor.desktop"));
        s.applications.back().keywords = { "memo", "Note-Taking" };
        QCOMPARE(s.found("Notes"), std::string("pad.desktop"));
    }

    void theTerminalIsThatOfTheDesktop()
    {
        auto terminal = named("a-terminal", "A", "unheard-of");
        Setup s { { withCategory(std::move(terminal), "TerminalEmulator"),
            hidden(withCategory(named("b", "B", "kitty"), "TerminalEmulator")),
            named("qterminal", "Q", "qterminal"),
            withCategory(named("x", "X", "/usr/bin/xterm"), "TerminalEmulator"),
            named("xfce4-terminal", "Xfce", "xfce4-terminal") } };
        s.programs = { "x-terminal-emulator" };
        QCOMPARE(s.found("Terminal"), std::string("x.desktop"));
        s.desktops = "sway:LXQt:XFCE";
        QCOMPARE(s.found("Terminal"), std::string("qterminal.desktop"));
        s.programs = { "xdg-terminal-exec" };
        QCOMPARE(s.found("Terminal"), std::string("xdg-terminal-exec"));
        s.programs = {};
        s.desktops = {};
        s.applications.erase(s.applications.begin() + 1, s.applications.end());
        QCOMPARE(s.found("Terminal"), std::string("a-terminal.desktop"));
    }

    void everyTerminalIsToldInItsWay_data()
    {
        QTest::addColumn<std::string>("command");
        QTest::addColumn<std::string>("option");
        const auto row = [](const char* command, const char* option) {
            QTest::newRow(command) << std::string(command) << std::string(option);
        };
        row("xdg-terminal-exec", "");
        row("gnome-terminal", "--");
        row("kgx", "--");
        row("konsole", "-e");
        row("xfce4-terminal", "-x");
        row("/usr/bin/foot", "");
        row("env A=b kitty", "");
        row("alacritty", "-e");
        row("flatpak run app.devsuite.Ptyxis", "--");
        row("unheard-of", "-e");
    }

    void everyTerminalIsToldInItsWay()
    {
        QFETCH(std::string, command);
        QFETCH(std::string, option);
        QCOMPARE(std::string(Terminals::executeOption(named("x", "X", command))), option);
    }

    void closeNamesAreOffered_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<QByteArray>("offered");
        QTest::newRow("neighbours") << QByteArray("Gmae") << QByteArray("Game");
        QTest::newRow("replaced") << QByteArray("Firevox") << QByteArray("Firefox");
        QTest::newRow("left out") << QByteArray("firfox") << QByteArray("Firefox");
        QTest::newRow("too much") << QByteArray("Firefox Browser") << QByteArray("Firefox");
        QTest::newRow("a part") << QByteArray("writer") << QByteArray("LibreOffice Writer");
        QTest::newRow("several") << QByteArray("Gamo") << QByteArray("Gama,Game,Gami");
        QTest::newRow("nothing like it") << QByteArray("Emacs") << QByteArray();
        QTest::newRow("hidden") << QByteArray("Sekret") << QByteArray();
        QTest::newRow("empty") << QByteArray() << QByteArray();
        QTest::newRow("long") << QByteArray(1 << 20, 'F') << QByteArray();
    }

    void closeNamesAreOffered()
    {
        QFETCH(QByteArray, name);
        QFETCH(QByteArray, offered);
        const Applications all { named("a", "Firefox"), named("b", "LibreOffice Writer"),
            named("c", "Gamu"), named("d", "Game"), named("e", "Gami"), named("f", "Gama"),
            named("g", "Game"), hidden(named("h", "Secret")), named("i", "X") };
        QByteArrayList names;
        for (const auto& each : ApplicationNames::similar(all, name.toStdString()))
            names << QByteArray::fromStdString(each);
        QCOMPARE(names.join(','), offered);
    }

    void whatIsSaidIsShortAndPlain()
    {
        const auto named = [](const char* name, const std::vector<std::string>& similar) {
            return QByteArray::fromStdString(Wording::notFound(name, similar));
        };
        QCOMPARE(
            named("Fierfox", {}), QByteArray("Unable to find an application named “Fierfox”."));
        QCOMPARE(named("Fierfox", { "Firefox", "Files" }),
            QByteArray("Unable to find an application named “Fierfox”. "
                       "Did you mean “Firefox” or “Files”?"));
        QVERIFY(named("x", { "A", "B", "C" }).endsWith(" Did you mean “A”, “B” or “C”?"));
        QCOMPARE(named(" \n", {}), QByteArray("Unable to find an application without a name."));
        QCOMPARE(QByteArray::fromStdString(Wording::quoted("a\n\x1b[1m\u202e\u0085z\xff")),
            QByteArray("“a [1m z\uFFFD”"));
        QCOMPARE(QByteArray::fromStdString(Wording::quoted(std::string(1 << 20, 'x'))),
            "“" + QByteArray(60, 'x') + "…”");
        QCOMPARE(QByteArray::fromStdString(Wording::notStarted("Pen", "no ink")),
            QByteArray("“Pen” could not be started: no ink"));
    }
};

QTEST_GUILESS_MAIN(FindApplicationTest)
#include "FindApplicationTest.moc"
