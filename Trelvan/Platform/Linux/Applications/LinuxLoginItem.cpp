#include "Platform/Linux/Applications/LinuxLoginItem.hpp"

#include "Platform/Linux/Applications/AutostartEntry.hpp"
#include "Platform/Shared/DurableFile.hpp"
#include "Platform/Shared/XdgFolders.hpp"
#include "Utilities/Logger.hpp"

#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFileInfo>
#include <QFileSystemWatcher>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string_view>
#include <utility>

namespace trelvan {

namespace {

constexpr const char* fileName = "/trelvan.desktop";

std::string variable(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr ? value : "";
}

bool isProgram(const std::string& path) {
    struct stat info {};
    return stat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode) && access(path.c_str(), X_OK) == 0;
}

/// Whether the desktop would find the program, by its path or by its name.
bool canBeStarted(const std::string& program) {
    if (program.find('/') != std::string::npos) return program.front() == '/' && isProgram(program);
    for (const auto& folder : colonSeparated(variable("PATH"))) {
        if (isProgram(std::string(folder).append("/").append(program))) return true;
    }
    return false;
}

/// The file that runs.
std::string runningFile() {
    std::array<char, 4096> buffer{};
    const auto length = readlink("/proc/self/exe", buffer.data(), buffer.size());
    std::string program(buffer.data(), length > 0 ? static_cast<std::size_t>(length) : 0);
    // So the kernel calls a file that an update has replaced meanwhile.
    constexpr std::string_view replaced = " (deleted)";
    if (program.ends_with(replaced)) program.resize(program.size() - replaced.size());
    return program;
}

/// The file that starts this program: an AppImage is more than the file inside it that runs. What an AppImage
/// starts inherits these variables from it without being a part of it.
std::string ownProgram() {
    auto program = runningFile();
    auto image = variable("APPIMAGE");
    const auto mounted = variable("APPDIR");
    if (!image.starts_with('/') || !mounted.starts_with('/') || !isProgram(image)) return program;
    std::error_code ignored;
    const auto inside = std::filesystem::path(program).lexically_relative(
        std::filesystem::weakly_canonical(mounted, ignored));
    return inside.empty() || *inside.begin() == ".." ? program : image;
}

/// Watches the folder of the entry, or the nearest one above it that is there.
class FolderWatch final : public LoginItem::Watch {
  public:
    FolderWatch(const std::string& folder, std::function<void()> changed)
        : folder_(QString::fromStdString(folder)), changed_(std::move(changed)) {
        const auto react = [this] {
            follow();
            changed_();
        };
        QObject::connect(&watcher_, &QFileSystemWatcher::directoryChanged, &watcher_, react);
        QObject::connect(&watcher_, &QFileSystemWatcher::fileChanged, &watcher_, react);
        follow();
    }

  private:
    void follow() {
        QString place = folder_;
        while (!QFileInfo(place).isDir() && place != "/") place = QFileInfo(place).path();
        for (const auto& folder : watcher_.directories()) {
            if (folder != place) watcher_.removePath(folder);
        }
        if (!watcher_.directories().contains(place)) watcher_.addPath(place);
        // Written in place, a file changes without a change of its folder.
        const QString file = folder_ + fileName;
        if (QFileInfo::exists(file) && !watcher_.files().contains(file)) watcher_.addPath(file);
    }

    QString folder_;
    std::function<void()> changed_;
    QFileSystemWatcher watcher_;
};

}  // namespace

LinuxLoginItem::Setting LinuxLoginItem::present(std::vector<std::string> arguments) {
    Setting setting;
    setting.folder = configHome() + "/autostart";
    for (const auto& folder : configFolders()) setting.systemFolders.push_back(folder + "/autostart");
    setting.desktops = colonSeparated(currentDesktopNames());
    setting.command = std::move(arguments);
    setting.command.insert(setting.command.begin(), ownProgram());
    return setting;
}

LinuxLoginItem::LinuxLoginItem(Setting setting) : setting_(std::move(setting)) {
    followMove();
}

std::string LinuxLoginItem::path() const {
    return setting_.folder + fileName;
}

std::optional<std::string> LinuxLoginItem::systemEntry() const {
    for (const auto& folder : setting_.systemFolders) {
        if (folder == setting_.folder) continue;
        if (auto content = readFile(folder + fileName); content.bytes) return std::move(content.bytes);
    }
    return std::nullopt;
}

std::optional<std::string> LinuxLoginItem::entry() const {
    auto own = readFile(path());
    // A file that is there hides those of the system, also when it cannot be read.
    return own.missing ? systemEntry() : std::move(own.bytes);
}

LoginItem::Status LinuxLoginItem::status() {
    const auto text = entry();
    if (!text) return Status::notRegistered;
    const auto reading = autostart::read(*text, setting_.desktops);
    if (!reading.isWanted) return Status::notRegistered;
    const bool starts =
        canBeStarted(reading.program) && (reading.required.empty() || canBeStarted(reading.required));
    return starts ? Status::enabled : Status::notFound;
}

std::optional<std::string> LinuxLoginItem::registerItem() {
    const auto error = replaceFile(path(), autostart::entryFor(setting_.command));
    return error ? std::optional(path() + ": " + *error) : std::nullopt;
}

std::optional<std::string> LinuxLoginItem::unregisterItem() {
    if (unlink(path().c_str()) != 0 && errno != ENOENT) return path() + ": " + std::strerror(errno);
    const auto shared = systemEntry();
    if (!shared || !autostart::read(*shared, setting_.desktops).isWanted) return std::nullopt;
    // Only an entry of the user's own takes back what the system starts for everybody.
    const auto error = replaceFile(path(), "[Desktop Entry]\nType=Application\nName=Trelvan\nHidden=true\n");
    return error ? std::optional(path() + ": " + *error) : std::nullopt;
}

void LinuxLoginItem::followMove() {
    const auto own = readFile(path());
    if (!own.bytes || setting_.command.front().empty()) return;
    const auto reading = autostart::read(*own.bytes, setting_.desktops);
    if (!reading.program.starts_with('/') || isProgram(reading.program)) return;
    if (const auto error =
            replaceFile(path(), autostart::withProgram(*own.bytes, setting_.command.front()))) {
        AppLogger.warning(InlineText("No se pudo actualizar ", path(), ": ", *error));
    }
}

std::unique_ptr<LoginItem::Watch> LinuxLoginItem::watch(std::function<void()> changed) {
    return std::make_unique<FolderWatch>(setting_.folder, std::move(changed));
}

}  // namespace trelvan
