#pragma once

#include "Platform/Shared/Descriptor.hpp"
#include "Platform/Shared/SettingsFile.hpp"

#include <QSocketNotifier>
#include <QTimer>
#include <map>
#include <memory>
#include <set>
#include <string>

namespace trelvan {

/// Has the settings file read again after another program wrote it: in place, by a new file in its place,
/// through any of the links that lead to it, and also where its folder comes later. Costs nothing in between.
/// Main thread, in Qt's event loop; the file outlives it.
class SettingsWatch {
  public:
    explicit SettingsWatch(SettingsFile& file);
    SettingsWatch(const SettingsWatch&) = delete;
    SettingsWatch& operator=(const SettingsWatch&) = delete;
    ~SettingsWatch();

  private:
    using Names = std::set<std::string>;

    [[nodiscard]] std::map<std::string, Names> wanted() const;
    void follow();
    void drain();
    void look();

    SettingsFile& file_;
    Descriptor inotify_;
    /// By watch descriptor: the names in the folder that lead to the file.
    std::map<int, Names> names_;
    std::map<int, std::string> folders_;
    std::unique_ptr<QSocketNotifier> notifier_;
    /// Some programs write in several steps; they are read together.
    QTimer soon_;
    QTimer again_;
};

}  // namespace trelvan
