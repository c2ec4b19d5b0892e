#include "Utilities/Logger.hpp"

#include <gmock/gmock.h>

#include <ctime>
#include <string>
#include <thread>
#include <vector>

namespace trelvan {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;

/// Keeps what it is given.
class KeptLines final : public LogSink {
  public:
    void write(const LogRecord& record) override {
        lines.emplace_back(record.line);
        messages.emplace_back(record.message);
        levels.push_back(record.level);
        files.emplace_back(record.file);
        lineNumbers.push_back(record.lineNumber);
    }
    std::vector<std::string> lines;
    std::vector<std::string> messages;
    std::vector<LogLevel> levels;
    std::vector<std::string> files;
    std::vector<unsigned> lineNumbers;
};

/// 7 ms past a full second, at a local time of day that the test reads back from the system.
constexpr std::time_t someSecond = 1'700'000'000;

std::chrono::system_clock::time_point someTime(void* /*context*/) {
    return std::chrono::system_clock::from_time_t(someSecond) + std::chrono::milliseconds(7);
}

std::string someTimeText() {
    std::tm local{};
    localtime_r(&someSecond, &local);
    char text[16];
    std::strftime(text, sizeof text, "%H:%M:%S.007", &local);
    return text;
}

class LoggerTest : public testing::Test {
  protected:
    LoggerTest() { logger.connect(&output, &unified, &someTime); }

    KeptLines output;
    KeptLines unified;
    Logger logger;
};

TEST_F(LoggerTest, LineNamesTimeLevelFileAndLine) {
    logger.debug("uno", "/a/b/File.cpp", 12);
    logger.info("dos", "/a/b/File.cpp", 13);
    logger.warning("tres", "/a/b/File.cpp", 14);
    logger.error("cuatro", "/a/b/File.cpp", 15);
    const std::string time = "[" + someTimeText() + "] ";
    EXPECT_THAT(output.lines,
                ElementsAre(time + "🔍 DEBUG [File.cpp:12] uno", time + "ℹ️ INFO  [File.cpp:13] dos",
                            time + "⚠️ WARN  [File.cpp:14] tres", time + "❌ ERROR [File.cpp:15] cuatro"));
    EXPECT_EQ(unified.lines, output.lines);
    EXPECT_THAT(unified.levels,
                ElementsAre(LogLevel::debug, LogLevel::info, LogLevel::warning, LogLevel::error));
}

TEST_F(LoggerTest, EmptyMessageKeepsWholePrefix) {
    logger.info("", "File.cpp", 1);
    EXPECT_THAT(output.lines, ElementsAre(EndsWith("ℹ️ INFO  [File.cpp:1] ")));
}

TEST_F(LoggerTest, FileWithoutSlashesIsUsedAsItIs) {
    logger.info("x", "Main", 3);
    EXPECT_THAT(output.lines, ElementsAre(EndsWith("[Main:3] x")));
}

TEST_F(LoggerTest, PlaceOfTheCallIsTheDefault) {
    logger.info("x");
    const unsigned here = __LINE__ - 1;
    EXPECT_THAT(output.lines, ElementsAre(EndsWith("[LoggerTests.cpp:" + std::to_string(here) + "] x")));
}

TEST_F(LoggerTest, BelowMinimumLevelNothingIsWritten) {
    logger.minimumLevel = LogLevel::warning;
    logger.debug("a");
    logger.info("b");
    EXPECT_THAT(output.lines, IsEmpty());
    EXPECT_THAT(unified.lines, IsEmpty());
    logger.warning("c");
    logger.error("d");
    EXPECT_THAT(output.messages, ElementsAre("c", "d"));
    EXPECT_THAT(unified.messages, ElementsAre("c", "d"));
}

TEST_F(LoggerTest, LongMessageIsWrittenWhole) {
    const std::string message(3000, 'm');
    logger.info(message);
    EXPECT_THAT(output.lines, ElementsAre(EndsWith("] " + message)));
}

TEST_F(LoggerTest, NamesCannotForgeALineNorSteerATerminal) {
    logger.info("Perfil activo: 'a'\n[00:00:00.000] ❌ ERROR [X.cpp:1] forged\x1b[2J'", "File.cpp", 1);
    ASSERT_EQ(output.lines.size(), 1U);
    EXPECT_EQ(output.lines[0].find_first_of("\n\x1b"), std::string::npos);
    EXPECT_THAT(output.messages,
                ElementsAre(R"(Perfil activo: 'a'\n[00:00:00.000] ❌ ERROR [X.cpp:1] forged\x1b[2J')"));
    EXPECT_THAT(output.lines, ElementsAre(EndsWith(output.messages[0])));
    EXPECT_EQ(unified.lines, output.lines);
    EXPECT_EQ(unified.messages, output.messages);
}

TEST_F(LoggerTest, UnifiedLogIsToldThePlaceOfTheCall) {
    logger.info("x", "/a/b/File.cpp", 12);
    logger.info("x");
    const unsigned here = __LINE__ - 1;
    EXPECT_THAT(unified.files, ElementsAre("File.cpp", "LoggerTests.cpp"));
    EXPECT_THAT(unified.lineNumbers, ElementsAre(12U, here));
}

TEST_F(LoggerTest, SharedInstanceIsTheEverydayName) {
    EXPECT_EQ(&AppLogger, &Logger::shared());
}

TEST(LogLevelTest, RawValuesOutsideGiveNoLevel) {
    EXPECT_EQ(logLevelFromRaw(0), LogLevel::debug);
    EXPECT_EQ(logLevelFromRaw(3), LogLevel::error);
    EXPECT_EQ(logLevelFromRaw(-1), std::nullopt);
    EXPECT_EQ(logLevelFromRaw(4), std::nullopt);
    EXPECT_LT(LogLevel::debug, LogLevel::info);
    EXPECT_LT(LogLevel::info, LogLevel::warning);
    EXPECT_LT(LogLevel::warning, LogLevel::error);
}

}  // namespace
}  // namespace trelvan
