#include "Desktop/Harness/SoundServer.hpp"

#include "Desktop/Harness/Wait.hpp"

#include <stdexcept>
#include <utility>

namespace trelvan::desktop {

namespace {

constexpr auto microphone = "microphone";

}  // namespace

SoundServer::SoundServer(const VirtualDesktop& desktop)
    : place(desktop),
      process(std::make_unique<ChildProcess>(
          Launch{.arguments = {"/usr/bin/pulseaudio", "-n", "--daemonize=no", "--exit-idle-time=-1",
                               "--disable-shm=yes", "--use-pid-file=no", "-L", "module-native-protocol-unix",
                               "-L", "module-null-sink", "-L",
                               std::string("module-null-source source_name=") + microphone},
                 .environment = desktop.environment(),
                 .directory = desktop.folder(),
                 .output = desktop.folder() / "pulseaudio.output",
                 .errors = {}})) {
    const auto serves = [&] { return control({"set-default-source", microphone}); };
    if (!waitUntil([&] { return serves() || !process->isRunning(); }) || !process->isRunning()) {
        throw std::runtime_error("the sound server did not start:\n" +
                                 readFile(desktop.folder() / "pulseaudio.output"));
    }
}

bool SoundServer::control(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "/usr/bin/pactl");
    ChildProcess command(Launch{.arguments = std::move(arguments),
                                .environment = place.environment(),
                                .directory = place.folder(),
                                .output = place.folder() / "pactl.output",
                                .errors = {}});
    return command.waitForEnd(timeout) == 0;
}

void SoundServer::setMute(bool muted) {
    if (!control({"set-source-mute", microphone, muted ? "1" : "0"}))
        throw std::runtime_error("the microphone cannot be muted");
}

void SoundServer::setVolume(int percent) {
    if (!control({"set-source-volume", microphone, std::to_string(percent) + "%"}))
        throw std::runtime_error("the microphone has no volume");
}

void SoundServer::unplug() {
    if (!control({"unload-module", "module-null-source"})) throw std::runtime_error("the microphone stays");
}

void SoundServer::plug() {
    if (!control({"load-module", "module-null-source", std::string("source_name=") + microphone}) ||
        !control({"set-default-source", microphone}))
        throw std::runtime_error("no microphone comes");
}

}  // namespace trelvan::desktop
