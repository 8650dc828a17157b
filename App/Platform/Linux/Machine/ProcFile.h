// A small file that the kernel makes up anew for each reading, kept open in between.
#pragma once

#include <QByteArray>

#include <span>
#include <string_view>

class ProcFile final {
public:
    explicit ProcFile(const QString& path);
    ~ProcFile();
    Q_DISABLE_COPY_MOVE(ProcFile)

    // As much of its beginning as the buffer holds; empty where it cannot be read. Never waits,
    // whatever stands in the file's place.
    std::string_view read(std::span<char> buffer);

private:
    std::string_view tryToRead(std::span<char> buffer);

    QByteArray m_path;
    int m_descriptor = -1;
};
