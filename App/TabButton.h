// One button of the tab bar: a symbol, mostly with a title under it, on a tinted ground while
// checked.
#pragma once

#include <QAbstractButton>

class TabButton final : public QAbstractButton {
    Q_OBJECT

public:
    TabButton(const QString& symbol, const QString& title, QWidget* parent);

    void hideTitle(); // The symbol stands alone in the middle; the title remains its name.
    bool showsFocus() const { return m_showsFocus; } // The parent paints the ring around it.

private:
    void nextCheckState() override { } // The tab bar says what is checked.
    void paintEvent(QPaintEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void setShowsFocus(bool shows);
    QColor ground() const;

    QString m_symbol;
    bool m_titleIsHidden = false;
    bool m_showsFocus = false;
};
