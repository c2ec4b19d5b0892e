#pragma once

#include "UI/Components/Look.hpp"

#include <QLineEdit>

namespace trelvan {

/// A field for one line of text; the toolkit's own in the window's form.
class TextField final : public QLineEdit {
  public:
    /// `name` is its accessible name, `placeholder` what an empty field shows.
    TextField(Look& look, UiText name, UiText placeholder, QWidget* parent = nullptr);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    Look& look_;
    UiText name_;
    UiText placeholder_;
    Subscription follows_;
};

}  // namespace trelvan
