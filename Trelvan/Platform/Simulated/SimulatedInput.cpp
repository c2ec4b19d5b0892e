#include "Platform/Simulated/SimulatedInput.hpp"

#include "Platform/Simulated/SimulatedDesktop.hpp"

namespace trelvan {

EventFlags SimulatedInputState::flags(EventSourceState /*source*/) const {
    return desktop_.modifierFlags | (desktop_.capsLock ? flag::alphaShift : 0);
}

double SimulatedInputState::secondsSinceLast(EventType type) const {
    const auto number = static_cast<std::size_t>(type);
    const Seconds last = number < last_.size() ? last_[number] : Seconds{0};
    return (desktop_.time.uptime() - last).count();
}

void SimulatedInputState::note(EventType type) {
    const auto number = static_cast<std::size_t>(type);
    if (number < last_.size()) last_[number] = desktop_.time.uptime();
}

SimulatedTap::SimulatedTap(SimulatedDesktop& desktop)
    : desktop_(desktop), task_(desktop.time.makeCoalescedTask([this] { sendReturning(); })) {
    returning_.reserve(16);
    sending_.reserve(16);
}

bool SimulatedTap::create(std::uint64_t mask, Callback callback, void* userInfo) {
    if (desktop_.failures.tapCreate || !desktop_.accessibility) return false;
    mask_ = mask;
    callback_ = callback;
    userInfo_ = userInfo;
    ++created_;
    return true;
}

bool SimulatedTap::releasesFollowPresses() const {
    return desktop_.releasesFollowPresses;
}

void SimulatedTap::remove() {
    callback_ = nullptr;
    enabled_ = false;
}

TapAnswer SimulatedTap::send(TapEvent& event, bool marked) {
    if (!enabled_ || (mask_ & maskBit(event.type)) == 0) return TapAnswer::deliver;
    const TapAnswer answer = callback_(userInfo_, event);
    desktop_.tell(trace::Event{event, answer, marked});
    return answer;
}

void SimulatedTap::disable(EventType why) {
    if (callback_ == nullptr) return;
    enabled_ = false;
    TapEvent event;
    event.type = why;
    callback_(userInfo_, event);
}

void SimulatedTap::sendLater(const TapEvent& event) {
    returning_.push_back(event);
    task_->request();
}

void SimulatedTap::sendReturning() {
    sending_.swap(returning_);
    for (auto& event : sending_) send(event, event.sourceUserData != 0);
    sending_.clear();
}

std::optional<KeyEvent> SimulatedPoster::makeKey(EventSourceState /*source*/, KeyCode keyCode, bool down,
                                                 EventFlags flags) {
    if (desktop_.failures.eventCreate) return std::nullopt;
    return KeyEvent{keyCode, down, flags, nullptr};
}

std::optional<MouseEvent> SimulatedPoster::makeMouse(EventType type, std::int64_t buttonNumber,
                                                     TopLeftPoint location) {
    if (desktop_.failures.eventCreate) return std::nullopt;
    return MouseEvent{type, buttonNumber, location, nullptr};
}

std::optional<KeyChord> SimulatedPoster::keyTyping(char32_t character) {
    const auto found = desktop_.layout.find(character);
    return found != desktop_.layout.end() ? std::optional{found->second} : std::nullopt;
}

void SimulatedPoster::post(const KeyEvent& event, TapLocation at) {
    desktop_.tell(trace::PostedKey{event.keyCode, event.down, event.flags, at});
}

void SimulatedPoster::post(const MouseEvent& event, TapLocation at) {
    desktop_.tell(trace::PostedMouse{event.type, event.buttonNumber, event.location, 0, 0, 0, at});
    if (desktop_.postedCountsAsActivity) input_.note(event.type);
    desktop_.pointer = event.location;
    if (at != TapLocation::hid) return;
    TapEvent returning;
    returning.type = event.type;
    returning.buttonNumber = event.buttonNumber;
    returning.location = event.location;
    tap_.sendLater(returning);
}

void SimulatedPoster::post(const MediaKeyEvent& event, TapLocation at) {
    desktop_.tell(trace::PostedMedia{event.data1, event.flags, at});
}

bool SimulatedPoster::postCopy(const TapEvent& changed, TapLocation at) {
    if (desktop_.failures.eventCopy) return false;
    desktop_.tell(trace::PostedMouse{changed.type, changed.buttonNumber, changed.location, changed.deltaX,
                                     changed.deltaY, changed.sourceUserData, at});
    if (at == TapLocation::hid) tap_.sendLater(changed);
    return true;
}

// Menu

class SimulatedMenuInput::Opened final : public Session {
  public:
    Opened(SimulatedMenuInput& owner, std::size_t count, Handlers given)
        : handlers(std::move(given)), entries(count), owner_(owner) {}
    Opened(const Opened&) = delete;
    Opened& operator=(const Opened&) = delete;
    ~Opened() override {
        if (owner_.opened_ == this) owner_.opened_ = nullptr;
    }

    const Handlers handlers;
    const std::size_t entries;

  private:
    SimulatedMenuInput& owner_;
};

std::unique_ptr<MenuInput::Session> SimulatedMenuInput::open(std::uintptr_t /*window*/, std::size_t entries,
                                                             Handlers handlers) {
    auto session = std::make_unique<Opened>(*this, entries, std::move(handlers));
    opened_ = session.get();
    return session;
}

bool SimulatedMenuInput::has(MenuKey key) const {
    if (opened_ == nullptr) return false;
    const auto entry = entryOf(key);
    return !entry || *entry < opened_->entries;
}

void SimulatedMenuInput::keyDown(MenuKey key) {
    if (!has(key)) return;
    // A copy, like the others below: the handler may let go of the session.
    const auto handler = opened_->handlers.keyDown;
    if (handler) handler(key);
}

void SimulatedMenuInput::keyUp(MenuKey key) {
    if (!has(key)) return;
    const auto handler = opened_->handlers.keyUp;
    if (handler) handler(key);
}

void SimulatedMenuInput::clickElsewhere() {
    if (opened_ == nullptr) return;
    const auto handler = opened_->handlers.leave;
    if (handler) handler();
}

}  // namespace trelvan
