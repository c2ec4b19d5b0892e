#include "CommandTable.hpp"

#include <algorithm>

namespace trelvan {

namespace {

constexpr std::size_t pageWidth = 79;
/// A left column wider than this has its explanation on the next line.
constexpr std::size_t widestLeftColumn = 24;

/// In characters of UTF-8.
std::size_t widthOf(std::string_view text) {
    return static_cast<std::size_t>(
        std::ranges::count_if(text, [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; }));
}

/// Breaks a paragraph into lines; the first goes on at `column`, the others are indented.
std::string wrapped(std::string_view text, std::size_t indent, std::size_t column) {
    std::string result;
    while (!text.empty()) {
        const auto end = std::min(text.find(' '), text.size());
        const auto word = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        const bool first = column <= indent;
        if (!first && column + 1 + widthOf(word) > pageWidth) {
            result.append("\n").append(indent, ' ');
            column = indent;
        } else if (!first) {
            result += ' ';
            ++column;
        }
        result += word;
        column += widthOf(word);
    }
    return result + "\n";
}

std::string paragraphs(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const auto end = std::min(text.find('\n'), text.size());
        result += wrapped(text.substr(0, end), 0, 0);
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return result;
}

std::string leftColumn(const OptionRow& option, AppLanguage language) {
    std::string text;
    if (option.letter != 0) text.append("-").append(1, option.letter).append(", ");
    text += option.name;
    if (option.kind != ValueKind::flag) text.append(" ").append(localized(language, option.valueName));
    return text;
}

/// Two columns, the right one wrapped.
struct Line {
    std::string left;
    std::string_view right;
};

std::string columns(std::span<const Line> lines) {
    std::size_t width = 0;
    for (const auto& line : lines) {
        if (widthOf(line.left) <= widestLeftColumn) width = std::max(width, widthOf(line.left));
    }
    const std::size_t right = 2 + width + 2;
    std::string result;
    for (const auto& line : lines) {
        result.append("  ").append(line.left);
        if (widthOf(line.left) <= width) {
            result.append(width + 2 - widthOf(line.left), ' ');
        } else {
            result.append("\n").append(right, ' ');
        }
        result += wrapped(line.right, right, right);
    }
    return result;
}

std::string usageOf(const CommandRow& row, AppLanguage language) {
    const std::string head = row.name.empty() ? "trelvan" : "trelvan " + std::string(row.name);
    std::string text = head;
    std::size_t column = widthOf(localized(language, "Usage: ", "Uso: ")) + widthOf(head);
    const std::size_t indent = column + 1;
    const auto add = [&](const std::string& part) {
        if (column + 1 + widthOf(part) > pageWidth) {
            text.append("\n").append(indent, ' ');
            column = indent;
        } else {
            text += ' ';
            ++column;
        }
        text += part;
        column += widthOf(part);
    };
    for (const auto& option : row.options) {
        std::string part(option.name);
        if (option.kind != ValueKind::flag) part.append(" ").append(localized(language, option.valueName));
        add(option.required ? part : "[" + part + "]");
    }
    if (row.argument) {
        const std::string name(localized(language, row.argument->name));
        add(row.argument->required ? name : "[" + name + "]");
    }
    return text;
}

std::string optionsOf(const CommandRow& row, AppLanguage language) {
    std::vector<Line> lines;
    for (const auto& option : row.options)
        lines.push_back({leftColumn(option, language), localized(language, option.help)});
    lines.push_back({leftColumn(helpOption(), language), localized(language, helpOption().help)});
    return std::string(localized(language, "Options:\n", "Opciones:\n")) + columns(lines);
}

std::string subcommands(AppLanguage language) {
    std::vector<Line> lines;
    for (const auto& row : commandTable().subspan(1))
        lines.push_back({std::string(row.name), localized(language, row.summary)});
    return std::string(localized(language, "Commands:\n", "Órdenes:\n")) + columns(lines) + "\n";
}

std::string statusesOf(const CommandRow& row, AppLanguage language) {
    std::string text(localized(language,
                               "Exit status: 0 normal end, 1 no display or a needed part of it is missing, 2 "
                               "wrong arguments",
                               "Estado de salida: 0 fin normal, 1 no hay pantalla o falta una parte "
                               "necesaria, 2 argumentos incorrectos"));
    for (const auto& [status, meaning] : row.statuses)
        text.append(", ").append(std::to_string(status)).append(" ").append(localized(language, meaning));
    return wrapped(text + ".", 0, 0);
}

}  // namespace

std::string helpText(AppLanguage language, std::string_view subcommand) {
    const auto* const found = commandNamed(subcommand);
    const CommandRow& row = found != nullptr ? *found : commandTable().front();
    const bool whole = found == nullptr;
    std::string text(localized(language, "Usage: ", "Uso: "));
    text += usageOf(row, language) + "\n";
    if (whole)
        text +=
            localized(language, "       trelvan COMMAND [OPTION]...\n", "     trelvan ORDEN [OPCIÓN]...\n");
    text += "\n" + paragraphs(localized(language, row.description)) + "\n";
    if (whole) text += subcommands(language);
    text += optionsOf(row, language) + "\n";
    text += std::string(localized(language, "Example:\n", "Ejemplo:\n")) + "  " + std::string(row.example) +
            "\n      " + wrapped(localized(language, row.exampleMeaning), 6, 6) + "\n";
    text += statusesOf(row, language);
    if (whole) {
        text += localized(language, "\n'trelvan COMMAND --help' tells more of a command.\n",
                          "\n'trelvan ORDEN --help' dice más de una orden.\n");
    }
    return text;
}

}  // namespace trelvan
