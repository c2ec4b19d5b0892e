#include "Platform/Shared/OutputSink.hpp"
#include "Support/OutputPipe.hpp"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <string>
#include <thread>
#include <vector>

namespace trelvan {
namespace {

using test::countOf;
using test::lineRecord;
using test::Pipe;
using test::saidLost;
using testing::Contains;
using testing::HasSubstr;

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
        sink.write(lineRecord("line", level));
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

TEST(OutputSink, PipeThatDoesNotBlockAndIsFullForAMoment_LosesNothing) {
    Pipe pipe;
    // As when another program shares standard output and has made it so.
    ASSERT_EQ(fcntl(pipe.ends[1], F_SETFL, O_NONBLOCK), 0);
    constexpr int count = 1500;
    const std::string line(400, 'z');
    std::string text;
    {
        OutputSink sink(pipe.ends[1]);
        for (int number = 0; number < count; ++number) sink.write(lineRecord(line));
        text = pipe.readUpTo(count * (line.size() + 1));
    }
    EXPECT_EQ(countOf(text, line + "\n"), count);
    EXPECT_EQ(text.size(), count * (line.size() + 1));
}

TEST(OutputSink, LinesBeyondWhatIsKept_AreCountedToTheLast) {
    Pipe pipe;
    constexpr int count = 20000;
    const std::string line(100, 'w');
    std::string text;
    std::thread reader;
    {
        OutputSink sink(pipe.ends[1]);
        for (int number = 0; number < count; ++number) sink.write(lineRecord(line));
        reader = std::thread([&] { text = pipe.readUpTo(std::string::npos); });
    }
    pipe.closeWriter();
    reader.join();
    EXPECT_GT(saidLost(text), 0);
    EXPECT_EQ(countOf(text, line + "\n") + saidLost(text), count);
}

TEST(OutputSink, NobodyReadsStandardOutput_TheEndComesInTime) {
    Pipe pipe;
    const auto start = std::chrono::steady_clock::now();
    {
        OutputSink sink(pipe.ends[1]);
        for (int number = 0; number < 1000; ++number) sink.write(lineRecord(std::string(400, 'v')));
    }
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(3));
}

}  // namespace
}  // namespace trelvan
