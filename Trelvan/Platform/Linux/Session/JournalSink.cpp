#include "Platform/Linux/Session/JournalSink.hpp"

#include "Utilities/Text.hpp"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <syslog.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <utility>

namespace trelvan {

namespace {

int priorityOf(LogLevel level) {
    switch (level) {
        case LogLevel::debug:
            return LOG_DEBUG;
        case LogLevel::info:
            return LOG_INFO;
        case LogLevel::warning:
            return LOG_WARNING;
        case LogLevel::error:
            return LOG_ERR;
    }
    return LOG_INFO;
}

/// "NAME=value" on a line; a value that has line breaks goes with its length before it.
void appendField(std::string& fields, std::string_view name, std::string_view value) {
    fields += name;
    if (value.find('\n') == std::string_view::npos) {
        fields += '=';
    } else {
        fields += '\n';
        auto length = static_cast<std::uint64_t>(value.size());
        for (int byte = 0; byte < 8; ++byte, length >>= 8U) fields += static_cast<char>(length & 0xFFU);
    }
    fields += value;
    fields += '\n';
}

}  // namespace

JournalSink::JournalSink(std::string socketPath)
    : path_(std::move(socketPath)), present_(access(path_.c_str(), W_OK) == 0) {}

JournalSink::~JournalSink() {
    disconnect();
}

LogOutlet::Sent JournalSink::send(const QueuedLine& line) {
    if (!present_) return Sent::done;
    fields_.clear();
    appendField(fields_, "MESSAGE", line.text);
    appendField(fields_, "PRIORITY", InlineText(priorityOf(line.level)));
    appendField(fields_, "SYSLOG_IDENTIFIER", "trelvan");
    appendField(fields_, "SUBSYSTEM", unifiedLog::subsystem);
    appendField(fields_, "CATEGORY", unifiedLog::category);
    if (!line.file.empty()) {
        appendField(fields_, "CODE_FILE", line.file);
        appendField(fields_, "CODE_LINE", InlineText(line.lineNumber));
    }
    // A journal that was started anew has a new socket under the old name.
    const bool wasConnected = socket_ >= 0;
    if (!connect()) return Sent::lost;
    const Sent sent = sendDatagram();
    if (sent != Sent::lost || !wasConnected) return sent;
    return connect() ? sendDatagram() : Sent::lost;
}

bool JournalSink::connect() {
    if (socket_ >= 0) return true;
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path_.size() >= sizeof address.sun_path) return false;
    std::memcpy(address.sun_path, path_.c_str(), path_.size() + 1);
    socket_ = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (socket_ < 0) return false;
    if (::connect(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) return true;
    disconnect();
    return false;
}

void JournalSink::disconnect() {
    if (socket_ >= 0) close(std::exchange(socket_, -1));
}

LogOutlet::Sent JournalSink::sendDatagram() {
    const auto sent = ::send(socket_, fields_.data(), fields_.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
    if (sent >= 0) return Sent::done;
    if (errno == EAGAIN || errno == ENOBUFS || errno == EINTR) return Sent::full;
    if (errno == EMSGSIZE) return sendAsFile();
    disconnect();
    return Sent::lost;
}

/// What is too long for a datagram goes as a sealed file in memory.
LogOutlet::Sent JournalSink::sendAsFile() {
    const int file = memfd_create("trelvan-log", MFD_CLOEXEC | MFD_ALLOW_SEALING);
    if (file < 0) return Sent::lost;
    const auto written = write(file, fields_.data(), fields_.size());
    const bool whole =
        written >= 0 && static_cast<std::size_t>(written) == fields_.size() &&
        fcntl(file, F_ADD_SEALS, F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_WRITE | F_SEAL_SEAL) == 0;
    alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(int))> space{};
    msghdr message{};
    message.msg_control = space.data();
    message.msg_controllen = space.size();
    cmsghdr* header = CMSG_FIRSTHDR(&message);
    header->cmsg_level = SOL_SOCKET;
    header->cmsg_type = SCM_RIGHTS;
    header->cmsg_len = CMSG_LEN(sizeof file);
    std::memcpy(CMSG_DATA(header), &file, sizeof file);
    const auto sent = whole ? sendmsg(socket_, &message, MSG_DONTWAIT | MSG_NOSIGNAL) : -1;
    const int error = errno;
    close(file);
    if (sent >= 0) return Sent::done;
    return whole && error == EAGAIN ? Sent::full : Sent::lost;
}

}  // namespace trelvan
