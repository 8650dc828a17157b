// Says when files in folders were written, replaced or removed.
#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <QString>

#include <memory>

class FolderWatch final : public QObject {
    Q_OBJECT

public:
    FolderWatch();
    ~FolderWatch() override;

    // False when there is no such folder. Harmless for a folder that is watched already; needed
    // again for one that was removed and came back.
    bool watch(const QString& folder);

Q_SIGNALS:
    // The name without its folder; empty when events were lost and anything may have changed.
    void changed(const QString& name);

private:
    void drain();

    int m_descriptor;
    std::unique_ptr<QSocketNotifier> m_notifier;
};
