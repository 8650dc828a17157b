#include "App/Meetings/MeetingLink.h"

#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

// An address that mentions no service is skipped as a whole, which keeps the time linear: no other
// start within it could match either. White space is Unicode's property of that name.
const QRegularExpression& linkRegex()
{
    static const auto allowed = uR"([^\t-\r \x{85}\p{Z}<>"')\]])"_s;
    static const QRegularExpression regex(u"https?://(?:"_s + allowed
            + uR"(*?(?:zoom\.us|zoomgov\.com|meet\.google\.com|teams\.microsoft\.com)"_s
            + uR"(|teams\.live\.com))"_s + allowed + u"*+|"_s + allowed + u"*+(*SKIP)(*FAIL))"_s,
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::UseUnicodePropertiesOption);
    if (!regex.isValid())
        qFatal("The pattern of links: %s", qPrintable(regex.errorString()));
    return regex;
}

// Half surrogate pairs, in which the expression engine would find nothing, become as long a
// character.
QString wellFormed(QString text)
{
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (i + 1 < text.size() && text[i].isHighSurrogate() && text[i + 1].isLowSurrogate())
            ++i;
        else if (text[i].isSurrogate())
            text[i] = QChar::ReplacementCharacter;
    }
    return text;
}

// The leftmost match; empty when there is none.
QStringView findAddress(const QString& text)
{
    const auto match = linkRegex().match(text.isValidUtf16() ? text : wellFormed(text));
    if (!match.hasMatch())
        return {};
    return QStringView(text).sliced(match.capturedStart(), match.capturedLength());
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
        if (const auto host = hostOf(address)) {
            const bool isAll = address.size() == text->size(); // And can share its memory.
            return MeetingLink { isAll ? *text : address.toString(), serviceName(*host) };
        }
    }
    return {};
}
