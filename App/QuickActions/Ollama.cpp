#include "App/QuickActions/Ollama.h"

using namespace Qt::StringLiterals;

const QUrl& Ollama::base()
{
    static const QUrl address(u"http://localhost:11434"_s);
    return address;
}
