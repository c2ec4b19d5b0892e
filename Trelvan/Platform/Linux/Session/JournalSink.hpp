#pragma once

#include "Platform/Shared/LogOutlet.hpp"

#include <string>

namespace trelvan {

/// The systemd journal, by its own protocol: each line whole, with its level as its priority, the program's
/// category and the place in the source. Nothing where there is no journal.
///
/// The journal's own library waits while the journal is busy; here its socket is asked first.
class JournalSink final : public LogOutlet {
  public:
    static constexpr const char* systemSocket = "/run/systemd/journal/socket";

    explicit JournalSink(std::string socketPath = systemSocket);
    ~JournalSink() override;

    [[nodiscard]] int descriptor() const override { return socket_; }

  protected:
    Sent send(const QueuedLine& line) override;

  private:
    bool connect();
    void disconnect();
    Sent sendDatagram();
    Sent sendAsFile();

    std::string path_;
    bool present_;
    int socket_ = -1;
    /// The line's fields, kept for their memory.
    std::string fields_;
};

}  // namespace trelvan
