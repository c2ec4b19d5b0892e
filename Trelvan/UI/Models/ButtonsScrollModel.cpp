#include "UI/Models/ButtonsScrollModel.hpp"

#include "Core/MappingExplanation.hpp"
#include "Core/Model/ButtonNumbers.hpp"
#include "UI/Models/FunctionSlots.hpp"
#include "UI/Models/MappingText.hpp"

#include <algorithm>
#include <utility>

namespace trelvan {

namespace {

/// Whether both are moved by the same press: the same button, or the same direction of the wheel.
bool isSameInput(std::int64_t left, std::int64_t right) {
    if (!isScrollButton(left) || !isScrollButton(right)) return left == right;
    return isEvenButton(left) == isEvenButton(right);
}

}  // namespace

ButtonsScrollModel::ButtonsScrollModel(ButtonsScrollServices services)
    : lights(services.monitor, services.timers, services.clock),
      speed(services.monitor, services.timers, services.mainQueue),
      trial({.profiles = services.profiles,
             .timers = services.timers,
             .mainQueue = services.mainQueue,
             .screens = services.screens,
             .hotKeys = services.hotKeys,
             .shortcuts = services.shortcuts,
             .perform = services.perform}),
      services_(std::move(services)) {
    rowsTask_ = services_.mainQueue.makeCoalescedTask([this] {
        if (onRows) onRows();
    });
    // Observers are told before the change: the rows are made afterwards.
    profilesObserver_ = services_.profiles.profiles.observe([this](const auto&) {
        undo_.reset();
        rowsChanged();
    });
    activeObserver_ = services_.profiles.activeProfileID.observe([this](const auto&) {
        undo_.reset();
        rowsChanged();
    });
    pressObserver_ = lights.changed.observe([this](const std::optional<ObservedPress>& press) {
        if (press) notePress(*press);
    });
    runningObserver_ = services_.monitor.isRunning.observe([this](bool isRunning) {
        if (!isRunning) cancelDetecting();
        rowsChanged();
    });
}

ButtonsScrollModel::~ButtonsScrollModel() {
    cancelDetecting();
}

// The rows

void ButtonsScrollModel::setSubTab(ButtonsSubTab part) {
    if (std::exchange(subTab_, part) != part) rowsChanged();
}

const std::vector<ButtonMapping>& ButtonsScrollModel::mappings() const {
    return services_.profiles.activeProfile().mappings;
}

const ButtonMapping* ButtonsScrollModel::find(const Uuid& mapping) const {
    const auto found = std::ranges::find(mappings(), mapping, &ButtonMapping::id);
    return found != mappings().end() ? &*found : nullptr;
}

std::vector<MappingRow> ButtonsScrollModel::rows(AppLanguage language) const {
    std::vector<MappingRow> rows;
    std::set<std::int64_t> seen;
    for (const auto& mapping : mappings()) {
        if (subTabOf(mapping) != subTab_) continue;
        rows.push_back(makeRow(mapping, isExpanded(mapping.id), language, services_.reportedModifiers));
        // Of a scroll direction every mapping has its turn.
        if (!isScrollMapping(mapping)) rows.back().isShadowed = !seen.insert(mapping.buttonNumber).second;
        rows.back().canMoveUp = rows.size() > 1;
        rows.back().canMoveDown = true;
    }
    if (!rows.empty()) rows.back().canMoveDown = false;
    return rows;
}

void ButtonsScrollModel::toggleExpanded(const Uuid& mapping) {
    if (expanded_.erase(mapping) == 0) expanded_.insert(mapping);
    rowsChanged();
}

void ButtonsScrollModel::reveal(const Uuid& mapping) {
    const auto* const found = find(mapping);
    if (found == nullptr) return;
    subTab_ = subTabOf(*found);
    rowsChanged();
    services_.mainQueue.async([this, mapping, alive = std::weak_ptr(alive_)] {
        if (!alive.expired() && onReveal) onReveal(mapping);
    });
}

// Rows added, removed and moved

void ButtonsScrollModel::goTo(std::int64_t buttonNumber) {
    const auto found = std::ranges::find_if(
        mappings(), [&](const auto& each) { return isSameInput(each.buttonNumber, buttonNumber); });
    if (found == mappings().end()) return;
    expanded_.insert(found->id);
    reveal(found->id);
}

void ButtonsScrollModel::addButton() {
    const auto number = nextAutoButtonNumber(mappings());
    services_.profiles.addExtraButtonMapping(number);
    goTo(number);
}

void ButtonsScrollModel::addScroll() {
    services_.profiles.addScrollMappings();
    if (mappings().empty()) return;
    const auto added = mappings().back().id;
    expanded_.insert(added);
    reveal(added);
}

void ButtonsScrollModel::remove(const Uuid& mapping) {
    const auto* const found = find(mapping);
    if (found == nullptr) return;
    const auto& profile = services_.profiles.activeProfile();
    Undo undo{.before = profile,
              .mapping = mapping,
              .english = spokenTitle(*found, AppLanguage::english) + " removed.",
              .spanish = spokenTitle(*found, AppLanguage::spanish) + " eliminado."};
    services_.profiles.removeExtraButtonMapping(mapping, undo.before.id);
    if (find(mapping) == nullptr) undo_ = std::move(undo);
    rowsChanged();
}

void ButtonsScrollModel::move(const Uuid& mapping, MoveDirection direction) {
    const auto* const found = find(mapping);
    if (found == nullptr) return;
    const auto part = subTabOf(*found);
    const auto step = direction == MoveDirection::towardsStart ? -1 : 1;
    auto place = found - mappings().data();
    const auto count = static_cast<std::ptrdiff_t>(mappings().size());
    // Past the rows of the other part, which are not in sight, to the neighbour that is.
    std::ptrdiff_t steps = 0;
    for (auto next = place + step; next >= 0 && next < count; next += step) {
        ++steps;
        if (subTabOf(mappings()[static_cast<std::size_t>(next)]) == part) break;
        if (next == 0 || next == count - 1) return;
    }
    const auto profile = services_.profiles.activeProfile().id;
    for (; steps > 0; --steps) services_.profiles.moveMapping(mapping, profile, direction);
}

void ButtonsScrollModel::moveTo(const Uuid& mapping, std::size_t place) {
    std::vector<Uuid> shown;
    for (const auto& each : mappings()) {
        if (subTabOf(each) == subTab_) shown.push_back(each.id);
    }
    const auto found = std::ranges::find(shown, mapping);
    if (found == shown.end()) return;
    const auto now = static_cast<std::size_t>(found - shown.begin());
    const auto wanted = std::min(place, shown.size() - 1);
    for (auto at = now; at < wanted; ++at) move(mapping, MoveDirection::towardsEnd);
    for (auto at = now; at > wanted; --at) move(mapping, MoveDirection::towardsStart);
}

// One mapping

template <typename Change>
void ButtonsScrollModel::change(const Uuid& mapping, Change&& change) {
    const auto* const found = find(mapping);
    if (found == nullptr) return;
    ButtonMapping changed = *found;
    std::forward<Change>(change)(changed);
    if (changed == *found) return;
    services_.profiles.updateMapping(std::move(changed), services_.profiles.activeProfile().id);
}

void ButtonsScrollModel::setAction(const Uuid& mapping, FunctionSlot slot, ButtonAction action) {
    change(mapping, [&](ButtonMapping& changed) { changed.function(slot).action = action; });
}

void ButtonsScrollModel::setTrigger(const Uuid& mapping, FunctionSlot slot, std::size_t place,
                                    ButtonModifierTrigger trigger) {
    change(mapping, [&](ButtonMapping& changed) {
        (place == 0 ? changed.function(slot).trigger1 : changed.function(slot).trigger2) = trigger;
    });
}

void ButtonsScrollModel::addFunction(const Uuid& mapping) {
    change(mapping, [](ButtonMapping& changed) { trelvan::addFunction(changed); });
}

void ButtonsScrollModel::removeFunction(const Uuid& mapping, FunctionSlot slot) {
    const auto* const found = find(mapping);
    if (found == nullptr || slot == FunctionSlot::primary || !isInUse(*found, slot)) return;
    const auto number = std::to_string(static_cast<int>(slot) + 1);
    Undo undo{.before = services_.profiles.activeProfile(),
              .mapping = mapping,
              .english = "Function " + number + " removed.",
              .spanish = "Función " + number + " eliminada."};
    change(mapping, [&](ButtonMapping& changed) { trelvan::removeFunction(changed, slot); });
    undo_ = std::move(undo);
}

void ButtonsScrollModel::setShortcut(const Uuid& mapping, FunctionSlot slot,
                                     const std::optional<CustomShortcut>& shortcut) {
    change(mapping, [&](ButtonMapping& changed) {
        changed.function(slot).shortcut = shortcut.value_or(CustomShortcut{});
    });
}

void ButtonsScrollModel::setShortcutName(const Uuid& mapping, FunctionSlot slot, const std::string& name) {
    change(mapping, [&](ButtonMapping& changed) { changed.function(slot).shortcutName = name; });
}

void ButtonsScrollModel::setDictationShortcut(const Uuid& mapping,
                                              const std::optional<CustomShortcut>& shortcut) {
    change(mapping,
           [&](ButtonMapping& changed) { changed.dictationShortcut = shortcut.value_or(CustomShortcut{}); });
}

void ButtonsScrollModel::setApplication(const Uuid& mapping, const std::string& path) {
    change(mapping, [&](ButtonMapping& changed) { changed.appPath = path; });
}

void ButtonsScrollModel::setFolder(const Uuid& mapping, const std::string& path) {
    change(mapping, [&](ButtonMapping& changed) { changed.folderPath = path; });
}

// What was removed

std::string ButtonsScrollModel::undoText(AppLanguage language) const {
    if (!undo_) return {};
    return language == AppLanguage::spanish ? undo_->spanish : undo_->english;
}

void ButtonsScrollModel::undo() {
    if (!undo_) return;
    const Undo undo = *std::exchange(undo_, std::nullopt);
    services_.profiles.setActiveProfile(undo.before);
    reveal(undo.mapping);
}

void ButtonsScrollModel::forgetUndo() {
    if (std::exchange(undo_, std::nullopt)) rowsChanged();
}

// Detecting

void ButtonsScrollModel::detect() {
    if (!canDetect()) return;
    isDetecting = true;
    services_.monitor.presses.takeNext([this](std::int64_t number) { detected(number); });
}

void ButtonsScrollModel::cancelDetecting() {
    if (!isDetecting) return;
    services_.monitor.presses.cancelTaking();
    isDetecting = false;
}

void ButtonsScrollModel::detected(std::int64_t buttonNumber) {
    isDetecting = false;
    const auto isThere = [&] {
        return std::ranges::any_of(
            mappings(), [&](const auto& each) { return isSameInput(each.buttonNumber, buttonNumber); });
    };
    if (!isScrollButton(buttonNumber)) {
        services_.profiles.addExtraButtonMapping(buttonNumber);
    } else {
        // The directions come by turns, so the second one is the wanted one at the latest.
        for (int attempt = 0; attempt < 2 && !isThere(); ++attempt) services_.profiles.addScrollMappings();
    }
    goTo(buttonNumber);
}

// Why

void ButtonsScrollModel::notePress(const ObservedPress& press) {
    if (press.kind == ObservedPress::Kind::up) return;
    const bool isOpen = std::ranges::any_of(mappings(), [&](const auto& each) {
        return isSameInput(each.buttonNumber, press.buttonNumber) && isExpanded(each.id);
    });
    if (!isOpen) return;
    lastPress_ = Press{press.buttonNumber, press.flags, services_.profiles.activeSnapshot()};
    rowsChanged();
}

std::vector<std::string> ButtonsScrollModel::why(const Uuid& mapping, AppLanguage language) const {
    const auto* const found = find(mapping);
    if (found == nullptr || !lastPress_ || !isSameInput(found->buttonNumber, lastPress_->buttonNumber))
        return {};
    return explainPress(*lastPress_->profile, lastPress_->buttonNumber, lastPress_->flags,
                        services_.shortcuts, language, namedHotKeys(services_.hotKeys))
        .why;
}

// Closing

bool ButtonsScrollModel::isBusy() const {
    return activeRecorderID.get().has_value() || speed.isPending() || trial.isCountingDown() || isDetecting;
}

void ButtonsScrollModel::close() {
    speed.revert();
    trial.cancel();
    cancelDetecting();
    forgetUndo();
}

}  // namespace trelvan
