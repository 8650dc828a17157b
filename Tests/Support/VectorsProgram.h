// A program that compares what comes of the texts in a file with what the file says of it.
#pragma once

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

#include <utility>

class VectorsProgram final {
public:
    struct Outcome {
        int status = -1;
        QString output;
        QString complaint;
    };

    explicit VectorsProgram(QString path)
        : m_path(std::move(path))
    {
    }

    Outcome run(const QStringList& arguments) const
    {
        QProcess program;
        program.start(m_path, arguments);
        if (!program.waitForFinished() || program.exitStatus() != QProcess::NormalExit)
            return {};
        return { program.exitCode(), QString::fromUtf8(program.readAllStandardOutput()),
            QString::fromUtf8(program.readAllStandardError()) };
    }

    Outcome runOn(const QByteArray& content) const
    {
        const QTemporaryDir folder;
        QFile file(folder.filePath(QStringLiteral("vectors.json")));
        if (!file.open(QFile::WriteOnly) || file.write(content) != content.size() || !file.flush())
            return {};
        return run({ file.fileName() });
    }

    static QByteArray contentOf(const QList<QJsonObject>& vectors)
    {
        QJsonArray array;
        for (const auto& vector : vectors)
            array << vector;
        return QJsonDocument(array).toJson();
    }

private:
    QString m_path;
};
