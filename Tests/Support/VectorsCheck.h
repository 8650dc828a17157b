// What programs have in common that check each entry of a JSON array in a file: PROGRAM FILE
#pragma once

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>
#include <cstdio>

struct VectorsCheck {
    QString program; // Its name.
    QString whole; // What the file should be, as one reads it in a complaint.
    QString entry; // What each entry should be.
    bool (*isVector)(const QJsonValue& value);
    bool (*passes)(const QJsonValue& vector, qsizetype number); // Prints what differs.

    // The status to exit with: 0 when all pass.
    int run(int argc, char** argv, QByteArray (*prepared)(QByteArray json) = nullptr) const
    {
        if (argc != 2)
            return fail(QStringLiteral("usage: ") + program + QStringLiteral(" FILE"));
        QFile file(QString::fromLocal8Bit(argv[1]));
        if (!file.open(QFile::ReadOnly))
            return fail(file.fileName() + QStringLiteral(": ") + file.errorString());
        const auto json = prepared ? prepared(file.readAll()) : file.readAll();
        QJsonParseError error;
        const auto vectors = QJsonDocument::fromJson(json, &error).array();
        if (error.error != QJsonParseError::NoError)
            return fail(file.fileName() + QStringLiteral(": ") + error.errorString());
        if (vectors.isEmpty())
            return fail(file.fileName() + QStringLiteral(": not ") + whole);
        const auto odd = std::ranges::find_if_not(vectors, isVector);
        if (odd != vectors.end()) {
            const auto number = QString::number(odd - vectors.begin() + 1);
            return fail(file.fileName() + QStringLiteral(": entry ") + number
                + QStringLiteral(" is not ") + entry);
        }
        return check(vectors);
    }

private:
    int fail(const QString& why) const
    {
        std::fprintf(stderr, "%s: %s\n", qPrintable(program), qPrintable(why));
        return 1;
    }

    int check(const QJsonArray& vectors) const
    {
        qsizetype passed = 0;
        for (qsizetype i = 0; i < vectors.size(); ++i)
            passed += passes(vectors[i], i + 1) ? 1 : 0;
        const auto failed = vectors.size() - passed;
        std::printf("%lld passed, %lld failed\n", static_cast<long long>(passed),
            static_cast<long long>(failed));
        return failed == 0 ? 0 : 1;
    }
};
