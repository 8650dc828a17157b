#include "App/System/PowerSourceText.h"

#include "App/Core/Fixed.h"
#include "App/Platform/PowerSources.h"

using namespace Qt::StringLiterals;

bool powerSourceIsUsable(const PowerSource& source)
{
    return source.currentCapacity && source.maxCapacity && *source.maxCapacity >= 1;
}

double powerSourceLevel(const PowerSource& source)
{
    return double(*source.currentCapacity) / double(*source.maxCapacity) * 100;
}

static QString supply(const PowerSource& source)
{
    if (source.isCharging)
        return u" · charging"_s;
    return source.isOnMains ? u" · plugged in"_s : u" · on battery"_s;
}

static QString timeLeft(const PowerSource& source)
{
    const int minutes = source.minutesToEmpty.value_or(0);
    if (source.isOnMains || minutes < 1)
        return {};
    return u" · %1h %2m left"_s.arg(minutes / 60).arg(minutes % 60);
}

QString powerSourceText(const PowerSource& source)
{
    return fixed(powerSourceLevel(source), 0) + u'%' + supply(source) + timeLeft(source);
}
