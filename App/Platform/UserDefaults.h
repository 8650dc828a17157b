// The user's settings: typed values under text keys, kept between runs.
#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>

#include <optional>
#include <variant>

class UserDefaults : public QObject {
    Q_OBJECT

public:
    static UserDefaults& shared(); // Defined in App/Wiring.cpp.

    using Value = std::variant<qint64, double, bool, QString, QByteArray>;

    // Absent when nothing is stored under key.
    virtual std::optional<Value> value(const QString& key) const = 0;
    // Readable at once and on disk soon after; never waits for the disk.
    virtual void setValue(const QString& key, const Value& value) = 0;

    // Absent also when a value of another type is stored; an integer can be read as a real.
    std::optional<qint64> integer(const QString& key) const;
    std::optional<double> real(const QString& key) const;
    std::optional<bool> boolean(const QString& key) const;
    std::optional<QString> text(const QString& key) const;
    std::optional<QByteArray> data(const QString& key) const;

    void setInteger(const QString& key, qint64 number) { setValue(key, number); }
    void setReal(const QString& key, double number) { setValue(key, number); }
    void setBoolean(const QString& key, bool flag) { setValue(key, flag); }
    void setText(const QString& key, const QString& text) { setValue(key, text); }
    void setData(const QString& key, const QByteArray& bytes) { setValue(key, bytes); }

Q_SIGNALS:
    // After any value changed, here or in another process.
    void changed();

private:
    template <typename T>
    std::optional<T> typed(const QString& key) const;
};
