#pragma once

#include "UI/Components/Buttons.hpp"
#include "UI/Components/Label.hpp"

#include <QWidget>
#include <functional>
#include <string>

namespace trelvan {

/// Stands where there is nothing to show: a symbol, a sentence that says why, and the action that ends it
/// where there is one.
class EmptyState final : public QWidget {
  public:
    EmptyState(Look& look, std::string symbol, UiText sentence, UiText action = {},
               std::function<void()> onAction = {}, QWidget* parent = nullptr);
};

}  // namespace trelvan
