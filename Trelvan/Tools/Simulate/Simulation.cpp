#include "Tools/Simulate/Simulation.hpp"

#include "CommandLine.hpp"
#include "Core/Model/RecordJson.hpp"
#include "Core/Settings/LanguageSetting.hpp"
#include "Platform/Simulated/SimulatedDesktop.hpp"
#include "Tools/Simulate/DesktopRules.hpp"
#include "Tools/Simulate/Operations.hpp"
#include "Tools/Simulate/ScriptLimits.hpp"
#include "Tools/Simulate/ServiceLines.hpp"
#include "Tools/Simulate/StatePrinter.hpp"
#include "TrelvanApp.hpp"
#include "Utilities/Text.hpp"

#include <unistd.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <iostream>
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

std::optional<EventType> eventType(std::int64_t number) {
    if (number < 0 || number >= 64) return std::nullopt;
    return static_cast<EventType>(number);
}

HotKeyEntry hotKeyEntry(const Value& entry) {
    HotKeyEntry result;
    const Value* enabled = json::member(entry, "enabled");
    result.enabled = enabled != nullptr && enabled->is_boolean() && enabled->get<bool>();
    const Value* value = json::member(entry, "value");
    const Value* parameters =
        value != nullptr && value->is_object() ? json::member(*value, "parameters") : nullptr;
    if (parameters == nullptr || !parameters->is_array()) return result;
    for (const Value& parameter : *parameters) {
        std::int64_t number = 0;
        const bool whole = !json::read(parameter, number, nullptr);
        result.parameters.push_back(whole ? std::optional{number} : std::nullopt);
    }
    return result;
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

    Problem doAccessibility(const Value& line) {
        return with<script::Accessibility>(line, [this](const auto& record) -> Problem {
            desktop_.accessibility = record.granted;
            return std::nullopt;
        });
    }

    Problem doStart(const Value& /*line*/) {
        if (app_) return CodingError{"", "started already"};
        app_ = std::make_unique<TrelvanApp>(desktop_, menu_, desktop_.logger, uuids_);
        app_->appear();
        return std::nullopt;
    }

    Problem doModifiers(const Value& line) {
        return with<script::Modifiers>(line, [this](const auto& record) -> Problem {
            desktop_.modifierFlags = record.flags;
            return std::nullopt;
        });
    }

    Problem doScreens(const Value& line) {
        return with<script::Screens>(line, [this](const auto& record) -> Problem {
            std::vector<BottomLeftRect> frames;
            for (const auto& numbers : record.frames) {
                BottomLeftRect frame;
                if (auto problem = script::readRect(numbers, frame))
                    return std::move(*problem).inside(frames.size()).inside("frames");
                frames.push_back(frame);
            }
            desktop_.screenFrames = std::move(frames);
            return std::nullopt;
        });
    }

    Problem doPointer(const Value& line) {
        return with<script::Pointer>(line, [this](const auto& record) -> Problem {
            if (auto problem = script::outOfReach(record)) return problem;
            desktop_.pointer = {record.x, record.y};
            return std::nullopt;
        });
    }

    Problem doOwnWindows(const Value& line) {
        return with<script::OwnWindows>(line, [this](const auto& record) -> Problem {
            std::vector<OwnWindow> windows;
            for (const auto& asked : record.windows) {
                OwnWindow window;
                if (auto problem = script::readWindow(asked, window))
                    return std::move(*problem).inside(windows.size()).inside("windows");
                windows.push_back(window);
            }
            desktop_.windows = std::move(windows);
            return std::nullopt;
        });
    }

    Problem doFrontmost(const Value& line) {
        return with<script::Frontmost>(line, [this](const auto& record) -> Problem {
            desktop_.bringToFront(record.bundle);
            return std::nullopt;
        });
    }

    Problem doHotKeys(const Value& line) {
        const Value* table = json::member(line, "table");
        if (table == nullptr || !table->is_object()) return wrong("table", "must be an object");
        std::map<int, HotKeyEntry> entries;
        for (const auto& [key, entry] : table->items()) {
            int id = 0;
            const auto [end, error] = std::from_chars(key.data(), key.data() + key.size(), id);
            if (error != std::errc{} || end != key.data() + key.size())
                return wrong("table." + key, "is not a whole number");
            // An entry of another shape is in the table and resolves to nothing, as on a real system.
            if (entry.is_object()) entries[id] = hotKeyEntry(entry);
        }
        desktop_.hotKeyEntries = std::move(entries);
        return std::nullopt;
    }

    Problem doDisk(const Value& line) {
        return with<script::Disk>(line, [this](const auto& record) -> Problem {
            using Kind = SimulatedItem::Kind;
            if (record.kind == "none") {
                desktop_.disk.erase(record.path);
                return std::nullopt;
            }
            constexpr std::array<std::pair<std::string_view, Kind>, 3> kinds{
                {{"application", Kind::application}, {"folder", Kind::folder}, {"file", Kind::file}}};
            for (const auto& [name, kind] : kinds) {
                if (name != record.kind) continue;
                desktop_.disk[record.path] = {kind, record.bundle};
                return std::nullopt;
            }
            return wrong("kind", "must be application, folder, file or none");
        });
    }

    Problem doFail(const Value& line) {
        return with<script::Fail>(line, [this](const auto& record) -> Problem {
            const std::array<std::pair<std::string_view, bool*>, 7> switches{
                {{"tapCreate", &desktop_.failures.tapCreate},
                 {"eventCopy", &desktop_.failures.eventCopy},
                 {"eventCreate", &desktop_.failures.eventCreate},
                 {"scriptCreate", &desktop_.failures.scriptCreate},
                 {"scriptRun", &desktop_.failures.scriptRun},
                 {"loginItem", &desktop_.failures.loginItem},
                 {"save", &desktop_.failures.save}}};
            for (const auto& [name, failure] : switches) {
                if (name != record.what) continue;
                desktop_.settleDefaults();
                *failure = record.on;
                return std::nullopt;
            }
            return wrong("what", "\"" + record.what + "\" is not a call that can fail here");
        });
    }

    Problem doTapDisabled(const Value& line) {
        return with<script::TapDisabled>(line, [this](const auto& record) -> Problem {
            if (record.by == "timeout") {
                desktop_.disableTap(EventType::tapDisabledByTimeout);
            } else if (record.by == "userInput") {
                desktop_.disableTap(EventType::tapDisabledByUserInput);
            } else {
                return wrong("by", "must be timeout or userInput");
            }
            return std::nullopt;
        });
    }

    Problem doEvent(const Value& line) {
        return with<script::Event>(line, [this](const script::Event& record) -> Problem {
            const auto type = eventType(record.type);
            if (!type) return wrong("type", "is not an event number");
            if (auto problem = script::outOfReach(record)) return problem;
            desktop_.send(
                {.type = *type,
                 .flags = record.flags,
                 .location = {record.x.value_or(desktop_.pointer.x), record.y.value_or(desktop_.pointer.y)},
                 .buttonNumber = record.button,
                 .deltaX = record.dx,
                 .deltaY = record.dy,
                 .scrollDeltaAxis1 = record.scrollY,
                 .scrollDeltaAxis2 = record.scrollX,
                 .scrollPointDeltaAxis1 = record.pointY,
                 .scrollPointDeltaAxis2 = record.pointX,
                 .sourceUserData = record.userData});
            return std::nullopt;
        });
    }

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

    Problem doViews(const Value& line) {
        return with<script::Views>(line, [this](const auto& record) -> Problem {
            desktop_.offeredViews = {record.offered.begin(), record.offered.end()};
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

namespace {

/// Reads one line without its end; `isWhole` is false for one that is longer than any script's, which is not
/// read to its end. False at the end of the input.
bool readLine(std::istream& input, std::string& line, bool& isWhole) {
    using Traits = std::istream::traits_type;
    line.clear();
    isWhole = true;
    auto& buffer = *input.rdbuf();
    for (auto next = buffer.sbumpc(); !Traits::eq_int_type(next, Traits::eof()); next = buffer.sbumpc()) {
        if (next == '\n') return true;
        if (line.size() == Files::largest) {
            isWhole = false;
            return true;
        }
        line += Traits::to_char_type(next);
    }
    return !line.empty();
}

}  // namespace

int simulate(const std::string& script, const ActionShortcuts* shortcuts, AppLanguage language) {
    std::ifstream file;
    const bool fromFile = script != "-";
    if (fromFile) {
        file.open(script);
        if (!file) {
            const std::string reason(localized(language, "cannot read ", "no se puede leer "));
            std::fprintf(stderr, "trelvan: %s%s\n", reason.c_str(), script.c_str());
            return exitStatus::badUsage;
        }
    }
    std::istream& input = fromFile ? static_cast<std::istream&>(file) : std::cin;
    // A person or program that feeds lines one by one sees what each did before the next.
    const bool live = !fromFile;
    StandardFiles files;
    const auto print = [](std::string_view line) { std::fwrite(line.data(), 1, line.size(), stdout); };
    Simulation simulation =
        shortcuts != nullptr ? Simulation(*shortcuts, files, print) : Simulation(files, print);
    std::string line;
    bool isWhole = true;
    for (std::size_t number = 1; readLine(input, line, isWhole); ++number) {
        const auto reason = isWhole ? simulation.runLine(line) : std::optional<std::string>("is too long");
        if (reason) {
            std::fflush(stdout);
            std::fprintf(stderr, "line %zu: %s\n", number, visible(*reason).c_str());
            return exitStatus::badUsage;
        }
        if (live && input.rdbuf()->in_avail() <= 0) std::fflush(stdout);
    }
    simulation.finish();
    // A line that could not be written was lost, even where the last one could.
    const bool isWritten = std::fflush(stdout) == 0 && std::ferror(stdout) == 0;
    return isWritten ? exitStatus::ok : exitStatus::unavailable;
}

}  // namespace trelvan
