#include "App/System/ChartScale.h"

#include <algorithm>

namespace {

constexpr double headroom = 1.2;
constexpr double leastNetworkTop = 1024;

double largest(const QList<double>& values, double ofNone)
{
    return values.isEmpty() ? ofNone : *std::ranges::max_element(values);
}

}

double ChartScale::top(const QList<double>& values, std::optional<double> fixed)
{
    return fixed ? *fixed : std::max(largest(values, 1) * headroom, 1.0);
}

double ChartScale::networkTop(const QList<double>& down, const QList<double>& up)
{
    const double peak = std::max(largest(down, 0), largest(up, 0));
    return std::max(peak * headroom, leastNetworkTop);
}
