#pragma once

#include "Utilities/LogSink.hpp"

#include <memory>

namespace trelvan {

/// Log lines on a file descriptor, standard output as a rule, written by a thread of its own so that a
/// stalled terminal stalls nobody. Lines that find no room are dropped, and how many is said as soon as there
/// is room.
///
/// Any thread. The end waits a short time for what is left to be written.
class OutputSink : public LogSink {
  public:
    explicit OutputSink(int descriptor);
    OutputSink(const OutputSink&) = delete;
    OutputSink& operator=(const OutputSink&) = delete;
    ~OutputSink() override;

    void write(const LogRecord& record) override;

  private:
    struct Shared;

    /// Held by the writer too: where the reader never reads again, the writer outlives this object.
    std::shared_ptr<Shared> shared_;
};

}  // namespace trelvan
