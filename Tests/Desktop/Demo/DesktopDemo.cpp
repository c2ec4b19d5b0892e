/// Shows the program at work where there is no desktop: a private X server, an ordinary application's window,
/// and a trackball whose button 3 the program turns into Copy. Ends with status 0 when the window received
/// Control+C.
#include "Desktop/Demo/Viewer.hpp"
#include "Desktop/Harness/ClientWindow.hpp"
#include "Desktop/Harness/TrelvanProcess.hpp"
#include "Desktop/Harness/VirtualDesktop.hpp"

#include <X11/keysym.h>
#include <poll.h>
#include <unistd.h>

#include <csignal>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <optional>

namespace trelvan::desktop {
namespace {

constexpr int mappedButton = 3;
const KeyStroke copy{XK_c, ControlMask};

volatile std::sig_atomic_t toldToStop = 0;

constexpr auto usage = R"(desktop-demo: shows the program at work on a private X server

  --once              ends after the demonstration, also at a terminal
  --screenshot FILE   where the picture goes (desktop-demo.png beside the program)
  --pid-file FILE     holds the process number while the demonstration runs
  --help              this text
)";

struct Options {
    bool once = false;
    std::filesystem::path screenshot =
        std::filesystem::path(programPath()).parent_path() / "desktop-demo.png";
    std::filesystem::path pidFile;
};

/// No value when the command line cannot be understood.
std::optional<Options> readOptions(int count, char** arguments) {
    Options options;
    for (int index = 1; index < count; ++index) {
        const std::string argument = arguments[index];
        const bool hasValue = index + 1 < count;
        if (argument == "--once") {
            options.once = true;
        } else if (argument == "--screenshot" && hasValue) {
            options.screenshot = std::filesystem::absolute(arguments[++index]);
        } else if (argument == "--pid-file" && hasValue) {
            options.pidFile = std::filesystem::absolute(arguments[++index]);
        } else {
            return std::nullopt;
        }
    }
    return options;
}

/// A file that says who runs the demonstration, for as long as it does.
class PidFile {
  public:
    explicit PidFile(std::filesystem::path file) : path(std::move(file)) {
        if (!path.empty()) writeFile(path, std::to_string(::getpid()) + "\n");
    }
    ~PidFile() {
        std::error_code ignored;
        if (!path.empty()) std::filesystem::remove(path, ignored);
    }
    PidFile(const PidFile&) = delete;
    PidFile& operator=(const PidFile&) = delete;

  private:
    std::filesystem::path path;
};

class Demonstration {
  public:
    explicit Demonstration(Options chosen)
        : options(std::move(chosen)),
          client(desktop.displayName(), Protocol::core, "Client"),
          viewer(client) {}

    bool perform();
    void keepRunning();

  private:
    bool pressMapped();
    void takeScreenshot();

    Options options;
    VirtualDesktop desktop;
    ClientWindow client;
    Viewer viewer;
    std::optional<TrelvanProcess> program;
};

bool Demonstration::perform() {
    std::cout << "virtual desktop: display " << desktop.displayName() << ", " << VirtualDesktop::width << "x"
              << VirtualDesktop::height << ", window manager openbox" << std::endl;
    program.emplace(desktop, Settings().map(mappedButton, "Copiar"));
    std::cout << "trelvan runs there; its profile maps button " << mappedButton << " to Copy (Copiar)"
              << std::endl;
    viewer.say("trelvan runs: button 3 is mapped to Copy");
    const bool received = pressMapped();
    takeScreenshot();
    return received;
}

bool Demonstration::pressMapped() {
    client.forget();
    const int xNumber = xButton(mappedButton);
    desktop.trackball().click(xNumber);
    // A left click takes the same pipeline after it: when it is there, the mapped button would be too.
    const bool stroke = client.waitForStroke(copy);
    desktop.trackball().click(1);
    const bool click = client.waitForButton(ClientEvent::Kind::buttonRelease, 1);
    const int buttons = client.count(ClientEvent::Kind::buttonPress, static_cast<unsigned>(xNumber));
    std::cout << "trackball pressed: button " << mappedButton << " (X button " << xNumber
              << "), then the left button\n"
              << "client received: " << (stroke ? "Control+C (KeyPress c, state Control)" : "no Control+C")
              << "; events of button " << mappedButton << ": "
              << (buttons == 0 ? "none" : std::to_string(buttons))
              << "; left click: " << (click ? "as it is" : "lost") << std::endl;
    viewer.say("the trackball pressed button 3, then the left button");
    return stroke && click && buttons == 0;
}

void Demonstration::takeScreenshot() {
    try {
        ChildProcess import(Launch{.arguments = {"/usr/bin/import", "-window", "root", options.screenshot},
                                   .environment = desktop.environment(),
                                   .directory = desktop.folder(),
                                   .output = desktop.folder() / "import.output",
                                   .errors = {}});
        const auto status = import.waitForEnd(timeout);
        if (status == 0) {
            std::cout << "screenshot: " << options.screenshot.string() << std::endl;
            return;
        }
    } catch (const std::runtime_error& error) {
        std::cerr << error.what() << '\n';
    }
    std::cerr << "no screenshot: " << readFile(desktop.folder() / "import.output") << std::endl;
}

void Demonstration::keepRunning() {
    std::cout << "\nThe desktop stays up.\n"
              << "  press the button again:  Enter\n"
              << "  try a program on it:     DISPLAY=" << desktop.displayName() << " xterm\n"
              << "  a picture of it:         import -display " << desktop.displayName()
              << " -window root now.png\n"
              << "  stop it:                 Ctrl+C here, scripts/run --stop, or kill " << ::getpid()
              << std::endl;
    bool asking = true;
    while (toldToStop == 0 && desktop.isAlive()) {
        pollfd sources[2] = {
            {.fd = ConnectionNumber(client.connection().get()), .events = POLLIN, .revents = 0},
            {.fd = asking ? STDIN_FILENO : -1, .events = POLLIN, .revents = 0}};
        if (::poll(sources, 2, 1000) <= 0) continue;
        if (sources[0].revents != 0) viewer.paint();
        if (sources[1].revents != 0) {
            char typed[256];
            asking = ::read(STDIN_FILENO, typed, sizeof typed) > 0;
            if (asking) {
                pressMapped();
                takeScreenshot();
            }
        }
    }
}

int run(const Options& options) {
    const PidFile pidFile(options.pidFile);
    Demonstration demonstration(options);
    const bool received = demonstration.perform();
    if (!options.once && ::isatty(STDIN_FILENO) != 0) {
        demonstration.keepRunning();
    } else {
        std::cout
            << "This was all, and everything is stopped again. In a terminal, scripts/run --demo keeps the "
               "desktop\n"
               "up, says how to watch it and try programs on it, and ends with Ctrl+C or scripts/run --stop."
            << std::endl;
    }
    return received ? 0 : 1;
}

}  // namespace
}  // namespace trelvan::desktop

int main(int argc, char** argv) {
    using namespace trelvan::desktop;
    if (argc == 2 && std::strcmp(argv[1], "--help") == 0) {
        std::cout << usage;
        return 0;
    }
    const auto options = readOptions(argc, argv);
    if (!options) {
        std::cerr << usage;
        return 2;
    }
    const auto stop = [](int) { toldToStop = 1; };
    std::signal(SIGINT, stop);
    std::signal(SIGTERM, stop);
    std::signal(SIGHUP, stop);
    try {
        return run(*options);
    } catch (const std::exception& error) {
        std::cerr << "desktop-demo: " << error.what() << std::endl;
        return 1;
    }
}
