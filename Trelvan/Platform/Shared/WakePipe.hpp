#pragma once

#include "Platform/Shared/Descriptor.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <array>

namespace trelvan {

/// Wakes a thread that polls `descriptor`. A wake-up that comes while another waits joins it.
class WakePipe {
  public:
    WakePipe() {
        std::array<int, 2> ends{-1, -1};
        if (pipe(ends.data()) != 0) return;
        for (const int end : ends) {
            fcntl(end, F_SETFD, FD_CLOEXEC);
            fcntl(end, F_SETFL, O_NONBLOCK);
        }
        read_ = Descriptor(ends[0]);
        write_ = Descriptor(ends[1]);
    }

    /// Readable after `wake` until `drain`; below 0 where the process may open no more files.
    [[nodiscard]] int descriptor() const { return read_.number(); }
    /// Any thread; also in a signal handler.
    void wake() const {
        // A full pipe wakes just as well.
        [[maybe_unused]] const auto written = write(write_.number(), "", 1);
    }
    /// The polling thread.
    void drain() const {
        std::array<char, 64> ignored{};
        while (read(read_.number(), ignored.data(), ignored.size()) == static_cast<ssize_t>(ignored.size())) {
        }
    }

  private:
    Descriptor read_;
    Descriptor write_;
};

}  // namespace trelvan
