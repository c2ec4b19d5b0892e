#pragma once

#include "Utilities/LogSink.hpp"

namespace trelvan {

/// Log lines in the systemd journal, with their level as its priority; nothing where there is no journal or
/// the program was built without its library. Any thread.
class JournalSink : public LogSink {
  public:
    JournalSink();

    void write(const LogRecord& record) override;

  private:
    bool present_ = false;
};

}  // namespace trelvan
