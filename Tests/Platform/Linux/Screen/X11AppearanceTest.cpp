#include "App/Platform/Linux/Screen/X11Appearance.h"

#include "App/Platform/Linux/Screen/X11Connection.h"
#include "App/Platform/Linux/Screen/XSettings.h"
#include "Tests/Fakes/FakeAppearance.h"
#include "Tests/Support/VirtualScreen.h"

#include <QApplication>
#include <QSignalSpy>
#include <QTest>
#include <QtEndian>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

enum class Order : char { little, big };

template <typename Number>
QByteArray number(Number value, Order order)
{
    const Number placed = order == Order::big ? qToBigEndian(value) : qToLittleEndian(value);
    return { reinterpret_cast<const char*>(&placed), sizeof placed };
}

QByteArray padded(const QByteArray& text)
{
    return text + QByteArray((4 - text.size() % 4) % 4, '\0');
}

QByteArray start(char type, const QByteArray& name, Order order)
{
    return QByteArray(1, type) + '\0' + number(quint16(name.size()), order) + padded(name)
        + number(quint32 { 7 }, order);
}

// A number, a colour, and a text, as desktops write them.
QByteArray settings(const QByteArray& theme, Order order = Order::little)
{
    return QByteArray(1, char(order)) + QByteArray(3, '\0') + number(quint32 { 1 }, order)
        + number(quint32 { 3 }, order) + start(0, "Xft/DPI", order)
        + number(quint32 { 98304 }, order) + start(2, "Some/Color", order) + QByteArray(8, 'c')
        + start(1, "Net/IconThemeName", order) + number(quint32(theme.size()), order)
        + padded(theme);
}

// A desktop's keeper of settings, on a connection of its own, as it is another program's.
class Manager final {
public:
    explicit Manager(const QByteArray& theme)
        : m_window(xcb_generate_id(m_x.get()))
    {
        xcb_create_window(m_x.get(), XCB_COPY_FROM_PARENT, m_window, X11Connection::root(), 0, 0, 1,
            1, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
        tell(settings(theme));
        xcb_set_selection_owner(
            m_x.get(), m_window, X11Connection::atom("_XSETTINGS_S0"), XCB_CURRENT_TIME);
        flush();
    }

    void tell(const QByteArray& bytes)
    {
        const auto atom = X11Connection::atom("_XSETTINGS_SETTINGS");
        xcb_change_property(m_x.get(), XCB_PROP_MODE_REPLACE, m_window, atom, atom, 8,
            uint32_t(bytes.size()), bytes.constData());
        flush();
    }

private:
    // Returns when the server has dealt with all that was asked.
    void flush()
    {
        const auto cookie = xcb_get_input_focus(m_x.get());
        X11Connection::owned(xcb_get_input_focus_reply(m_x.get(), cookie, nullptr));
    }

    std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> m_x {
        xcb_connect(nullptr, nullptr), &xcb_disconnect
    };
    xcb_window_t m_window;
};

struct Setup {
    FakeAppearance session;
    X11Appearance appearance { session };
    QSignalSpy changes { &appearance, &Appearance::changed };
};

}

class X11AppearanceTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void isTheSessionsWhereTheScreenHasNoSettings()
    {
        Setup s;
        s.session.dark = true;
        s.session.accentColor = Qt::red;
        s.session.family = u"Inter"_s;
        s.session.icons = u"breeze"_s;
        Q_EMIT s.session.changed();
        QCOMPARE(s.changes.count(), 1);
        QVERIFY(s.appearance.isDark());
        QCOMPARE(s.appearance.accent(), QColor(Qt::red));
        QCOMPARE(s.appearance.fontFamily(), u"Inter"_s);
        QCOMPARE(s.appearance.iconTheme(), u"breeze"_s);
    }

    void theScreensIconThemeComesFirst()
    {
        const Manager manager("elementary-xfce");
        Setup s;
        s.session.icons = u"Adwaita"_s;
        QCOMPARE(s.appearance.iconTheme(), u"elementary-xfce"_s);
    }

    void followsAChange()
    {
        Manager manager("first");
        Setup s;
        manager.tell(settings("second"));
        QTRY_COMPARE(s.appearance.iconTheme(), u"second"_s);
        QCOMPARE(s.changes.count(), 1);
    }

    void isSilentAboutOtherSettings()
    {
        Manager manager("first");
        Setup s;
        manager.tell(settings("first", Order::big));
        manager.tell(settings("second"));
        QTRY_COMPARE(s.appearance.iconTheme(), u"second"_s);
        QCOMPARE(s.changes.count(), 1);
    }

    void followsWhoeverKeepsTheSettings()
    {
        Setup s;
        s.session.icons = u"Adwaita"_s;
        auto manager = std::make_unique<Manager>("late");
        QTRY_COMPARE(s.appearance.iconTheme(), u"late"_s);
        manager.reset();
        QTRY_COMPARE(s.appearance.iconTheme(), u"Adwaita"_s);
        manager = std::make_unique<Manager>("again");
        QTRY_COMPARE(s.appearance.iconTheme(), u"again"_s);
        manager->tell(settings("later"));
        QTRY_COMPARE(s.appearance.iconTheme(), u"later"_s);
    }

    void readsBothByteOrders()
    {
        for (const Order order : { Order::little, Order::big }) {
            const auto bytes = settings("Tango", order);
            QCOMPARE(XSettings::text(bytes, "Net/IconThemeName"), u"Tango"_s);
            QCOMPARE(XSettings::text(bytes, "Xft/DPI"), QString());
            QCOMPARE(XSettings::text(bytes, "Net/ThemeName"), QString());
        }
    }

    void settingsThatEndTooEarlyAreNone()
    {
        const auto whole = settings("Tango-");
        for (qsizetype size = 0; size < whole.size() - 2; ++size)
            QCOMPARE(XSettings::text(whole.first(size), "Net/IconThemeName"), QString());
        QCOMPARE(XSettings::text(whole.first(whole.size() - 2), "Net/IconThemeName"), u"Tango-"_s);
    }

    void settingsOfUnknownTypesAreNone()
    {
        auto bytes = settings("Tango");
        constexpr qsizetype typeOfColor = 32;
        QCOMPARE(bytes[typeOfColor], '\2');
        bytes[typeOfColor] = 3;
        QCOMPARE(XSettings::text(bytes, "Net/IconThemeName"), QString());
    }
};

int main(int argc, char* argv[])
{
    qputenv("QT_QPA_PLATFORM", "xcb");
    QGuiApplication::setDesktopSettingsAware(false);
    const VirtualScreen screen;
    if (screen.name().isEmpty())
        return 1;
    qputenv("DISPLAY", screen.name().toLatin1());
    const QApplication application(argc, argv);
    X11AppearanceTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "X11AppearanceTest.moc"
