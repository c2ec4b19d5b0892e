#pragma once

#include "Platform/RunLoop.hpp"

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace trelvan {

/// Applications, folders and addresses of the desktop. Any thread; opening returns at once, with no feedback.
class Workspace {
  public:
    /// How long an application that was opened may take to come to the front.
    static constexpr Seconds focusTimeout{5.0};

    virtual ~Workspace() = default;

    /// The user's home folder, absolute.
    [[nodiscard]] virtual std::string homeDirectory() const = 0;
    /// Whether something exists at the path.
    [[nodiscard]] virtual bool exists(std::string_view path) const = 0;
    /// Where the application with the bundle identifier is; none when it is not installed. A platform without
    /// bundle identifiers knows those the core asks for as roles.
    [[nodiscard]] virtual std::optional<std::string> applicationPath(
        std::string_view bundleIdentifier) const = 0;

    /// The icon of the application at the path: a name in the icon theme, or the path of an image. None where
    /// it has none of its own.
    [[nodiscard]] virtual std::optional<std::string> applicationIcon(std::string_view path) const = 0;

    virtual void openApplication(std::string_view path) = 0;
    /// Starts or raises the application and calls `inFront` on the main thread once it has the keyboard
    /// focus, so that what is typed then reaches it and nobody else. Where it does not get the focus within
    /// `focusTimeout` the call is left out, and the log says so; a further call takes the place of one that
    /// still waits.
    virtual void openInFront(std::string_view path, std::function<void()> inFront) = 0;
    virtual void openFolder(std::string_view path) = 0;
    virtual void openUrl(std::string_view url) = 0;
    /// Shows a file browser rooted at the folder, with nothing selected.
    virtual void reveal(std::string_view folder) = 0;
};

}  // namespace trelvan
