#include "Core/Check/SettingsCheck.hpp"

#include "Core/Check/RecordCheck.hpp"
#include "Core/Check/SettingsPlaces.hpp"
#include "Core/Settings/SettingsCatalogue.hpp"
#include "Utilities/NearestWord.hpp"
#include "Utilities/Text.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <span>
#include <tuple>
#include <utility>

namespace trelvan {

namespace {

using json::Value;

constexpr std::string_view profilesKey = setting::row("profiles").key;
constexpr std::string_view activeProfileKey = setting::row("activeProfileID").key;

std::string numberText(double number) {
    std::array<char, 32> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    return {digits.data(), end};
}

DefaultsValue storedFormOf(const Value& value) {
    if (value.is_boolean()) return value.get<bool>();
    if (value.is_number()) return value.get<double>();
    if (value.is_string()) return value.get<std::string>();
    return Data{};
}

class Checker {
  public:
    Checker(std::string_view file, const CheckSurroundings& surroundings)
        : file_(file), surroundings_(surroundings) {}

    Findings run() {
        const auto content = json::parse(file_);
        if (!content) {
            add(Severity::error, "", "the file is not read: " + content.error().problem,
                "el archivo no se lee: no es JSON válido");
            findings_.back().position = content.error().position.value_or(TextPosition{});
            return std::move(findings_);
        }
        const SettingsPlaces places(file_);
        if (!content->is_object()) {
            add(Severity::error, "", "the file is not read: it is not a JSON object",
                "el archivo no se lee: no es un objeto JSON");
        } else {
            for (const auto& [key, value] : content->items()) checkMember(key, value, places);
            checkActiveProfile(*content);
        }
        for (auto& finding : findings_) {
            if (finding.position == TextPosition{}) finding.position = places.of(finding.path);
        }
        std::ranges::stable_sort(findings_, {}, [](const Finding& finding) {
            return std::pair(finding.position.line, finding.position.column);
        });
        return std::move(findings_);
    }

  private:
    void add(Severity severity, std::string path, std::string english, std::string spanish) {
        findings_.push_back({.severity = severity,
                             .path = std::move(path),
                             .message = {std::move(english), std::move(spanish)}});
    }

    void checkMember(const std::string& key, const Value& value, const SettingsPlaces& places) {
        const auto* const row = std::ranges::find(setting::all, key, &SettingRow::key);
        if (row == setting::all.end() || !row->isStored()) return unknownKey(key);
        switch (row->kind) {
            case SettingKind::data:
                return checkProfiles(value, places);
            case SettingKind::number:
                return checkNumber(*row, value);
            case SettingKind::boolean:
                return checkBoolean(*row, value);
            case SettingKind::string:
                return checkString(*row, value);
        }
    }

    void unknownKey(const std::string& key) {
        std::vector<std::string_view> known;
        for (const auto& row : setting::all) {
            if (row.isStored()) known.push_back(row.key);
        }
        add(Severity::warning, key, "unknown key, which has no effect", "clave desconocida, sin efecto");
        if (const auto nearest = nearestWord(key, known)) findings_.back().suggestion = known[*nearest];
    }

    void ignored(const SettingRow& row, const Value& value, TextPair expected, const std::string& instead) {
        const std::string found = json::serialize(value);
        add(Severity::warning, std::string(row.key),
            "expected " + std::string(expected.english) + ", found " + found + "; counts as " + instead,
            "se esperaba " + std::string(expected.spanish) + ", hay " + found + "; cuenta como " + instead);
    }

    void checkNumber(const SettingRow& row, const Value& value) {
        const auto number = row.numberOf(storedFormOf(value));
        if (!number) return ignored(row, value, {"a number", "un número"}, numberText(row.initial));
        checkRange(row, *number);
    }

    void checkRange(const SettingRow& row, double number) {
        const std::string range = numberText(row.minimum) + " – " + numberText(row.maximumLoaded);
        if (row.isReset(number)) {
            const std::string back = numberText(row.initial);
            add(Severity::warning, std::string(row.key),
                "outside " + range + ": a start sets it back to " + back + ", in the file too",
                "fuera de " + range + ": al iniciar vuelve a " + back + ", también en el archivo");
        } else if (const double accepted = row.accepted(number).value_or(number); accepted != number) {
            const std::string taken = numberText(accepted);
            add(Severity::warning, std::string(row.key), "outside " + range + ": counts as " + taken,
                "fuera de " + range + ": cuenta como " + taken);
        }
    }

