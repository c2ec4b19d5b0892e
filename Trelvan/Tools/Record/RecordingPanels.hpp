#pragma once

#include "Core/SmartButtonPanels.hpp"
#include "Tools/Record/Recorder.hpp"

#include <memory>

namespace trelvan {

/// The real windows of the radial menu, with what is done in the menu written into a recording: clicks and
/// keys inside it never reach the tap as such. Main thread.
class RecordingPanels final : public SmartButtonPanels {
  public:
    /// Both must outlive this.
    RecordingPanels(SmartButtonPanels& panels, Recorder& recorder) : panels_(panels), recorder_(recorder) {}

    [[nodiscard]] std::unique_ptr<Panel> showOverlay(SmartButtonRadialView view) override;
    void activate() override { panels_.activate(); }
    [[nodiscard]] std::unique_ptr<Editor> makeEditor() override { return panels_.makeEditor(); }

  private:
    SmartButtonPanels& panels_;
    Recorder& recorder_;
};

}  // namespace trelvan
