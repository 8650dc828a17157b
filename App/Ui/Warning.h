// A few words that something is wrong, behind the sign for it.
#pragma once

#include <QWidget>

class Label;

class Warning final : public QWidget {
    Q_OBJECT

public:
    explicit Warning(const QString& text, QWidget* parent = nullptr);

    QString text() const;
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    Label* m_words;
};
