// Work that may take long, or never end, on a thread that nothing ever waits for.
#pragma once

#include <QObject>

#include <functional>
#include <memory>

class BackgroundWork final : public QObject {
public:
    // What remains to be done on the thread that started the work.
    using Finish = std::function<void()>;

    BackgroundWork();
    // Work that is under way goes on, but its rest is never done.
    ~BackgroundWork() override;

    // Nothing happens while earlier work is under way. The work must own all that it touches.
    void start(const std::function<Finish()>& work);
    bool isUnderWay() const { return m_isUnderWay; }

private:
    struct Desk;

    static void run(const std::shared_ptr<Desk>& desk, const std::function<Finish()>& work);
    void finish(const Finish& rest);

    std::shared_ptr<Desk> m_desk; // Shared with the thread, which may outlive this object.
    bool m_isUnderWay = false;
};
