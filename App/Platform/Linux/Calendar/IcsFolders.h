// Folders of iCalendar files, as programs for the terminal keep them.
#pragma once

#include "App/Platform/Linux/Background/BackgroundWork.h"
#include "App/Platform/Linux/Calendar/CalendarSource.h"
#include "App/Platform/Linux/Calendar/EventExpander.h"
#include "App/Platform/Linux/Calendar/KeptEvents.h"
#include "App/Platform/Linux/Calendar/Retry.h"
#include "App/Platform/Linux/Files/FolderTreeWatch.h"

#include <QElapsedTimer>
#include <QStringList>
#include <QTimer>

#include <optional>

class IcsFolders final : public CalendarSource {
    Q_OBJECT

public:
    explicit IcsFolders(EventExpander& expander, const QStringList& folders = usualFolders());

    static QStringList usualFolders();

    // Whether one of the folders can be read.
    void checkAccess(QObject* context, const std::function<void(bool)>& answer) override;
    void look(const TimeSpan& span) override;
    QList<CalendarEvent> events() const override { return m_kept.events(); }

Q_SIGNALS:
    void searched(bool isOpen); // For those who wait for their answers.

private:
    void expand();
    void take(const std::optional<EventExpander::Result>& result);

    EventExpander& m_expander;
    const QStringList m_folders;
    BackgroundWork m_search;
    FolderTreeWatch m_watch;
    QTimer m_soon;
    Retry m_retry;
    QElapsedTimer m_taken;
    TimeSpan m_span {};
    TimeSpan m_asked {}; // The one that is being read.
    bool m_isStale = false;
    bool m_isAtWork = false;
    KeptEvents m_kept;
};
