// The least that a Qt program with a tray icon can be: what Corvella costs is told beside it.
#include <QApplication>
#include <QIcon>
#include <QPixmap>
#include <QSystemTrayIcon>

int main(int argc, char** argv)
{
    QGuiApplication::setDesktopSettingsAware(false);
    qunsetenv("QT_QPA_PLATFORMTHEME");
    QApplication app(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);

    QPixmap pixmap(22, 22);
    pixmap.fill(Qt::darkGray);
    QSystemTrayIcon item { QIcon(pixmap) };
    item.show();
    return QApplication::exec();
}
