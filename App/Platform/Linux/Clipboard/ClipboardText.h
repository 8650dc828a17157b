// What of all that a clipboard offers is plain text, and how it is written.
#pragma once

#include <QByteArray>
#include <QString>

#include <array>

namespace ClipboardText {

enum class Encoding {
    utf8,
    latin1,
    unsaid, // UTF-8 where it is valid, or else Latin-1.
};

struct Format {
    const char* name; // The X11 target, and Wayland's type.
    Encoding encoding;
};

// The best ones first.
inline constexpr std::array formats {
    Format { "text/plain;charset=utf-8", Encoding::utf8 },
    Format { "UTF8_STRING", Encoding::utf8 },
    Format { "text/plain", Encoding::unsaid },
    Format { "STRING", Encoding::latin1 },
    Format { "TEXT", Encoding::unsaid },
};

// Bytes. Nobody means to work on more; and it is better to have no text than half of one.
inline constexpr qsizetype maximumSize = qsizetype { 64 } * 1024 * 1024;

// Whatever is no UTF-8 becomes U+FFFD.
QString decoded(const QByteArray& bytes, Encoding encoding);

}
