#pragma once

#include "Platform/LoginItem.hpp"

#include <optional>
#include <string>
#include <vector>

namespace trelvan {

/// The login item as an XDG autostart entry, which also other programs edit. Main thread.
class LinuxLoginItem final : public LoginItem {
  public:
    /// Where entries are, and what is registered.
    struct Setting {
        /// The user's autostart folder.
        std::string folder;
        /// The system's autostart folders, most important first.
        std::vector<std::string> systemFolders;
        /// The running desktop's names.
        std::vector<std::string> desktops;
        /// Program (absolute path) and arguments.
        std::vector<std::string> command;
    };
    /// As the environment says, for a program that was started with these arguments.
    [[nodiscard]] static Setting present(std::vector<std::string> arguments);

    /// Where this program registered itself and was moved since, its entry is brought to the new place.
    explicit LinuxLoginItem(Setting setting);

    [[nodiscard]] Status status() override;
    [[nodiscard]] std::optional<std::string> registerItem() override;
    [[nodiscard]] std::optional<std::string> unregisterItem() override;
    [[nodiscard]] std::unique_ptr<Watch> watch(std::function<void()> changed) override;

  private:
    [[nodiscard]] std::string path() const;
    /// The text of the entry that counts: the user's, else the first of the system's.
    [[nodiscard]] std::optional<std::string> entry() const;
    [[nodiscard]] std::optional<std::string> systemEntry() const;
    void followMove();

    Setting setting_;
};

}  // namespace trelvan
