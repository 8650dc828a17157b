// Where the vertical scales of the charts end; all of them begin at 0.
#pragma once

#include <QList>

#include <optional>

namespace ChartScale {

// The fixed top where there is one, else a fifth above the largest value and at least 1.
double top(const QList<double>& values, std::optional<double> fixed);

// One for both directions, so that their charts compare: a fifth above the larger peak, at least
// 1 KB/s. All in bytes a second.
double networkTop(const QList<double>& down, const QList<double>& up);

}
