#pragma once

#include "UI/Components/Accessible.hpp"
#include "UI/Components/Label.hpp"
#include "UI/Components/SymbolIcon.hpp"

#include <QVBoxLayout>
#include <QWidget>
#include <string>

namespace trelvan {

/// A group of settings under one title, on a ground of its own.
class Card final : public QWidget, public AccessibleAs {
  public:
    Card(Look& look, UiText title, std::string symbol, QWidget* parent = nullptr);

    /// Puts something under what is there.
    void add(QWidget* content) { rows_->addWidget(content); }
    void add(QLayout* content) { rows_->addLayout(content); }

    [[nodiscard]] QAccessible::Role accessibleRole() const override { return QAccessible::Grouping; }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    Look& look_;
    UiText title_;
    QVBoxLayout* rows_;
    Subscription follows_;
};

/// A label, one line of help where there is one, and the control that they speak of.
class FormRow final : public QWidget {
  public:
    /// The width of the labels before a row of choices, in points.
    static constexpr int pickerLabelWidth = 150;

    /// The control belongs to the row. With a width of labels it stands right behind the label, else at the
    /// row's end.
    FormRow(Look& look, UiText label, UiText help, QWidget* control, int labelWidth = 0,
            QWidget* parent = nullptr);
};

}  // namespace trelvan
