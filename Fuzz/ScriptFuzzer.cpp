#include "DryRun/Simulation.hpp"
#include "Utilities/Fatal.hpp"

#include <cstddef>
#include <cstdint>
#include <string_view>

/// Whatever the lines: each runs or is refused with a reason, and every trace line is one line.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    using namespace trelvan;
    std::string_view text(reinterpret_cast<const char*>(bytes), size);
    Simulation simulation(macShortcuts, [](std::string_view line) {
        if (line.find('\n') != line.size() - 1) fatal("a trace line that is not one line");
    });
    while (!text.empty()) {
        const auto end = text.find('\n');
        if (const auto reason = simulation.runLine(text.substr(0, end)); reason && reason->empty())
            fatal("a line refused without a reason");
        if (end == std::string_view::npos) break;
        text.remove_prefix(end + 1);
    }
    simulation.finish();
    return 0;
}
