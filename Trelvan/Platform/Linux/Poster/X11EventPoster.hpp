#pragma once

#include "Platform/EventPoster.hpp"
#include "Platform/Linux/Poster/HeldModifiers.hpp"
#include "Platform/Linux/Poster/MediaKeycodes.hpp"
#include "Platform/Linux/Tap/MenuKeyGrabs.hpp"
#include "Platform/Linux/Tap/PointerPipeline.hpp"
#include "Platform/Linux/X11/XConnection.hpp"

#include <array>
#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>
#include <vector>

namespace trelvan {

/// Posts synthetic input through XTEST on a connection of its own.
///
/// X has one pipeline in, so the three tap locations are the same. A key arrives with the modifiers of its
/// flags and no others: modifier keys that the user holds are lifted while the synthetic keys are down, those
/// that the flags ask for and nobody holds are pressed around the key.
///
/// Any thread; a lock is held for each call. A copy goes back into the tap's pipeline, on the main thread.
class X11EventPoster : public EventPoster {
  public:
    /// Pipeline, menu keys, page and origin must outlive the poster. What is posted is none of the menu's
    /// keys.
    X11EventPoster(std::unique_ptr<XConnection> connection, PointerPipeline& pipeline, MenuKeyGrabs& menuKeys,
                   PressedState& page, const EventOrigin& origin);
    ~X11EventPoster() override;

    [[nodiscard]] std::optional<KeyEvent> makeKey(EventSourceState source, KeyCode keyCode, bool down,
                                                  EventFlags flags) override;
    [[nodiscard]] std::optional<MouseEvent> makeMouse(EventType type, std::int64_t buttonNumber,
                                                      TopLeftPoint location) override;
    [[nodiscard]] std::optional<KeyChord> keyTyping(char32_t character) override;
    void post(const KeyEvent& event, TapLocation at) override;
    void post(const MouseEvent& event, TapLocation at) override;
    void post(const MediaKeyEvent& event, TapLocation at) override;
    [[nodiscard]] bool postCopy(const TapEvent& changed, TapLocation at) override;

    /// Whether an event posted here may still be on its way back to this program as a raw one.
    [[nodiscard]] bool hasJustPosted() const;

    /// The key that types a keysym in the keyboard layout in use.
    [[nodiscard]] std::optional<KeyChord> keyFor(unsigned long keysym);

    /// A real keyboard let a key go.
    void physicalKeyReleased();

    /// Releases every synthetic key and button that is down now.
    void releaseAll();

  private:
    /// Reads what the server has told about its keyboard mapping since the last call.
    void refresh();
    void pressKey(int keycode, EventFlags flags);
    void releaseKey(int keycode);
    void lift(int keycode);
    /// Lifts the modifier keys of another shortcut that is still under way; its own next key presses them
    /// again.
    void liftUnwanted(unsigned wanted);
    void pressMissing(int keycode, unsigned wanted);
    void moveTo(Pixel place);

    /// Flushes what was posted, and remembers when.
    void send();

    std::mutex mutex_;
    /// On the steady clock.
    std::atomic<std::chrono::steady_clock::time_point> lastPost_{};
    std::unique_ptr<XConnection> connection_;
    PointerPipeline& pipeline_;
    MenuKeyGrabs& menuKeys_;
    const EventOrigin& origin_;
    XTestLedger ledger_;
    HeldModifiers held_;
    ModifierMap map_;
    MediaKeycodes mediaKeys_;
    /// Modifier keys pressed here around the key at the index.
    std::array<std::vector<int>, 256> companions_;
};

}  // namespace trelvan
