#include "Platform/Linux/OutputSink.hpp"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <string>
#include <thread>
#include <vector>

namespace trelvan {
namespace {

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
    std::array<int, 2> ends{-1, -1};
};

LogRecord lineRecord(const std::string& line) {
    return {LogLevel::info, line, line};
}

TEST(OutputSink, LinesOfOneThread_AreWrittenInOrderBeforeTheEnd) {
    Pipe pipe;
    std::string expected;
    {
        OutputSink sink(pipe.ends[1]);
        for (int number = 0; number < 500; ++number) {
            const auto line = "line " + std::to_string(number);
            sink.write(lineRecord(line));
            expected += line + "\n";
        }
    }
    EXPECT_EQ(pipe.readAll(), expected);
}

TEST(OutputSink, LinesAreWrittenWithoutTheEnd_OneAfterTheOther) {
    Pipe pipe;
    OutputSink sink(pipe.ends[1]);
    for (const auto level : {LogLevel::debug, LogLevel::error, LogLevel::info}) {
        std::array<char, 8> block{};
        sink.write({level, "line", "line"});
        EXPECT_EQ(read(pipe.ends[0], block.data(), block.size()), 5);
        EXPECT_STREQ(block.data(), "line\n");
    }
}

TEST(OutputSink, LineLongerThanItsPlace_IsWhole) {
    Pipe pipe;
    const std::string line(5000, 'x');
    {
        OutputSink sink(pipe.ends[1]);
        sink.write(lineRecord(line));
        sink.write(lineRecord("next"));
    }
    EXPECT_EQ(pipe.readAll(), line + "\nnext\n");
}

TEST(OutputSink, LinesOfManyThreads_AreNeverTorn) {
    Pipe pipe;
    std::string text;
    {
        OutputSink sink(pipe.ends[1]);
        std::vector<std::thread> writers;
        for (int writer = 0; writer < 4; ++writer) {
            writers.emplace_back([&sink, writer] {
                const std::string line(100, static_cast<char>('a' + writer));
                for (int number = 0; number < 100; ++number) sink.write(lineRecord(line));
            });
        }
        for (auto& writer : writers) writer.join();
    }
    text = pipe.readAll();
    ASSERT_EQ(text.size(), 400U * 101U);
    for (std::size_t start = 0; start < text.size(); start += 101) {
        EXPECT_EQ(text.substr(start, 100), std::string(100, text[start]));
        EXPECT_EQ(text[start + 100], '\n');
    }
}

TEST(OutputSink, StalledReader_StallsNoWriterAndTheLossIsSaid) {
    Pipe pipe;
    // Far more than the pipe and the ring hold together; the calls return although nobody reads.
    constexpr int count = 5000;
    const std::string line(400, 'y');
    std::string text;
    std::thread reader;
    {
        OutputSink sink(pipe.ends[1]);
        for (int number = 0; number < count; ++number) sink.write(lineRecord(line));
        reader = std::thread([&] {
            std::array<char, 65536> block{};
            for (ssize_t got = 1; got > 0;
                 text.append(block.data(), static_cast<std::size_t>(std::max<ssize_t>(got, 0)))) {
                got = read(pipe.ends[0], block.data(), block.size());
            }
        });
    }
    pipe.closeWriter();
    reader.join();
    EXPECT_LT(text.size(), static_cast<std::size_t>(count) * (line.size() + 1));
    EXPECT_NE(text.find(" líneas de registro perdidas\n"), std::string::npos);
}

}  // namespace
}  // namespace trelvan
