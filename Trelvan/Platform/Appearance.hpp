#pragma once

#include "Utilities/Published.hpp"

#include <functional>
#include <optional>
#include <utility>

namespace trelvan {

/// A colour by its parts, each 0 to 1.
struct Rgb {
    double red = 0;
    double green = 0;
    double blue = 0;
    friend bool operator==(const Rgb&, const Rgb&) = default;
};

/// How the user wants windows to look. Main thread; the answers are held ready.
class Appearance {
  public:
    Appearance() = default;
    Appearance(const Appearance&) = delete;
    Appearance& operator=(const Appearance&) = delete;
    virtual ~Appearance() = default;

    /// Whether the desktop asks for dark windows; what the toolkit finds out by itself is not repeated here.
    [[nodiscard]] virtual bool prefersDark() const = 0;
    /// Whether the desktop asks for no animations.
    [[nodiscard]] virtual bool reducesMotion() const = 0;
    /// Whether translucent windows show what is behind them.
    [[nodiscard]] virtual bool composites() const = 0;
    /// The colour in which the desktop marks what is chosen; none where it does not tell.
    [[nodiscard]] virtual std::optional<Rgb> accentColor() const { return std::nullopt; }

    /// Calls the function after one of the answers has changed, but for `composites`, which is asked when it
    /// matters.
    [[nodiscard]] Subscription observe(std::function<void()> changed) const {
        return changed_.observe([changed = std::move(changed)](bool /*told*/) { changed(); });
    }

  protected:
    /// For the platform: an answer is another one now.
    void tellChange() { changed_ = true; }

  private:
    mutable Published<bool> changed_{false};
};

}  // namespace trelvan
