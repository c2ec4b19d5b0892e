#include "Tools/Simulate/Simulation.hpp"

#include "Core/Model/RecordJson.hpp"
#include "Core/Settings/LanguageSetting.hpp"
#include "Platform/Simulated/SimulatedDesktop.hpp"
#include "Tools/Simulate/DesktopLines.hpp"
#include "Tools/Simulate/DesktopRules.hpp"
#include "Tools/Simulate/Operations.hpp"
#include "Tools/Simulate/ScriptLimits.hpp"
#include "Tools/Simulate/ServiceLines.hpp"
#include "Tools/Simulate/StatePrinter.hpp"
#include "TrelvanApp.hpp"
#include "Utilities/Text.hpp"

#include <array>
#include <utility>

namespace trelvan {

using json::Problem;
using json::Value;

namespace {

/// No run of a script lasts longer than this, in seconds: beyond it virtual time would lose its fractions.
constexpr double longestRun = 1e9;

/// Identifiers that are the same in every run.
UuidSource repeatingUuids() {
    return [next = std::uint64_t{0}]() mutable {
        Uuid::Bytes bytes{};
        ++next;
        for (std::size_t index = 0; index < 8; ++index)
            bytes[15 - index] = static_cast<std::uint8_t>(next >> (8 * index));
        return Uuid::version4(bytes);
    };
}

CodingError wrong(std::string_view key, std::string problem) {
    return {std::string(key), std::move(problem)};
}

}  // namespace

/// The simulated desktop, the program on it once it is started, and what each kind of line does to them.
class Simulation::World {
  public:
    World(const ActionShortcuts* shortcuts, Files& files, TraceWriter::Output output)
        : uuids_(repeatingUuids()),
          files_(files),
          writer_(std::move(output)),
          rules_(desktop_, shortcuts != nullptr ? *shortcuts : macShortcuts, shortcuts != nullptr) {
        desktop_.onTrace = [this](const TraceEntry& entry) { writer_.write(entry); };
    }

    World(const World&) = delete;
    World& operator=(const World&) = delete;
    /// The script's end is not an event in its world: what taking the program down says is told to nobody.
    ~World() { desktop_.onTrace = nullptr; }

    Problem run(const Value& line) {
        if (!line.is_object()) return CodingError{"", "not a JSON object"};
        if (auto problem = goTo(line)) return problem;
        const Value* asked = json::member(line, "do");
        if (asked == nullptr || !asked->is_string()) return wrong("do", "required key is missing or no text");
        const auto& name = asked->get_ref<const std::string&>();
        for (const auto& [known, handler] : handlers) {
            if (known == name) return (this->*handler)(line);
        }
        return wrong("do", "\"" + name + "\" is not known");
    }

    void finish() { desktop_.time.runUntilBackgroundIsEmpty(); }

  private:
    using Handler = Problem (World::*)(const Value& line);

    /// The clock runs forward to where the line happens.
    Problem goTo(const Value& line) {
        Seconds moment = desktop_.time.uptime();
        if (const Value* at = json::member(line, "at")) {
            double seconds = 0;
            if (auto problem = json::read(*at, seconds, nullptr)) return std::move(*problem).inside("at");
            if (seconds > longestRun) return wrong("at", "is too late");
            // What adding up left over is not going back.
            if (seconds < moment.count() - 1e-9) return wrong("at", "goes back");
            moment = std::max(moment, Seconds{seconds});
        }
        desktop_.time.runUntil(moment);
        return std::nullopt;
    }

    /// Reads the line as a record and hands it on.
    template <typename Record, typename Use>
    Problem with(const Value& line, Use&& use) {
        Record record;
        if (auto problem = json::read(line, record, nullptr)) return problem;
        return std::forward<Use>(use)(record);
    }

    Problem doDefaults(const Value& line) {
        const Value* set = json::member(line, "set");
        if (set == nullptr || !set->is_object()) return wrong("set", "must be an object");
        desktop_.settleDefaults();
        UserDefaults::Keys keys;
        for (const auto& [key, value] : set->items()) {
            if (key == ProfileManager::storageKey && !value.is_string()) {
                desktop_.defaults[key] = Data{json::serialize(value)};
            } else if (const auto stored = script::storedValue(value)) {
                desktop_.defaults[key] = *stored;
            } else {
                return wrong("set." + key, "must be a boolean, a number or a string");
            }
            keys.push_back(key);
        }
        // To a running program it is another program that stores them.
        desktop_.userDefaults().tellOutsideChange(std::move(keys));
        return std::nullopt;
    }

    Problem doStart(const Value& /*line*/) {
        if (app_) return CodingError{"", "started already"};
        app_ = std::make_unique<TrelvanApp>(desktop_, menu_, desktop_.logger, uuids_);
        app_->appear();
        return std::nullopt;
    }

    Problem doEvent(const Value& line) { return lines::sendEvent(desktop_, line); }
    Problem doAccessibility(const Value& line) { return lines::setAccessibility(desktop_, line); }
    Problem doModifiers(const Value& line) { return lines::setModifiers(desktop_, line); }
    Problem doScreens(const Value& line) { return lines::setScreens(desktop_, line); }
    Problem doPointer(const Value& line) { return lines::movePointer(desktop_, line); }
    Problem doOwnWindows(const Value& line) { return lines::setOwnWindows(desktop_, line); }
    Problem doFrontmost(const Value& line) { return lines::bringToFront(desktop_, line); }
    Problem doHotKeys(const Value& line) { return lines::setHotKeys(desktop_, line); }
    Problem doViews(const Value& line) { return lines::offerViews(desktop_, line); }
    Problem doDisk(const Value& line) { return lines::changeDisk(desktop_, line); }
    Problem doFail(const Value& line) { return lines::letFail(desktop_, line); }
    Problem doTapDisabled(const Value& line) { return lines::disableTap(desktop_, line); }
    Problem doKey(const Value& line) { return lines::pressKey(desktop_, line); }
    Problem doCapsLock(const Value& line) { return lines::switchCapsLock(desktop_, line); }
    Problem doMicrophone(const Value& line) { return lines::setMicrophone(desktop_, line); }
    Problem doBattery(const Value& line) { return lines::setBattery(desktop_, line); }
    Problem doFnState(const Value& line) { return lines::setFnState(desktop_, line); }
    Problem doDoNotDisturb(const Value& line) { return lines::setDoNotDisturb(desktop_, line); }
    Problem doSession(const Value& line) { return lines::changeSession(desktop_, line); }
    Problem doLaunchAtLogin(const Value& line) { return lines::setLaunchAtLogin(desktop_, line); }

