// An X server without a screen, for daemons that insist on one.
#pragma once

#include "Tests/Support/Daemon.h"

#include <QElapsedTimer>
#include <QRegularExpression>

class VirtualScreen final {
public:
    VirtualScreen()
        : m_server(QStringLiteral("Xvfb"),
            { QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-nolisten"),
                QStringLiteral("tcp") })
    {
        QElapsedTimer waited;
        waited.start();
        QByteArray printed;
        // Warnings of the keyboard's compiler may come on other lines.
        static const QRegularExpression number(
            QStringLiteral("^(\\d+)$"), QRegularExpression::MultilineOption);
        while (m_name.isEmpty() && waited.elapsed() < 20'000) {
            printed += m_server.output();
            if (const auto found = number.match(QString::fromUtf8(printed)); found.hasMatch())
                m_name = QStringLiteral(":") + found.captured(1);
        }
    }

    // The value for DISPLAY; empty when the server did not start.
    QString name() const { return m_name; }

private:
    Daemon m_server;
    QString m_name;
};
