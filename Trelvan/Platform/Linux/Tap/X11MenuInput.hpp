#pragma once

#include "Platform/Linux/Tap/MenuKeyGrabs.hpp"
#include "Platform/Linux/X11/XEventPump.hpp"
#include "Platform/MenuInput.hpp"

#include <memory>
#include <optional>
#include <utility>
#include <vector>

class QObject;
class QSocketNotifier;

namespace trelvan {

/// The menu's keys by passive grabs, and the clicks beside it by the raw events that the input state asks the
/// server for. Main thread.
class X11MenuInput final : public MenuInput, public XEventHandler {
  public:
    /// Made after the modifier state, which keeps the connection's keyboard map up to date.
    X11MenuInput(XEventPump& pump, MenuKeyGrabs& grabs);
    X11MenuInput(const X11MenuInput&) = delete;
    X11MenuInput& operator=(const X11MenuInput&) = delete;
    ~X11MenuInput() override;

    [[nodiscard]] std::unique_ptr<Session> open(std::uintptr_t window, std::size_t entries,
                                                Handlers handlers) override;

    void handle(_XEvent& event) override;

  private:
    class Opened;

    void close(const Opened& session);
    void grabKeys();
    void readKeys();
    void tell(const MenuKeyGrabs::KeyEvent& event);
    /// What the key is to the open menu.
    [[nodiscard]] std::optional<MenuKey> meaning(int keycode, unsigned locks) const;
    [[nodiscard]] bool isPointerOnMenu() const;

    XEventPump& pump_;
    MenuKeyGrabs& grabs_;
    /// Takes calls from other threads to the main one.
    std::unique_ptr<QObject> context_;
    std::unique_ptr<QSocketNotifier> notifier_;
    Opened* opened_ = nullptr;
    /// Counts the sessions, so that a handler's caller sees that its own is gone.
    unsigned sessions_ = 0;
    /// Of the session.
    unsigned long window_ = 0;
    std::size_t entries_ = 0;
    /// The keyboard group in use, and the lock modifiers.
    unsigned group_ = 0;
    unsigned locks_ = 0;
    /// What the keys that are down were when they went down.
    std::vector<std::pair<int, MenuKey>> down_;
};

}  // namespace trelvan
