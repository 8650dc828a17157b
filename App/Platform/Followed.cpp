#include "App/Platform/Followed.h"

void Followed::follow()
{
    if (m_followers++ == 0)
        begin();
}

void Followed::unfollow()
{
    if (m_followers == 0)
        qFatal("More ends of following than begins");
    if (--m_followers == 0)
        end();
}
