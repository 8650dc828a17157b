// How many focus sessions were completed: a check mark and the count, at the trailing edge.
#pragma once

#include <QWidget>

class SessionCount final : public QWidget {
    Q_OBJECT

public:
    explicit SessionCount(QWidget* parent);

    void setCount(qint64 sessions);

private:
    void paintEvent(QPaintEvent* event) override;

    QString m_words;
};
