#include "App/Platform/Linux/Calendar/EdsCalendar.h"

#include "App/Platform/Linux/Calendar/ICalendarText.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDateTime>
#include <QSet>
#include <QTimeZone>

#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

static const auto factory = u"org.gnome.evolution.dataserver.Calendar8"_s;
static const auto factoryPath = u"/org/gnome/evolution/dataserver/CalendarFactory"_s;
static const auto prefix = u"org.gnome.evolution.dataserver."_s;
// The service has no name for it, only the number that its library knows.
static const auto notFound
    = u"org.gtk.GDBus.UnmappedGError.Quark._e_2dcal_2dclient_2derror_2dquark.Code1"_s;
static const auto theBus = u"org.freedesktop.DBus"_s;

namespace {

// What is longer than any calendar of a person is not worth the memory.
constexpr qsizetype longestText = qsizetype { 32 } << 20; // Bytes.
constexpr qsizetype longestObject = qsizetype { 256 } << 10; // Characters.
constexpr qsizetype mostSeries = 5000;
constexpr qsizetype mostZones = 64;

// Whatever the zone of an event, it is listed for its day.
constexpr auto margin = 48h;

QString written(Moment moment)
{
    const auto sinceEpoch = std::chrono::floor<std::chrono::seconds>(moment.time_since_epoch());
    return QDateTime::fromSecsSinceEpoch(sinceEpoch.count(), QTimeZone::utc())
        .toString(u"yyyyMMdd'T'HHmmss'Z'"_s);
}

QString query(const TimeSpan& span)
{
    return u"(occur-in-time-range? (make-time \"%1\") (make-time \"%2\") \"%3\")"_s.arg(
        written(span.start - margin), written(span.end + margin),
        QString::fromLatin1(QTimeZone::systemTimeZoneId()));
}

bool isAnswer(const QDBusMessage& message, const QString& types)
{
    return message.type() == QDBusMessage::ReplyMessage && message.signature() == types;
}

}

EdsCalendar::EdsCalendar(const QDBusConnection& bus, EventExpander& expander, const QString& uid)
    : m_bus(bus)
    , m_expander(expander)
    , m_uid(uid)
    , m_question(bus)
{
    m_soon.setSingleShot(true);
    m_soon.callOnTimeout(this, &EdsCalendar::work);
    m_retry.callOnTimeout(this, &EdsCalendar::work);
}

EdsCalendar::~EdsCalendar()
{
    if (!m_view.isEmpty())
        m_bus.send(viewRequest(u"Dispose"_s));
    if (!m_path.isEmpty())
        m_bus.send(request(u"Close"_s));
    close();
}

void EdsCalendar::look(const TimeSpan& span)
{
    m_span = span;
    m_isStale = true;
    m_retry.succeeded();
    m_soon.start(0ms);
}

// Or else calendars that make the service crash would wake it for each other without end.
void EdsCalendar::reopen()
{
    if (!m_path.isEmpty() || m_isAtWork)
        return;
    m_mayStart = false;
    work();
}

void EdsCalendar::work()
{
    if (std::exchange(m_isAtWork, true))
        return;
    m_begun.start();
    if (m_path.isEmpty())
        open();
    else
        list({});
}

void EdsCalendar::ask(const QDBusMessage& request, const char* types, Next next)
{
    m_question.ask(
        request, [this, types = QString::fromLatin1(types), next](const QDBusMessage& answer) {
            if (isAnswer(answer, types))
                (this->*next)(answer);
            else
                fail();
        });
}

QDBusMessage EdsCalendar::request(const QString& method, const QVariantList& arguments) const
{
    auto message
        = QDBusMessage::createMethodCall(m_service, m_path, prefix + u"Calendar"_s, method);
    message.setArguments(arguments);
    // Another process than the one that opened the calendar would not know it.
    message.setAutoStartService(false);
    return message;
}

QDBusMessage EdsCalendar::viewRequest(const QString& method, const QVariantList& arguments) const
{
    auto message
        = QDBusMessage::createMethodCall(m_service, m_view, prefix + u"CalendarView"_s, method);
    message.setArguments(arguments);
    message.setAutoStartService(false);
    return message;
}

void EdsCalendar::open()
{
    auto message = QDBusMessage::createMethodCall(
        factory, factoryPath, prefix + u"CalendarFactory"_s, u"OpenCalendar"_s);
    message << m_uid;
    message.setAutoStartService(std::exchange(m_mayStart, true));
    ask(message, "ss", &EdsCalendar::learnPlace);
}

void EdsCalendar::learnPlace(const QDBusMessage& answer)
{
    m_path = answer.arguments().at(0).toString();
    m_service = answer.arguments().at(1).toString();
    ask(request(u"Open"_s), "as", &EdsCalendar::learnOwner);
}

void EdsCalendar::learnOwner(const QDBusMessage& answer)
{
    m_owner = answer.service();
    ask(request(u"GetView"_s, { u"#t"_s }), "o", &EdsCalendar::learnView);
}

// The view is not told to list what there is, only what changes; and of that no more than a name.
void EdsCalendar::learnView(const QDBusMessage& answer)
{
    m_view = answer.arguments().constFirst().value<QDBusObjectPath>().path();
    follow(true);
    ask(viewRequest(u"SetFlags"_s, { 0U }), "", &EdsCalendar::limitView);
}

void EdsCalendar::limitView(const QDBusMessage&)
{
    ask(viewRequest(u"SetFieldsOfInterest"_s, { QStringList { u"UID"_s } }), "",
        &EdsCalendar::startView);
}

