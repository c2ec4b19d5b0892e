#pragma once

#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <string>

namespace trelvan::test {

/// Stands in for the journal's socket. What is sent waits until it is received, as when the journal is
/// stopped.
class JournalSocket {
  public:
    JournalSocket() {
        std::string name = testing::TempDir() + "journal-XXXXXX";
        folder_ = mkdtemp(name.data());
        listen();
    }
    JournalSocket(const JournalSocket&) = delete;
    JournalSocket& operator=(const JournalSocket&) = delete;
    ~JournalSocket() {
        close(socket_);
        unlink(path().c_str());
        rmdir(folder_.c_str());
    }

    [[nodiscard]] std::string path() const { return folder_ + "/socket"; }

    /// The fields of the next message; empty when none comes within the bound.
    std::string receive(std::chrono::milliseconds bound = {}) {
        pollfd asked{.fd = socket_, .events = POLLIN, .revents = 0};
        if (poll(&asked, 1, static_cast<int>(bound.count())) <= 0) return {};
        std::string text(1U << 20U, '\0');
        alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(int))> space{};
        iovec part{text.data(), text.size()};
        msghdr message{};
        message.msg_iov = &part;
        message.msg_iovlen = 1;
        message.msg_control = space.data();
        message.msg_controllen = space.size();
        const auto size = recvmsg(socket_, &message, MSG_CMSG_CLOEXEC);
        if (size < 0) return {};
        text.resize(static_cast<std::size_t>(size));
        const cmsghdr* header = CMSG_FIRSTHDR(&message);
        return header != nullptr ? contentOf(header) : text;
    }

    /// The journal ends, and comes back under the same name.
    void restart() {
        close(socket_);
        unlink(path().c_str());
        listen();
    }

  private:
    void listen() {
        socket_ = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::strncpy(address.sun_path, path().c_str(), sizeof address.sun_path - 1);
        EXPECT_EQ(bind(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    }

    /// What is in the file that came instead of a text.
    static std::string contentOf(const cmsghdr* header) {
        int file = -1;
        std::memcpy(&file, CMSG_DATA(header), sizeof file);
        struct stat info {};
        fstat(file, &info);
        std::string text(static_cast<std::size_t>(info.st_size), '\0');
        EXPECT_EQ(pread(file, text.data(), text.size(), 0), info.st_size);
        close(file);
        return text;
    }

    std::string folder_;
    int socket_ = -1;
};

}  // namespace trelvan::test
