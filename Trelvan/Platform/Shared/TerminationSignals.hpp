#pragma once

#include "Platform/Shared/WakePipe.hpp"

#include <QObject>
#include <QSocketNotifier>
#include <functional>
#include <memory>

namespace trelvan {

/// Turns SIGTERM, SIGINT and SIGHUP into a call on the main thread. One at a time; programs started from this
/// one have the signals' ordinary meaning again.
class TerminationSignals {
  public:
    explicit TerminationSignals(std::function<void()> onSignal);
    TerminationSignals(const TerminationSignals&) = delete;
    TerminationSignals& operator=(const TerminationSignals&) = delete;
    ~TerminationSignals();

  private:
    WakePipe pipe_;
    std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace trelvan
