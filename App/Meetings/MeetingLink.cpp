#include "App/Meetings/MeetingLink.h"

#include <QRegularExpression>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace {

// All but Unicode's white space and what ends an address in prose, Markdown or HTML.
#define ADDRESS_CHARACTER R"([^\t-\r \x{85}\p{Z}<>"')\]])"

// An address that mentions no service is skipped as a whole, so that the time is linear: no other
// start within it could match either.
const QRegularExpression& linkRegex()
{
    static const QRegularExpression regex(
        QStringLiteral(
            "https?://(?:" ADDRESS_CHARACTER
            "*?(?:zoom\\.us|zoomgov\\.com|meet\\.google\\.com|teams\\.microsoft\\.com"
            "|teams\\.live\\.com)" ADDRESS_CHARACTER "*+|" ADDRESS_CHARACTER "*+(*SKIP)(*FAIL))"),
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::UseUnicodePropertiesOption);
    if (!regex.isValid())
        qFatal("%s", qPrintable(regex.errorString()));
    return regex;
}

QString serviceName(const QUrl& link)
{
    const auto host = link.host().toLower();
    if (host.contains(u"zoom"_s))
        return u"Zoom"_s;
    return host.contains(u"google"_s) ? u"Meet"_s : u"Teams"_s;
}

}

std::optional<MeetingLink> findMeetingLink(std::initializer_list<std::optional<QString>> texts)
{
    for (const auto& text : texts) {
        const auto match = text ? linkRegex().match(*text) : QRegularExpressionMatch();
        const QUrl link(match.captured());
        if (match.hasMatch() && link.isValid())
            return MeetingLink { match.captured(), serviceName(link) };
    }
    return {};
}
