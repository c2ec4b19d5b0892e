#include "Desktop/Harness/HotPlug.hpp"

#include "Desktop/Harness/ChildProcess.hpp"
#include "Desktop/Harness/DesktopFiles.hpp"
#include "Desktop/Harness/Wait.hpp"

#include <arpa/inet.h>
#include <fcntl.h>
#include <linux/netlink.h>
#include <sched.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <map>
#include <stdexcept>

namespace trelvan::desktop {
namespace {

const std::vector<std::string> ownNamespaces{"/usr/bin/unshare", "--user", "--map-root-user", "--net",
                                             "--mount"};

/// The multicast group in which the device manager speaks.
constexpr std::uint32_t managerGroup = 2;

/// What stands before the properties in the device manager's messages. Listeners let the kernel filter by the
/// last fields; those, and the mark, are in network order.
struct MessageHeader {
    std::array<char, 8> prefix{'l', 'i', 'b', 'u', 'd', 'e', 'v', 0};
    std::uint32_t mark = htonl(0xfeedcafe);
    std::uint32_t size = sizeof(MessageHeader);
    std::uint32_t propertiesAt = sizeof(MessageHeader);
    std::uint32_t propertiesSize = 0;
    /// MurmurHash2 of the subsystem's name, "input".
    std::uint32_t subsystem = htonl(0xc1a28470);
    std::uint32_t deviceType = 0;
    /// A Bloom filter of the tags: every tag is in it.
    std::uint32_t tagsHigh = 0xffffffff;
    std::uint32_t tagsLow = 0xffffffff;
};

std::string message(const std::string& action, int sequence) {
    const std::map<std::string, std::string> properties{
        {"ACTION", action},
        {"DEVPATH", "/devices/virtual/input/plugged/event901"},
        {"SUBSYSTEM", "input"},
        {"DEVNAME", pluggedMouse.devicePath},
        {"MAJOR", "13"},
        {"MINOR", "165"},
        {"SEQNUM", std::to_string(sequence)},
        {"ID_INPUT", "1"},
        {"ID_INPUT_MOUSE", "1"},
        {"ID_SEAT", "seat9"},
        {"TAGS", ":seat9:"},
        {"CURRENT_TAGS", ":seat9:"},
        {"USEC_INITIALIZED", "1"}};
    std::string text;
    for (const auto& [name, value] : properties) text += name + "=" + value + '\0';
    MessageHeader header;
    header.propertiesSize = static_cast<std::uint32_t>(text.size());
    return std::string(reinterpret_cast<const char*>(&header), sizeof header) + text;
}

/// Goes to where the server is and says it there. For a process of its own, which cannot come back.
bool sayInside(const std::array<std::string, 2>& namespaces, const std::string& text) {
    for (const std::string& path : namespaces) {
        const int place = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
        if (place < 0 || ::setns(place, 0) != 0) return false;
    }
    const int socket = ::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_KOBJECT_UEVENT);
    sockaddr_nl group{};
    group.nl_family = AF_NETLINK;
    group.nl_groups = managerGroup;
    const auto* address = reinterpret_cast<const sockaddr*>(&group);
    return ::sendto(socket, text.data(), text.size(), 0, address, sizeof group) ==
           static_cast<ssize_t>(text.size());
}

}  // namespace

std::vector<std::string> HotPlug::launchCommand(std::vector<std::string> serverCommand) {
    std::vector<std::string> command = ownNamespaces;
    // The server only listens where a device manager seems to run. New namespaces undo the wish to end with
    // our process, so it is made again.
    command.insert(command.end(), {"/bin/sh", "-c",
                                   "mount -t tmpfs none /run && mkdir /run/udev && : > /run/udev/control && "
                                   "exec setpriv --pdeathsig TERM \"$@\"",
                                   "server"});
    command.insert(command.end(), serverCommand.begin(), serverCommand.end());
    return command;
}

bool HotPlug::isPossible() {
    std::vector<std::string> command = ownNamespaces;
    command.insert(command.end(), {"/bin/mount", "-t", "tmpfs", "none", "/run"});
    try {
        ChildProcess process(
            {.arguments = command, .environment = {}, .directory = {}, .output = {}, .errors = {}});
        const auto status = process.waitForEnd(timeout);
        return status && WIFEXITED(*status) && WEXITSTATUS(*status) == 0;
    } catch (const std::runtime_error&) {
        return false;
    }
}

void HotPlug::announce(const char* action) {
    const std::string text = message(action, ++sequence);
    const std::string folder = "/proc/" + std::to_string(server) + "/ns/";
    const std::array<std::string, 2> namespaces{folder + "user", folder + "net"};
    const pid_t speaker = ::fork();
    if (speaker == 0) ::_exit(sayInside(namespaces, text) ? 0 : 1);
    int status = 0;
    if (speaker < 0 || ::waitpid(speaker, &status, 0) != speaker || status != 0) {
        throw std::runtime_error("the server cannot be told of devices");
    }
}

}  // namespace trelvan::desktop
