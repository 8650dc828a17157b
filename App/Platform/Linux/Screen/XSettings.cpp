#include "App/Platform/Linux/Screen/XSettings.h"

#include <QtEndian>

#include <algorithm>
#include <optional>

namespace {

enum Type { number, text, color };

// Takes the fields one by one; nothing once they are out of what there is.
class Reader final {
public:
    explicit Reader(QByteArrayView bytes)
        : m_rest(bytes)
    {
        m_bigEndian = next<quint8>().value_or(0) != 0;
        constexpr qsizetype paddingAndSerial = 3 + 4;
        skip(paddingAndSerial);
    }

    template <typename Number>
    std::optional<Number> next()
    {
        const auto field = bytes(sizeof(Number));
        if (!field)
            return {};
        return m_bigEndian ? qFromBigEndian<Number>(field->data())
                           : qFromLittleEndian<Number>(field->data());
    }

    std::optional<QByteArrayView> bytes(qsizetype size)
    {
        if (size > m_rest.size())
            return {};
        const auto field = m_rest.first(size);
        m_rest = m_rest.sliced(size);
        return field;
    }

    // With what fills it up to a multiple of 4, which may be left out at the end.
    std::optional<QByteArrayView> padded(qsizetype size)
    {
        const auto field = bytes(size);
        skip(std::min<qsizetype>((4 - size % 4) % 4, m_rest.size()));
        return field;
    }

    bool skip(qsizetype size) { return bytes(size).has_value(); }

private:
    QByteArrayView m_rest;
    bool m_bigEndian = false;
};

struct Setting {
    QByteArrayView name;
    QByteArrayView text;
};

std::optional<Setting> nextSetting(Reader& reader)
{
    const auto type = reader.next<quint8>();
    reader.skip(1);
    const auto name = reader.padded(reader.next<quint16>().value_or(0));
    const bool hasValue = reader.skip(4); // After the serial number of the last change.
    if (!type || !name || !hasValue)
        return {};
    if (*type == text) {
        const auto value = reader.padded(qsizetype(reader.next<quint32>().value_or(0)));
        return value ? std::optional(Setting { *name, *value }) : std::nullopt;
    }
    const bool isWhole = reader.skip(*type == number ? 4 : 8);
    return isWhole && *type <= color ? std::optional(Setting { *name, {} }) : std::nullopt;
}

}

QString XSettings::text(const QByteArray& settings, QByteArrayView name)
{
    Reader reader(settings);
    for (auto left = reader.next<quint32>().value_or(0); left > 0; --left) {
        const auto setting = nextSetting(reader);
        if (!setting)
            return {};
        if (setting->name == name)
            return QString::fromUtf8(setting->text);
    }
    return {};
}
