// Something outside the program that changes on its own. It is watched, and may wake the program
// up, only while somebody follows it.
#pragma once

#include <QObject>

class Followed : public QObject {
    Q_OBJECT

public:
    // In pairs; the first follower begins the watch, the last one ends it.
    void follow();
    void unfollow();

Q_SIGNALS:
    // Only while followed.
    void changed();

protected:
    // What was known before may stay, until something newer is.
    virtual void begin() = 0;
    virtual void end() = 0;

private:
    int m_followers = 0;
};
