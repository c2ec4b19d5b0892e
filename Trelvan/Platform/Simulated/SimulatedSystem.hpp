#pragma once

#include "Platform/AccessibilityTrust.hpp"
#include "Platform/HotKeyTable.hpp"
#include "Platform/RunLoop.hpp"
#include "Platform/Screens.hpp"
#include "Platform/ScriptRunner.hpp"
#include "Platform/SessionState.hpp"
#include "Platform/SystemViews.hpp"
#include "Platform/UserDefaults.hpp"
#include "Platform/Workspace.hpp"
#include "Utilities/LogSink.hpp"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace trelvan {

class SimulatedDesktop;

/// The world's screens, windows and pointer.
class SimulatedScreens final : public Screens {
  public:
    explicit SimulatedScreens(SimulatedDesktop& desktop) : desktop_(desktop) {}
    [[nodiscard]] std::span<const BottomLeftRect> frames() const override;
    [[nodiscard]] std::span<const OwnWindow> ownWindows() const override;
    [[nodiscard]] BottomLeftPoint pointerLocation() const override;
    [[nodiscard]] std::string_view frontmostApplication() const override;

  private:
    SimulatedDesktop& desktop_;
    mutable std::vector<OwnWindow> withOverlay_;
};

/// In use, until the world says otherwise.
class SimulatedSession final : public SessionState {
  public:
    void change(bool locked, bool active) { update(locked, active); }
};

/// The world's defaults, in memory.
class SimulatedDefaults final : public UserDefaults {
  public:
    explicit SimulatedDefaults(SimulatedDesktop& desktop) : desktop_(desktop) {}
    [[nodiscard]] std::optional<DefaultsValue> object(std::string_view key) const override;
    void set(std::string_view key, DefaultsValue value) override;
    void setLazily(std::string_view key, Maker make) override;
    void remove(std::string_view key) override;
    [[nodiscard]] std::optional<std::string> putAside(std::string_view key, const Data& data) override;

  private:
    SimulatedDesktop& desktop_;
};

/// The world's disk; opening is told to the trace.
class SimulatedWorkspace final : public Workspace {
  public:
    explicit SimulatedWorkspace(SimulatedDesktop& desktop) : desktop_(desktop) {}
    [[nodiscard]] std::string homeDirectory() const override { return "/Users/me"; }
    [[nodiscard]] bool exists(std::string_view path) const override;
    [[nodiscard]] std::optional<std::string> applicationPath(
        std::string_view bundleIdentifier) const override;
    [[nodiscard]] std::optional<std::string> applicationIcon(std::string_view /*path*/) const override {
        return std::nullopt;
    }
    void openApplication(std::string_view path) override;
    void openInFront(std::string_view path, std::function<void()> inFront) override;
    void openFolder(std::string_view path) override;
    void openUrl(std::string_view url) override;
    void reveal(std::string_view folder) override;

    /// Another application is in front.
    void frontmostChanged();

  private:
    SimulatedDesktop& desktop_;
    /// The bundle that is waited for, and what for; none: nothing is.
    std::string awaitedBundle_;
    std::function<void()> inFront_;
    std::unique_ptr<Timers::Timer> timeout_;
};

/// Trust as the world says; the prompt is told to the trace.
class SimulatedTrust final : public AccessibilityTrust {
  public:
    explicit SimulatedTrust(SimulatedDesktop& desktop) : desktop_(desktop) {}
    [[nodiscard]] bool isTrusted() override;
    [[nodiscard]] bool requestTrust() override;

  private:
    SimulatedDesktop& desktop_;
};

/// Tells scripts to the trace and runs nothing.
class SimulatedScripts final : public ScriptRunner {
  public:
    explicit SimulatedScripts(SimulatedDesktop& desktop) : desktop_(desktop) {}
    [[nodiscard]] ScriptResult run(std::string_view source) override;

  private:
    SimulatedDesktop& desktop_;
};

/// The world's symbolic hot keys.
class SimulatedHotKeys final : public HotKeyTable {
  public:
    explicit SimulatedHotKeys(SimulatedDesktop& desktop) : desktop_(desktop) {}
    [[nodiscard]] std::optional<HotKeyEntry> entry(int id) const override;

  private:
    SimulatedDesktop& desktop_;
};

/// A desktop that can be reached by keys only, unless the world has something to say.
class SimulatedViews final : public SystemViews {
  public:
    explicit SimulatedViews(SimulatedDesktop& desktop) : desktop_(desktop) {}
    [[nodiscard]] bool show(SystemView view, ByKeys byKeys) override;
    [[nodiscard]] bool moveDesktop(DesktopDirection direction, ByKeys byKeys) override;
    void setMissingObserver(MissingObserver observer) override;
    [[nodiscard]] std::vector<SystemView> offered() const override;

  private:
    SimulatedDesktop& desktop_;
};

/// Tells log lines to the trace.
class SimulatedLog final : public LogSink {
  public:
    explicit SimulatedLog(SimulatedDesktop& desktop) : desktop_(desktop) {}
    void write(const LogRecord& record) override;

  private:
    SimulatedDesktop& desktop_;
};

}  // namespace trelvan
