#include "App/Meetings/MeetingLink.h"

#include <algorithm>
#include <array>
#include <string_view>

using namespace Qt::StringLiterals;

namespace {

struct ServiceHost {
    std::u16string_view label;
    std::u16string_view domain;
};

constexpr std::array<ServiceHost, 5> serviceHosts { {
    { u"zoom", u".us" },
    { u"zoomgov", u".com" },
    { u"meet", u".google.com" },
    { u"teams", u".microsoft.com" },
    { u"teams", u".live.com" },
} };

// What ends an address in prose, Markdown or HTML.
bool endsAddress(QChar character)
{
    switch (character.unicode()) {
    case u'<':
    case u'>':
    case u'"':
    case u'\'':
    case u')':
    case u']':
        return true;
    default:
        return character.isSpace();
    }
}

// Of what Unicode takes for a letter of our words in another case, the long s alone is not ASCII.
char16_t folded(QChar character)
{
    const auto unit = character.unicode();
    if (unit >= u'A' && unit <= u'Z')
        return static_cast<char16_t>(unit - u'A' + u'a');
    return unit == u'\u017F' ? u's' : unit;
}

bool isAt(QStringView text, qsizetype position, std::u16string_view word)
{
    if (position < 0 || text.size() - position < std::ssize(word))
        return false;
    // Not std::equal, which takes three times as long here.
    for (const char16_t letter : word) {
        if (folded(text[position++]) != letter)
            return false;
    }
    return true;
}

bool endsWith(QStringView text, std::u16string_view word)
{
    return isAt(text, text.size() - std::ssize(word), word);
}

bool mentionsService(QStringView address)
{
    const auto isAround = [address](const ServiceHost& host, qsizetype dot) {
        return isAt(address, dot, host.domain)
            && isAt(address, dot - std::ssize(host.label), host.label);
    };
    for (qsizetype dot = 0; dot < address.size(); ++dot) {
        const auto isHere = [&](const ServiceHost& host) { return isAround(host, dot); };
        if (address[dot] == u'.' && std::ranges::any_of(serviceHosts, isHere))
            return true;
    }
    return false;
}

qsizetype schemeLength(QStringView before)
{
    if (endsWith(before, u"https"))
        return 5;
    return endsWith(before, u"http") ? 4 : 0;
}

// The leftmost match of this pattern, without regard to case; empty when there is none:
//     https?://[^\s<>"')\]]*(zoom\.us|zoomgov\.com|…)[^\s<>"')\]]*
// An expression engine finds none where it meets half a surrogate pair or, in a long text, one of
// its own limits.
QStringView findAddress(QStringView text)
{
    static constexpr QStringView mark = u"://";
    for (auto at = text.indexOf(mark); at >= 0; at = text.indexOf(mark)) {
        const auto scheme = schemeLength(text.first(at));
        const auto rest = text.sliced(at + mark.size());
        if (scheme == 0) {
            text = rest;
            continue;
        }
        const auto length = std::ranges::find_if(rest, endsAddress) - rest.begin();
        if (mentionsService(rest.first(length)))
            return text.sliced(at - scheme, scheme + mark.size() + length);
        // No other start within an address that mentions no service could match either.
        text = rest.sliced(length);
    }
    return {};
}

bool isPort(QStringView text)
{
    return std::ranges::all_of(text, [](QChar digit) { return digit >= u'0' && digit <= u'9'; });
}

// Absent where the address has none that could be understood: half a numeric host, or a port that
// is not a number. Any name is one, unlike for QUrl, which takes no link from "https://zoom.us,".
std::optional<QStringView> hostOf(QStringView address)
{
    auto host = address.sliced(address.indexOf(u"://") + 3);
    const auto endsHost = [](QChar c) { return c == u'/' || c == u'?' || c == u'#'; };
    host = host.first(std::ranges::find_if(host, endsHost) - host.begin());
    host = host.sliced(host.lastIndexOf(u'@') + 1);
    const auto colon = host.indexOf(u':');
    if (host.contains(u'[') || (colon >= 0 && !isPort(host.sliced(colon + 1))))
        return {};
    return colon < 0 ? host : host.first(colon);
}

QString serviceName(QStringView host)
{
    if (host.contains(u"zoom"_s, Qt::CaseInsensitive))
        return u"Zoom"_s;
    return host.contains(u"google"_s, Qt::CaseInsensitive) ? u"Meet"_s : u"Teams"_s;
}

}

std::optional<MeetingLink> findMeetingLink(std::initializer_list<std::optional<QString>> texts)
{
    for (const auto& text : texts) {
        const auto address = text ? findAddress(*text) : QStringView();
        if (address.isEmpty())
            continue;
        if (const auto host = hostOf(address))
            return MeetingLink { address.toString(), serviceName(*host) };
    }
    return {};
}
