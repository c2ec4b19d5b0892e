// What the program costs while nobody does anything: wake-ups and processor time of all its threads over a
// minute, with Keep Awake and the notifiers on, on a private desktop with a notification daemon and a sound
// server.
//
//   idle_benchmark [SECONDS]

#include "Desktop/Harness/NotificationDaemon.hpp"
#include "Desktop/Harness/SoundServer.hpp"
#include "Desktop/Harness/TrelvanProcess.hpp"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <string>

namespace {

using namespace trelvan::desktop;

struct Cost {
    long wakeUps = 0;
    /// User and system.
    long ticks = 0;
};

/// The sum over all threads.
Cost costOf(pid_t process) {
    Cost result;
    for (const auto& thread :
         std::filesystem::directory_iterator("/proc/" + std::to_string(process) + "/task")) {
        std::istringstream status(readFile(thread.path() / "status"));
        for (std::string word; status >> word;) {
            if (word != "voluntary_ctxt_switches:") continue;
            long switches = 0;
            status >> switches;
            result.wakeUps += switches;
        }
        const std::string stat = readFile(thread.path() / "stat");
        // The name in the second field may have blanks; the fields are counted from behind it.
        std::istringstream fields(stat.substr(stat.rfind(')') + 2));
        std::string field;
        constexpr int fieldsBeforeTimes = 11;
        for (int index = 0; index < fieldsBeforeTimes; ++index) fields >> field;
        long user = 0;
        long system = 0;
        fields >> user >> system;
        result.ticks += user + system;
    }
    return result;
}

}  // namespace

int main(int argc, char** argv) {
    const int seconds = argc > 1 ? std::atoi(argv[1]) : 60;
    if (seconds <= 0) {
        std::fputs("idle_benchmark [SECONDS]\n", stderr);
        return 2;
    }
    VirtualDesktop desktop;
    const NotificationDaemon daemon(desktop);
    const SoundServer sound(desktop);
    TrelvanProcess program(desktop, Settings().map(3, "Copiar").set("keep_awake_enabled", true));
    // What the start itself costs is over by then.
    sleep(3);
    const Cost before = costOf(program.id());
    sleep(static_cast<unsigned>(seconds));
    const Cost after = costOf(program.id());
    const double length = seconds;
    std::printf("idle for %d s: %.2f wake-ups a second (aim: 6), %.3f %% of a processor\n", seconds,
                static_cast<double>(after.wakeUps - before.wakeUps) / length,
                100.0 * static_cast<double>(after.ticks - before.ticks) /
                    static_cast<double>(sysconf(_SC_CLK_TCK)) / length);
    return program.isRunning() ? 0 : 1;
}
