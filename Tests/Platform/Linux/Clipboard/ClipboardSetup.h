// What tests of clipboards have in common.
#pragma once

#include "App/Platform/Clipboard.h"

#include <QEventLoop>
#include <QObject>
#include <QProcess>
#include <QTest>
#include <QTimer>

#include <chrono>
#include <memory>
#include <optional>

constexpr qint64 longestStandstill = 500; // Milliseconds, on a machine that is busy.

inline QByteArray longText(qsizetype size)
{
    const QByteArray line("Wörter, die niemand je ausgelesen hat. ");
    return line.repeated(size / line.size());
}

struct Reading {
    explicit Reading(Clipboard& clipboard, QClipboard::Mode mode = QClipboard::Clipboard)
    {
        clipboard.readText(mode, waiter.get(), [this](const QString& answer) {
            text = answer;
            ++answers;
        });
    }
    Q_DISABLE_COPY_MOVE(Reading)
    ~Reading() = default;

    QString awaited()
    {
        const bool isThere = QTest::qWaitFor([this] { return text.has_value(); }, 20'000);
        return isThere ? *text : QStringLiteral("no answer");
    }

    std::unique_ptr<QObject> waiter = std::make_unique<QObject>();
    std::optional<QString> text;
    int answers = 0;
};

// What another program prints, while the event loop of this one goes on.
inline QByteArray outputOf(const QString& program, const QStringList& arguments)
{
    QProcess process;
    QEventLoop loop;
    QByteArray bytes("nothing in time");
    const auto end = [&] {
        bytes = process.readAllStandardOutput();
        loop.quit();
    };
    QObject::connect(&process, &QProcess::finished, &loop, end);
    QTimer::singleShot(std::chrono::seconds(20), &loop, &QEventLoop::quit);
    process.start(program, arguments);
    loop.exec();
    return bytes;
}
