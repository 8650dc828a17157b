#include "App/Platform/Linux/Calendar/HelperEventExpander.h"

#include "App/Platform/Linux/Calendar/ExpanderPipe.h"

#include <QProcess>

#include <algorithm>
#include <malloc.h>
#include <utility>

HelperEventExpander::HelperEventExpander(QString helper, std::chrono::milliseconds longestRun)
    : m_helper(std::move(helper))
{
    m_deadline.setSingleShot(true);
    m_deadline.setInterval(longestRun);
    connect(&m_deadline, &QTimer::timeout, this, [this] { finish(false); });
}

HelperEventExpander::~HelperEventExpander()
{
    if (!m_process)
        return;
    m_process->disconnect(this);
    m_process->kill();
    m_process->waitForFinished(); // At once, as it is killed.
}

void HelperEventExpander::expand(const Request& request, QObject* context, const Answer& answer)
{
    const auto older = std::ranges::find_if(m_waiting, [&](const Job& job) {
        return job.request.source == request.source && job.context == context;
    });
    Job job { request, context, answer };
    if (older != m_waiting.end())
        *older = std::move(job);
    else
        m_waiting.push_back(std::move(job));
    // Later, so that a helper that is missing is not answered for at once.
    QMetaObject::invokeMethod(this, &HelperEventExpander::startNext, Qt::QueuedConnection);
}

void HelperEventExpander::startNext()
{
    if (m_process)
        return;
    std::erase_if(m_waiting, [](const Job& job) { return !job.context; });
    if (m_waiting.empty())
        return;
    m_current = std::move(m_waiting.front());
    m_waiting.pop_front();
    start();
}

void HelperEventExpander::start()
{
    m_process = std::make_unique<QProcess>();
    m_process->setStandardErrorFile(QProcess::nullDevice());
    connect(m_process.get(), &QProcess::readyReadStandardOutput, this, &HelperEventExpander::read);
    connect(
        m_process.get(), &QProcess::finished, this, [this](int status, QProcess::ExitStatus exit) {
            read();
            finish(exit == QProcess::NormalExit && status == 0);
        });
    connect(m_process.get(), &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            finish(false);
    });
    m_output.clear();
    m_deadline.start();
    m_process->start(m_helper, QStringList());
    // Written as the helper takes it.
    m_process->write(ExpanderPipe::head(m_current.request));
    m_process->write(std::exchange(m_current.request.text, {}));
    m_process->closeWriteChannel();
}

void HelperEventExpander::read()
{
    if (!m_process)
        return;
    m_output += m_process->readAllStandardOutput();
    if (m_output.size() > ExpanderPipe::largestAnswer)
        finish(false);
}

void HelperEventExpander::finish(bool isWhole)
{
    if (!m_process)
        return;
    endProcess();
    const auto job = std::exchange(m_current, {});
    QMetaObject::invokeMethod(this, &HelperEventExpander::startNext, Qt::QueuedConnection);
    auto result = isWhole ? ExpanderPipe::result(m_output) : std::nullopt;
    m_output = {};
    if (job.context)
        job.answer(result);
    result.reset();
    // Texts came and went; the allocator would keep their room for more of them.
    malloc_trim(0);
}

void HelperEventExpander::endProcess()
{
    m_deadline.stop();
    m_process->disconnect(this);
    // It may be the sender of what is being handled, and is not waited for.
    auto* const process = m_process.release();
    if (process->state() == QProcess::NotRunning) {
        process->deleteLater();
        return;
    }
    connect(process, &QProcess::finished, process, &QObject::deleteLater);
    process->setParent(this);
    process->kill();
}
