#include "App/Platform/Linux/Calendar/IcsFolders.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>

#include <algorithm>
#include <dirent.h>
#include <memory>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto patience = 3s;

bool isReadable(const QString& folder)
{
    auto* opened = opendir(QFile::encodeName(folder).constData());
    if (opened)
        closedir(opened);
    return opened;
}

}

IcsFolders::IcsFolders(EventExpander& expander, const QStringList& folders)
    : m_expander(expander)
    , m_folders(folders)
    , m_watch(folders)
{
    m_soon.setSingleShot(true);
    m_soon.callOnTimeout(this, &IcsFolders::expand);
    m_retry.callOnTimeout(&m_watch, &FolderTreeWatch::look);
    connect(&m_watch, &FolderTreeWatch::looked, this, &IcsFolders::expand);
}

QStringList IcsFolders::usualFolders()
{
    const auto data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    return { data + u"/calendars"_s, QDir::homePath() + u"/.calendars"_s,
        data + u"/khal/calendars"_s };
}

// A folder on a server that hangs is as good as none. The search that waits for it is left to
// itself, and is the only one until it ends.
void IcsFolders::checkAccess(QObject* context, const std::function<void(bool)>& answer)
{
    auto* timer = new QTimer(context);
    timer->setSingleShot(true);
    const auto conclude = [timer, answer](bool isOpen) {
        timer->deleteLater();
        answer(isOpen);
    };
    timer->callOnTimeout([conclude] { conclude(false); });
    connect(this, &IcsFolders::searched, timer, [timer, conclude](bool isOpen) {
        if (timer->isActive()) {
            timer->stop();
            conclude(isOpen);
        }
    });
    timer->start(patience);
    m_search.start([this, folders = m_folders]() -> BackgroundWork::Finish {
        const bool isOpen = std::ranges::any_of(folders, isReadable);
        return [this, isOpen] { Q_EMIT searched(isOpen); };
    });
}

void IcsFolders::look(const TimeSpan& span)
{
    m_span = span;
    m_watch.look();
}

void IcsFolders::expand()
{
    m_isStale = m_isAtWork || m_soon.isActive();
    if (m_isStale)
        return;
    m_asked = m_span;
    const auto folders = m_watch.readable();
    if (folders.isEmpty()) {
        take(EventExpander::Result {
            .events = {}, .unknownZones = {}, .isComplete = m_watch.isWhole() });
        return;
    }
    m_isAtWork = true;
    m_taken.start();
    m_expander.expand({ .start = m_span.start, .end = m_span.end, .paths = folders }, this,
        [this, isWhole = m_watch.isWhole()](auto result) {
            if (result)
                result->isComplete = result->isComplete && isWhole;
            take(result);
        });
}

void IcsFolders::take(const std::optional<EventExpander::Result>& result)
{
    m_isAtWork = false;
    if (std::exchange(m_isStale, false))
        m_soon.start(KeptEvents::pauseAfter(std::chrono::milliseconds(m_taken.elapsed())));
    if (!result)
        m_retry.later();
    else if (m_kept.take(*result, m_asked, m_retry))
        Q_EMIT changed();
}
