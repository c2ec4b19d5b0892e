#pragma once

#include "Core/Model/AppLanguage.hpp"
#include "UI/Components/Theme.hpp"
#include "Utilities/Published.hpp"

#include <QString>
#include <functional>
#include <string_view>
#include <utility>

namespace trelvan {

[[nodiscard]] inline QString qtText(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

/// A text of the interface in both languages.
struct UiText {
    QString english;
    QString spanish;

    UiText() = default;
    UiText(TextPair pair)  // NOLINT(google-explicit-constructor): a text is written as its pair
        : english(qtText(pair.english)), spanish(qtText(pair.spanish)) {}
    UiText(QString inEnglish, QString inSpanish)
        : english(std::move(inEnglish)), spanish(std::move(inSpanish)) {}
    /// One that is the same in both, such as a name.
    [[nodiscard]] static UiText same(const QString& text) { return {text, text}; }

    [[nodiscard]] const QString& in(AppLanguage language) const {
        return language == AppLanguage::spanish ? spanish : english;
    }
    [[nodiscard]] bool isEmpty() const { return english.isEmpty() && spanish.isEmpty(); }
};

/// Theme, language and motion of one window; its components follow it. It outlives them. Main thread.
class Look {
  public:
    Look() : theme_(Theme::light()) {}
    Look(const Look&) = delete;
    Look& operator=(const Look&) = delete;

    [[nodiscard]] const Theme& theme() const { return theme_; }
    [[nodiscard]] AppLanguage language() const { return language_; }
    [[nodiscard]] bool isAnimated() const { return isAnimated_; }
    [[nodiscard]] const QString& text(const UiText& text) const { return text.in(language_); }

    void set(const Theme& theme, AppLanguage language, bool isAnimated) {
        theme_ = theme;
        language_ = language;
        isAnimated_ = isAnimated;
        changed_ = true;
    }

    /// Calls the function now, and again after each change.
    [[nodiscard]] Subscription follow(std::function<void()> apply) {
        apply();
        return changed_.observe([apply = std::move(apply)](bool /*changed*/) { apply(); });
    }

  private:
    Theme theme_;
    AppLanguage language_ = AppLanguage::english;
    bool isAnimated_ = false;
    Published<bool> changed_{false};
};

}  // namespace trelvan
