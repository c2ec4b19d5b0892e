#include "Platform/Linux/Shell/LinuxHotKeys.hpp"

#include "Platform/Platform.hpp"
#include "Platform/Shared/DurableFile.hpp"
#include "Platform/Shared/XdgFolders.hpp"
#include "Utilities/Logger.hpp"

#include <sys/stat.h>
#include <xkbcommon/xkbcommon.h>

#include <QFileSystemWatcher>
#include <QProcess>
#include <array>
#include <cctype>
#include <cstdlib>
#include <utility>

namespace trelvan {

namespace {

/// A settings program writes a file several times in a row.
constexpr Seconds settlingTime{0.5};

/// The files that hold the desktop's shortcuts, or that change with them; the first that exists counts.
std::vector<std::string> filesOf(DesktopKind desktop) {
    constexpr std::string_view xfceChannel = "/xfce4/xfconf/xfce-perchannel-xml/xfce4-keyboard-shortcuts.xml";
    std::vector<std::string> files;
    switch (desktop) {
        case DesktopKind::gnome:
        case DesktopKind::cinnamon:
        case DesktopKind::mate:
            files.push_back(configHome() + "/dconf/user");
            break;
        case DesktopKind::kde:
            files.push_back(configHome() + "/kglobalshortcutsrc");
            break;
        case DesktopKind::xfce:
            files.push_back(configHome().append(xfceChannel));
            for (auto& folder : configFolders()) files.push_back(folder.append(xfceChannel));
            break;
        case DesktopKind::other:
            break;
    }
    return files;
}

std::string firstContent(const std::vector<std::string>& files) {
    for (const auto& file : files) {
        auto content = readFile(file);
        if (content.bytes) return std::move(*content.bytes);
    }
    return {};
}

/// When the file was last written, its size and its identity; all 0 when it is not there.
using Stamp = std::vector<long long>;
Stamp stampOf(const std::string& path) {
    struct stat info {};
    if (stat(path.c_str(), &info) != 0) return {};
    return {static_cast<long long>(info.st_ino), static_cast<long long>(info.st_size),
            static_cast<long long>(info.st_mtim.tv_sec), static_cast<long long>(info.st_mtim.tv_nsec)};
}

/// The entry's first parameter: the sign that the key types, or that it types none.
std::int64_t characterOf(unsigned long keysym) {
    constexpr std::int64_t noCharacter = 65535;
    return keysym < 0x100 ? static_cast<std::int64_t>(keysym) : noCharacter;
}

}  // namespace

/// What Qt watches and runs.
struct LinuxHotKeys::Reading {
    QFileSystemWatcher watcher;
    Stamp stamp;
    std::unique_ptr<Timers::Timer> settling;
    /// The schemas still to be asked for, and what the others said.
    std::vector<std::string_view> schemas;
    std::string settings;
    std::unique_ptr<QProcess> process;
    bool reported = false;
};

LinuxHotKeys::LinuxHotKeys(DesktopKind desktop, Timers& timers, KeyFor keyFor)
    : desktop_(desktop),
      timers_(timers),
      keyFor_(std::move(keyFor)),
      files_(filesOf(desktop)),
      reading_(std::make_unique<Reading>()) {
    if (files_.empty()) return;
    const auto changed = [this] {
        watch();
        if (stampOf(files_.front()) == reading_->stamp) return;
        reading_->settling = timers_.once(settlingTime, [this] { read(); });
    };
    QObject::connect(&reading_->watcher, &QFileSystemWatcher::fileChanged, &reading_->watcher, changed);
    QObject::connect(&reading_->watcher, &QFileSystemWatcher::directoryChanged, &reading_->watcher, changed);
    watch();
    read();
}

LinuxHotKeys::~LinuxHotKeys() {
    if (reading_->process) reading_->process->disconnect();
}

/// A file that is replaced falls out of the watch, and its folder tells of the new one.
void LinuxHotKeys::watch() {
    const auto& file = files_.front();
    for (const auto& path : {file, file.substr(0, file.rfind('/'))}) {
        struct stat info {};
        const auto name = QString::fromStdString(path);
        const auto& watcher = reading_->watcher;
        if (watcher.files().contains(name) || watcher.directories().contains(name)) continue;
        if (stat(path.c_str(), &info) == 0) reading_->watcher.addPath(name);
    }
}

void LinuxHotKeys::read() {
    reading_->stamp = stampOf(files_.front());
    switch (desktop_) {
        case DesktopKind::kde:
            return take(readKdeShortcuts(firstContent(files_)));
        case DesktopKind::xfce:
            return take(readXfceShortcuts(firstContent(files_)));
        default:
            break;
    }
    reading_->schemas = shortcutSchemas(desktop_);
    reading_->settings.clear();
    readSettings();
}

/// Asks for one schema after the other: the program takes one at a time, and fails for one that is not
/// installed.
void LinuxHotKeys::readSettings() {
    if (reading_->schemas.empty()) return take(readSettingsList(reading_->settings, desktop_));
    const auto schema = QString::fromUtf8(reading_->schemas.back().data(),
                                          static_cast<qsizetype>(reading_->schemas.back().size()));
    reading_->schemas.pop_back();
    auto* process = new QProcess;
    // It may be replaced from one of its own signals.
    if (auto* last = reading_->process.release()) {
        last->disconnect();
        last->deleteLater();
    }
    reading_->process.reset(process);
    QObject::connect(process, &QProcess::finished, process, [this, process] {
        reading_->settings += process->readAllStandardOutput().toStdString() + "\n";
        readSettings();
    });
    QObject::connect(process, &QProcess::errorOccurred, process, [this](QProcess::ProcessError error) {
        if (error != QProcess::FailedToStart || std::exchange(reading_->reported, true)) return;
        AppLogger.warning("Sin el programa gsettings no se conocen los atajos del escritorio");
    });
    process->start("gsettings", {"list-recursively", schema}, QIODevice::ReadOnly);
}

void LinuxHotKeys::take(ShortcutTable table) {
    AppLogger.debug(InlineText("Atajos del escritorio leídos: ", table.size()));
    const std::lock_guard lock(mutex_);
    table_ = std::move(table);
}

std::optional<HotKeyEntry> LinuxHotKeys::entry(int id) const {
    Accelerator accelerator;
    {
        const std::lock_guard lock(mutex_);
        const auto found = table_.find(id);
        if (found == table_.end()) return std::nullopt;
        accelerator = found->second;
    }
    const auto key = keyFor_(accelerator.keysym);
    if (!key) return std::nullopt;
    return HotKeyEntry{.enabled = true,
                       .parameters = {characterOf(accelerator.keysym), key->keyCode,
                                      static_cast<std::int64_t>(accelerator.flags | key->flags)}};
}

ShortcutTable readShortcutsNow(DesktopKind desktop) {
    if (desktop == DesktopKind::kde) return readKdeShortcuts(firstContent(filesOf(desktop)));
    if (desktop == DesktopKind::xfce) return readXfceShortcuts(firstContent(filesOf(desktop)));
    constexpr int timeout = 3000;
    std::string settings;
    for (const auto schema : shortcutSchemas(desktop)) {
        QProcess process;
        process.start(
            "gsettings",
            {"list-recursively", QString::fromUtf8(schema.data(), static_cast<qsizetype>(schema.size()))},
            QIODevice::ReadOnly);
        if (process.waitForFinished(timeout))
            settings += process.readAllStandardOutput().toStdString() + "\n";
    }
    return readSettingsList(settings, desktop);
}

namespace {

/// What a person calls the key; a letter is written large.
std::string keyName(unsigned long keysym) {
    std::array<char, 64> name{};
    if (xkb_keysym_get_name(static_cast<xkb_keysym_t>(keysym), name.data(), name.size()) <= 0) return "?";
    std::string text(name.data());
    if (text.size() == 1)
        text.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(text.front())));
    return text;
}

}  // namespace

std::map<int, NamedHotKey> desktopHotKeys() {
    std::map<int, NamedHotKey> result;
    for (const auto& [id, accelerator] : readShortcutsNow(currentDesktop()))
        result[id] = {accelerator.flags, keyName(accelerator.keysym)};
    return result;
}

}  // namespace trelvan
