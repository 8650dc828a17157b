#include "App/Platform/Linux/Session/ScriptNotifier.h"

#include <QProcess>

#include <utility>

using namespace Qt::StringLiterals;

ScriptNotifier::ScriptNotifier(QString interpreter)
    : m_interpreter(std::move(interpreter))
{
}

static QString quoted(QString text)
{
    // Backslashes first: those put before the quotes must stay single.
    text.replace(u'\\', u"\\\\"_s).replace(u'"', u"\\\""_s);
    return u'"' + text + u'"';
}

QString ScriptNotifier::script(const QString& title, const QString& body)
{
    return u"display notification "_s + quoted(body) + u" with title "_s + quoted(title);
}

void ScriptNotifier::notify(const QString& title, const QString& body)
{
    QProcess::startDetached(m_interpreter, { u"-e"_s, script(title, body) });
}
