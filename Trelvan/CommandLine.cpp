#include "CommandLine.hpp"

#include "CommandTable.hpp"
#include "Core/ModifierNames.hpp"
#include "Utilities/NearestWord.hpp"
#include "Utilities/Text.hpp"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <utility>
#include <vector>

namespace trelvan {

namespace {

constexpr std::string_view stopsOptions = "--";

/// What is wrong with a value; none when nothing is.
using Complaint = std::optional<std::string>;

bool isWholeNumber(std::string_view text) {
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc{} && end == text.data() + text.size();
}

bool isSomethingElseThanAFolder(std::string_view path) {
    std::error_code error;
    const auto status = std::filesystem::status(path, error);
    return std::filesystem::exists(status) && !std::filesystem::is_directory(status);
}

std::string joined(std::span<const std::string_view> words, std::string_view lastSeparator) {
    std::string text;
    for (std::size_t index = 0; index < words.size(); ++index) {
        if (index > 0) text += index + 1 == words.size() ? lastSeparator : ", ";
        text += words[index];
    }
    return text;
}

/// Reads one command line by the table.
class Reader {
  public:
    Reader(std::span<const std::string_view> arguments, AppLanguage language)
        : arguments_(arguments), language_(language) {}

    Command read() {
        while (at_ < arguments_.size() && !answer_) take(arguments_[at_++]);
        if (answer_) return *std::move(answer_);
        if (const auto missing = whatIsMissing()) return wrong(*missing);
        return row_->make(given_);
    }

  private:
    std::string_view pick(TextPair text) const { return localized(language_, text); }

    std::string say(TextPair what, std::string_view about) const {
        return std::string(InlineText(pick(what), " '", about, "'").view());
    }

    command::BadUsage wrong(std::string message) const { return {std::move(message), row_->name}; }
    void refuse(std::string message) { answer_ = wrong(std::move(message)); }

    std::string withSuggestion(std::string message, std::optional<std::string_view> nearest) const {
        if (!nearest) return message;
        return std::move(message)
            .append(pick({"; did you mean '", "; ¿quisiste decir '"}))
            .append(*nearest)
            .append(pick({"'?", "'?"}));
    }

    void take(std::string_view argument) {
        if (optionsEnded_ || argument == "-" || !argument.starts_with('-')) {
            takeArgument(argument);
        } else if (argument == stopsOptions) {
            optionsEnded_ = true;
        } else {
            takeOption(argument);
        }
    }

    void takeArgument(std::string_view argument) {
        const bool mayBeCommand = row_->name.empty() && !optionsEnded_;
        if (const auto* const command = mayBeCommand ? commandNamed(argument) : nullptr) {
            enter(*command);
        } else if (row_->argument && !given_.argument()) {
            given_.setArgument(argument);
        } else if (const auto nearest = mayBeCommand ? nearestCommand(argument) : std::nullopt) {
            refuse(withSuggestion(say({"unknown command", "orden desconocida"}, argument), nearest));
        } else {
            refuse(say({"unexpected argument", "argumento inesperado"}, argument));
        }
    }

    /// Options may stand before the command's name, as long as the command has them.
    void enter(const CommandRow& command) {
        row_ = &command;
        for (const auto& [option, value] : given_.options()) {
            if (optionNamed(option->name) == nullptr) return refuse(unknownOption(option->name));
        }
    }

    void takeOption(std::string_view argument) {
        const auto equals = argument.starts_with("--") ? argument.find('=') : std::string_view::npos;
        const auto name = argument.substr(0, equals);
        const auto* const option = optionNamed(name);
        if (option == nullptr) return refuse(unknownOption(name));
        std::optional<std::string_view> value;
        if (equals != std::string_view::npos) value = argument.substr(equals + 1);
        if (option->kind == ValueKind::flag) {
            if (value)
                return refuse(std::string(name) + std::string(pick({" takes no value", " no lleva valor"})));
            if (option == &helpOption()) {
                answer_ = command::ShowHelp{row_->name};
            } else {
                given_.add(*option, {});
            }
            return;
        }
        // An option in the value's place means that the value was forgotten; "-101" is no option.
        if (!value && at_ < arguments_.size() && optionNamed(arguments_[at_]) == nullptr)
            value = arguments_[at_++];
        if (!value || (value->empty() && option->kind != ValueKind::modifiers))
            return refuse(
                std::string(InlineText(name, pick({" needs ", " necesita "}), nounOf(*option)).view()));
        if (auto complaint = complaintAbout(*option, *value)) return refuse(*std::move(complaint));
        given_.add(*option, *value);
    }

