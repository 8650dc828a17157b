// The JSON text of the defaults file, split into its entries and typed values.
#pragma once

#include "App/Platform/UserDefaults.h"

#include <QHash>
#include <QMap>

#include <optional>

namespace DefaultsCodec {

// The JSON text of every value, untouched, so that what is not understood survives a rewrite.
using Entries = QMap<QString, QByteArray>;
using Values = QHash<QString, UserDefaults::Value>;

// Far more than anything stores; so a file of nothing but keys holds up no start.
constexpr qsizetype mostEntries = 10'000;

// Absent unless the text is one whole JSON object of no more entries than that.
std::optional<Entries> parse(const QByteArray& text);
QByteArray print(const Entries& entries);

// Absent for JSON that stands for none of the five types. Data is {"data": "base64"}.
std::optional<UserDefaults::Value> decode(const QByteArray& json);
QByteArray encode(const UserDefaults::Value& value);

Values decodeAll(const Entries& entries);
Entries encodeAll(const Values& values);

// Unlike ==, takes a NaN for itself and tells the two zeros apart.
bool same(const Values& one, const Values& other);

}
