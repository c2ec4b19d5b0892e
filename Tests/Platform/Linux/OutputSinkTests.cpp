#include "Platform/Linux/OutputSink.hpp"
#include "Support/JournalSocket.hpp"

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

using test::JournalSocket;
using testing::Contains;
using testing::HasSubstr;

constexpr auto noJournal = "/no/such/socket";

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

LogRecord lineRecord(const std::string& line, LogLevel level = LogLevel::info) {
    return {.level = level, .line = line, .message = line, .file = "Place.cpp", .lineNumber = 12};
}

/// How many lines a text says were lost; 0 when it does not say so.
int saidLost(const std::string& text) {
    constexpr std::string_view before = "… ";
    int lost = 0;
    for (auto at = text.find(before); at != std::string::npos; at = text.find(before, at + 1))
        lost += std::stoi(text.substr(at + before.size()));
    return lost;
}

int countOf(const std::string& text, const std::string& part) {
    int count = 0;
    for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + part.size())) ++count;
    return count;
}

TEST(OutputSink, LinesOfOneThread_AreWrittenInOrderBeforeTheEnd) {
    Pipe pipe;
    std::string expected;
    {
        OutputSink sink(pipe.ends[1], noJournal);
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
    OutputSink sink(pipe.ends[1], noJournal);
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
        OutputSink sink(pipe.ends[1], noJournal);
        sink.write(lineRecord(line));
        sink.write(lineRecord("next"));
    }
    EXPECT_EQ(pipe.readAll(), line + "\nnext\n");
}

TEST(OutputSink, LinesOfManyThreads_AreNeverTorn) {
    Pipe pipe;
    std::string text;
    {
        OutputSink sink(pipe.ends[1], noJournal);
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
        OutputSink sink(pipe.ends[1], noJournal);
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
        OutputSink sink(pipe.ends[1], noJournal);
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
        OutputSink sink(pipe.ends[1], noJournal);
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
        OutputSink sink(pipe.ends[1], noJournal);
        for (int number = 0; number < 1000; ++number) sink.write(lineRecord(std::string(400, 'v')));
    }
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(3));
}

TEST(OutputSink, JournalGetsTheWholeLineItsLevelAndItsPlace) {
    JournalSocket journal;
    Pipe pipe;
    {
        OutputSink sink(pipe.ends[1], journal.path());
        sink.write(lineRecord("[10:00:00.000] the whole line"));
        sink.write(lineRecord("second", LogLevel::error));
    }
    EXPECT_EQ(journal.receive(),
              "MESSAGE=[10:00:00.000] the whole line\nPRIORITY=6\nSYSLOG_IDENTIFIER=trelvan\n"
              "SUBSYSTEM=com.yourname.Trelvan\nCATEGORY=App\nCODE_FILE=Place.cpp\nCODE_LINE=12\n");
    EXPECT_THAT(journal.receive(), HasSubstr("MESSAGE=second\nPRIORITY=3\n"));
    EXPECT_EQ(journal.receive(), "");
}

TEST(OutputSink, LineTooLongForADatagram_ReachesTheJournalAsAFile) {
    JournalSocket journal;
    const std::string line(3'000'000, 'j');
    {
        const int output = open("/dev/null", O_WRONLY | O_CLOEXEC);
        OutputSink sink(output, journal.path());
        sink.write(lineRecord(line));
        close(output);
    }
    EXPECT_THAT(journal.receive(), HasSubstr("MESSAGE=" + line + "\n"));
}

/// Writes as many lines, no more at a time than the ring holds, and waits until standard output has them.
void writeInRounds(OutputSink& sink, const Pipe& pipe, int count) {
    constexpr int round = 1000;
    const std::string line = "line";
    for (int written = 0; written < count; written += round) {
        for (int number = 0; number < round; ++number) sink.write(lineRecord(line));
        ASSERT_EQ(countOf(pipe.readUpTo(round * (line.size() + 1)), line + "\n"), round);
    }
}

TEST(OutputSink, JournalThatNobodyReads_StallsNeitherTheWriterNorStandardOutput) {
    JournalSocket journal;
    Pipe pipe;
    OutputSink sink(pipe.ends[1], journal.path());
    writeInRounds(sink, pipe, 3000);
}

TEST(OutputSink, JournalThatIsReadAgain_IsToldHowManyLinesItMissed) {
    JournalSocket journal;
    Pipe pipe;
    constexpr int count = 9000;
    OutputSink sink(pipe.ends[1], journal.path());
    writeInRounds(sink, pipe, count);
    int arrived = 0;
    int lost = 0;
    while (arrived + lost < count) {
        const auto fields = journal.receive(std::chrono::seconds(5));
        if (fields.empty()) break;
        if (fields.starts_with("MESSAGE=line\n")) ++arrived;
        lost += saidLost(fields);
    }
    EXPECT_GT(lost, 0);
    EXPECT_EQ(arrived + lost, count);
}

TEST(OutputSink, JournalThatWasStartedAnew_IsFoundAgain) {
    const int output = open("/dev/null", O_WRONLY | O_CLOEXEC);
    JournalSocket journal;
    OutputSink sink(output, journal.path());
    sink.write(lineRecord("one"));
    EXPECT_THAT(journal.receive(std::chrono::seconds(5)), HasSubstr("MESSAGE=one\n"));
    journal.restart();
    sink.write(lineRecord("two"));
    EXPECT_THAT(journal.receive(std::chrono::seconds(5)), HasSubstr("MESSAGE=two\n"));
    close(output);
}

}  // namespace
}  // namespace trelvan
