#include "Platform/Linux/TerminationSignals.hpp"

#include "Platform/Platform.hpp"

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <array>
#include <cerrno>

namespace trelvan {

namespace {

constexpr std::array handled{SIGTERM, SIGINT, SIGHUP};

std::array<int, 2> wakePipe{-1, -1};

void wake(int /*signal*/) {
    const int error = errno;
    const char byte = 0;
    [[maybe_unused]] const auto written = write(wakePipe[1], &byte, 1);
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

TerminationSignals::TerminationSignals(std::function<void()> onSignal) {
    if (pipe2(wakePipe.data(), O_CLOEXEC | O_NONBLOCK) != 0) return;
    notifier_ = std::make_unique<QSocketNotifier>(wakePipe[0], QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(),
                     [onSignal = std::move(onSignal)] {
                         std::array<char, 16> bytes{};
                         [[maybe_unused]] const auto count = read(wakePipe[0], bytes.data(), bytes.size());
                         onSignal();
                     });
    route(&wake);
}

TerminationSignals::~TerminationSignals() {
    if (!notifier_) return;
    route(SIG_DFL);
    notifier_.reset();
    for (int& end : wakePipe) {
        close(end);
        end = -1;
    }
}

}  // namespace trelvan
