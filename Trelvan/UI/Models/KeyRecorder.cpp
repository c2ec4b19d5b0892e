#include "UI/Models/KeyRecorder.hpp"

#include "UI/Models/ModifierSigns.hpp"

#include <QString>
#include <array>
#include <utility>

namespace trelvan {

namespace {

struct KeySign {
    KeyCode keyCode;
    std::string_view name;
};

constexpr std::array keySigns{
    KeySign{123, "←"}, KeySign{124, "→"},    KeySign{125, "↓"}, KeySign{126, "↑"},  KeySign{36, "↩"},
    KeySign{48, "⇥"},  KeySign{49, "Space"}, KeySign{51, "⌫"},  KeySign{53, "Esc"},
};

constexpr KeyCode escapeKey = 53;
constexpr KeyCode backspaceKey = 51;

constexpr auto keyDownMask = maskBit(EventType::keyDown);
constexpr auto flagsMask = maskBit(EventType::flagsChanged);

}  // namespace

std::string keyName(KeyCode keyCode, std::string_view characters) {
    for (const auto& sign : keySigns) {
        if (sign.keyCode == keyCode) return std::string(sign.name);
    }
    if (characters.empty()) return "?";
    return QString::fromUtf8(characters.data(), static_cast<qsizetype>(characters.size()))
        .toUpper()
        .toStdString();
}

std::string combinationText(EventFlags flags, KeyCode keyCode, std::string_view characters) {
    return modifierSigns(flags) + keyName(keyCode, characters);
}

KeyRecorder::KeyRecorder(const Ports& ports, ActiveRecorderID& activeRecorderID, std::string recorderID,
                         OnRecorded onRecorded)
    : ports_(ports),
      activeRecorderID_(activeRecorderID),
      recorderID_(std::move(recorderID)),
      onRecorded_(std::move(onRecorded)) {}

KeyRecorder::~KeyRecorder() {
    if (isRecording) stopRecording();
}

void KeyRecorder::toggleRecording() {
    if (isRecording) return stopRecording();
    if (activeRecorderID_.get() && activeRecorderID_.get() != recorderID_) return;
    startRecording();
}

void KeyRecorder::startRecording() {
    activeRecorderID_ = recorderID_;
    isRecording = true;
    pendingModifierFlags_ = 0;
    recording_ = std::make_shared<int>(0);
    localKeyDownMonitor_ =
        ports_.monitors.addLocal(keyDownMask, [this](const auto& event) { return localKeyDown(event); });
    localFlagsMonitor_ = ports_.monitors.addLocal(flagsMask, [this](const auto& event) {
        flagsChanged(event);
        return KeyMonitors::LocalAnswer::passOn;
    });
    globalKeyDownMonitor_ = ports_.monitors.addGlobal(keyDownMask, [this](const auto& event) {
        if (isRecording) later([this, event] { capture(event); });
    });
    globalFlagsMonitor_ =
        ports_.monitors.addGlobal(flagsMask, [this](const auto& event) { flagsChanged(event); });
}

void KeyRecorder::stopRecording() {
    isRecording = false;
    pendingModifierFlags_ = 0;
    recording_.reset();
    if (activeRecorderID_.get() == recorderID_) activeRecorderID_ = std::nullopt;
    localKeyDownMonitor_.reset();
    localFlagsMonitor_.reset();
    globalKeyDownMonitor_.reset();
    globalFlagsMonitor_.reset();
}

void KeyRecorder::later(std::function<void()> job) {
    ports_.mainQueue.async([weak = std::weak_ptr(recording_), job = std::move(job)] {
        if (!weak.expired()) job();
    });
}

KeyMonitors::LocalAnswer KeyRecorder::localKeyDown(const KeyMonitorEvent& event) {
    if (!isRecording) return KeyMonitors::LocalAnswer::passOn;
    if (event.keyCode == escapeKey) {
        later([this] { stopRecording(); });
    } else if (event.keyCode == backspaceKey && normalizedFlags(event.flags) == 0) {
        later([this] {
            const std::weak_ptr<int> present = recording_;
            put(std::nullopt);
            if (!present.expired()) stopRecording();
        });
    } else {
        later([this, event] { capture(event); });
    }
    return KeyMonitors::LocalAnswer::consume;
}

void KeyRecorder::flagsChanged(const KeyMonitorEvent& event) {
    if (!isRecording) return;
    later([this, flags = normalizedFlags(event.flags)] { pendingModifierFlags_ = flags; });
}

EventFlags KeyRecorder::normalizedFlags(EventFlags flags) {
    return flags & combinationModifiers;
}

void KeyRecorder::capture(const KeyMonitorEvent& event) {
    const EventFlags flags = normalizedFlags(
        event.flags | ports_.input.flags(EventSourceState::combinedSession) | pendingModifierFlags_);
    CustomShortcut recorded{event.keyCode, flags, combinationText(flags, event.keyCode, event.characters)};
    ports_.logger.debug(InlineText("Shortcut grabado: ", recorded.displayString,
                                   " keyCode=", recorded.keyCode, " flags=", recorded.modifiersRawValue));
    // Whoever is told may let go of this recorder.
    const std::weak_ptr<int> present = recording_;
    put(std::move(recorded));
    if (!present.expired()) stopRecording();
}

void KeyRecorder::put(std::optional<CustomShortcut> recorded) {
    shortcut = recorded;
    if (onRecorded_) onRecorded_(recorded);
}

std::string KeyRecorder::label() const {
    if (isRecording) return "Presiona teclas…";
    return shortcut.get() ? shortcut.get()->displayString : "Clic para asignar";
}

std::string_view KeyRecorder::help() const {
    return isRecording ? "Esc = cancelar | Backspace = borrar atajo" : "Clic para asignar un atajo";
}

}  // namespace trelvan