void EdsCalendar::startView(const QDBusMessage&)
{
    ask(viewRequest(u"Start"_s), "", &EdsCalendar::list);
}

void EdsCalendar::list(const QDBusMessage&)
{
    m_isStale = false;
    m_asked = m_span;
    ask(request(u"GetObjectList"_s, { query(m_asked) }), "as", &EdsCalendar::learnList);
}

// Of a series only some of its parts may be listed; all of them decide on which days it is.
void EdsCalendar::learnList(const QDBusMessage& answer)
{
    m_text.clear();
    QSet<QString> series;
    for (const auto& text : answer.arguments().constFirst().toStringList()) {
        if (text.size() > longestObject)
            continue;
        const auto uid = ICalendarText::isRecurring(text) ? ICalendarText::uid(text) : QString();
        if (uid.isEmpty())
            add(text);
        else if (series.size() < mostSeries)
            series.insert(uid);
    }
    m_series = series.values();
    askForNextSeries();
}

void EdsCalendar::askForNextSeries()
{
    if (m_series.isEmpty()) {
        expand();
        return;
    }
    m_question.ask(request(u"GetObject"_s, { m_series.takeLast(), QString() }),
        [this](const QDBusMessage& answer) { learnSeries(answer); });
}

void EdsCalendar::learnSeries(const QDBusMessage& answer)
{
    if (isAnswer(answer, u"s"_s)) {
        add(answer.arguments().constFirst().toString());
    } else if (answer.errorName() != notFound) {
        fail();
        return;
    }
    // Else it was removed since.
    askForNextSeries();
}

void EdsCalendar::add(const QString& text)
{
    const auto bytes = text.toUtf8();
    if (m_text.size() + bytes.size() < longestText)
        m_text += bytes + "\r\n";
}

void EdsCalendar::expand()
{
    EventExpander::Request request { .start = m_asked.start, .end = m_asked.end, .source = m_uid };
    for (const auto& zone : std::as_const(m_zoneTexts))
        request.text += zone;
    request.text += m_text;
    m_expander.expand(request, this, [this, expansion = ++m_expansion](const auto& result) {
        // Else it was closed, and perhaps opened anew, meanwhile.
        if (expansion == m_expansion)
            take(result);
    });
}

void EdsCalendar::take(const std::optional<EventExpander::Result>& result)
{
    if (!result) {
        finish();
        m_retry.later();
        return;
    }
    for (const auto& zone : result->unknownZones) {
        if (!m_zoneTexts.contains(zone) && m_zoneTexts.size() + m_zones.size() < mostZones)
            m_zones.append(zone);
    }
    if (!m_zones.isEmpty()) {
        askForNextZone();
        return;
    }
    finish();
    if (m_kept.take(*result, m_asked, m_retry))
        Q_EMIT changed();
}

void EdsCalendar::askForNextZone()
{
    if (m_zones.isEmpty()) {
        expand();
        return;
    }
    m_question.ask(request(u"GetTimezone"_s, { m_zones.constLast() }),
        [this](const QDBusMessage& answer) { learnZone(answer); });
}

void EdsCalendar::learnZone(const QDBusMessage& answer)
{
    QByteArray text;
    if (isAnswer(answer, u"s"_s)
        && answer.arguments().constFirst().toString().size() < longestObject)
        text = answer.arguments().constFirst().toString().toUtf8() + "\r\n";
    m_zoneTexts.insert(m_zones.takeLast(), text);
    askForNextZone();
}

void EdsCalendar::finish()
{
    m_isAtWork = false;
    m_taken = std::chrono::milliseconds(m_begun.elapsed());
    m_text = {};
    if (std::exchange(m_isStale, false))
        beStale();
}

void EdsCalendar::beStale()
{
    const bool isNew = !std::exchange(m_isStale, true);
    if (isNew && !m_isAtWork && !m_soon.isActive())
        m_soon.start(KeptEvents::pauseAfter(m_taken));
}

void EdsCalendar::close()
{
    follow(false);
    m_question.drop();
    ++m_expansion;
    m_isAtWork = false;
    m_service.clear();
    m_path.clear();
    m_view.clear();
    m_owner.clear();
    m_text = {};
    m_series.clear();
    m_zones.clear();
    m_zoneTexts.clear();
}

// What is known of the calendar stays.
void EdsCalendar::fail()
{
    close();
    m_retry.later();
}

void EdsCalendar::hear(const QDBusMessage& signal)
{
    if (!m_owner.isEmpty() && signal.service() == m_owner)
        beStale();
}

void EdsCalendar::changeOwner(const QDBusMessage& signal)
{
    if (signal.service() == theBus)
        fail();
}

// Without names of services, whose owners the library would wait for; with types, since a signal of
// others would end the program when it meets the slot.
void EdsCalendar::follow(bool isFollowed)
{
    if (m_view.isEmpty())
        return;
    const auto set
        = [this, isFollowed](const QString& path, const QString& interface, const QString& name,
              const QStringList& matches, const QString& types, const char* slot) {
              if (isFollowed)
                  m_bus.connect({}, path, interface, name, matches, types, this, slot);
              else
                  m_bus.disconnect({}, path, interface, name, matches, types, this, slot);
          };
    for (const auto& name : { u"ObjectsAdded"_s, u"ObjectsModified"_s, u"ObjectsRemoved"_s })
        set(m_view, prefix + u"CalendarView"_s, name, {}, u"as"_s, SLOT(hear(QDBusMessage)));
    set(u"/org/freedesktop/DBus"_s, theBus, u"NameOwnerChanged"_s, { m_service }, u"sss"_s,
        SLOT(changeOwner(QDBusMessage)));
}
