#include "Core/Model/RecordJson.hpp"
#include "Tools/Simulate/Simulation.hpp"
#include "Utilities/Fatal.hpp"

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

using namespace trelvan;

namespace {

/// A script may name any file of the machine; here they are none.
class FilesInMemory final : public Files {
  public:
    std::variant<std::string, FileError> read(const std::string& path) override {
        const auto found = contents_.find(path);
        if (found == contents_.end()) return FileError{path + ": no such file"};
        return found->second;
    }
    std::optional<FileError> write(const std::string& path, std::string_view bytes) override {
        contents_[path] = bytes;
        return std::nullopt;
    }

  private:
    std::map<std::string, std::string> contents_;
};

/// A script that lets months pass is fine and slow: every poll of them is made.
bool isSlow(std::string_view line) {
    constexpr double aWhile = 1e5;
    const auto parsed = json::parse(line);
    if (!parsed || !parsed->is_object()) return false;
    for (const char* key : {"at", "seconds"}) {
        const auto* value = json::member(*parsed, key);
        if (value != nullptr && value->is_number() && value->get<double>() > aWhile) return true;
    }
    return false;
}

}  // namespace

/// Whatever the lines: each runs or is refused with a reason, and every trace line is one line.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    std::string_view text(reinterpret_cast<const char*>(bytes), size);
    FilesInMemory files;
    Simulation simulation(macShortcuts, files, [](std::string_view line) {
        if (line.find('\n') != line.size() - 1) fatal("a trace line that is not one line");
    });
    while (!text.empty()) {
        const auto end = text.find('\n');
        const auto line = text.substr(0, end);
        if (isSlow(line)) return 0;
        if (const auto reason = simulation.runLine(line); reason && reason->empty())
            fatal("a line refused without a reason");
        if (end == std::string_view::npos) break;
        text.remove_prefix(end + 1);
    }
    simulation.finish();
    return 0;
}
