#pragma once

#include "Core/Model/CustomShortcut.hpp"
#include "Platform/InputState.hpp"
#include "Platform/KeyMonitors.hpp"
#include "Platform/RunLoop.hpp"
#include "Utilities/Logger.hpp"
#include "Utilities/Published.hpp"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace trelvan {

/// The recorder that records, of all on one screen; none while none does.
using ActiveRecorderID = Published<std::optional<std::string>>;

/// What an event's characters are called in a shortcut's text: "←", "Space", "K"; "?" for a key without any.
[[nodiscard]] std::string keyName(KeyCode keyCode, std::string_view characters);
/// The text of a combination: the modifiers' signs in their fixed order and the key's name.
[[nodiscard]] std::string combinationText(EventFlags flags, KeyCode keyCode, std::string_view characters);

/// Records one keyboard shortcut: the next key with the modifiers held. Escape leaves the shortcut as it was,
/// Backspace alone takes it away. Main thread.
///
/// While it records it looks at every key, the keys of other applications too; those of the program's own
/// windows go nowhere else. What the monitors see is dealt with in the main queue.
class KeyRecorder {
  public:
    struct Ports {
        KeyMonitors& monitors;
        const InputState& input;
        MainQueue& mainQueue;
        Logger& logger;
    };
    /// Told when the user recorded a shortcut, or took it away.
    using OnRecorded = std::function<void(const std::optional<CustomShortcut>&)>;

    KeyRecorder(const Ports& ports, ActiveRecorderID& activeRecorderID, std::string recorderID,
                OnRecorded onRecorded);
    KeyRecorder(const KeyRecorder&) = delete;
    KeyRecorder& operator=(const KeyRecorder&) = delete;
    /// Stops recording.
    ~KeyRecorder();

    /// None when nothing has been recorded.
    Published<std::optional<CustomShortcut>> shortcut;
    Published<bool> isRecording{false};
    [[nodiscard]] const std::string& recorderID() const { return recorderID_; }

    /// Starts, unless another recorder of the screen records; stops when it records.
    void toggleRecording();
    void startRecording();
    void stopRecording();

    /// What the control says, and its help; the same in both languages.
    [[nodiscard]] std::string label() const;
    [[nodiscard]] std::string_view help() const;

  private:
    KeyMonitors::LocalAnswer localKeyDown(const KeyMonitorEvent& event);
    void flagsChanged(const KeyMonitorEvent& event);
    void capture(const KeyMonitorEvent& event);
    void put(std::optional<CustomShortcut> recorded);
    /// Does the job in the main queue, if this recording still goes on then.
    void later(std::function<void()> job);
    [[nodiscard]] static EventFlags normalizedFlags(EventFlags flags);

    Ports ports_;
    ActiveRecorderID& activeRecorderID_;
    std::string recorderID_;
    OnRecorded onRecorded_;
    std::unique_ptr<KeyMonitors::Monitor> localKeyDownMonitor_;
    std::unique_ptr<KeyMonitors::Monitor> localFlagsMonitor_;
    std::unique_ptr<KeyMonitors::Monitor> globalKeyDownMonitor_;
    std::unique_ptr<KeyMonitors::Monitor> globalFlagsMonitor_;
    EventFlags pendingModifierFlags_ = 0;
    /// One for each recording; what is still in the queue of an earlier one does nothing.
    std::shared_ptr<int> recording_;
};

}  // namespace trelvan