    std::string_view nounOf(const OptionRow& option) const {
        switch (option.kind) {
            case ValueKind::folder:
                return pick({"a folder", "una carpeta"});
            case ValueKind::file:
                return pick({"a file", "un archivo"});
            case ValueKind::wholeNumber:
                return pick({"a number", "un número"});
            default:
                return pick({"a value", "un valor"});
        }
    }

    Complaint complaintAbout(const OptionRow& option, std::string_view value) const {
        const std::string head = std::string(option.name) + ": ";
        switch (option.kind) {
            case ValueKind::folder:
                if (!isSomethingElseThanAFolder(value)) return std::nullopt;
                return head + say({"not a folder:", "no es una carpeta:"}, value);
            case ValueKind::wholeNumber:
                if (isWholeNumber(value)) return std::nullopt;
                return head + say({"not a whole number:", "no es un número entero:"}, value);
            case ValueKind::choice: {
                if (std::ranges::find(option.choices, value) != option.choices.end()) return std::nullopt;
                const auto nearest = nearestWord(value, option.choices);
                return withSuggestion(head + say({joined(option.choices, " or ") + ", not",
                                                  joined(option.choices, " o ") + ", no"},
                                                 value),
                                      nearest ? std::optional(option.choices[*nearest]) : std::nullopt);
            }
            case ValueKind::modifiers: {
                const auto unknown = readModifiers(value).unknown;
                if (unknown.empty()) return std::nullopt;
                std::string text = head + say({"unknown modifier", "modificador desconocido"}, unknown);
                text.append(pick({"; known: ", "; se conocen: "})).append(knownModifierNames);
                return withSuggestion(std::move(text), nearestModifierName(unknown));
            }
            default:
                return std::nullopt;
        }
    }

    /// Null when the command has no such option.
    const OptionRow* optionNamed(std::string_view name) const {
        const auto matches = [name](const OptionRow& option) {
            const bool isLetter = name.size() == 2 && option.letter != 0 && name[1] == option.letter;
            return option.name == name || isLetter;
        };
        if (matches(helpOption())) return &helpOption();
        const auto found = std::ranges::find_if(row_->options, matches);
        return found != row_->options.end() ? &*found : nullptr;
    }

    std::string unknownOption(std::string_view name) const {
        std::vector<std::string_view> names{helpOption().name};
        for (const auto& option : row_->options) names.push_back(option.name);
        const auto nearest = nearestWord(name, names);
        return withSuggestion(say({"unknown option", "opción desconocida"}, name),
                              nearest ? std::optional(names[*nearest]) : std::nullopt);
    }

    static std::optional<std::string_view> nearestCommand(std::string_view word) {
        std::vector<std::string_view> names;
        for (const auto& row : commandTable().subspan(1)) names.push_back(row.name);
        const auto nearest = nearestWord(word, names);
        return nearest ? std::optional(names[*nearest]) : std::nullopt;
    }

    Complaint whatIsMissing() const {
        for (const auto& option : row_->options) {
            if (!option.required || given_.has(option.name)) continue;
            return std::string(InlineText(row_->name, pick({" needs ", " necesita "}), option.name, " ",
                                          pick(option.valueName))
                                   .view());
        }
        if (row_->argument && row_->argument->required && !given_.argument()) {
            return std::string(
                InlineText(row_->name, pick({" needs ", " necesita "}), pick(row_->argument->noun)).view());
        }
        return std::nullopt;
    }

    std::span<const std::string_view> arguments_;
    AppLanguage language_;
    const CommandRow* row_ = &commandTable().front();
    GivenArguments given_;
    std::size_t at_ = 0;
    bool optionsEnded_ = false;
    /// What the command line comes to, once that is clear before its end.
    std::optional<Command> answer_;
};

}  // namespace

Command parseCommandLine(std::span<const std::string_view> arguments, AppLanguage language) {
    return Reader(arguments, language).read();
}

AppLanguage terminalLanguage() {
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const char* value = std::getenv(name);
        if (value == nullptr || *value == '\0') continue;
        return std::string_view(value).starts_with("es") ? AppLanguage::spanish : AppLanguage::english;
    }
    return AppLanguage::english;
}

}  // namespace trelvan
