#pragma once

#include "UI/Components/Accessible.hpp"
#include "UI/Components/Look.hpp"

#include <QPushButton>
#include <functional>
#include <string>

namespace trelvan {

/// What every button of the window shares: it follows the look, is lit under the pointer and ringed with the
/// keyboard, and calls a function.
class ComponentButton : public QPushButton, public AccessibleAs {
  public:
    std::function<void()> onClick;

    [[nodiscard]] QAccessible::Role accessibleRole() const override {
        return isCheckable() ? QAccessible::CheckBox : QAccessible::Button;
    }
    void setText(UiText text);
    [[nodiscard]] const QString& shownText() const { return look_.text(text_); }

    /// For tests and layouts alike: the symbol it shows; empty for none.
    [[nodiscard]] const std::string& symbol() const { return symbol_; }
    void setSymbol(std::string symbol);

  protected:
    ComponentButton(Look& look, UiText text, std::string symbol, QWidget* parent);

    /// Language or theme changed.
    virtual void apply();
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

    [[nodiscard]] const Look& look() const { return look_; }
    [[nodiscard]] const Theme& theme() const { return look_.theme(); }
    [[nodiscard]] bool isHovered() const { return isHovered_ && isEnabled(); }
    /// Whether it has the keyboard and got it by the keyboard.
    [[nodiscard]] bool isRinged() const { return hasFocus() && isRinged_; }

  private:
    Look& look_;
    UiText text_;
    std::string symbol_;
    bool isHovered_ = false;
    bool isRinged_ = false;
    Subscription follows_;
};

/// A button with a text, and a symbol before it where one is given.
class TextButton final : public ComponentButton {
  public:
    enum class Kind { normal, primary, danger, plain };

    TextButton(Look& look, UiText text, Kind kind = Kind::normal, std::string symbol = {},
               QWidget* parent = nullptr);

    /// A symbol behind the text, such as the arrow of a menu.
    void setTrailingSymbol(std::string symbol) { trailing_ = std::move(symbol); }
    /// A longer text leaves out its middle and is whole in the tooltip; in points.
    void setLongestText(int width) { longestText_ = width; }

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    void apply() override;
    void paintEvent(QPaintEvent* event) override;

  private:
    [[nodiscard]] QColor ground() const;
    [[nodiscard]] QColor textColor() const;
    [[nodiscard]] int textWidth() const;

    Kind kind_;
    std::string trailing_;
    int longestText_ = 10'000;
};

/// A button that is only a symbol; its text is its tooltip and its accessible name.
class IconButton final : public ComponentButton {
  public:
    IconButton(Look& look, UiText text, std::string symbol, QWidget* parent = nullptr);

  protected:
    void apply() override;
    void paintEvent(QPaintEvent* event) override;
};

/// A small round-ended button: one that adds something, or one of several filters that can be on.
class Chip final : public ComponentButton {
  public:
    Chip(Look& look, UiText text, std::string symbol = {}, QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    void apply() override;
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace trelvan
