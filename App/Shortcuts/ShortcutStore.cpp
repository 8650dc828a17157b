#include "App/Shortcuts/ShortcutStore.h"

#include "App/Platform/CommandRunner.h"
#include "App/Platform/UserDefaults.h"
#include "App/Platform/Workspace.h"

#include <QStringDecoder>
#include <QUrl>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

const auto itemsKey = u"shortcutItems"_s;

QList<ShortcutItem> defaultItems()
{
    using enum ShortcutKind;
    return {
        { .name = u"Safari"_s, .kind = app, .target = u"Safari"_s, .symbol = u"safari"_s },
        { .name = u"Notes"_s, .kind = app, .target = u"Notes"_s, .symbol = u"note.text"_s },
        { .name = u"GitHub"_s,
            .kind = url,
            .target = u"https://github.com"_s,
            .symbol = u"chevron.left.forwardslash.chevron.right"_s },
        { .name = u"Terminal"_s, .kind = app, .target = u"Terminal"_s, .symbol = u"terminal"_s },
    };
}

bool isBlank(QChar character)
{
    return character == u'\t' || character.category() == QChar::Separator_Space;
}

QString withoutBlanks(const QString& text)
{
    const auto start = std::ranges::find_if_not(text, isBlank);
    const auto end = std::find_if_not(text.crbegin(), std::reverse_iterator(start), isBlank).base();
    return QString(start, end - start);
}

// Absent when it is none. A person types spaces and letters of any script into an address.
std::optional<QUrl> webAddress(const QString& target)
{
    auto text = withoutBlanks(target);
    if (!text.contains("://"_L1))
        text.prepend("https://"_L1);
    const QUrl url(text, QUrl::TolerantMode);
    const bool isHttp = url.scheme() == "http"_L1 || url.scheme() == "https"_L1;
    // HTTP has no address without a host (RFC 9110, section 4.2.1).
    if (!url.isValid() || url.scheme().isEmpty() || (isHttp && url.host().isEmpty()))
        return std::nullopt;
    return url;
}

// A second slash in front would begin the name of another machine.
QUrl fileAddress(const QString& path)
{
    const auto name = std::ranges::find_if(path, [](QChar each) { return each != u'/'; });
    return QUrl::fromLocalFile(u'/' + QString(name, path.cend() - name));
}

QString messageIn(const QByteArray& errors)
{
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder(errors);
    return decoder.hasError() ? QString() : text.trimmed();
}

}

ShortcutStore::ShortcutStore(
    UserDefaults& defaults, Workspace& workspace, CommandRunner& runner, const ShortcutTools& tools)
    : m_defaults(defaults)
    , m_workspace(workspace)
    , m_runner(runner)
    , m_tools(tools)
    , m_stored(defaults.data(itemsKey).value_or(QByteArray()))
    , m_items(ShortcutItem::decoded(m_stored).value_or(defaultItems()))
{
    connect(&m_defaults, &UserDefaults::changed, this, &ShortcutStore::follow);
}

void ShortcutStore::setItems(const QList<ShortcutItem>& items)
{
    publish(m_items, items);
    m_stored = ShortcutItem::encoded(items);
    m_defaults.setData(itemsKey, m_stored);
}

// Another process may write them too; the next change here would undo that unseen.
void ShortcutStore::follow()
{
    const auto stored = m_defaults.data(itemsKey);
    if (!stored || *stored == m_stored)
        return;
    m_stored = *stored;
    if (const auto items = ShortcutItem::decoded(m_stored))
        publish(m_items, *items);
}

void ShortcutStore::run(const ShortcutItem& item)
{
    publish(m_lastError, {});
    switch (item.kind) {
    case ShortcutKind::app:
        return runApp(item.target);
    case ShortcutKind::url:
        return runUrl(item.target);
    case ShortcutKind::shortcut:
        return exec(m_tools.shortcuts, { u"run"_s, item.target });
    }
}

void ShortcutStore::runUrl(const QString& target)
{
    if (const auto url = webAddress(target))
        m_workspace.open(*url);
    else
        publish(m_lastError, u"Invalid URL"_s);
}

void ShortcutStore::runApp(const QString& target)
{
    if (target.startsWith(u'/'))
        m_workspace.open(fileAddress(target));
    else
        exec(m_tools.open, { u"-a"_s, target });
}

void ShortcutStore::exec(const QString& path, const QStringList& arguments)
{
    const auto failure = m_runner.run(path, arguments, this, [this](const CommandEnd& end) {
        if (end.succeeded)
            return;
        const auto message = messageIn(end.errors);
        publish(m_lastError, message.isEmpty() ? u"Command failed"_s : message);
    });
    if (failure)
        publish(m_lastError, *failure);
}
