#include "Platform/Linux/SettingsFile.hpp"
#include "Utilities/Logger.hpp"

#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>

#include <algorithm>
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
