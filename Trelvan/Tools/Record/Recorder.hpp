#pragma once

#include "Platform/ActionShortcuts.hpp"
#include "Platform/EventTap.hpp"
#include "Platform/HotKeyTable.hpp"
#include "Platform/InputState.hpp"
#include "Platform/RunLoop.hpp"
#include "Platform/Screens.hpp"
#include "Platform/SessionState.hpp"
#include "Platform/SystemViews.hpp"
#include "Platform/UserDefaults.hpp"
#include "Platform/Workspace.hpp"
#include "Tools/Simulate/JsonLine.hpp"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace trelvan {

/// A tap in front of the real one that writes down what it sees as a script for `simulate`: the settings at
/// the head, then each pointer event with what a decision about it looks at. Key presses never reach a tap,
/// so none are written; of the keyboard there are the modifier states only. Of what the user calls things,
/// where they are and which applications are in use it says no more than the decisions need. Main thread.
class Recorder final : public EventTap {
  public:
    struct Ports {
        EventTap& tap;
        InputState& input;
        Screens& screens;
        UserDefaults& defaults;
        HotKeyTable& hotKeys;
        Clock& clock;
        SystemViews& views;
        Workspace& workspace;
        const ActionShortcuts& shortcuts;
        const SessionState& session;
    };
    /// Takes each line of the script, its line break included.
    using Output = std::function<void(std::string_view line)>;

    /// The ports must outlive the recorder.
    Recorder(const Ports& ports, Output output);

    [[nodiscard]] bool create(std::uint64_t mask, Callback callback, void* userInfo) override;
    void enable(bool on) override { ports_.tap.enable(on); }
    [[nodiscard]] bool releasesFollowPresses() const override { return ports_.tap.releasesFollowPresses(); }
    void remove() override { ports_.tap.remove(); }

    /// Writes that a person did this now, with the place in a list where the operation takes one. Nothing
    /// before the script's head.
    void writeCall(std::string_view operation, std::optional<std::int64_t> index = std::nullopt);

  private:
    static TapAnswer see(void* self, TapEvent& event);

    void writeHead();
    void writePlatform();
    void writeDefaults();
    void writeHotKeys();
    void writeSession(bool usable);
    void writeWorld(const TapEvent& event);
    void writeEvent(const TapEvent& event);
    void begin(std::string_view action);
    void end() { output_(line_.end()); }

    Ports ports_;
    Output output_;
    JsonLine line_;
    Callback callback_ = nullptr;
    void* userInfo_ = nullptr;
    /// When the script began; none before its head is written.
    std::optional<Seconds> start_;

    // What was last written of the world, so that only changes are.
    EventFlags modifiers_ = 0;
    std::string frontmost_ = "com.example.app";
    std::string windows_;
    std::string screens_;
    Subscription sessionObserver_;
};

}  // namespace trelvan
