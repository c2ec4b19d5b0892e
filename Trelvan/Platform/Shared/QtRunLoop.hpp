#pragma once

#include "Platform/RunLoop.hpp"

#include <QObject>

namespace trelvan {

/// The main queue on Qt's event loop. Made and destroyed on the main thread; jobs left over are dropped.
class QtMainQueue : public MainQueue {
  public:
    void async(std::function<void()> job) override;
    void after(Seconds delay, std::function<void()> job) override;
    [[nodiscard]] std::unique_ptr<CoalescedTask> makeCoalescedTask(std::function<void()> job) override;

  private:
    QObject context_;
};

/// Timers on Qt's event loop, precise to a millisecond. Main thread.
class QtTimers : public Timers {
  public:
    [[nodiscard]] std::unique_ptr<Timer> every(Seconds interval, std::function<void()> job) override;
    [[nodiscard]] std::unique_ptr<Timer> once(Seconds delay, std::function<void()> job) override;
};

}  // namespace trelvan
