// A title with its value, and below them a chart or a bar.
#pragma once

#include <QWidget>

class StatHeading;

class StatRow final : public QWidget {
    Q_OBJECT

public:
    // Takes the content over. While it is hidden the row is its heading only.
    StatRow(const QString& title, QWidget* content, QWidget* parent = nullptr);

    QString title() const;
    QString value() const;

    void setValue(const QString& value);

private:
    StatHeading* m_heading;
};
