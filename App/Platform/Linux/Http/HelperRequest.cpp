#include "App/Platform/Linux/Http/HelperRequest.h"

#include "App/Platform/Linux/Http/RequestExit.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace {

TransportError errorOf(RequestExit exit)
{
    using Kind = TransportError::Kind;
    switch (exit) {
    case RequestExit::cannotConnectToHost:
        return { Kind::cannotConnectToHost, u"Nobody answers at this address"_s };
    case RequestExit::cannotFindHost:
        return { Kind::cannotFindHost, u"Only servers on this machine are asked"_s };
    case RequestExit::networkConnectionLost:
        return { Kind::networkConnectionLost, u"The server broke off its reply"_s };
    case RequestExit::timedOut:
        return { Kind::timedOut, u"The server took too long to reply"_s };
    case RequestExit::tooLarge:
        return { Kind::other, u"The reply is larger than 64 MiB"_s };
    case RequestExit::notHttp:
        return { Kind::other, u"The server does not speak HTTP"_s };
    default:
        return { Kind::other, u"The request failed"_s };
    }
}

}

HelperRequest::HelperRequest(QObject* waiter, std::function<void(HttpResult)> done)
    : QObject(waiter)
    , m_done(std::move(done))
{
    m_deadline.setSingleShot(true);
    m_deadline.setTimerType(Qt::PreciseTimer);
    m_process.setStandardErrorFile(QProcess::nullDevice());
    connect(
        &m_deadline, &QTimer::timeout, this, [this] { finish(errorOf(RequestExit::timedOut)); });
    connect(&m_process, &QProcess::readyReadStandardOutput, this, &HelperRequest::read);
    connect(&m_process, &QProcess::finished, this, &HelperRequest::ended);
    // Later, so that a helper that is missing is not answered for at once.
    connect(
        &m_process, &QProcess::errorOccurred, this,
        [this](QProcess::ProcessError error) {
            if (error == QProcess::FailedToStart)
                finish(errorOf(RequestExit::failed));
        },
        Qt::QueuedConnection);
}

HelperRequest::~HelperRequest()
{
    m_process.disconnect(this);
    m_process.kill();
    m_process.waitForFinished(); // At once, as it is killed.
}

void HelperRequest::start(const QString& helper, const HttpRequest& request)
{
    QStringList arguments { request.url.toString(QUrl::FullyEncoded),
        QString::number(request.timeout.count()) };
    if (!request.contentType.isEmpty())
        arguments << QString::fromUtf8(request.contentType);
    m_deadline.start(request.timeout);
    m_process.start(helper, arguments);
    // Written as the helper takes it.
    m_process.write(request.body);
    m_process.closeWriteChannel();
}

void HelperRequest::read()
{
    m_body += m_process.readAllStandardOutput();
    if (m_body.size() > largestReply)
        finish(errorOf(RequestExit::tooLarge));
}

void HelperRequest::ended(int status, QProcess::ExitStatus exit)
{
    read();
    const auto outcome = exit == QProcess::NormalExit ? RequestExit(status) : RequestExit::failed;
    if (outcome == RequestExit::replied)
        finish(std::exchange(m_body, {}));
    else
        finish(errorOf(outcome));
}

void HelperRequest::finish(const HttpResult& result)
{
    m_deadline.stop();
    deleteLater();
    // The waiter may end there, and this with it.
    if (const auto done = std::exchange(m_done, nullptr))
        done(result);
}