    void checkBoolean(const SettingRow& row, const Value& value) {
        if (value.is_boolean()) return;
        const bool taken = row.booleanOf(storedFormOf(value)).value_or(row.isOn);
        ignored(row, value, {"true or false", "true o false"}, taken ? "true" : "false");
    }

    void checkString(const SettingRow& row, const Value& value) {
        const std::string instead = "\"" + std::string(row.text) + "\"";
        if (!value.is_string()) return ignored(row, value, {"a string", "una cadena de texto"}, instead);
        const auto& text = value.get_ref<const std::string&>();
        if (row.isWord(text)) return;
        const std::string found = json::serialize(value);
        add(Severity::warning, std::string(row.key), found + " is not known; counts as " + instead,
            found + " no se conoce; cuenta como " + instead);
        if (const auto nearest = nearestWord(text, row.words))
            findings_.back().suggestion = row.words[*nearest];
        findings_.back().allowed.assign(row.words.begin(), row.words.end());
    }

    void checkProfiles(const Value& value, const SettingsPlaces& places) {
        const std::string key(profilesKey);
        if (value.is_array()) return checkProfileList(value);
        if (!value.is_object()) {
            return add(Severity::error, key, "expected an array of profiles",
                       "se esperaba una lista de perfiles");
        }
        if (places.innerProfiles().empty()) return;
        const auto inner = json::parse(places.innerProfiles());
        if (inner) return checkProfileList(*inner);
        add(Severity::error, key, inner.error().problem, "no es JSON válido");
        if (inner.error().position)
            findings_.back().position =
                places.ofInner(offsetOf(places.innerProfiles(), *inner.error().position));
    }

    static std::size_t offsetOf(std::string_view text, TextPosition position) {
        std::size_t offset = 0;
        for (std::size_t line = 1; line < position.line; ++line) offset = text.find('\n', offset) + 1;
        return offset + position.column - 1;
    }

    void checkProfileList(const Value& profiles) {
        const std::string key(profilesKey);
        checkProfileRecords(profiles, key, findings_);
        if (!profiles.is_array()) return;
        if (profiles.empty())
            add(Severity::note, key, "no profile: the default one is used",
                "sin perfiles: se usa el perfil por defecto");
        for (std::size_t index = 0; index < profiles.size(); ++index) {
            const std::string path = key + "[" + std::to_string(index) + "]";
            TrackballProfile profile;
            checkSlotCounts(profiles[index], path);
            if (json::read(profiles[index], profile, &Uuid::random)) continue;
            checkProfile(profile, path, surroundings_, findings_);
            ids_.push_back(profile.id);
        }
    }

    /// The record holds the number after its correction.
    void checkSlotCounts(const Value& profile, const std::string& path) {
        const auto* const mappings = profile.is_object() ? json::member(profile, "mappings") : nullptr;
        if (mappings == nullptr || !mappings->is_array()) return;
        for (std::size_t index = 0; index < mappings->size(); ++index) {
            const Value& mapping = (*mappings)[index];
            const auto* const count = mapping.is_object() ? json::member(mapping, "functionSlots") : nullptr;
            std::int64_t number = 0;
            if (count == nullptr || json::read(*count, number, &Uuid::random)) continue;
            const auto taken =
                std::clamp(number, ButtonMapping::minimumFunctionSlots, ButtonMapping::maximumFunctionSlots);
            if (taken == number) continue;
            add(Severity::warning, path + ".mappings[" + std::to_string(index) + "].functionSlots",
                "outside 1 – 4: counts as " + std::to_string(taken),
                "fuera de 1 – 4: cuenta como " + std::to_string(taken));
        }
    }

    void checkActiveProfile(const Value& content) {
        const auto* const active = json::member(content, activeProfileKey);
        // Where the profiles are not read their identifiers are not known.
        const bool isUnread = std::ranges::any_of(
            findings_, [](const Finding& finding) { return finding.severity == Severity::error; });
        if (active == nullptr || !active->is_string() || isUnread) return;
        const auto id = Uuid::parse(active->get_ref<const std::string&>());
        if (id && std::ranges::find(ids_, *id) != ids_.end()) return;
        add(Severity::warning, std::string(activeProfileKey), "names no profile: the first one is active",
            "no nombra ningún perfil: el primero está activo");
    }

    std::string_view file_;
    const CheckSurroundings& surroundings_;
    Findings findings_;
    /// Of the profiles that decode.
    std::vector<Uuid> ids_;
};

}  // namespace

Findings checkSettings(std::string_view file, const CheckSurroundings& surroundings) {
    return Checker(file, surroundings).run();
}

}  // namespace trelvan
