// Another Qt program of the desktop, with a window of words and controls: it has in memory what all
// such programs share.
#include <QApplication>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>

namespace {

class Disc final : public QWidget {
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setBrush(Qt::darkGreen);
        painter.drawEllipse(rect());
    }
};

}

int main(int argc, char** argv)
{
    QGuiApplication::setDesktopSettingsAware(false);
    QApplication app(argc, argv);
    QWidget window;
    window.setWindowTitle(QStringLiteral("Neighbour"));
    QLabel words(QStringLiteral("Words"));
    words.setFont(QFont(QStringLiteral("Inter"), 13, QFont::Medium));
    QLineEdit field(QStringLiteral("A line of text"));
    QPushButton button(QStringLiteral("Button"));
    Disc disc;
    QFormLayout form(&window);
    form.addRow(&words, &field);
    form.addRow(&disc, &button);
    window.show();
    return QApplication::exec();
}
