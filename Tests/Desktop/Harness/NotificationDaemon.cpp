#include "Desktop/Harness/NotificationDaemon.hpp"

#include "Desktop/Harness/Wait.hpp"

#include <sstream>
#include <stdexcept>

namespace trelvan::desktop {

namespace {

bool isServed(const VirtualDesktop& desktop) {
    ChildProcess question(
        Launch{.arguments = {"/usr/bin/dbus-send", "--session", "--print-reply",
                             "--dest=org.freedesktop.DBus", "/org/freedesktop/DBus",
                             "org.freedesktop.DBus.GetNameOwner", "string:org.freedesktop.Notifications"},
               .environment = desktop.environment(),
               .directory = desktop.folder(),
               .output = desktop.folder() / "question.output",
               .errors = {}});
    return question.waitForEnd(timeout) == 0;
}

}  // namespace

NotificationDaemon::NotificationDaemon(const VirtualDesktop& desktop)
    : record(desktop.folder() / "notifications") {
    std::filesystem::remove(record);
    const auto script = desktop.folder() / "bin" / "note-notification";
    writeFile(script,
              "#!/bin/sh\nprintf '%s\\t%s\\t%s\\t%s\\t%s\\n' \"$1\" \"$2\" \"$3\" \"$5\" \"$DUNST_ID\" >> '" +
                  record.string() + "'\n");
    std::filesystem::permissions(script, std::filesystem::perms::owner_all);
    const auto settings = desktop.folder() / "dunstrc";
    writeFile(settings,
              "[global]\nstack_duplicates = no\n[note]\nsummary = \"*\"\nscript = " + script.string() + "\n");
    process =
        std::make_unique<ChildProcess>(Launch{.arguments = {"/usr/bin/dunst", "-conf", settings.string()},
                                              .environment = desktop.environment(),
                                              .directory = desktop.folder(),
                                              .output = desktop.folder() / "dunst.output",
                                              .errors = {}});
    if (!waitUntil([&] { return isServed(desktop); })) {
        throw std::runtime_error("the notification daemon did not start:\n" +
                                 readFile(desktop.folder() / "dunst.output"));
    }
}

std::vector<ShownNotification> NotificationDaemon::shown() const {
    std::vector<ShownNotification> result;
    std::istringstream lines(readFile(record));
    for (std::string line; std::getline(lines, line);) {
        std::istringstream fields(line);
        ShownNotification& one = result.emplace_back();
        for (std::string* field : {&one.program, &one.title, &one.body, &one.urgency, &one.number})
            std::getline(fields, *field, '\t');
    }
    return result;
}

bool NotificationDaemon::waitForCount(std::size_t count) const {
    return waitUntil([&] { return shown().size() >= count; });
}

}  // namespace trelvan::desktop
