#include "Platform/SettingsSnapshot.hpp"
#include "Platform/Shared/SettingsFile.hpp"
#include "Utilities/Logger.hpp"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace trelvan {
namespace {

namespace fs = std::filesystem;

/// Keeps what is logged while it lives.
class RecordedLog : public LogSink {
  public:
    RecordedLog() { AppLogger.connect(this, nullptr); }
    ~RecordedLog() override { AppLogger.disconnect(); }
    void write(const LogRecord& record) override {
        text += std::to_string(static_cast<int>(record.level)) + " ";
        text.append(record.message) += '\n';
    }
    std::string text;
};

class SettingsFileTest : public testing::Test {
  protected:
    SettingsFileTest() {
        std::string name = fs::temp_directory_path() / "trelvan-settings-XXXXXX";
        folder = mkdtemp(name.data());
    }
    ~SettingsFileTest() override { fs::remove_all(folder); }

    [[nodiscard]] fs::path file() const { return folder / "settings.json"; }
    static std::string content(const fs::path& path) {
        std::ostringstream text;
        text << std::ifstream(path).rdbuf();
        return text.str();
    }
    static void write(const fs::path& path, const std::string& text) { std::ofstream(path) << text; }
    [[nodiscard]] std::vector<std::string> names() const {
        std::vector<std::string> result;
        for (const auto& entry : fs::directory_iterator(folder)) result.push_back(entry.path().filename());
        std::ranges::sort(result);
        return result;
    }

