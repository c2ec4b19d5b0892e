#pragma once

#include "Desktop/Harness/ChildProcess.hpp"
#include "Desktop/Harness/VirtualDesktop.hpp"

#include <memory>
#include <string>
#include <vector>

namespace trelvan::desktop {

/// A real sound server on a virtual desktop, with a microphone that hears nothing. Main thread.
class SoundServer {
  public:
    /// Starts it and waits until it serves. Throws std::runtime_error when it does not.
    explicit SoundServer(const VirtualDesktop& desktop);

    void setMute(bool muted);
    /// 0 to 100.
    void setVolume(int percent);
    /// Takes the microphone away; the server falls back on what else it has.
    void unplug();
    void plug();

  private:
    /// Asks the server for something; whether it did it.
    bool control(std::vector<std::string> arguments);

    const VirtualDesktop& place;
    std::unique_ptr<ChildProcess> process;
};

}  // namespace trelvan::desktop
