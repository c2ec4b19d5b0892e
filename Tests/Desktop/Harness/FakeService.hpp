#pragma once

#include "Desktop/Harness/ChildProcess.hpp"
#include "Desktop/Harness/VirtualDesktop.hpp"
#include "Desktop/Harness/Wait.hpp"

#include <filesystem>
#include <string>
#include <vector>

namespace trelvan::desktop {

/// A service on the desktop's bus in the place of one that is not installed: writes down what it is asked and
/// answers as it is told to. Main thread.
class FakeService {
  public:
    /// Returns when the service has its name on the bus. `answers` are "Member=answer": "error", "silence",
    /// "crash", "true", "false" or "number:N" (in a variant), a value ("bool:true", "text:T", "path:/P",
    /// "list:A,B", "map:KEY=true,KEY=T"); other members are answered with nothing. Throws std::runtime_error.
    FakeService(VirtualDesktop& onDesktop, const std::string& busName,
                const std::vector<std::string>& answers = {});

    /// What it was asked, one line each, oldest first: the path, the member and the arguments.
    [[nodiscard]] std::vector<std::string> calls() const;
    bool waitForCall(const std::string& call, std::chrono::milliseconds bound = timeout) const;

    /// Makes it send a signal with these values, and returns when it has.
    void emitSignal(const std::string& path, const std::string& interface, const std::string& member,
                    const std::vector<std::string>& values = {}) const;

  private:
    VirtualDesktop& desktop;
    std::string name;
    std::filesystem::path record;
    std::unique_ptr<ChildProcess> process;
};

}  // namespace trelvan::desktop
