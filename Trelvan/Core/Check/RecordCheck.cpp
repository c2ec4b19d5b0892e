#include "Core/Check/RecordCheck.hpp"

#include "Core/ModifierNames.hpp"
#include "Utilities/NearestWord.hpp"
#include "Utilities/Text.hpp"

#include <algorithm>
#include <concepts>
#include <limits>
#include <span>
#include <type_traits>

namespace trelvan {

namespace {

using json::Value;

/// Values longer than this are not repeated in a message.
constexpr std::size_t longestQuoted = 60;

std::string quoted(const Value& value) {
    std::string text = json::serialize(value);
    if (text.size() <= longestQuoted) return text;
    std::size_t end = longestQuoted;
    // Not within a character.
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) --end;
    return text.substr(0, end) + "…";
}

void expect(Findings& findings, const std::string& path, const Value& found, TextPair expected) {
    const std::string value = quoted(found);
    findings.push_back(
        {.severity = Severity::error,
         .path = path,
         .message = {std::string(InlineText("expected ", expected.english, ", found ", value).view()),
                     std::string(InlineText("se esperaba ", expected.spanish, ", hay ", value).view())}});
}

template <typename Enum>
TextPair nounFor() {
    if constexpr (std::same_as<Enum, ButtonAction>) return {"an action", "una acción"};
    if constexpr (std::same_as<Enum, ButtonModifierTrigger>) return {"a modifier", "un modificador"};
    return {"a kind of menu entry", "un tipo de entrada del menú"};
}

std::string nearestOf(const std::string& text, std::span<const std::string_view> values) {
    const auto nearest = nearestWord(text, values);
    return nearest ? std::string(values[*nearest]) : std::string();
}

/// What was meant by a text that is not stored for any case. People write what the interface shows them.
template <typename Enum>
std::string meant(const std::string& text) {
    const auto& values = RawValueTable<Enum>::rawValues;
    if constexpr (std::same_as<Enum, ButtonAction>) {
        std::vector<std::string_view> names(values.begin(), values.end());
        for (const auto action : allCases<ButtonAction>()) names.push_back(englishLabel(action));
        const auto nearest = nearestWord(text, names);
        return nearest ? std::string(values[*nearest % values.size()]) : std::string();
    }
    if constexpr (std::same_as<Enum, ButtonModifierTrigger>) {
        if (const auto modifier = modifierNamed(text)) return std::string(rawValue(modifier->trigger));
        if (folded(text) == "none" || text.empty()) return std::string(rawValue(ButtonModifierTrigger::none));
    }
    return nearestOf(text, values);
}

template <RecordWithFields Record>
void check(const Value& value, const std::string& path, Findings& findings, const Record*);

template <RawRepresentable Enum>
void check(const Value& value, const std::string& path, Findings& findings, const Enum*) {
    if (value.is_string()) {
        const auto& text = value.get_ref<const std::string&>();
        if (fromRawValue<Enum>(text)) return;
        const auto noun = nounFor<Enum>();
        const auto& values = RawValueTable<Enum>::rawValues;
        findings.push_back({.severity = Severity::error,
                            .path = path,
                            .message = {quoted(value) + " is not " + std::string(noun.english),
                                        quoted(value) + " no es " + std::string(noun.spanish)},
                            .suggestion = meant<Enum>(text),
                            .allowed = std::vector<std::string>(values.begin(), values.end())});
        return;
    }
    expect(findings, path, value, nounFor<Enum>());
}

void check(const Value& value, const std::string& path, Findings& findings, const bool*) {
    if (!value.is_boolean()) expect(findings, path, value, {"true or false", "true o false"});
}

void check(const Value& value, const std::string& path, Findings& findings, const std::string*) {
    if (!value.is_string()) expect(findings, path, value, {"a string", "una cadena de texto"});
}

void check(const Value& value, const std::string& path, Findings& findings, const Uuid*) {
    const bool isUuid = value.is_string() && Uuid::parse(value.get_ref<const std::string&>());
    if (!isUuid) expect(findings, path, value, {"a UUID", "un UUID"});
}

template <std::integral Number>
requires(!std::same_as<Number, bool>) void check(const Value& value, const std::string& path,
                                                 Findings& findings, const Number*) {
    Number number{};
    if (!json::read(value, number, &Uuid::random)) return;
    if constexpr (sizeof(Number) == sizeof(std::int64_t)) {
        // Nobody comes near these limits.
        return expect(findings, path, value, {"a whole number", "un número entero"});
    }
    using Limits = std::numeric_limits<Number>;
    const InlineText english("a whole number from ", Limits::min(), " to ", Limits::max());
    const InlineText spanish("un número entero de ", Limits::min(), " a ", Limits::max());
    expect(findings, path, value, {english.view(), spanish.view()});
}

template <typename T>
void check(const Value& value, const std::string& path, Findings& findings, const std::optional<T>*) {
    check(value, path, findings, static_cast<const T*>(nullptr));
}

template <typename T>
void check(const Value& value, const std::string& path, Findings& findings, const std::vector<T>*) {
    if (!value.is_array()) return expect(findings, path, value, {"an array", "una lista"});
    for (std::size_t index = 0; index < value.size(); ++index) {
        check(value[index], path + "[" + std::to_string(index) + "]", findings,
              static_cast<const T*>(nullptr));
    }
}

template <typename Field>
void checkField(const Value& object, const Field& field, const std::string& path, Findings& findings) {
    using T = typename Field::Value;
    const std::string key(field.key);
    const Value* value = json::member(object, key);
    const bool hasLegacy = !field.legacyKey.empty() && json::member(object, field.legacyKey) != nullptr;
    if (value != nullptr && hasLegacy) {
        findings.push_back(
            {.severity = Severity::warning,
             .path = path + "." + std::string(field.legacyKey),
             .message = {"has no effect beside '" + key + "'", "no tiene efecto junto a '" + key + "'"}});
    }
    if (value != nullptr) return check(*value, path + "." + key, findings, static_cast<const T*>(nullptr));
    if (hasLegacy) {
        return check(*json::member(object, field.legacyKey), path + "." + std::string(field.legacyKey),
                     findings, static_cast<const T*>(nullptr));
    }
    if (field.whenAbsent == WhenAbsent::fails) {
        findings.push_back({.severity = Severity::error,
                            .path = path,
                            .message = {"the required key '" + key + "' is missing",
                                        "falta la clave obligatoria '" + key + "'"}});
    }
}

template <RecordWithFields Record>
void check(const Value& value, const std::string& path, Findings& findings, const Record*) {
    if (!value.is_object()) return expect(findings, path, value, {"an object", "un objeto"});
    std::vector<std::string_view> known;
    std::apply(
        [&](const auto&... field) {
            (known.push_back(field.key), ...);
            ((field.legacyKey.empty() ? void() : known.push_back(field.legacyKey)), ...);
            (checkField(value, field, path, findings), ...);
        },
        Record::fields());
    for (const auto& [key, member] : value.items()) {
        if (std::ranges::find(known, key) != known.end()) continue;
        findings.push_back({.severity = Severity::warning,
                            .path = path + "." + key,
                            .message = {"unknown key, which has no effect and is dropped at the next change",
                                        "clave desconocida: no tiene efecto y se pierde al próximo cambio"},
                            .suggestion = nearestOf(key, known)});
    }
}

}  // namespace

void checkProfileRecords(const Value& profiles, const std::string& path, Findings& findings) {
    check(profiles, path, findings, static_cast<const std::vector<TrackballProfile>*>(nullptr));
}

}  // namespace trelvan
