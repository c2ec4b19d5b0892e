#include "UI/Models/FunctionTrial.hpp"

#include "Core/MappingExplanation.hpp"
#include "UI/Models/ActionChoices.hpp"
#include "UI/Models/FunctionSlots.hpp"

#include <algorithm>
#include <utility>

namespace trelvan {

namespace {

TerminalUse terminalUseOf(ButtonAction action) {
    const auto* const keys = std::get_if<does::Keys>(&rowOf(action).effect);
    return keys != nullptr ? keys->inTerminal : TerminalUse::same;
}

/// A terminal's own way of an action for text, as a sentence.
std::string terminalSentence(ButtonAction action, const TerminalShortcuts& terminal, AppLanguage language) {
    if (const auto chord = shortcutInTerminal(terminalUseOf(action), terminal))
        return std::string(localized(language, "Sent to a terminal: ", "Se envió a un terminal: ")) +
               describeChord(*chord, language);
    return std::string(
        localized(language, "Nothing is sent to a terminal", "A un terminal no se envía nada"));
}

}  // namespace

FunctionTrial::FunctionTrial(Services services) : services_(std::move(services)) {
    performTask_ = services_.mainQueue.makeCoalescedTask([this] { performNow(); });
}

bool FunctionTrial::isCountingDown() const {
    return state.get() && state.get()->secondsLeft > 0;
}

void FunctionTrial::toggle(const Uuid& mapping, FunctionSlot slot) {
    const bool isSame = isCountingDown() && state.get()->mapping == mapping && state.get()->slot == slot;
    cancel();
    if (isSame) return;
    state = State{.mapping = mapping, .slot = slot, .secondsLeft = static_cast<int>(delay.count())};
    timer_ = services_.timers.every(Seconds{1}, [this] { countDown(); });
}

void FunctionTrial::cancel() {
    timer_.reset();
    if (state.get()) state = std::nullopt;
}

void FunctionTrial::countDown() {
    if (!isCountingDown()) return;
    auto next = *state.get();
    if (next.secondsLeft > 1) {
        --next.secondsLeft;
        state = std::move(next);
        return;
    }
    // The timer is not let go of while it runs.
    performTask_->request();
}

void FunctionTrial::performNow() {
    timer_.reset();
    if (!isCountingDown()) return;
    const auto& mappings = services_.profiles.activeProfile().mappings;
    const auto found = std::ranges::find(mappings, state.get()->mapping, &ButtonMapping::id);
    if (found == mappings.end()) return cancel();
    auto done = *state.get();
    done.secondsLeft = 0;
    done.performed = *found;
    if (terminalUseOf(found->function(done.slot).action) != TerminalUse::same)
        done.terminal = terminalOf(services_.shortcuts.terminals, services_.screens.frontmostApplication());
    done.failed = !services_.perform(*found, done.slot);
    state = std::move(done);
}

std::string FunctionTrial::sentence(AppLanguage language) const {
    const auto& now = state.get();
    if (!now) return {};
    if (now->secondsLeft > 0)
        return std::string(localized(language, "Performed in ", "Se ejecuta en ")) +
               std::to_string(now->secondsLeft) + " s";
    if (now->failed || !now->performed)
        return std::string(localized(language, "Nothing was done: the session is not in use",
                                     "No se hizo nada: la sesión no está en uso"));
    const auto& mapping = *now->performed;
    const auto action = mapping.function(now->slot).action;
    std::string text = actionDisplayName(action, language) + ". ";
    if (now->terminal != nullptr) return text + terminalSentence(action, *now->terminal, language) + ".";
    const auto sentences =
        explainFunction(mapping, now->slot, services_.shortcuts, language, namedHotKeys(services_.hotKeys));
    // The first says what was sent; the others are of places that are not in front.
    text += sentences.empty() ? std::string() : sentences.front();
    constexpr std::string_view present = "Se envía: ";
    if (const auto place = text.find(present); place != std::string::npos)
        text.replace(place, present.size(), "Se envió: ");
    return text + ".";
}

}  // namespace trelvan
