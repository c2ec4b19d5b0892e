#include "CommandLine.hpp"
#include "Core/Model/AppLanguage.hpp"
#include "Platform/Files.hpp"
#include "Tools/Simulate/Simulation.hpp"
#include "Utilities/Text.hpp"

#include <cstdio>
#include <fstream>
#include <iostream>
#include <optional>
#include <string>
#include <string_view>

namespace trelvan {

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
