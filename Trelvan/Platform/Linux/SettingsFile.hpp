#pragma once

#include "Platform/Linux/SettingsJson.hpp"
#include "Platform/UserDefaults.hpp"

#include <functional>
#include <memory>

namespace trelvan {

/// The user's settings in one JSON file, replaced whole at each change. Main thread.
///
/// A file that cannot be understood is copied aside before anything is written, and one that cannot even be
/// read is never replaced.
class SettingsFile : public UserDefaults {
  public:
    /// Puts a job in to run soon; changes made until then are written together.
    using Later = std::function<void(std::function<void()>)>;

    /// `folder` need not exist yet. Without `later` each change is written at once.
    explicit SettingsFile(std::string folder, Later later = nullptr);
    SettingsFile(const SettingsFile&) = delete;
    SettingsFile& operator=(const SettingsFile&) = delete;
    ~SettingsFile() override;

    /// $XDG_CONFIG_HOME/trelvan, or ~/.config/trelvan where that is not set to an absolute path.
    [[nodiscard]] static std::string defaultFolder();

    [[nodiscard]] std::optional<DefaultsValue> object(std::string_view key) const override;
    void set(std::string_view key, DefaultsValue value) override;
    void remove(std::string_view key) override;
    [[nodiscard]] std::optional<std::string> putAside(std::string_view key, const Data& data) override;

    /// Writes what has changed; true when the file is up to date afterwards.
    bool flush();

  private:
    void load();
    void keepDamaged(const std::string& bytes, const std::string& place);
    void changed();

    std::string folder_;
    std::string path_;
    Later later_;
    SettingsValues values_;
    bool dirty_ = false;
    /// The file holds something that was not understood and is nowhere else.
    bool irreplaceable_ = false;
    /// Ends with this object, so that a write put in before does not outlive it.
    std::shared_ptr<SettingsFile*> alive_ = std::make_shared<SettingsFile*>(this);
    bool scheduled_ = false;
};

}  // namespace trelvan
