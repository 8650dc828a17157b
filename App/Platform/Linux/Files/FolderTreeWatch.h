// Says when something changed in folders or below, those that appear later included.
#pragma once

#include "App/Platform/Linux/Background/BackgroundWork.h"
#include "App/Platform/Linux/Files/FolderTree.h"

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QObject>
#include <QSet>
#include <QSocketNotifier>
#include <QStringList>
#include <QTimer>

#include <memory>

class FolderTreeWatch final : public QObject {
    Q_OBJECT

public:
    explicit FolderTreeWatch(const QStringList& roots);
    ~FolderTreeWatch() override;

    // Walks the folders, beside this thread, and begins to watch them.
    void look();
    QStringList readable() const { return m_readable; } // Of the roots, when last walked.
    bool isWhole() const { return m_isWhole; } // No root was there that could not be read.

Q_SIGNALS:
    // The folders have been walked, since they were to be or since something changed there; several
    // changes within a moment are one.
    void looked();

private:
    class Descriptor;
    // Names that are waited for, or none where anything counts; by the number of the watch.
    using Watches = QHash<int, QSet<QByteArray>>;
    struct Found {
        QStringList readable;
        bool isWhole;
        Watches watches;
    };

    static Found walk(const QList<QByteArray>& roots, int descriptor, const Watches& before);
    static Watches watchAll(const FolderTree::Plan& plan, int descriptor);
    void learn(const Found& found);
    void drain();
    bool isOfInterest(int watch, quint32 events, const QByteArray& name) const;

    QList<QByteArray> m_roots;
    std::shared_ptr<Descriptor> m_descriptor; // Shared with the work, which may outlive this.
    QSocketNotifier m_notifier { QSocketNotifier::Read };
    BackgroundWork m_work;
    QTimer m_soon;
    bool m_isStale = false;
    QStringList m_readable;
    bool m_isWhole = true;
    Watches m_watches;
};
