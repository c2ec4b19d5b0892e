#include "Tools/Simulate/Operations.hpp"

#include "Core/Settings/SettingsTransfer.hpp"
#include "Platform/Files.hpp"
#include "Tools/Simulate/ScriptLines.hpp"

#include <array>
#include <utility>

namespace trelvan {

using json::Problem;
using json::Value;

namespace {

CodingError wrong(std::string_view key, std::string problem) {
    return {std::string(key), std::move(problem)};
}

/// One call: the services, the line it stands on, and where its outcome goes.
struct Call : OperationScope {
    const Value& line;
    std::function<void(const Outcome&)> tell;

    Problem done() const {
        tell("null");
        return std::nullopt;
    }
    template <typename Record>
    Problem done(const Record& record) const {
        Value value;
        if (auto problem = json::write(record, value)) {
            tell(OperationError{problem->text()});
        } else {
            tell(json::serialize(value));
        }
        return std::nullopt;
    }
    Problem failed(std::string text) const {
        tell(OperationError{std::move(text)});
        return std::nullopt;
    }
};

/// Reads the arguments as a record and hands them on.
template <typename Record, typename Use>
Problem with(const Call& call, Use&& use) {
    Record record;
    if (auto problem = json::read(call.line, record, nullptr)) return problem;
    return std::forward<Use>(use)(record);
}

/// The element that a value names by its identifier or its place in the list; null when there is none.
template <typename Element>
const Element* named(const std::vector<Element>& list, const Value& name) {
    if (name.is_string()) {
        const auto id = Uuid::parse(name.get_ref<const std::string&>());
        for (const auto& element : list) {
            if (element.id == id) return &element;
        }
        return nullptr;
    }
    const auto index = name.get<std::uint64_t>();
    return index < list.size() ? &list[index] : nullptr;
}

bool isName(const Value* value) {
    return value != nullptr && (value->is_string() || value->is_number_unsigned());
}

/// Hands the profile that the line names on, an element of the store's list, as the store's operations take
/// them. A line that names none of the store's is a failed call, not a wrong line.
template <typename Use>
Problem withProfile(const Call& call, Use&& use) {
    const Value* name = json::member(call.line, "profile");
    if (!isName(name)) return wrong("profile", "must be an identifier or a place in the list");
    const auto* profile = named(call.app.profileManager.profiles.get(), *name);
    if (profile == nullptr) return call.failed("no such profile");
    return std::forward<Use>(use)(*profile);
}

template <typename Use>
Problem withMapping(const Call& call, Use&& use) {
    const Value* name = json::member(call.line, "mapping");
    if (!isName(name)) return wrong("mapping", "must be an identifier or a place in the list");
    return withProfile(call, [&](const TrackballProfile& profile) -> Problem {
        const auto* mapping = named(profile.mappings, *name);
        if (mapping == nullptr) return call.failed("no such mapping");
        return std::forward<Use>(use)(profile, *mapping);
    });
}

Problem start(const Call& call) {
    call.app.eventMonitor->start();
    return call.done();
}

Problem stop(const Call& call) {
    call.app.eventMonitor->stop();
    return call.done();
}

Problem setDebugMode(const Call& call) {
    return with<script::On>(call, [&](const auto& record) {
        call.app.eventMonitor->debugMode = record.on;
        return call.done();
    });
}

/// Reads a value of the row's type; an unknown word is wrong where it could not stand.
Problem readSetting(const SettingRow& row, const Value& value, DefaultsValue& out) {
    const auto readAs = [&](auto read) -> Problem {
        if (auto problem = json::read(value, read, nullptr)) return problem;
        out = std::move(read);
        return std::nullopt;
    };
    if (row.kind == SettingKind::boolean) return readAs(bool{});
    if (row.kind == SettingKind::number) return readAs(double{});
    auto problem = readAs(std::string());
    if (problem || row.keepsUnknownWords) return problem;
    const auto& text = std::get<std::string>(out);
    return row.isWord(text) ? std::nullopt : Problem(json::notOneOf(row.wordNoun, text));
}

Problem setSetting(const Call& call) {
    return with<script::Name>(call, [&](const auto& record) -> Problem {
        const Value* value = json::member(call.line, "value");
        if (value == nullptr) return wrong("value", "required key is missing");
        auto* const setting = call.app.settings.named(record.name);
        if (setting == nullptr) return wrong("name", "\"" + record.name + "\" is not a setting");
        DefaultsValue given;
        if (auto problem = readSetting(setting->row(), *value, given))
            return std::move(*problem).inside("value");
        setting->take(given);
        return call.done();
    });
}

Problem persistSpeedSettings(const Call& call) {
    call.app.eventMonitor->persistSpeedSettings();
    return call.done();
}

Problem setActive(const Call& call) {
    return withProfile(call, [&](const TrackballProfile& profile) {
        call.app.profileManager.setActive(profile);
        return call.done();
    });
}

Problem createProfile(const Call& call) {
    return with<script::Name>(call, [&](const auto& record) {
        return call.done(call.app.profileManager.createProfile(record.name));
    });
}

Problem rename(const Call& call) {
    return with<script::Name>(call, [&](const auto& record) {
        return withProfile(call, [&](const TrackballProfile& profile) {
            call.app.profileManager.rename(profile.id, record.name);
            return call.done();
        });
    });
}

Problem duplicate(const Call& call) {
    return withProfile(call, [&](const TrackballProfile& profile) {
        return call.done(call.app.profileManager.duplicate(profile));
    });
}

Problem deleteProfile(const Call& call) {
    return withProfile(call, [&](const TrackballProfile& profile) {
        call.app.profileManager.deleteProfile(profile.id);
        return call.done();
    });
}

Problem updateMapping(const Call& call) {
    const Value* given = json::member(call.line, "mapping");
    if (given == nullptr) return wrong("mapping", "required key is missing");
    ButtonMapping mapping;
    if (auto problem = json::read(*given, mapping, call.uuids)) return std::move(*problem).inside("mapping");
    return withProfile(call, [&](const TrackballProfile& profile) {
        call.app.profileManager.updateMapping(mapping, profile.id);
        return call.done();
    });
}

Problem addExtraButtonMapping(const Call& call) {
    return with<script::Button>(call, [&](const auto& record) {
        call.app.profileManager.addExtraButtonMapping(record.button);
        return call.done();
    });
}

Problem addScrollMappings(const Call& call) {
    call.app.profileManager.addScrollMappings();
    return call.done();
}

Problem removeExtraButtonMapping(const Call& call) {
    return withMapping(call, [&](const TrackballProfile& profile, const ButtonMapping& mapping) {
        call.app.profileManager.removeExtraButtonMapping(mapping.id, profile.id);
        return call.done();
    });
}

Problem moveMapping(const Call& call) {
    return with<script::Direction>(call, [&](const auto& record) -> Problem {
        const bool up = record.direction == "up";
        if (!up && record.direction != "down") return wrong("direction", "must be up or down");
        return withMapping(call, [&](const TrackballProfile& profile, const ButtonMapping& mapping) {
            call.app.profileManager.moveMapping(mapping.id, profile.id,
                                                up ? MoveDirection::towardsStart : MoveDirection::towardsEnd);
            return call.done();
        });
    });
}

Problem showMenu(const Call& call) {
    call.app.smartButtonController->show(call.app.profileManager.activeProfile().smartButton);
    return call.done();
}

/// Hands the open menu's view on; without a menu the call has failed.
template <typename Use>
Problem withMenu(const Call& call, Use&& use) {
    const auto view = call.menu.view();
    if (!view) return call.failed("no menu is open");
    return std::forward<Use>(use)(*view);
}

Problem chooseEntry(const Call& call) {
    return with<script::Index>(call, [&](const auto& record) {
        return withMenu(call, [&](const SmartButtonRadialView& view) {
            if (record.index >= view.layout().entries.size()) return call.failed("no such entry");
            view.onLaunch(view.apps[record.index]);
            return call.done();
        });
    });
}

Problem menuEdit(const Call& call) {
    return withMenu(call, [&](const SmartButtonRadialView& view) {
        view.onEdit();
        return call.done();
    });
}

Problem menuApplications(const Call& call) {
    return withMenu(call, [&](const SmartButtonRadialView& view) {
        view.onOpenApplications();
        return call.done();
    });
}

Problem menuDismiss(const Call& call) {
    return withMenu(call, [&](const SmartButtonRadialView& view) {
        view.onDismiss();
        return call.done();
    });
}

Problem exportBackup(const Call& call) {
    return with<script::Backup>(call, [&](const auto& record) {
        const auto settings =
            record.settings ? std::optional(SettingsTransfer(call.app.settings).current()) : std::nullopt;
        const auto error = call.app.profileManager.exportBackup(call.files, record.path, settings);
        return error ? call.failed(error->text) : call.done();
    });
}

Problem importBackup(const Call& call) {
    return with<script::Path>(call, [&](const auto& record) {
        const auto imported = call.app.profileManager.importBackup(call.files, record.path);
        if (const auto* error = std::get_if<TransferError>(&imported)) return call.failed(error->text);
        const auto& result = std::get<BackupImportResult>(imported);
        if (result.settings) SettingsTransfer(call.app.settings).apply(*result.settings);
        call.tell(std::to_string(result.profileCount));
        return Problem();
    });
}

Problem toggleLaunchAtLogin(const Call& call) {
    call.app.loginManager.toggle();
    return call.done();
}

Problem requestAutomation(const Call& call) {
    call.app.permissions.requestAutomationPermissionIfNeeded();
    return call.done();
}

struct Operation {
    std::string_view name;
    Problem (*run)(const Call& call);
};

constexpr std::array operations{
    Operation{"start", &start},
    Operation{"stop", &stop},
    Operation{"setDebugMode", &setDebugMode},
    Operation{"setSetting", &setSetting},
    Operation{"persistSpeedSettings", &persistSpeedSettings},
    Operation{"setActive", &setActive},
    Operation{"createProfile", &createProfile},
    Operation{"rename", &rename},
    Operation{"duplicate", &duplicate},
    Operation{"delete", &deleteProfile},
    Operation{"updateMapping", &updateMapping},
    Operation{"addExtraButtonMapping", &addExtraButtonMapping},
    Operation{"addScrollMappings", &addScrollMappings},
    Operation{"removeExtraButtonMapping", &removeExtraButtonMapping},
    Operation{"moveMapping", &moveMapping},
    Operation{"showMenu", &showMenu},
    Operation{"chooseEntry", &chooseEntry},
    Operation{"menuEdit", &menuEdit},
    Operation{"menuApplications", &menuApplications},
    Operation{"menuDismiss", &menuDismiss},
    Operation{"toggleLaunchAtLogin", &toggleLaunchAtLogin},
    Operation{"exportBackup", &exportBackup},
    Operation{"importBackup", &importBackup},
    Operation{"requestAutomation", &requestAutomation},
};

}  // namespace

Problem callOperation(const OperationScope& scope, const Value& line, const TellOutcome& tell) {
    script::OperationName asked;
    if (auto problem = json::read(line, asked, nullptr)) return problem;
    for (const auto& operation : operations) {
        if (operation.name != asked.operation) continue;
        return operation.run({{scope}, line, [&](const Outcome& outcome) { tell(operation.name, outcome); }});
    }
    return wrong("operation", "\"" + asked.operation + "\" is not an operation here");
}

}  // namespace trelvan
