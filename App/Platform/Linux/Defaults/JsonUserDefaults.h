// The user's settings in a JSON file, read at once and written behind the program's back.
#pragma once

#include "App/Platform/Linux/Defaults/DefaultsCodec.h"
#include "App/Platform/Linux/Defaults/DefaultsFile.h"
#include "App/Platform/Linux/Defaults/DefaultsWorker.h"
#include "App/Platform/Linux/Files/FolderWatch.h"
#include "App/Platform/UserDefaults.h"

class JsonUserDefaults final : public UserDefaults {
    Q_OBJECT

public:
    // Reads the file at path, or the last good copy beside it; creates the folder.
    explicit JsonUserDefaults(const QString& path);

    std::optional<Value> value(const QString& key) const override;
    // On disk within a moment, at the latest when this object is destroyed.
    void setValue(const QString& key, const Value& value) override;

private:
    DefaultsCodec::Values begin();
    void watch();
    void adopt();

    DefaultsFile m_file;
    FolderWatch m_watch;
    bool m_isRead = false; // The file itself, when this began.
    DefaultsCodec::Values m_values;
    DefaultsWorker m_worker;
};
