// Draws pictures of all symbols, names of symbols and controls: contact_sheet FOLDER [SCALE]
#include "App/Ui/SymbolImage.h"
#include "App/Ui/SymbolNames.h"
#include "App/Ui/Symbols.h"
#include "App/Ui/TextLine.h"
#include "App/Ui/Theme.h"
#include "tools/contact-sheet/Sheet.h"

#include <QApplication>
#include <QDir>
#include <QImage>
#include <QPainter>
#include <QPixmap>

using namespace Qt::StringLiterals;

namespace {

constexpr int columnWidth = 440;
constexpr int rowHeight = 60;

void paintSymbol(QPainter& painter, const QString& name, const QPoint& start)
{
    const Theme& theme = Theme::current();
    int x = start.x();
    for (const int size : { 40, 22, 15, 10 }) {
        const QRect slot(x, start.y(), Symbols::boxSize(size), rowHeight);
        const QRect box = Symbols::centered(slot.width(), slot);
        Symbols::paint(painter, name, box, theme.colors.text);
        x += slot.width() + 14;
    }
    TextLine::paint(painter, QRectF(x + 10, start.y(), 220, rowHeight), Qt::AlignLeft, name,
        theme.font(TextRole::caption), theme.colors.secondary);
}

QImage symbols(qreal scale)
{
    const QStringList names = Symbols::names();
    const int rows = int(names.size() + 1) / 2;
    QImage image(QSize(2 * columnWidth, rows * rowHeight) * scale, QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    image.fill(Theme::current().colors.window);
    QPainter painter(&image);
    for (int index = 0; index < names.size(); ++index) {
        const QPoint start(20 + columnWidth * (index % 2), rowHeight * (index / 2));
        paintSymbol(painter, names[index], start);
    }
    return image;
}

// What a person may name for a launcher button, and two icons of applications.
QImage icons(qreal scale)
{
    constexpr int columns = 10;
    const QSize cell(130, 56);
    const QStringList names = SymbolNames::all() + QStringList { u"folder.circle"_s, u"firefox"_s };
    const int rows = int(names.size() - 1) / columns + 1;
    QImage image(QSize(columns * cell.width(), rows * cell.height()) * scale, QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    const Theme& theme = Theme::current();
    image.fill(theme.colors.window);
    QPainter painter(&image);
    for (int index = 0; index < names.size(); ++index) {
        const QPoint corner(index % columns * cell.width(), index / columns * cell.height());
        const QRect slot(corner + QPoint(0, 4), QSize(cell.width(), 30));
        SymbolImage::paint(painter, names[index], Symbols::centered(30, slot), theme.colors.text);
        TextLine::paint(painter, QRectF(corner + QPoint(2, 36), QSize(126, 14)), Qt::AlignHCenter,
            names[index], theme.font(TextRole::tabTitle), theme.colors.secondary);
    }
    return image;
}

QImage controls()
{
    Sheet sheet;
    sheet.show();
    QCoreApplication::processEvents();
    return sheet.grab().toImage();
}

}

int main(int argc, char* argv[])
{
    if (argc < 2)
        return 1;
    const QByteArray scale = argc > 2 ? QByteArray(argv[2]) : QByteArray("1");
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_SCALE_FACTOR", scale);
    QGuiApplication::setDesktopSettingsAware(false);
    const QApplication application(argc, argv);
    const QDir folder(QString::fromLocal8Bit(argv[1]));
    bool saved = folder.mkpath(u"."_s);
    for (const bool dark : { false, true }) {
        Theme::apply({ .dark = dark });
        const QString end
            = u"-%1-%2x.png"_s.arg(dark ? u"dark"_s : u"light"_s, QString::fromLatin1(scale));
        saved = symbols(scale.toDouble()).save(folder.filePath(u"symbols"_s + end)) && saved;
        saved = icons(scale.toDouble()).save(folder.filePath(u"icons"_s + end)) && saved;
        saved = controls().save(folder.filePath(u"controls"_s + end)) && saved;
    }
    return saved ? 0 : 1;
}
