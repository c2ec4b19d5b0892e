#pragma once

namespace trelvan {

/// How the user wants windows to look. Main thread; the answers are held ready.
class Appearance {
  public:
    virtual ~Appearance() = default;

    /// Whether the desktop asks for dark windows; what the toolkit finds out by itself is not repeated here.
    [[nodiscard]] virtual bool prefersDark() const = 0;
    /// Whether the desktop asks for no animations.
    [[nodiscard]] virtual bool reducesMotion() const = 0;
    /// Whether translucent windows show what is behind them.
    [[nodiscard]] virtual bool composites() const = 0;
};

}  // namespace trelvan
