#pragma once

#include "Core/SmartButtonPanels.hpp"
#include "Platform/Simulated/SimulatedDesktop.hpp"

#include <memory>
#include <string>

namespace trelvan {

/// The radial menu's windows on the simulated desktop: what they show goes into the trace.
class SimulatedMenu final : public SmartButtonPanels {
  public:
    explicit SimulatedMenu(SimulatedDesktop& desktop) : desktop_(desktop) {}

    /// What the open menu shows; null while none is open.
    [[nodiscard]] std::shared_ptr<const SmartButtonRadialView> view() const { return view_.lock(); }
    /// The menu as a trace has it.
    [[nodiscard]] trace::Menu state() const;

    [[nodiscard]] std::unique_ptr<Panel> showOverlay(SmartButtonRadialView view) override;
    void activate() override;
    [[nodiscard]] std::unique_ptr<Editor> makeEditor() override;

  private:
    class Overlay;

    SimulatedDesktop& desktop_;
    std::weak_ptr<const SmartButtonRadialView> view_;
};

/// The menu's centre as JSON, [x, y].
[[nodiscard]] std::string menuCentre(const trace::Menu& menu);
/// Its entries as JSON: a list of {"name", "x", "y"}.
[[nodiscard]] std::string menuEntries(const trace::Menu& menu);
/// The whole as one object, with the keys of a trace line.
[[nodiscard]] std::string menuState(const trace::Menu& menu);

}  // namespace trelvan
