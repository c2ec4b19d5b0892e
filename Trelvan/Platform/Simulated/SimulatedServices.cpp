#include "Platform/Simulated/SimulatedServices.hpp"

#include "Platform/Simulated/SimulatedDesktop.hpp"

#include <utility>

namespace trelvan {

namespace {

constexpr AudioInput::Device microphoneDevice = 1;

}  // namespace

// Notifications

void SimulatedNotifications::requestAuthorization(std::uint32_t options) {
    auto& state = desktop_.notificationState;
    ++state.authorizationRequests;
    state.requestedOptions = options;
    if (state.authorization != Authorization::notDetermined) return;
    state.authorization = state.userAllows ? Authorization::authorized : Authorization::denied;
}

void SimulatedNotifications::getAuthorization(std::function<void(Authorization)> answer) {
    // As on a real system the answer comes beside the main thread, and after the call.
    desktop_.time.background().async(
        [answer = std::move(answer), state = &desktop_.notificationState] { answer(state->authorization); });
}

void SimulatedNotifications::add(const NotificationRequest& request) {
    auto& state = desktop_.notificationState;
    state.lastRequest = request;
    if (state.authorization != Authorization::authorized) return;
    if (!desktop_.isFrontmost()) return show(request);
    if (delegate_ == nullptr) return;
    delegate_->willPresent(request, [this, request](std::uint32_t options) {
        desktop_.notificationState.lastOptions = options;
        if ((options & (presentationOption::banner | presentationOption::list)) != 0) show(request);
    });
}

void SimulatedNotifications::show(const NotificationRequest& request) const {
    desktop_.tell(trace::Notification{request.title, request.body});
}

// Key monitors

class SimulatedKeyMonitors::Installed final : public Monitor {
  public:
    explicit Installed(std::shared_ptr<Entry> entry) : entry_(std::move(entry)) {}
    Installed(const Installed&) = delete;
    Installed& operator=(const Installed&) = delete;
    /// A monitor that goes away while it is being called is not called again either.
    ~Installed() override { entry_->mask = 0; }

  private:
    std::shared_ptr<Entry> entry_;
};

std::unique_ptr<KeyMonitors::Monitor> SimulatedKeyMonitors::addLocal(std::uint64_t mask,
                                                                     LocalHandler handler) {
    return install({mask, std::move(handler), nullptr});
}

std::unique_ptr<KeyMonitors::Monitor> SimulatedKeyMonitors::addGlobal(std::uint64_t mask,
                                                                      GlobalHandler handler) {
    return install({mask, nullptr, std::move(handler)});
}

std::unique_ptr<KeyMonitors::Monitor> SimulatedKeyMonitors::install(Entry entry) {
    if (desktop_.failures.keyMonitors) return nullptr;
    std::erase_if(entries_, [](const auto& known) { return known.expired(); });
    auto shared = std::make_shared<Entry>(std::move(entry));
    entries_.push_back(shared);
    return std::make_unique<Installed>(std::move(shared));
}

KeyMonitors::LocalAnswer SimulatedKeyMonitors::send(const KeyMonitorEvent& event) {
    const bool local = desktop_.isFrontmost();
    if (!local && !desktop_.accessibility) return LocalAnswer::passOn;
    // A copy: a handler may install monitors and let go of them.
    const auto entries = entries_;
    for (const auto& known : entries) {
        const auto entry = known.lock();
        if (!entry || (entry->mask & maskBit(event.type)) == 0) continue;
        if (local && entry->local && entry->local(event) == LocalAnswer::consume) return LocalAnswer::consume;
        if (!local && entry->global) entry->global(event);
    }
    return LocalAnswer::passOn;
}

// Audio input

std::optional<AudioInput::Device> SimulatedAudioInput::defaultInputDevice() {
    ++desktop_.microphone.reads;
    return desktop_.microphone.present ? std::optional{microphoneDevice} : std::nullopt;
}

std::optional<std::uint32_t> SimulatedAudioInput::mute(Device device, std::uint32_t element) {
    const auto& microphone = desktop_.microphone;
    ++desktop_.microphone.reads;
    if (!microphone.present || device != microphoneDevice || element >= microphone.mute.size())
        return std::nullopt;
    return microphone.mute[element];
}

std::optional<float> SimulatedAudioInput::volume(Device device, std::uint32_t element) {
    const auto& microphone = desktop_.microphone;
    ++desktop_.microphone.reads;
    if (!microphone.present || device != microphoneDevice || element >= microphone.volume.size())
        return std::nullopt;
    return microphone.volume[element];
}

// Login item

class SimulatedLoginItem::Watching final : public Watch {
  public:
    explicit Watching(std::shared_ptr<Handler> handler) : handler_(std::move(handler)) {}
    Watching(const Watching&) = delete;
    Watching& operator=(const Watching&) = delete;
    ~Watching() override { *handler_ = nullptr; }

  private:
    std::shared_ptr<Handler> handler_;
};

LoginItem::Status SimulatedLoginItem::status() {
    return desktop_.loginStatus;
}

std::optional<std::string> SimulatedLoginItem::registerItem() {
    if (desktop_.failures.loginItem) return "simulated failure";
    if (desktop_.loginStatus == Status::notFound) return "simulated: the application was not found";
    if (desktop_.loginStatus == Status::notRegistered) desktop_.loginStatus = Status::enabled;
    return std::nullopt;
}

std::optional<std::string> SimulatedLoginItem::unregisterItem() {
    if (desktop_.failures.loginItem) return "simulated failure";
    if (desktop_.loginStatus != Status::notFound) desktop_.loginStatus = Status::notRegistered;
    return std::nullopt;
}

std::unique_ptr<LoginItem::Watch> SimulatedLoginItem::watch(std::function<void()> changed) {
    std::erase_if(watchers_, [](const auto& known) { return known.expired(); });
    auto handler = std::make_shared<Handler>(std::move(changed));
    watchers_.push_back(handler);
    return std::make_unique<Watching>(std::move(handler));
}

void SimulatedLoginItem::tellWatchers() {
    const auto watchers = watchers_;
    for (const auto& known : watchers) {
        const auto handler = known.lock();
        if (!handler) continue;
        // Called through a copy: it may end its own watch.
        if (const Handler call = *handler) call();
    }
}

// Bundle information

std::optional<std::string> SimulatedBundleInfo::text(std::string_view key) const {
    const auto found = desktop_.bundle.find(key);
    return found != desktop_.bundle.end() ? std::optional{found->second} : std::nullopt;
}

// Idle inhibitor

class SimulatedIdleInhibitor::Counted final : public Hold {
  public:
    explicit Counted(int& holds) : holds_(holds) { ++holds_; }
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;
    ~Counted() override { --holds_; }

  private:
    int& holds_;
};

std::unique_ptr<IdleInhibitor::Hold> SimulatedIdleInhibitor::hold() {
    return std::make_unique<Counted>(desktop_.idleHolds);
}

// Appearance

bool SimulatedAppearance::prefersDark() const {
    return desktop_.prefersDark;
}

std::optional<Rgb> SimulatedAppearance::accentColor() const {
    return desktop_.accentColor;
}

// Single instance

SingleInstance::Reach SimulatedInstance::serve(std::function<void()> onShow) {
    if (!desktop_.hasBus) return Reach::noBus;
    onShow_ = std::move(onShow);
    return Reach::reachable;
}

bool SimulatedInstance::startAgain() {
    if (onShow_) onShow_();
    return static_cast<bool>(onShow_);
}

}  // namespace trelvan
