// What the resident program and the helper that expands events tell each other.
#pragma once

#include "App/Platform/Linux/Calendar/EventExpander.h"

namespace ExpanderPipe {

constexpr qsizetype largestAnswer = qsizetype { 32 } * 1024 * 1024; // Bytes
constexpr qsizetype largestHead = qsizetype { 4 } * 1024 * 1024; // Bytes
constexpr qsizetype mostPaths = 10'000;
constexpr qsizetype mostEvents = 5'000;
constexpr qsizetype mostZones = 100;

// Bytes that stand before a head and say how many follow.
constexpr qsizetype headSizeBytes = 4;

// All of the request but its text, which is to follow as it is.
QByteArray head(const EventExpander::Request& request);
// Absent where the bytes say no such size.
std::optional<qsizetype> headSize(const QByteArray& bytes);
// From what follows the size.
std::optional<EventExpander::Request> request(const QByteArray& head);

QByteArray answer(const EventExpander::Result& result);
// Absent for anything but a whole answer.
std::optional<EventExpander::Result> result(const QByteArray& answer);

}
