#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace trelvan {

/// Applications, folders and addresses of the desktop. Any thread; opening returns at once, with no feedback.
class Workspace {
  public:
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
    virtual void openFolder(std::string_view path) = 0;
    virtual void openUrl(std::string_view url) = 0;
    /// Shows a file browser rooted at the folder, with nothing selected.
    virtual void reveal(std::string_view folder) = 0;
};

}  // namespace trelvan
