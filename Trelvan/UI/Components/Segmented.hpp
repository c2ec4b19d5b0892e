#pragma once

#include "UI/Components/Look.hpp"

#include <QRadioButton>
#include <QWidget>
#include <functional>
#include <vector>

namespace trelvan {

/// A few choices side by side, of which one holds. The arrow keys go through them.
class Segmented final : public QWidget {
  public:
    Segmented(Look& look, UiText name, const std::vector<UiText>& choices, QWidget* parent = nullptr);

    /// Told of what the user chooses, not of `select`.
    std::function<void(int choice)> onSelect;

    /// Shows the choice without telling anybody; none of them for -1.
    void select(int choice);
    [[nodiscard]] int selected() const;
    /// The segments, in order.
    [[nodiscard]] const std::vector<QRadioButton*>& segments() const { return segments_; }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    class Segment;

    Look& look_;
    UiText name_;
    std::vector<QRadioButton*> segments_;
    Subscription follows_;
};

}  // namespace trelvan
