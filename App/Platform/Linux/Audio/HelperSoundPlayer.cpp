#include "App/Platform/Linux/Audio/HelperSoundPlayer.h"

#include <QProcess>

#include <utility>

HelperSoundPlayer::HelperSoundPlayer(QString helper)
    : m_helper(std::move(helper))
{
}

void HelperSoundPlayer::play(const QString& name)
{
    QProcess::startDetached(m_helper, { name });
}