    fs::path folder;
    RecordedLog log;
};

using Names = std::vector<std::string>;

TEST_F(SettingsFileTest, ValuesSet_AreThereForTheNextStart) {
    const std::vector<std::pair<std::string, DefaultsValue>> values{
        {"truth", true},      {"whole", std::int64_t{-7}}, {"real", 3.0}, {"text", std::string("hola")},
        {"data", Data{"{}"}}, {"bytes", Data{"\xff"}}};
    {
        SettingsFile settings(folder);
        for (const auto& [key, value] : values) settings.set(key, value);
    }
    const SettingsFile settings(folder);
    for (const auto& [key, value] : values) EXPECT_EQ(settings.object(key), value) << key;
    EXPECT_EQ(settings.object("other"), std::nullopt);
}

TEST_F(SettingsFileTest, Write_LeavesNoTemporaryFileAndIsReadableByTheOwnerOnly) {
    SettingsFile settings(folder);
    for (int round = 0; round < 20; ++round) settings.set("round", std::int64_t{round});
    EXPECT_EQ(names(), Names{"settings.json"});
    struct stat info {};
    ASSERT_EQ(stat(file().c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777U, 0600U);
}

TEST_F(SettingsFileTest, MissingFolder_IsMade) {
    SettingsFile settings(folder / "a" / "b");
    settings.set("key", true);
    EXPECT_TRUE(fs::exists(folder / "a" / "b" / "settings.json"));
}

TEST_F(SettingsFileTest, UnknownKeys_AreKept) {
    write(file(), R"({"from_elsewhere": 1.5})");
    SettingsFile(folder).set("mine", true);
    const SettingsFile again(folder);
    EXPECT_EQ(again.object("from_elsewhere"), DefaultsValue{1.5});
    EXPECT_EQ(again.object("mine"), DefaultsValue{true});
}

TEST_F(SettingsFileTest, RemovedKey_IsGoneFromTheFile) {
    SettingsFile settings(folder);
    settings.set("key", true);
    settings.remove("key");
    EXPECT_EQ(SettingsFile(folder).object("key"), std::nullopt);
}

TEST_F(SettingsFileTest, DamagedFile_IsCopiedAsideUnderAFreeNameAndNamedInTheLog) {
    write(file(), "{\n\"key\": oops}");
    write(folder / "settings.json.damaged-1", "older");
    SettingsFile settings(folder);
    EXPECT_EQ(settings.object("key"), std::nullopt);
    settings.set("key", true);
    EXPECT_EQ(content(folder / "settings.json.damaged-1"), "older");
    EXPECT_EQ(content(folder / "settings.json.damaged-2"), "{\n\"key\": oops}");
    EXPECT_EQ(SettingsFile(folder).object("key"), DefaultsValue{true});
    EXPECT_NE(log.text.find("2 Ajustes dañados"), std::string::npos) << log.text;
    EXPECT_NE(log.text.find("línea 2"), std::string::npos) << log.text;
}

TEST_F(SettingsFileTest, DamagedFileLeftAlone_StaysWhereItIs) {
    write(file(), "oops");
    { const SettingsFile settings(folder); }
    EXPECT_EQ(content(file()), "oops");
}

TEST_F(SettingsFileTest, FileThatCannotBeRead_IsNeverReplaced) {
    fs::create_directory(file());
    SettingsFile settings(folder);
    settings.set("key", true);
    EXPECT_FALSE(settings.flush());
    EXPECT_TRUE(fs::is_directory(file()));
    EXPECT_NE(log.text.find("3 Los ajustes no se guardan"), std::string::npos) << log.text;
}

TEST_F(SettingsFileTest, FailedWrite_IsLoggedAndTriedAgainAtTheNextSet) {
    // A file where the folder should be; even the superuser cannot write below it.
    const auto blocked = folder / "blocked";
    write(blocked, "");
    SettingsFile settings(blocked);
    settings.set("first", true);
    EXPECT_NE(log.text.find("3 "), std::string::npos) << log.text;
    fs::remove(blocked);
    settings.set("second", true);
    const SettingsFile again(blocked);
    EXPECT_EQ(again.object("first"), DefaultsValue{true});
    EXPECT_EQ(again.object("second"), DefaultsValue{true});
}

TEST_F(SettingsFileTest, SymbolicLink_StaysALinkAndItsTargetIsReplaced) {
    fs::create_directory(folder / "elsewhere");
    write(folder / "elsewhere" / "real.json", "{}");
    fs::create_symlink("elsewhere/real.json", file());
    SettingsFile(folder).set("key", true);
    EXPECT_TRUE(fs::is_symlink(file()));
    EXPECT_EQ(content(folder / "elsewhere" / "real.json"), "{\n  \"key\": true\n}\n");
}

TEST_F(SettingsFileTest, DanglingLink_IsWrittenThrough) {
    fs::create_symlink("later.json", file());
    SettingsFile(folder).set("key", true);
    EXPECT_TRUE(fs::is_symlink(file()));
    EXPECT_TRUE(fs::exists(folder / "later.json"));
}

TEST_F(SettingsFileTest, ChangesOfOneTurn_AreWrittenTogether) {
    std::vector<std::function<void()>> queued;
    SettingsFile settings(folder, [&](std::function<void()> job) { queued.push_back(std::move(job)); });
    settings.set("one", true);
    settings.set("two", true);
    EXPECT_FALSE(fs::exists(file()));
    ASSERT_EQ(queued.size(), 1U);
    queued.front()();
    EXPECT_EQ(SettingsFile(folder).object("two"), DefaultsValue{true});
    settings.set("three", true);
    EXPECT_EQ(queued.size(), 2U);
}

TEST_F(SettingsFileTest, EndBeforeTheTurn_StillWrites) {
    std::vector<std::function<void()>> queued;
    {
        SettingsFile settings(folder, [&](std::function<void()> job) { queued.push_back(std::move(job)); });
        settings.set("key", true);
    }
    EXPECT_EQ(SettingsFile(folder).object("key"), DefaultsValue{true});
    // The object is gone; its job must not touch it.
    queued.front()();
}

TEST_F(SettingsFileTest, PutAside_TakesTheFirstFreeNumberAndKeepsOlderOnes) {
    SettingsFile settings(folder);
    const auto first = settings.putAside("profiles", Data{"one"});
    const auto second = settings.putAside("profiles", Data{"two"});
    EXPECT_EQ(first, (folder / "profiles.undecodable-1.json").string());
    EXPECT_EQ(second, (folder / "profiles.undecodable-2.json").string());
    EXPECT_EQ(content(*first), "one");
    EXPECT_EQ(content(*second), "two");
}

TEST_F(SettingsFileTest, PutAsideWithASlashInTheKey_StaysInTheFolder) {
    SettingsFile settings(folder);
    EXPECT_EQ(settings.putAside("../key", Data{"x"}), (folder / ".._key.undecodable-1.json").string());
}

TEST_F(SettingsFileTest, PutAsideThatCannotBeWritten_HasNoPath) {
    write(folder / "blocked", "");
    EXPECT_EQ(SettingsFile(folder / "blocked").putAside("key", Data{"x"}), std::nullopt);
}

TEST_F(SettingsFileTest, PipeInThePlaceOfTheFile_IsNotWaitedForAndNeverReplaced) {
    ASSERT_EQ(mkfifo(file().c_str(), 0600), 0);
    SettingsFile settings(folder);
    settings.set("key", true);
    EXPECT_FALSE(settings.flush());
    EXPECT_TRUE(fs::is_fifo(file()));
    EXPECT_NE(log.text.find("3 No se pueden leer los ajustes"), std::string::npos) << log.text;
}

TEST_F(SettingsFileTest, ImmenseOrEndlesslyNestedFile_IsRefusedWithoutFillingTheMemory) {
    write(file(), std::string(10'000'000, '['));
    EXPECT_EQ(SettingsFile(folder).object("key"), std::nullopt);
    EXPECT_NE(log.text.find("columna 65"), std::string::npos) << log.text;
    log.text.clear();
    fs::resize_file(file(), 100'000'000);
    SettingsFile settings(folder);
    EXPECT_NE(log.text.find("3 No se pueden leer los ajustes"), std::string::npos) << log.text;
    settings.set("key", true);
    EXPECT_EQ(fs::file_size(file()), 100'000'000U);
}

// Two writers

TEST_F(SettingsFileTest, ChangeByAnotherHand_IsTakenInAndToldByItsKeys) {
    write(file(), R"({"language": "English", "speed": 1.0})");
    SettingsFile settings(folder);
    std::vector<UserDefaults::Keys> told;
    const auto watch = settings.onOutsideChange([&](const auto& keys) {
        EXPECT_EQ(settings.object("language"), DefaultsValue{std::string("Español")});
        told.push_back(keys);
    });
    write(file(), R"({"language": "Español", "new": true})");
    settings.reload();
    EXPECT_EQ(settings.object("speed"), std::nullopt);
    EXPECT_EQ(settings.object("new"), DefaultsValue{true});
    EXPECT_EQ(told, (std::vector<UserDefaults::Keys>{{"language", "new", "speed"}}));
    settings.reload();
    EXPECT_EQ(told.size(), 1U);
}

TEST_F(SettingsFileTest, OwnChange_IsNotToldAsAnothers) {
    SettingsFile settings(folder);
    int told = 0;
    const auto watch = settings.onOutsideChange([&](const auto&) { ++told; });
    settings.set("list", Data{"[ 1 , 2 ]"});
    settings.set("number", std::nan(""));
    settings.reload();
    write(file(), content(file()) + "\n");
    settings.reload();
    EXPECT_EQ(told, 0);
}

TEST_F(SettingsFileTest, ChangesOfTwoWriters_AreBothKept) {
    write(file(), R"({"a": 1, "b": 1, "c": 1})");
    SettingsFile settings(folder);
    SettingsFile other(folder);
    other.set("a", std::int64_t{2});
    settings.set("b", std::int64_t{3});
    other.remove("c");
    settings.set("d", true);
    for (const auto& expected : {&settings, &other}) {
        expected->reload();
        EXPECT_EQ(expected->object("a"), DefaultsValue{std::int64_t{2}});
        EXPECT_EQ(expected->object("b"), DefaultsValue{std::int64_t{3}});
        EXPECT_EQ(expected->object("c"), std::nullopt);
        EXPECT_EQ(expected->object("d"), DefaultsValue{true});
    }
    EXPECT_EQ(names(), Names{"settings.json"});
}

TEST_F(SettingsFileTest, EditMadeWhileAChangeWaitsToBeWritten_IsMerged) {
    std::vector<std::function<void()>> queued;
    write(file(), R"({"theirs": 1, "ours": 1})");
    SettingsFile settings(folder, [&](std::function<void()> job) { queued.push_back(std::move(job)); });
    UserDefaults::Keys told;
    const auto watch = settings.onOutsideChange([&](const auto& keys) { told = keys; });
    settings.set("ours", std::int64_t{2});
    write(file(), R"({"theirs": 5, "ours": 1})");
    queued.front()();
    EXPECT_EQ(told, UserDefaults::Keys{"theirs"});
    const SettingsFile again(folder);
    EXPECT_EQ(again.object("ours"), DefaultsValue{std::int64_t{2}});
    EXPECT_EQ(again.object("theirs"), DefaultsValue{std::int64_t{5}});
}

TEST_F(SettingsFileTest, SameKeyChangedByBoth_HasOursAndACopyOfTheirs) {
    write(file(), R"({"key": 1})");
    std::vector<std::function<void()>> queued;
    SettingsFile settings(folder, [&](std::function<void()> job) { queued.push_back(std::move(job)); });
    settings.set("key", std::int64_t{2});
    write(file(), R"({"key": 3})");
    settings.flush();
    EXPECT_EQ(SettingsFile(folder).object("key"), DefaultsValue{std::int64_t{2}});
    EXPECT_EQ(content(folder / "settings.json.replaced-1"), R"({"key": 3})");
    EXPECT_NE(log.text.find("settings.json.replaced-1"), std::string::npos) << log.text;
}

TEST_F(SettingsFileTest, SavesOfManyWritersAtOnce_LoseNothing) {
    constexpr int writers = 4;
    constexpr int rounds = 25;
    std::vector<pid_t> children;
    for (int writer = 0; writer < writers; ++writer) {
        const pid_t child = fork();
        if (child == 0) {
            AppLogger.disconnect();
            SettingsFile settings(folder);
            for (int round = 0; round < rounds; ++round) {
                settings.set(std::to_string(writer) + "-" + std::to_string(round), true);
                while (!settings.flush()) {
                }
            }
            _exit(0);
        }
        children.push_back(child);
    }
    for (const pid_t child : children) {
        int status = -1;
        waitpid(child, &status, 0);
        EXPECT_EQ(status, 0);
    }
    const SettingsFile settings(folder);
    for (int writer = 0; writer < writers; ++writer) {
        for (int round = 0; round < rounds; ++round) {
            const auto key = std::to_string(writer) + "-" + std::to_string(round);
            EXPECT_EQ(settings.object(key), DefaultsValue{true}) << key;
        }
    }
    EXPECT_EQ(names(), Names{"settings.json"});
}

TEST_F(SettingsFileTest, EditLeftUnfinished_IsReportedAndTheLastGoodValuesStay) {
    write(file(), R"({"key": 1})");
    SettingsFile settings(folder);
    std::vector<std::string> told;
    const auto watch = settings.problem.observe(
        [&](const auto& problem) { told.push_back(problem ? problem->englishText() : "good"); });
    write(file(), "{\n  \"key\": 2,\n  \"other\": tru\n}");
    settings.reload();
    const std::string expected = file().string() + ", line 3, column 15: not valid JSON";
    EXPECT_EQ(told, Names{expected});
    EXPECT_EQ(settings.problem.get()->spanishText(),
              file().string() + ", línea 3, columna 15: no es JSON válido");
    EXPECT_NE(log.text.find("línea 3, columna 15"), std::string::npos) << log.text;
    EXPECT_EQ(settings.object("key"), DefaultsValue{std::int64_t{1}});
    EXPECT_EQ(content(file()), "{\n  \"key\": 2,\n  \"other\": tru\n}");
    EXPECT_EQ(names(), Names{"settings.json"});
    write(file(), R"({"key": 2, "other": true})");
    settings.reload();
    EXPECT_EQ(told, (Names{expected, "good"}));
    EXPECT_EQ(settings.object("key"), DefaultsValue{std::int64_t{2}});
}

TEST_F(SettingsFileTest, SaveOverAnUnfinishedEdit_CopiesItOnce) {
    write(file(), R"({"key": 1})");
    SettingsFile settings(folder);
    write(file(), R"({"key": 2)");
    settings.reload();
    settings.set("mine", true);
    settings.set("mine", false);
    EXPECT_EQ(names(), (Names{"settings.json", "settings.json.damaged-1"}));
    EXPECT_EQ(content(folder / "settings.json.damaged-1"), R"({"key": 2)");
    const SettingsFile again(folder);
    EXPECT_EQ(again.object("key"), DefaultsValue{std::int64_t{1}});
    EXPECT_EQ(again.object("mine"), DefaultsValue{false});
    EXPECT_FALSE(settings.problem.get());
}

TEST_F(SettingsFileTest, FileThatIsTakenAway_LeavesItsValuesInForceAndIsWrittenAgain) {
    write(file(), R"({"key": 1})");
    SettingsFile settings(folder);
    fs::remove(file());
    settings.reload();
    EXPECT_EQ(settings.object("key"), DefaultsValue{std::int64_t{1}});
    settings.set("mine", true);
    EXPECT_EQ(SettingsFile(folder).object("key"), DefaultsValue{std::int64_t{1}});
}

TEST_F(SettingsFileTest, LockThatAnotherKeeps_PostponesTheSaveAndLosesNothing) {
    std::vector<std::function<void()>> queued;
    SettingsFile settings(folder, [&](std::function<void()> job) { queued.push_back(std::move(job)); });
    int postponed = 0;
    settings.onPostponed = [&] { ++postponed; };
    const int holder = open(folder.c_str(), O_RDONLY | O_DIRECTORY);
    ASSERT_EQ(flock(holder, LOCK_EX), 0);
    settings.set("key", true);
    queued.front()();
    EXPECT_EQ(postponed, 1);
    EXPECT_FALSE(fs::exists(file()));
    close(holder);
    EXPECT_TRUE(settings.flush());
    EXPECT_EQ(SettingsFile(folder).object("key"), DefaultsValue{true});
}

TEST_F(SettingsFileTest, ReplacedFile_KeepsItsPermissions) {
    write(file(), "{}");
    fs::permissions(file(), fs::perms(0640));
    SettingsFile(folder).set("key", true);
    EXPECT_EQ(fs::status(file()).permissions(), fs::perms(0640));
}

TEST_F(SettingsFileTest, WhatAKilledSaveLeftBehind_IsRemovedAtTheStart) {
    const auto left = folder / ".settings.json.trelvan-0123456789abcdef";
    write(left, "half");
    fs::last_write_time(left, fs::file_time_type::clock::now() - std::chrono::hours(1));
    const SettingsFile settings(folder);
    EXPECT_EQ(names(), Names{});
}

TEST_F(SettingsFileTest, PlacesInsideAList_AreFoundInTheFile) {
    write(file(), "{\n  \"trackball_profiles\": [\n    {\"name\": \"P\",\n     \"mappings\": []}\n  ]\n}\n");
    const SettingsFile settings(folder);
    EXPECT_EQ(settings.locate("trackball_profiles", "[0].mappings"),
              (SettingsPlace{file().string(), {.line = 4, .column = 18}}));
    EXPECT_EQ(settings.locate("trackball_profiles", "[0].name.nothing"),
              (SettingsPlace{file().string(), {.line = 3, .column = 14}}));
}

TEST(ReadSettings, DamagedFile_IsAFailureWithItsPlaceInBothLanguages) {
    std::string folder = fs::temp_directory_path() / "trelvan-settings-XXXXXX";
    ASSERT_NE(mkdtemp(folder.data()), nullptr);
    std::ofstream(folder + "/settings.json") << "{\n oops}";
    const auto read = readSettings(folder);
    fs::remove_all(folder);
    const auto* failure = std::get_if<PlatformFailure>(&read);
    ASSERT_NE(failure, nullptr);
    EXPECT_EQ(failure->english, folder + "/settings.json, line 2, column 2: not valid JSON");
    EXPECT_EQ(failure->spanish, folder + "/settings.json, línea 2, columna 2: no es JSON válido");
}

TEST(SettingsFolder, Environment_IsFollowedOnlyWithAnAbsolutePath) {
    setenv("HOME", "/home/someone", 1);
    setenv("XDG_CONFIG_HOME", "/conf", 1);
    EXPECT_EQ(SettingsFile::defaultFolder(), "/conf/trelvan");
    setenv("XDG_CONFIG_HOME", "relative", 1);
    EXPECT_EQ(SettingsFile::defaultFolder(), "/home/someone/.config/trelvan");
    unsetenv("XDG_CONFIG_HOME");
    EXPECT_EQ(SettingsFile::defaultFolder(), "/home/someone/.config/trelvan");
}

}  // namespace
}  // namespace trelvan
