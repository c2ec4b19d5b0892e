#pragma once

#include "UI/Panels/PanelHost.hpp"

#include <QWidget>

namespace trelvan {

class Segmented;

/// The System tab: how the window looks, and in which language.
class SystemPanel final : public QWidget {
  public:
    explicit SystemPanel(PanelHost& host);

  private:
    void showSettings();

    InterfaceSettings& settings_;
    Segmented* theme_;
    Segmented* language_;
    Subscription changes_;
};

}  // namespace trelvan
