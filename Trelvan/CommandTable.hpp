#pragma once

#include "CommandLine.hpp"
#include "Core/Model/AppLanguage.hpp"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// The table of commands. The parser, the help texts and the error messages all read it; nothing about an
/// option is written anywhere else.
namespace trelvan {

/// What an option or argument takes; it is checked while the command line is read.
enum class ValueKind {
    /// No value: the option is there or not.
    flag,
    /// A folder that may be missing; nothing else may stand in its place.
    folder,
    /// A file, or "-" for standard input.
    file,
    wholeNumber,
    /// Names of modifiers joined by plus or comma.
    modifiers,
    /// One of the row's choices.
    choice,
    text,
};

struct OptionRow {
    /// With its two dashes.
    std::string_view name;
    /// The one-letter form without its dash; 0 for none.
    char letter = 0;
    ValueKind kind = ValueKind::flag;
    /// What stands for the value in the help, "DIR".
    TextPair valueName = {};
    TextPair help = {};
    std::span<const std::string_view> choices = {};
    bool required = false;
};

/// What a command takes besides its options.
struct ArgumentRow {
    ValueKind kind = ValueKind::file;
    TextPair name;
    /// What is missing when it is not given, "a script".
    TextPair noun;
    bool required = false;
    /// What it may be, for the completion of `choice`.
    std::span<const std::string_view> choices = {};
};

/// What was given on the command line, each value of the kind that the table asks for.
class GivenArguments {
  public:
    void add(const OptionRow& option, std::string_view value) { options_.emplace_back(&option, value); }
    void setArgument(std::string_view value) { argument_ = value; }

    /// Of an option given more than once the last counts.
    [[nodiscard]] std::optional<std::string_view> value(std::string_view option) const;
    [[nodiscard]] bool has(std::string_view option) const { return value(option).has_value(); }
    [[nodiscard]] std::string text(std::string_view option) const {
        return std::string(value(option).value_or(""));
    }
    [[nodiscard]] const std::optional<std::string_view>& argument() const { return argument_; }
    [[nodiscard]] std::span<const std::pair<const OptionRow*, std::string_view>> options() const {
        return options_;
    }

  private:
    std::vector<std::pair<const OptionRow*, std::string_view>> options_;
    std::optional<std::string_view> argument_;
};

/// An exit status besides those of every command.
struct StatusRow {
    int status;
    TextPair meaning;
};

struct CommandRow {
    /// Empty for the program without a subcommand.
    std::string_view name;
    /// One line of the list of commands.
    TextPair summary;
    /// Paragraphs, separated by line breaks; the help breaks the lines.
    TextPair description;
    /// In the order of the help. `--help` is everywhere and stands in no row.
    std::span<const OptionRow> options;
    std::optional<ArgumentRow> argument;
    /// A command that can be typed as it stands.
    std::string_view example;
    TextPair exampleMeaning;
    std::span<const StatusRow> statuses;
    Command (*make)(const GivenArguments& given);
};

/// The program itself first, then its subcommands in the order of the help.
[[nodiscard]] std::span<const CommandRow> commandTable();

/// The option that every command has.
[[nodiscard]] const OptionRow& helpOption();

/// Null when no subcommand has that name.
[[nodiscard]] const CommandRow* commandNamed(std::string_view name);

}  // namespace trelvan
