#include "App/Platform/Linux/Calendar/ExpanderPipe.h"

#include <QDataStream>
#include <QIODevice>
#include <QtEndian>

#include <array>

namespace {

constexpr auto version = QDataStream::Qt_6_4;
constexpr quint32 answerMark = 0x434F5256;
constexpr quint32 endMark = 0x454E4421;
constexpr quint8 textCount = 5;

template <typename Event>
auto texts(Event& event)
{
    return std::array<decltype(&event.title), textCount> { &event.identifier, &event.title,
        &event.location, &event.notes, &event.url };
}

QDataStream& operator<<(QDataStream& stream, Moment moment)
{
    return stream << moment.time_since_epoch().count();
}

QDataStream& operator>>(QDataStream& stream, Moment& moment)
{
    double seconds = 0;
    stream >> seconds;
    moment = Moment(std::chrono::duration<double>(seconds));
    return stream;
}

void write(QDataStream& stream, const QStringList& list)
{
    stream << static_cast<quint32>(list.size());
    for (const auto& text : list)
        stream << text;
}

// QDataStream would make room for as many as the bytes say, be they there or not.
bool read(QDataStream& stream, QStringList& list, qsizetype most)
{
    quint32 count = 0;
    stream >> count;
    if (count > most)
        return false;
    for (quint32 i = 0; i < count && stream.status() == QDataStream::Ok; ++i) {
        QString text;
        stream >> text;
        list << text;
    }
    return stream.status() == QDataStream::Ok;
}

// At least as many bytes as the answer has: grown step by step it would be there twice.
qsizetype size(const EventExpander::Result& result)
{
    constexpr qsizetype frame = 64;
    qsizetype bytes = frame;
    for (const auto& zone : result.unknownZones)
        bytes += frame + zone.size() * qsizetype { sizeof(QChar) };
    for (const auto& event : result.events) {
        bytes += frame;
        for (const auto* text : texts(event))
            bytes += *text ? (*text)->size() * qsizetype { sizeof(QChar) } : 0;
    }
    return bytes;
}

void write(QDataStream& stream, const CalendarEvent& event)
{
    stream << event.start << event.end << event.isAllDay;
    for (const auto* text : texts(event)) {
        stream << text->has_value();
        if (*text)
            stream << **text;
    }
}

CalendarEvent readEvent(QDataStream& stream)
{
    CalendarEvent event;
    stream >> event.start >> event.end >> event.isAllDay;
    for (auto* text : texts(event)) {
        bool isGiven = false;
        stream >> isGiven;
        if (isGiven)
            stream >> text->emplace();
    }
    return event;
}

}

QByteArray ExpanderPipe::head(const EventExpander::Request& request)
{
    QByteArray bytes(headSizeBytes, '\0');
    QDataStream stream(&bytes, QIODevice::Append);
    stream.setVersion(version);
    stream << request.start << request.end << request.source;
    write(stream, request.paths);
    qToBigEndian(static_cast<quint32>(bytes.size() - headSizeBytes), bytes.data());
    return bytes;
}

std::optional<qsizetype> ExpanderPipe::headSize(const QByteArray& bytes)
{
    if (bytes.size() != headSizeBytes)
        return {};
    const auto size = qFromBigEndian<quint32>(bytes.constData());
    return size <= largestHead ? std::optional<qsizetype>(size) : std::nullopt;
}

std::optional<EventExpander::Request> ExpanderPipe::request(const QByteArray& head)
{
    QDataStream stream(head);
    stream.setVersion(version);
    EventExpander::Request request;
    stream >> request.start >> request.end >> request.source;
    if (!read(stream, request.paths, mostPaths) || !stream.atEnd())
        return {};
    return request;
}

QByteArray ExpanderPipe::answer(const EventExpander::Result& result)
{
    QByteArray bytes;
    bytes.reserve(size(result));
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(version);
    stream << answerMark << result.isComplete;
    write(stream, result.unknownZones);
    stream << static_cast<quint32>(result.events.size());
    for (const auto& event : result.events)
        write(stream, event);
    stream << endMark;
    return bytes;
}

std::optional<EventExpander::Result> ExpanderPipe::result(const QByteArray& answer)
{
    QDataStream stream(answer);
    stream.setVersion(version);
    EventExpander::Result result;
    quint32 mark = 0;
    quint32 count = 0;
    stream >> mark >> result.isComplete;
    if (mark != answerMark || !read(stream, result.unknownZones, mostZones))
        return {};
    stream >> count;
    if (count > mostEvents)
        return {};
    for (quint32 i = 0; i < count && stream.status() == QDataStream::Ok; ++i)
        result.events << readEvent(stream);
    stream >> mark;
    if (stream.status() != QDataStream::Ok || mark != endMark || !stream.atEnd())
        return {};
    return result;
}
