#pragma once

#include "Platform/Shared/SettingsJson.hpp"
#include "Platform/UserDefaults.hpp"
#include "Utilities/LifetimeToken.hpp"

#include <functional>

namespace trelvan {

/// The user's settings in one JSON file, replaced whole at each change. Main thread.
///
/// Other programs may write the file as well. What they changed since it was last read or written here, key
/// by key, is taken in before it is replaced, under a lock on its folder. Where both changed the same key the
/// value set here holds, and their text is copied aside. A file that cannot be understood is copied aside
/// before it is replaced, and one that cannot even be read is never replaced.
class SettingsFile : public UserDefaults {
  public:
    /// Puts a job in to run soon; changes made until then are written together.
    using Later = std::function<void(std::function<void()>)>;

    /// `folder` need not exist yet. Without `later` each change is written at once.
    explicit SettingsFile(std::string folder, Later later = nullptr);
    ~SettingsFile() override;

    /// $XDG_CONFIG_HOME/trelvan, or ~/.config/trelvan where that is not set to an absolute path.
    [[nodiscard]] static std::string defaultFolder();

    [[nodiscard]] std::optional<DefaultsValue> object(std::string_view key) const override;
    void set(std::string_view key, DefaultsValue value) override;
    void remove(std::string_view key) override;
    [[nodiscard]] std::optional<std::string> putAside(std::string_view key, const Data& data) override;
    [[nodiscard]] std::optional<SettingsPlace> locate(std::string_view key,
                                                      std::string_view path) const override;

    /// Writes what has changed; true when the file is up to date afterwards. What was taken in from others on
    /// the way is told at the next `reload`.
    bool flush();

    /// Takes in what another program has written, and tells the observers. What it has left damaged is
    /// reported, and nothing changes.
    void reload();

    [[nodiscard]] const std::string& path() const { return path_; }

    /// Called when a change could not be written because another program holds the lock: worth another
    /// `flush` after a while.
    std::function<void()> onPostponed;

  private:
    bool takeIn(const std::string& text);
    void merge(const SettingsValues& theirs, const std::string& text);
    void report(const std::string& text, const SettingsDamage& damage);
    [[nodiscard]] bool keepDamaged(const std::string& text);
    [[nodiscard]] bool write();
    void tell();
    void changed();

    std::string folder_;
    std::string path_;
    Later later_;
    /// What is in force.
    SettingsValues values_;
    /// What the file held when it was last read or written here.
    SettingsValues base_;
    std::string text_;
    /// The content that could not be understood last, and whether a copy of it was made.
    std::string damaged_;
    bool damageIsKept_ = false;
    bool dirty_ = false;
    Keys untold_;
    bool scheduled_ = false;
    /// Last, for a write that was put off.
    LifetimeToken lifetime_;
};

}  // namespace trelvan
