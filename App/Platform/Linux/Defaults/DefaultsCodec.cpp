#include "App/Platform/Linux/Defaults/DefaultsCodec.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>

#include <algorithm>
#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

const auto dataTag = u"data"_s;
const auto realTag = u"real"_s;

bool isSpace(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

QByteArray quoted(const QString& text)
{
    const auto list = QJsonDocument(QJsonArray { text }).toJson(QJsonDocument::Compact);
    return list.sliced(1, list.size() - 2);
}

std::optional<QString> unquoted(const QByteArray& json)
{
    const auto list = QJsonDocument::fromJson('[' + json + ']').array();
    if (list.size() != 1 || !list.first().isString())
        return std::nullopt;
    return list.first().toString();
}

// Walks text that is already known to be valid JSON. QJsonObject would not do: it turns 25.0 into
// 25, and integers beyond 64 bits into something near.
class Walker final {
public:
    explicit Walker(const QByteArray& text)
        : m_text(text)
    {
        if (m_text.startsWith("\xEF\xBB\xBF"))
            m_at = 3;
    }

    bool atEnd() const { return m_at >= m_text.size(); }

    // Steps over white space and then over c, where it comes next.
    bool skip(char c)
    {
        skipSpace();
        if (atEnd() || m_text[m_at] != c)
            return false;
        ++m_at;
        return true;
    }

    QByteArray token()
    {
        skipSpace();
        const auto start = m_at;
        int depth = 0;
        do {
            depth += step();
        } while (!atEnd() && (depth > 0 || !endsToken(start)));
        return m_text.sliced(start, m_at - start);
    }

private:
    void skipSpace()
    {
        while (!atEnd() && isSpace(m_text[m_at]))
            ++m_at;
    }

    bool endsToken(qsizetype start) const
    {
        const char first = m_text[start];
        if (first == '"' || first == '{' || first == '[')
            return true;
        const char c = m_text[m_at];
        return isSpace(c) || c == ',' || c == '}' || c == ']';
    }

    // One character or one whole string; says how much deeper it led.
    int step()
    {
        const char c = m_text[m_at++];
        if (c == '"')
            skipString();
        return (c == '{' || c == '[') - (c == '}' || c == ']');
    }

    void skipString()
    {
        while (!atEnd() && m_text[m_at] != '"')
            m_at += m_text[m_at] == '\\' ? 2 : 1;
        m_at = std::min(m_at + 1, m_text.size());
    }

    const QByteArray& m_text;
    qsizetype m_at = 0;
};

std::optional<UserDefaults::Value> decodeNumber(const QByteArray& json)
{
    bool ok = false;
    if (json.contains('.') || json.contains('e') || json.contains('E')) {
        const double real = json.toDouble(&ok);
        return ok ? std::optional<UserDefaults::Value>(real) : std::nullopt;
    }
    const qint64 integer = json.toLongLong(&ok);
    return ok ? std::optional<UserDefaults::Value>(integer) : std::nullopt;
}

std::optional<UserDefaults::Value> decodeReal(const QString& name)
{
    using Limits = std::numeric_limits<double>;
    if (name == u"inf")
        return Limits::infinity();
    if (name == u"-inf")
        return -Limits::infinity();
    return name == u"nan" ? std::optional<UserDefaults::Value>(Limits::quiet_NaN()) : std::nullopt;
}

std::optional<UserDefaults::Value> decodeData(const QByteArray& base64)
{
    const auto bytes = QByteArray::fromBase64Encoding(
        base64, QByteArray::Base64Encoding | QByteArray::AbortOnBase64DecodingErrors);
    return bytes ? std::optional<UserDefaults::Value>(*bytes) : std::nullopt;
}

// Data as it is written here, without the detour by UTF-16, which takes megabytes their time.
std::optional<UserDefaults::Value> decodePlainData(const QByteArray& json)
{
    static constexpr QByteArrayView start = R"({"data": ")";
    static constexpr QByteArrayView end = R"("})";
    const auto rest = json.size() - start.size() - end.size();
    if (rest < 0 || !json.startsWith(start) || !json.endsWith(end))
        return std::nullopt;
    return decodeData(json.sliced(start.size(), rest));
}

