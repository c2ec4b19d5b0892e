#include "Platform/Linux/TerminationSignals.hpp"

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
