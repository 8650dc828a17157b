// The small files in which the kernel tells one value each.
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace SysfsAttribute {

// Without white space around it; none for anything but a readable, regular and small file. May take
// as long as the hardware behind it does.
std::optional<QByteArray> text(const QString& path);
std::optional<qint64> number(const QString& path);

}
