#pragma once

#include "Platform/Linux/JournalSink.hpp"
#include "Utilities/LogSink.hpp"

#include <memory>
#include <string>

namespace trelvan {

/// The log's two outputs, a file descriptor (standard output as a rule) and the systemd journal. One thread
/// writes both, so that a stalled terminal and a journal that nobody reads stall nobody, and neither stalls
/// the other. Lines that find no room are dropped, and how many is said in their place as soon as there is
/// room.
///
/// Any thread. The end waits a short time for what is left to be written.
class OutputSink : public LogSink {
  public:
    /// The descriptor stays the caller's, and its flags as they are.
    explicit OutputSink(int descriptor, std::string journalSocket = JournalSink::systemSocket);
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
