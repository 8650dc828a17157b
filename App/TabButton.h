// One button of the tab bar: a symbol, mostly with a title under it, on a tinted ground while
// checked.
#pragma once

#include <QAbstractButton>

class TabButton final : public QAbstractButton {
    Q_OBJECT

public:
    enum class Kind {
        tab, // The title stands under the symbol.
        toggle, // The symbol stands alone; the title is its name for assistive technology.
    };

    TabButton(Kind kind, const QString& symbol, const QString& title, QWidget* parent);

    Kind kind() const { return m_kind; }
    bool showsFocus() const { return m_showsFocus; } // The parent paints the ring around it.

private:
    void nextCheckState() override { } // The tab bar says what is checked.
    void paintEvent(QPaintEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void setShowsFocus(bool shows);
    QColor ground() const;

    Kind m_kind;
    QString m_symbol;
    bool m_byKeyboard = false; // How the focus came here last.
    bool m_showsFocus = false;
};
