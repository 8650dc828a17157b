// Words in a role and a colour of the theme. Always plain text: what it shows may come from
// outside.
#pragma once

#include "App/Ui/Colors.h"
#include "App/Ui/TextRole.h"

#include <QLabel>

class Label final : public QLabel {
    Q_OBJECT

public:
    explicit Label(TextRole role, QColor Colors::*color, QWidget* parent = nullptr);

    void setRole(TextRole role);
    void setColor(QColor Colors::*color);
    // One line, what does not fit ends in an ellipsis; the whole text stays its accessible name.
    void setElided(bool elided);
    // At most so many lines, any word broken that is longer than one; what does not fit ends in an
    // ellipsis. Each is as high as the role says.
    void setMostLines(int lines);
    int heightForWidth(int width) const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void adoptColor();
    void paintLines(QPainter& painter) const;

    TextRole m_role;
    QColor Colors::*m_color;
    bool m_elided = false;
    int m_mostLines = 0; // 0: as Qt breaks them.
};
