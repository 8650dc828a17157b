#include "App/Focus/Phase.h"

using namespace Qt::StringLiterals;

QString rawValue(Phase phase)
{
    switch (phase) {
    case Phase::focus:
        return u"Focus"_s;
    case Phase::shortBreak:
        return u"Short break"_s;
    case Phase::longBreak:
        return u"Long break"_s;
    }
    Q_UNREACHABLE();
}

std::optional<Phase> phaseFromRawValue(const QString& text)
{
    for (const auto phase : { Phase::focus, Phase::shortBreak, Phase::longBreak }) {
        if (rawValue(phase) == text)
            return phase;
    }
    return std::nullopt;
}
