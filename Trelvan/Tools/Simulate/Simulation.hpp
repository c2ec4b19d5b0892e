#pragma once

#include "Core/Model/AppLanguage.hpp"
#include "Platform/ActionShortcuts.hpp"
#include "Platform/Files.hpp"
#include "Tools/Simulate/TraceWriter.hpp"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace trelvan {

/// Runs a script of events and changes of the world, a JSON object a line, through the real services on the
/// simulated platform, and tells everything that leaves them. Nothing of the machine but `files` is touched,
/// time is virtual, memory stays the same however long the script is. One thread.
class Simulation {
  public:
    /// The rules of the platform that the script names, otherwise macOS'. `files` holds the backups that the
    /// script writes and reads, and outlives this.
    Simulation(Files& files, TraceWriter::Output output);
    /// The rules of the platform whose shortcuts these are, whatever the script says.
    Simulation(const ActionShortcuts& shortcuts, Files& files, TraceWriter::Output output);
    Simulation(const Simulation&) = delete;
    Simulation& operator=(const Simulation&) = delete;
    ~Simulation();

    /// Runs one line; blank lines do nothing. Why it cannot be run, if so: nothing has happened then but that
    /// time went on.
    [[nodiscard]] std::optional<std::string> runLine(std::string_view line);
    /// Lets the work in the background come to its end.
    void finish();

  private:
    class World;
    std::unique_ptr<World> world_;
};

/// `trelvan simulate`: the script is a file's path, or "-" for standard input; the trace goes to standard
/// output. `shortcuts` are those of a platform whose rules hold whatever the script says, or null. `language`
/// is that of the error for a script that cannot be read. The exit status.
[[nodiscard]] int simulate(const std::string& script, const ActionShortcuts* shortcuts, AppLanguage language);

}  // namespace trelvan
