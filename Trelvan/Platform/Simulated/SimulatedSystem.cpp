#include "Platform/Simulated/SimulatedSystem.hpp"

#include "Platform/Simulated/SimulatedDesktop.hpp"

#include <utility>

namespace trelvan {

std::span<const BottomLeftRect> SimulatedScreens::frames() const {
    return desktop_.screenFrames;
}

std::span<const OwnWindow> SimulatedScreens::ownWindows() const {
    if (!desktop_.overlay) return desktop_.windows;
    withOverlay_.assign(desktop_.windows.begin(), desktop_.windows.end());
    withOverlay_.push_back(*desktop_.overlay);
    return withOverlay_;
}

BottomLeftPoint SimulatedScreens::pointerLocation() const {
    return countedFromBottom(desktop_.pointer,
                             desktop_.screenFrames.empty() ? 0.0 : desktop_.screenFrames.front().height);
}

std::string_view SimulatedScreens::frontmostApplication() const {
    return desktop_.frontmost;
}

std::optional<DefaultsValue> SimulatedDefaults::object(std::string_view key) const {
    desktop_.settleDefaults();
    const auto found = desktop_.defaults.find(key);
    return found != desktop_.defaults.end() ? std::optional{found->second} : std::nullopt;
}

void SimulatedDefaults::set(std::string_view key, DefaultsValue value) {
    if (desktop_.failures.save) return;
    desktop_.unmadeDefaults.erase(std::string(key));
    desktop_.defaults.insert_or_assign(std::string(key), std::move(value));
}

void SimulatedDefaults::setLazily(std::string_view key, Maker make) {
    if (desktop_.failures.save) return;
    desktop_.unmadeDefaults.insert_or_assign(std::string(key), std::move(make));
}

void SimulatedDefaults::remove(std::string_view key) {
    if (desktop_.failures.save) return;
    desktop_.unmadeDefaults.erase(std::string(key));
    if (const auto found = desktop_.defaults.find(key); found != desktop_.defaults.end())
        desktop_.defaults.erase(found);
}

std::optional<std::string> SimulatedDefaults::putAside(std::string_view key, const Data& data) {
    if (desktop_.failures.save) return std::nullopt;
    const std::string name =
        std::string(key) + ".undecodable-" + std::to_string(desktop_.asides.size() + 1) + ".json";
    desktop_.asides[name] = data.bytes;
    return name;
}

bool SimulatedWorkspace::exists(std::string_view path) const {
    return desktop_.disk.contains(path);
}

std::optional<std::string> SimulatedWorkspace::applicationPath(std::string_view bundleIdentifier) const {
    for (const auto& [path, item] : desktop_.disk) {
        if (item.kind == SimulatedItem::Kind::application && item.bundle == bundleIdentifier) return path;
    }
    return std::nullopt;
}

void SimulatedWorkspace::openApplication(std::string_view path) {
    desktop_.tell(trace::Opened{trace::Opened::Kind::application, std::string(path)});
}

void SimulatedWorkspace::openInFront(std::string_view path, std::function<void()> inFront) {
    openApplication(path);
    const auto item = desktop_.disk.find(path);
    awaitedBundle_ = item != desktop_.disk.end() ? item->second.bundle : std::string();
    inFront_ = std::move(inFront);
    timeout_ = desktop_.timers().once(focusTimeout, [this, path = std::string(path)] {
        inFront_ = nullptr;
        desktop_.logger.warning(
            InlineText(lastPathComponent(path), " no recibió el foco a tiempo: no se le escribe nada"));
    });
    frontmostChanged();
}

void SimulatedWorkspace::frontmostChanged() {
    if (!inFront_ || awaitedBundle_.empty() || desktop_.frontmost != awaitedBundle_) return;
    timeout_.reset();
    desktop_.time.async(std::exchange(inFront_, nullptr));
}

void SimulatedWorkspace::openFolder(std::string_view path) {
    desktop_.tell(trace::Opened{trace::Opened::Kind::folder, std::string(path)});
}

void SimulatedWorkspace::openUrl(std::string_view url) {
    desktop_.tell(trace::Opened{trace::Opened::Kind::url, std::string(url)});
}

void SimulatedWorkspace::reveal(std::string_view folder) {
    desktop_.tell(trace::Opened{trace::Opened::Kind::reveal, std::string(folder)});
}

bool SimulatedTrust::isTrusted() {
    return desktop_.accessibility;
}

bool SimulatedTrust::requestTrust() {
    if (!desktop_.accessibility) desktop_.tell(trace::Prompted{trace::Prompted::Permission::accessibility});
    return desktop_.accessibility;
}

ScriptResult SimulatedScripts::run(std::string_view source) {
    if (desktop_.failures.scriptCreate) return {ScriptResult::Status::notCreated, ""};
    desktop_.tell(trace::Script{std::string(source)});
    if (desktop_.failures.scriptRun) return {ScriptResult::Status::failed, "simulated failure"};
    return {ScriptResult::Status::ran, ""};
}

std::optional<HotKeyEntry> SimulatedHotKeys::entry(int id) const {
    const auto found = desktop_.hotKeyEntries.find(id);
    return found != desktop_.hotKeyEntries.end() ? std::optional{found->second} : std::nullopt;
}

bool SimulatedViews::show(SystemView view, ByKeys byKeys) {
    return desktop_.onView && desktop_.onView(view, byKeys);
}

bool SimulatedViews::moveDesktop(DesktopDirection direction, ByKeys byKeys) {
    return desktop_.onView && desktop_.onView(viewOf(direction), byKeys);
}

void SimulatedViews::setMissingObserver(MissingObserver observer) {
    desktop_.onMissingView = std::move(observer);
}

std::vector<SystemView> SimulatedViews::offered() const {
    return {desktop_.offeredViews.begin(), desktop_.offeredViews.end()};
}

void SimulatedLog::write(const LogRecord& record) {
    // The copy is made for the trace only: without one, a log line costs what it costs elsewhere.
    if (!desktop_.onTrace) return;
    desktop_.tell(trace::Logged{record.level, std::string(record.message)});
}

}  // namespace trelvan
