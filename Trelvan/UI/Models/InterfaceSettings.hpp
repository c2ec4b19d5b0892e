#pragma once

#include "Core/Model/AppLanguage.hpp"
#include "Core/Model/RawRepresentable.hpp"
#include "Platform/UserDefaults.hpp"
#include "Utilities/Published.hpp"

#include <array>
#include <functional>
#include <string>
#include <string_view>

namespace trelvan {

/// How windows look; stored by its raw value.
enum class AppTheme { system, light, dark };

template <>
struct RawValueTable<AppTheme> {
    static constexpr std::string_view noun = "a theme";
    static constexpr std::array<std::string_view, 3> rawValues{"System", "Light", "Dark"};
};

/// A window's size in points.
struct WindowSize {
    double width = 0;
    double height = 0;
    friend bool operator==(const WindowSize&, const WindowSize&) = default;
};

/// The settings of the window itself. Main thread; the defaults outlive it.
class InterfaceSettings {
  public:
    static constexpr WindowSize smallestWindow{780, 860};

    explicit InterfaceSettings(UserDefaults& defaults);

    /// English for anything that is no language.
    [[nodiscard]] AppLanguage language() const;
    /// "System" for anything that is no theme.
    [[nodiscard]] AppTheme theme() const;
    void setLanguage(AppLanguage language);
    void setTheme(AppTheme theme);

    /// The window's size as it was left, at least `smallestWindow`.
    [[nodiscard]] WindowSize windowSize() const;
    void setWindowSize(WindowSize size);

    /// Calls the function after language or theme have changed, by whomever.
    [[nodiscard]] Subscription observe(std::function<void()> changed);

  private:
    void store(std::string_view key, std::string_view rawValue);

    UserDefaults& defaults_;
    Published<bool> changed_{false};
    Subscription outsideChange_;
};

}  // namespace trelvan