    Problem doPlatform(const Value& line) {
        return with<script::Platform>(line, [this](const auto& record) -> Problem {
            if (app_) return CodingError{"", "platform after start"};
            const bool isMac = record.name == "macos";
            if (!isMac && record.name != "linux") return wrong("name", "must be macos or linux");
            rules_.choose(isMac ? macShortcuts : linuxShortcuts);
            desktop_.postedCountsAsActivity = record.postedCountsAsActivity.value_or(isMac);
            return std::nullopt;
        });
    }

    Problem doWait(const Value& line) {
        return with<script::Wait>(line, [this](const auto& record) -> Problem {
            if (record.seconds < 0) return wrong("seconds", "goes back");
            if (desktop_.time.uptime().count() + record.seconds > longestRun)
                return wrong("seconds", "is too long");
            desktop_.time.runFor(Seconds{record.seconds});
            return std::nullopt;
        });
    }

    Problem doCall(const Value& line) {
        if (!app_) return CodingError{"", "call before start"};
        // The one operation whose answer has a line of its own.
        const Value* asked = json::member(line, "operation");
        if (asked != nullptr && *asked == "explain") return explain(line);
        return callOperation({*app_, menu_, files_, uuids_}, line,
                             [this](std::string_view operation, const Outcome& outcome) {
                                 const Seconds now = desktop_.time.uptime();
                                 if (const auto* error = std::get_if<OperationError>(&outcome)) {
                                     writer_.writeError(now, operation, error->text);
                                 } else {
                                     writer_.writeResult(now, operation, std::get<std::string>(outcome));
                                 }
                             });
    }

    Problem explain(const Value& line) {
        return with<script::Button>(line, [this](const auto& record) -> Problem {
            writer_.writeExplanation(
                desktop_.time.uptime(),
                explainPress(*app_->profileManager.activeSnapshot(), record.button,
                             record.flags | desktop_.modifierFlags, desktop_.actionShortcuts(),
                             languageFromSetting(languageSetting(desktop_.userDefaults())),
                             namedHotKeys(desktop_.hotKeyTable())));
            return std::nullopt;
        });
    }

    Problem doPrint(const Value& line) {
        return with<script::Print>(line, [this](const auto& record) -> Problem {
            if (!app_) return CodingError{"", "print before start"};
            desktop_.settleDefaults();
            const auto state = stateOf(*app_, desktop_, menu_, record.what);
            if (!state)
                return wrong("what", "\"" + record.what + "\" is not a state that can be printed here");
            writer_.writeState(desktop_.time.uptime(), record.what, *state);
            return std::nullopt;
        });
    }

    static constexpr std::array<std::pair<std::string_view, Handler>, 26> handlers{{
        {"event", &World::doEvent},
        {"defaults", &World::doDefaults},
        {"accessibility", &World::doAccessibility},
        {"start", &World::doStart},
        {"modifiers", &World::doModifiers},
        {"screens", &World::doScreens},
        {"pointer", &World::doPointer},
        {"ownWindows", &World::doOwnWindows},
        {"frontmost", &World::doFrontmost},
        {"hotKeys", &World::doHotKeys},
        {"disk", &World::doDisk},
        {"fail", &World::doFail},
        {"tapDisabled", &World::doTapDisabled},
        {"key", &World::doKey},
        {"capsLock", &World::doCapsLock},
        {"microphone", &World::doMicrophone},
        {"battery", &World::doBattery},
        {"fnState", &World::doFnState},
        {"doNotDisturb", &World::doDoNotDisturb},
        {"launchAtLogin", &World::doLaunchAtLogin},
        {"session", &World::doSession},
        {"platform", &World::doPlatform},
        {"views", &World::doViews},
        {"wait", &World::doWait},
        {"call", &World::doCall},
        {"print", &World::doPrint},
    }};

    UuidSource uuids_;
    Files& files_;
    TraceWriter writer_;
    SimulatedDesktop desktop_;
    DesktopRules rules_;
    SimulatedMenu menu_{desktop_};
    std::unique_ptr<TrelvanApp> app_;
};

Simulation::Simulation(const ActionShortcuts& shortcuts, Files& files, TraceWriter::Output output)
    : world_(std::make_unique<World>(&shortcuts, files, std::move(output))) {}

Simulation::Simulation(Files& files, TraceWriter::Output output)
    : world_(std::make_unique<World>(nullptr, files, std::move(output))) {}

Simulation::~Simulation() = default;

std::optional<std::string> Simulation::runLine(std::string_view line) {
    if (trimmed(line).empty()) return std::nullopt;
    const auto parsed = json::parse(line);
    if (!parsed) return "not JSON: " + parsed.error().text();
    if (const auto problem = world_->run(*parsed)) return problem->text();
    return std::nullopt;
}

void Simulation::finish() {
    world_->finish();
}

}  // namespace trelvan