std::optional<UserDefaults::Value> decodeTagged(const QByteArray& json)
{
    if (const auto data = decodePlainData(json))
        return data;
    const auto object = QJsonDocument::fromJson(json).object();
    if (object.size() != 1 || !object.begin().value().isString())
        return std::nullopt;
    const auto content = object.begin().value().toString();
    if (object.begin().key() == realTag)
        return decodeReal(content);
    if (object.begin().key() != dataTag)
        return std::nullopt;
    return decodeData(content.toUtf8());
}

QByteArray tagged(const QString& tag, const QByteArray& content)
{
    return '{' + quoted(tag) + ": \"" + content + "\"}";
}

QByteArray encodeReal(double real)
{
    if (std::isnan(real))
        return tagged(realTag, "nan");
    if (std::isinf(real))
        return tagged(realTag, real > 0 ? "inf" : "-inf");
    if (real == 0)
        return std::signbit(real) ? "-0.0" : "0.0";
    const auto text = QByteArray::number(real, 'g', QLocale::FloatingPointShortest);
    return text.contains('.') || text.contains('e') ? text : text + ".0";
}

struct Encoder {
    QByteArray operator()(qint64 integer) const { return QByteArray::number(integer); }
    QByteArray operator()(double real) const { return encodeReal(real); }
    QByteArray operator()(bool boolean) const { return boolean ? "true" : "false"; }
    QByteArray operator()(const QString& text) const { return quoted(text); }
    QByteArray operator()(const QByteArray& data) const { return tagged(dataTag, data.toBase64()); }
};

bool same(const UserDefaults::Value& one, const UserDefaults::Value& other)
{
    if (one.index() != other.index() || !std::holds_alternative<double>(one))
        return one == other;
    return encodeReal(std::get<double>(one)) == encodeReal(std::get<double>(other));
}

}

std::optional<DefaultsCodec::Entries> DefaultsCodec::parse(const QByteArray& text)
{
    if (!QJsonDocument::fromJson(text).isObject())
        return std::nullopt;
    Walker walker(text);
    walker.skip('{');
    Entries entries;
    while (!walker.skip('}')) {
        walker.skip(',');
        const auto key = unquoted(walker.token());
        if (!key || !walker.skip(':') || walker.atEnd() || entries.size() == mostEntries)
            return std::nullopt;
        entries.insert(*key, walker.token());
    }
    return entries;
}

QByteArray DefaultsCodec::print(const Entries& entries)
{
    QByteArrayList lines;
    for (auto entry = entries.begin(); entry != entries.end(); ++entry)
        lines << "    " + quoted(entry.key()) + ": " + entry.value();
    return lines.isEmpty() ? "{\n}\n" : "{\n" + lines.join(",\n") + "\n}\n";
}

std::optional<UserDefaults::Value> DefaultsCodec::decode(const QByteArray& json)
{
    if (json == "true" || json == "false")
        return json == "true";
    if (json.startsWith('"'))
        return unquoted(json);
    if (json.startsWith('{'))
        return decodeTagged(json);
    return decodeNumber(json);
}

QByteArray DefaultsCodec::encode(const UserDefaults::Value& value)
{
    return std::visit(Encoder {}, value);
}

DefaultsCodec::Values DefaultsCodec::decodeAll(const Entries& entries)
{
    Values values;
    for (auto entry = entries.begin(); entry != entries.end(); ++entry) {
        if (const auto value = decode(entry.value()))
            values.insert(entry.key(), *value);
    }
    return values;
}

DefaultsCodec::Entries DefaultsCodec::encodeAll(const Values& values)
{
    Entries entries;
    for (auto value = values.begin(); value != values.end(); ++value)
        entries.insert(value.key(), encode(value.value()));
    return entries;
}

bool DefaultsCodec::same(const Values& one, const Values& other)
{
    if (one.size() != other.size())
        return false;
    for (auto value = one.begin(); value != one.end(); ++value) {
        const auto found = other.constFind(value.key());
        if (found == other.constEnd() || !::same(value.value(), found.value()))
            return false;
    }
    return true;
}
