#pragma once

#include "Platform/Shared/LogOutlet.hpp"
#include "Utilities/LogSink.hpp"

#include <memory>

namespace trelvan {

/// The log's two outputs, a file descriptor (standard output as a rule) and the system's own log. One thread
/// writes both, so that a stalled terminal and a system log that nobody reads stall nobody, and neither
/// stalls the other. Lines that find no room are dropped, and how many is said in their place as soon as
/// there is room.
///
/// Any thread. The end waits a short time for what is left to be written.
class OutputSink : public LogSink {
  public:
    /// The descriptor stays the caller's, and its flags as they are. Without a system log only it is written.
    explicit OutputSink(int descriptor, std::unique_ptr<LogOutlet> systemLog = nullptr);
    OutputSink(const OutputSink&) = delete;
    OutputSink& operator=(const OutputSink&) = delete;
    ~OutputSink() override;

    void write(const LogRecord& record) override;

  private:
    struct Shared;

    /// Held by the writer too: where a write never returns, the writer outlives this object.
    std::shared_ptr<Shared> shared_;
};

}  // namespace trelvan
