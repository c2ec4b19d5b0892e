#include "Platform/Shared/TerminationSignals.hpp"

#include "Platform/Platform.hpp"

#include <signal.h>

#include <array>
#include <atomic>
#include <cerrno>

namespace trelvan {

namespace {

constexpr std::array handled{SIGTERM, SIGINT, SIGHUP};

/// That of the one object there is.
std::atomic<const WakePipe*> signalled{nullptr};

void wake(int /*signal*/) {
    const int error = errno;
    if (const WakePipe* pipe = signalled.load()) pipe->wake();
    errno = error;
}

void route(void (*handler)(int)) {
    struct sigaction action {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    for (const int signal : handled) sigaction(signal, &action, nullptr);
}

}  // namespace

void prepareProcess() {
    // A parent that blocks them hands that on, and nobody could end the program any more.
    sigset_t ending;
    sigemptyset(&ending);
    for (const int signal : handled) sigaddset(&ending, signal);
    sigprocmask(SIG_UNBLOCK, &ending, nullptr);
    // A file that may not grow any more is a write that fails and no reason to die. By a handler, for
    // programs started from this one have the signal's ordinary meaning again.
    struct sigaction carryOn {};
    carryOn.sa_handler = [](int) {};
    carryOn.sa_flags = SA_RESTART;
    sigemptyset(&carryOn.sa_mask);
    sigaction(SIGXFSZ, &carryOn, nullptr);
}

TerminationSignals::TerminationSignals(std::function<void()> onSignal)
    : notifier_(std::make_unique<QSocketNotifier>(pipe_.descriptor(), QSocketNotifier::Read)) {
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(),
                     [this, onSignal = std::move(onSignal)] {
                         pipe_.drain();
                         onSignal();
                     });
    signalled = &pipe_;
    route(&wake);
}

TerminationSignals::~TerminationSignals() {
    route(SIG_DFL);
    signalled = nullptr;
}

}  // namespace trelvan
