#pragma once

#include "Utilities/LogSink.hpp"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

#include <array>
#include <string>
#include <string_view>

namespace trelvan::test {

/// A pipe whose far end is read to its end on demand.
struct Pipe {
    Pipe() { EXPECT_EQ(pipe2(ends.data(), O_CLOEXEC), 0); }
    ~Pipe() {
        closeWriter();
        close(ends[0]);
    }
    void closeWriter() {
        if (ends[1] >= 0) close(ends[1]);
        ends[1] = -1;
    }
    std::string readAll() {
        closeWriter();
        std::string text;
        std::array<char, 4096> block{};
        for (;;) {
            const auto count = read(ends[0], block.data(), block.size());
            if (count <= 0) return text;
            text.append(block.data(), static_cast<std::size_t>(count));
        }
    }
    /// Reads until there are that many bytes, or none come for a while.
    std::string readUpTo(std::size_t size) const {
        std::string text;
        std::array<char, 65536> block{};
        pollfd asked{.fd = ends[0], .events = POLLIN, .revents = 0};
        while (text.size() < size && poll(&asked, 1, 3000) > 0) {
            const auto count = read(ends[0], block.data(), block.size());
            if (count <= 0) break;
            text.append(block.data(), static_cast<std::size_t>(count));
        }
        return text;
    }
    std::array<int, 2> ends{-1, -1};
};

inline LogRecord lineRecord(const std::string& line, LogLevel level = LogLevel::info) {
    return {.level = level, .line = line, .message = line, .file = "Place.cpp", .lineNumber = 12};
}

/// How many lines a text says were lost; 0 when it does not say so.
inline int saidLost(const std::string& text) {
    constexpr std::string_view before = "… ";
    int lost = 0;
    for (auto at = text.find(before); at != std::string::npos; at = text.find(before, at + 1))
        lost += std::stoi(text.substr(at + before.size()));
    return lost;
}

inline int countOf(const std::string& text, const std::string& part) {
    int count = 0;
    for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + part.size())) ++count;
    return count;
}

}  // namespace trelvan::test
