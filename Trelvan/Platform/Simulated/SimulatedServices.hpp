#pragma once

#include "Platform/Appearance.hpp"
#include "Platform/AudioInput.hpp"
#include "Platform/BundleInfo.hpp"
#include "Platform/IdleInhibitor.hpp"
#include "Platform/KeyMonitors.hpp"
#include "Platform/LoginItem.hpp"
#include "Platform/Notifications.hpp"
#include "Platform/SingleInstance.hpp"
#include "Platform/StatusArea.hpp"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace trelvan {

class SimulatedDesktop;

/// A notification centre whose user answers at once; what is shown is told to the trace.
class SimulatedNotifications final : public Notifications {
  public:
    explicit SimulatedNotifications(SimulatedDesktop& desktop) : desktop_(desktop) {}
    void setDelegate(NotificationDelegate* delegate) override { delegate_ = delegate; }
    void requestAuthorization(std::uint32_t options) override;
    void getAuthorization(std::function<void(Authorization)> answer) override;
    void add(const NotificationRequest& request) override;

  private:
    void show(const NotificationRequest& request) const;

    SimulatedDesktop& desktop_;
    NotificationDelegate* delegate_ = nullptr;
};

/// The key monitors that are installed. While the program is frontmost its local ones see a key event,
/// otherwise the global ones do, given that the program is trusted.
class SimulatedKeyMonitors final : public KeyMonitors {
  public:
    explicit SimulatedKeyMonitors(SimulatedDesktop& desktop) : desktop_(desktop) {}
    [[nodiscard]] std::unique_ptr<Monitor> addLocal(std::uint64_t mask, LocalHandler handler) override;
    [[nodiscard]] std::unique_ptr<Monitor> addGlobal(std::uint64_t mask, GlobalHandler handler) override;

    LocalAnswer send(const KeyMonitorEvent& event);

  private:
    struct Entry {
        std::uint64_t mask = 0;
        LocalHandler local;
        GlobalHandler global;
    };
    class Installed;

    std::unique_ptr<Monitor> install(Entry entry);

    SimulatedDesktop& desktop_;
    /// In the order they were installed; those that were let go of are swept out on the next installation.
    std::vector<std::weak_ptr<Entry>> entries_;
};

/// The world's microphone.
class SimulatedAudioInput final : public AudioInput {
  public:
    explicit SimulatedAudioInput(SimulatedDesktop& desktop) : desktop_(desktop) {}
    [[nodiscard]] std::optional<Device> defaultInputDevice() override;
    [[nodiscard]] std::optional<std::uint32_t> mute(Device device, std::uint32_t element) override;
    [[nodiscard]] std::optional<float> volume(Device device, std::uint32_t element) override;

  private:
    SimulatedDesktop& desktop_;
};

/// The world's login item. Where approval is missing, registering succeeds and changes nothing.
class SimulatedLoginItem final : public LoginItem {
  public:
    explicit SimulatedLoginItem(SimulatedDesktop& desktop) : desktop_(desktop) {}
    [[nodiscard]] Status status() override;
    [[nodiscard]] std::optional<std::string> registerItem() override;
    [[nodiscard]] std::optional<std::string> unregisterItem() override;
    [[nodiscard]] std::unique_ptr<Watch> watch(std::function<void()> changed) override;

    void tellWatchers();

  private:
    class Watching;
    using Handler = std::function<void()>;

    SimulatedDesktop& desktop_;
    std::vector<std::weak_ptr<Handler>> watchers_;
};

/// The world's information texts.
class SimulatedBundleInfo final : public BundleInfo {
  public:
    explicit SimulatedBundleInfo(SimulatedDesktop& desktop) : desktop_(desktop) {}
    [[nodiscard]] std::optional<std::string> text(std::string_view key) const override;

  private:
    SimulatedDesktop& desktop_;
};

/// Counts the inhibitions in force.
class SimulatedIdleInhibitor final : public IdleInhibitor {
  public:
    explicit SimulatedIdleInhibitor(SimulatedDesktop& desktop) : desktop_(desktop) {}
    [[nodiscard]] std::unique_ptr<Hold> hold() override;

  private:
    class Counted;

    SimulatedDesktop& desktop_;
};

/// Windows as they come: light, animated, translucent, until the user changes it.
class SimulatedAppearance final : public Appearance {
  public:
    explicit SimulatedAppearance(const SimulatedDesktop& desktop) : desktop_(desktop) {}

    [[nodiscard]] bool prefersDark() const override;
    [[nodiscard]] bool reducesMotion() const override { return false; }
    [[nodiscard]] bool composites() const override { return true; }
    [[nodiscard]] std::optional<Rgb> accentColor() const override;
    using Appearance::tellChange;

  private:
    const SimulatedDesktop& desktop_;
};

/// A desktop whose panel comes up when the test says so.
class SimulatedStatusArea final : public StatusArea {
  public:
    using StatusArea::found;
};

/// A further start is a call.
class SimulatedInstance final : public SingleInstance {
  public:
    explicit SimulatedInstance(const SimulatedDesktop& desktop) : desktop_(desktop) {}

    [[nodiscard]] Reach serve(std::function<void()> onShow) override;
    /// Whether anybody was reached.
    bool startAgain();

  private:
    const SimulatedDesktop& desktop_;
    std::function<void()> onShow_;
};

}  // namespace trelvan
