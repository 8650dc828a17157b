// The base of every model: announces each published change just before it is stored.
#pragma once

#include <QObject>

#include <functional>
#include <type_traits>
#include <utility>

class Model : public QObject {
    Q_OBJECT

public:
    // Calls refresh in a later turn of the event loop, when the new values can be read: once,
    // however many announcements came before it. Ends with the observer or the model.
    void observe(QObject* observer, std::function<void()> refresh);

Q_SIGNALS:
    void willChange();

protected:
    template <typename T>
    void publish(T& property, std::type_identity_t<T> value)
    {
        Q_EMIT willChange();
        property = std::move(value);
    }
};
