#include "Platform/Linux/Session/SettingsWatch.hpp"

#include "Utilities/Logger.hpp"

#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstddef>
#include <cstring>
#include <filesystem>

namespace trelvan {

namespace {

namespace fs = std::filesystem;

constexpr int settleMilliseconds = 50;
constexpr int againMilliseconds = 500;
constexpr int maxLinks = 40;
/// Closed after writing, put in place, linked, made readable, or the folder itself is gone.
constexpr std::uint32_t interesting =
    IN_CLOSE_WRITE | IN_MOVED_TO | IN_CREATE | IN_ATTRIB | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;

/// Whether a file was only opened for the first time: its content comes later, and with it another event.
bool isBeingMade(const inotify_event& event, const std::string& folder) {
    if ((event.mask & IN_CREATE) == 0) return false;
    struct stat info {};
    return lstat((folder + "/" + event.name).c_str(), &info) == 0 && S_ISREG(info.st_mode) &&
           info.st_nlink == 1;
}

}  // namespace

SettingsWatch::SettingsWatch(SettingsFile& file)
    : file_(file), inotify_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
    if (!inotify_.isOpen()) {
        AppLogger.warning(
            "No se pueden vigilar los ajustes: los cambios hechos en el archivo valdrán al reiniciar");
        return;
    }
    soon_.setSingleShot(true);
    again_.setSingleShot(true);
    QObject::connect(&soon_, &QTimer::timeout, &soon_, [this] { look(); });
    QObject::connect(&again_, &QTimer::timeout, &again_, [this] { file_.flush(); });
    file_.onPostponed = [this] { again_.start(againMilliseconds); };
    notifier_ = std::make_unique<QSocketNotifier>(inotify_.number(), QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(), [this] { drain(); });
    follow();
}

SettingsWatch::~SettingsWatch() {
    file_.onPostponed = nullptr;
}

/// The folders on the way to the file, and for a missing one the nearest above it, each with the name that
/// leads on.
std::map<std::string, SettingsWatch::Names> SettingsWatch::wanted() const {
    std::map<std::string, Names> result;
    std::error_code ignored;
    fs::path path = fs::absolute(file_.path(), ignored);
    for (int links = 0; links < maxLinks; ++links) {
        fs::path folder = path.parent_path();
        fs::path name = path.filename();
        while (!fs::is_directory(folder, ignored) && folder.has_relative_path()) {
            name = folder.filename();
            folder = folder.parent_path();
        }
        result[folder.string()].insert(name.string());
        const auto target = fs::read_symlink(path, ignored);
        if (ignored) break;
        path = path.parent_path() / target;
    }
    return result;
}

void SettingsWatch::follow() {
    std::map<int, Names> names;
    std::map<int, std::string> folders;
    for (auto& [folder, wantedNames] : wanted()) {
        const int watch = inotify_add_watch(inotify_.number(), folder.c_str(), interesting);
        if (watch < 0) continue;
        names[watch].insert(wantedNames.begin(), wantedNames.end());
        folders[watch] = folder;
    }
    for (const auto& [watch, folder] : folders_) {
        if (!folders.contains(watch)) inotify_rm_watch(inotify_.number(), watch);
    }
    names_ = std::move(names);
    folders_ = std::move(folders);
}

void SettingsWatch::drain() {
    alignas(inotify_event) std::array<char, 16384> buffer{};
    bool isOurs = false;
    for (;;) {
        const auto length = read(inotify_.number(), buffer.data(), buffer.size());
        if (length <= 0) break;
        for (std::size_t at = 0; at < static_cast<std::size_t>(length);) {
            inotify_event event{};
            std::memcpy(&event, buffer.data() + at, sizeof event);
            const auto* whole = reinterpret_cast<const inotify_event*>(buffer.data() + at);
            at += sizeof event + event.len;
            // The queue overflowed, or the folder itself is gone.
            if ((event.mask & (IN_Q_OVERFLOW | IN_DELETE_SELF | IN_MOVE_SELF)) != 0) isOurs = true;
            const auto names = names_.find(event.wd);
            if (names == names_.end() || event.len == 0 || !names->second.contains(whole->name)) continue;
            isOurs = isOurs || !isBeingMade(*whole, folders_[event.wd]);
        }
    }
    if (isOurs) soon_.start(settleMilliseconds);
}

void SettingsWatch::look() {
    follow();
    file_.reload();
}

}  // namespace trelvan
