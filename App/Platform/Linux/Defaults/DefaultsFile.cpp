#include "App/Platform/Linux/Defaults/DefaultsFile.h"

#include "App/Platform/Linux/Files/FileLock.h"
#include "App/Platform/Linux/Files/WholeFile.h"

#include <QFileInfo>

#include <thread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using WholeFile::State;

namespace {

constexpr auto lockPatience = 2s;
constexpr auto settlingTime = 200ms;

struct Reading {
    State state = State::missing;
    DefaultsCodec::Entries entries;
};

Reading reading(const QString& path)
{
    const auto content = WholeFile::read(path, DefaultsFile::maximumSize);
    if (content.state != State::whole)
        return { content.state, {} };
    const auto entries = DefaultsCodec::parse(content.bytes);
    return entries ? Reading { State::whole, *entries } : Reading { State::unfit, {} };
}

std::optional<DefaultsCodec::Entries> wholeOnly(const Reading& reading)
{
    return reading.state == State::whole ? std::optional(reading.entries) : std::nullopt;
}

// An editor that writes in place leaves the file damaged for a moment.
Reading settledReading(const QString& path)
{
    auto first = reading(path);
    if (first.state != State::unfit)
        return first;
    std::this_thread::sleep_for(settlingTime);
    return reading(path);
}

QString lastGoodBeside(const QString& target)
{
    return target + u".last"_s;
}

bool fits(const DefaultsCodec::Entries& entries)
{
    return entries.size() <= DefaultsCodec::mostEntries
        && DefaultsCodec::print(entries).size() <= DefaultsFile::maximumSize;
}

// A change that would make the file too large to be read again stays in memory only.
DefaultsCodec::Entries overlaid(
    const DefaultsCodec::Entries& base, const DefaultsCodec::Entries& changes)
{
    auto entries = base;
    entries.insert(changes);
    if (fits(entries))
        return entries;
    entries = base;
    for (auto change = changes.begin(); change != changes.end(); ++change) {
        const auto before = entries;
        entries.insert(change.key(), change.value());
        if (!fits(entries))
            entries = before;
    }
    return entries;
}

}

DefaultsFile::DefaultsFile(const QString& path)
    : m_path(path)
{
}

std::optional<DefaultsFile::Entries> DefaultsFile::read() const
{
    return wholeOnly(reading(m_path));
}

bool DefaultsFile::isDamaged() const
{
    return reading(m_path).state == State::unfit;
}

std::optional<DefaultsFile::Entries> DefaultsFile::readLastGood() const
{
    return wholeOnly(reading(lastGoodBeside(WholeFile::behindLinks(m_path))));
}

std::optional<DefaultsFile::Entries> DefaultsFile::merge(
    const Entries& changes, const Values& otherwise) const
{
    const auto target = WholeFile::behindLinks(m_path);
    if (!WholeFile::makeFolder(QFileInfo(target).path()))
        return std::nullopt;
    const FileLock lock(target + u".lock"_s, lockPatience);
    if (!lock.isHeld())
        return std::nullopt;
    const auto before = base(target, otherwise);
    if (!before)
        return std::nullopt;
    const auto entries = overlaid(before->entries, changes);
    if (entries == before->stored)
        return entries;
    const auto text = DefaultsCodec::print(entries);
    if (!WholeFile::replace(target, text))
        return std::nullopt;
    WholeFile::replace(lastGoodBeside(target), text); // Where this fails the copy is only older.
    return entries;
}

std::optional<DefaultsFile::Base> DefaultsFile::base(
    const QString& target, const Values& otherwise) const
{
    const auto found = settledReading(target);
    if (found.state == State::whole)
        return Base { found.entries, found.entries };
    if (found.state == State::unreachable)
        return std::nullopt;
    if (found.state == State::unfit && !WholeFile::setAside(target))
        return std::nullopt;
    if (const auto lastGood = readLastGood())
        return Base { *lastGood, {} };
    return Base { overlaid({}, DefaultsCodec::encodeAll(otherwise)), {} };
}
