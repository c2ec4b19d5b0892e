#include "Platform/Linux/Session/JournalSink.hpp"
#include "Platform/Shared/OutputSink.hpp"
#include "Support/JournalSocket.hpp"
#include "Support/OutputPipe.hpp"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <unistd.h>

#include <chrono>
#include <memory>
#include <string>

namespace trelvan {
namespace {

using test::countOf;
using test::JournalSocket;
using test::lineRecord;
using test::Pipe;
using test::saidLost;
using testing::HasSubstr;

TEST(JournalSink, JournalGetsTheWholeLineItsLevelAndItsPlace) {
    JournalSocket journal;
    Pipe pipe;
    {
        OutputSink sink(pipe.ends[1], std::make_unique<JournalSink>(journal.path()));
        sink.write(lineRecord("[10:00:00.000] the whole line"));
        sink.write(lineRecord("second", LogLevel::error));
    }
    EXPECT_EQ(journal.receive(),
              "MESSAGE=[10:00:00.000] the whole line\nPRIORITY=6\nSYSLOG_IDENTIFIER=trelvan\n"
              "SUBSYSTEM=com.yourname.Trelvan\nCATEGORY=App\nCODE_FILE=Place.cpp\nCODE_LINE=12\n");
    EXPECT_THAT(journal.receive(), HasSubstr("MESSAGE=second\nPRIORITY=3\n"));
    EXPECT_EQ(journal.receive(), "");
}

TEST(JournalSink, LineTooLongForADatagram_ReachesTheJournalAsAFile) {
    JournalSocket journal;
    const std::string line(3'000'000, 'j');
    {
        const int output = open("/dev/null", O_WRONLY | O_CLOEXEC);
        OutputSink sink(output, std::make_unique<JournalSink>(journal.path()));
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

TEST(JournalSink, JournalThatNobodyReads_StallsNeitherTheWriterNorStandardOutput) {
    JournalSocket journal;
    Pipe pipe;
    OutputSink sink(pipe.ends[1], std::make_unique<JournalSink>(journal.path()));
    writeInRounds(sink, pipe, 3000);
}

TEST(JournalSink, JournalThatIsReadAgain_IsToldHowManyLinesItMissed) {
    JournalSocket journal;
    Pipe pipe;
    constexpr int count = 9000;
    OutputSink sink(pipe.ends[1], std::make_unique<JournalSink>(journal.path()));
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

TEST(JournalSink, JournalThatWasStartedAnew_IsFoundAgain) {
    const int output = open("/dev/null", O_WRONLY | O_CLOEXEC);
    JournalSocket journal;
    OutputSink sink(output, std::make_unique<JournalSink>(journal.path()));
    sink.write(lineRecord("one"));
    EXPECT_THAT(journal.receive(std::chrono::seconds(5)), HasSubstr("MESSAGE=one\n"));
    journal.restart();
    sink.write(lineRecord("two"));
    EXPECT_THAT(journal.receive(std::chrono::seconds(5)), HasSubstr("MESSAGE=two\n"));
    close(output);
}

}  // namespace
}  // namespace trelvan
