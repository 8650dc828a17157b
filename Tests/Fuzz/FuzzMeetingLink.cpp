// Compares the search for meeting links with one that follows the definition letter by letter.
// The input is up to three texts with a zero between them; what is not UTF-8 becomes half a
// surrogate pair.
#include "App/Meetings/MeetingLink.h"

#include <QByteArray>
#include <QStringList>
#include <QUrl>

#include <algorithm>
#include <array>
#include <cstdint>

using namespace Qt::StringLiterals;

namespace {

using Text = std::optional<QString>;

const std::array<QString, 5> hosts = { u"zoom.us"_s, u"zoomgov.com"_s, u"meet.google.com"_s,
    u"teams.microsoft.com"_s, u"teams.live.com"_s };

bool isExcluded(QChar character)
{
    static const QString spaces = u"\t\n\v\f\r \u0085\u00A0\u1680\u2000\u2001\u2002\u2003\u2004"
                                  u"\u2005\u2006\u2007\u2008\u2009\u200A\u2028\u2029\u202F\u205F"
                                  u"\u3000"_s;
    return spaces.contains(character) || u"<>\"')]"_s.contains(character);
}

bool isAt(const QString& text, qsizetype position, const QString& word)
{
    return QStringView(text).sliced(position).startsWith(word, Qt::CaseInsensitive);
}

qsizetype addressEnd(const QString& text, qsizetype position)
{
    while (position < text.size() && !isExcluded(text[position]))
        ++position;
    return position;
}

// The match that begins at the start; empty when there is none.
QString matchAt(const QString& text, qsizetype start)
{
    for (const auto& scheme : { u"http://"_s, u"https://"_s }) {
        if (!isAt(text, start, scheme))
            continue;
        for (auto position = start + scheme.size(); position < text.size(); ++position) {
            const auto isHere = [&](const QString& host) { return isAt(text, position, host); };
            if (std::ranges::any_of(hosts, isHere))
                return text.sliced(start, addressEnd(text, position) - start);
            if (isExcluded(text[position]))
                break;
        }
    }
    return {};
}

QString leftmostMatch(const QString& text)
{
    for (qsizetype start = 0; start < text.size(); ++start) {
        if (const auto match = matchAt(text, start); !match.isEmpty())
            return match;
    }
    return {};
}

QString until(const QString& text, QChar end)
{
    return text.split(end).first();
}

QStringList hostAndPort(const QString& address)
{
    const auto rest = address.sliced(address.indexOf(u"://"_s) + 3);
    return until(until(until(rest, u'/'), u'?'), u'#').split(u'@').last().split(u':');
}

bool isUnderstood(const QString& address)
{
    const auto parts = hostAndPort(address);
    const auto isDigit = [](QChar c) { return u"0123456789"_s.contains(c); };
    return parts.size() <= 2 && !parts.first().contains(u'[')
        && (parts.size() == 1 || std::ranges::all_of(parts.last(), isDigit));
}

std::optional<MeetingLink> slowLink(const std::array<Text, 3>& texts)
{
    for (const auto& text : texts) {
        const auto address = leftmostMatch(text.value_or(QString()));
        if (address.isEmpty() || !isUnderstood(address))
            continue;
        const auto host = hostAndPort(address).first().toLower();
        return MeetingLink { address,
            host.contains(u"zoom"_s)         ? u"Zoom"_s
                : host.contains(u"google"_s) ? u"Meet"_s
                                             : u"Teams"_s };
    }
    return {};
}

void require(bool condition)
{
    if (!condition)
        qFatal("The link is not the one that was to be found.");
}

std::array<Text, 3> textsOf(const QByteArray& input)
{
    std::array<Text, 3> texts;
    const auto parts = input.split('\0');
    for (std::size_t i = 0; i < texts.size() && std::ssize(parts) > static_cast<qsizetype>(i);
         ++i) {
        const auto& part = parts[static_cast<qsizetype>(i)];
        auto text = QString::fromUtf8(part);
        if (!part.isEmpty())
            texts[i] = text.replace(QChar::ReplacementCharacter, QChar(0xD800));
    }
    return texts;
}

}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto texts
        = textsOf(QByteArray(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)));
    const auto found = findMeetingLink({ texts[0], texts[1], texts[2] });
    require(found == slowLink(texts));
    for (const auto& text : texts) {
        // Whatever a stricter reader understands is a link.
        const auto match = leftmostMatch(text.value_or(QString()));
        require(found || match.isEmpty() || !QUrl(match).isValid());
    }
    return 0;
}
