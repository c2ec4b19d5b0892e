#include "Platform/Shared/XdgFolders.hpp"

#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <string>

namespace trelvan {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Sets variables for the time of one test.
class XdgFoldersTest : public testing::Test {
  protected:
    ~XdgFoldersTest() override {
        for (const auto& [name, value] : before_) {
            if (value) {
                setenv(name.c_str(), value->c_str(), 1);
            } else {
                unsetenv(name.c_str());
            }
        }
    }
    void set(const char* name, const char* value) {
        keep(name);
        setenv(name, value, 1);
    }
    void clear(const char* name) {
        keep(name);
        unsetenv(name);
    }

  private:
    void keep(const char* name) {
        const char* value = std::getenv(name);
        before_.try_emplace(name, value != nullptr ? std::optional<std::string>(value) : std::nullopt);
    }
    std::map<std::string, std::optional<std::string>> before_;
};

TEST_F(XdgFoldersTest, ValuesThatAreAbsolutePaths_Count) {
    set("HOME", "/home/someone");
    set("XDG_CONFIG_HOME", "/conf");
    set("XDG_DATA_HOME", "/data");
    set("XDG_DATA_DIRS", "/one::relative:/two");
    set("XDG_CONFIG_DIRS", "/three:/four");
    EXPECT_EQ(homeFolder(), "/home/someone");
    EXPECT_EQ(configHome(), "/conf");
    EXPECT_THAT(dataFolders(), ElementsAre("/data", "/one", "/two"));
    EXPECT_THAT(configFolders(), ElementsAre("/three", "/four"));
}

TEST_F(XdgFoldersTest, ValuesThatAreMissingOrRelative_HaveTheirDefaults) {
    set("HOME", "/home/someone");
    set("XDG_CONFIG_HOME", "relative");
    clear("XDG_DATA_HOME");
    clear("XDG_DATA_DIRS");
    set("XDG_CONFIG_DIRS", "");
    EXPECT_EQ(configHome(), "/home/someone/.config");
    EXPECT_THAT(dataFolders(), ElementsAre("/home/someone/.local/share", "/usr/local/share", "/usr/share"));
    EXPECT_THAT(configFolders(), ElementsAre("/etc/xdg"));
}

TEST_F(XdgFoldersTest, HomeThatIsNoAbsolutePath_IsThatOfThePasswordFile) {
    set("HOME", "relative");
    EXPECT_TRUE(homeFolder().starts_with('/'));
}

TEST_F(XdgFoldersTest, RuntimeFolder_IsTheFirstThatCanBeWritten) {
    const std::string writable = std::filesystem::temp_directory_path();
    set("HOME", "/home/someone");
    set("XDG_RUNTIME_DIR", writable.c_str());
    set("XDG_CACHE_HOME", writable.c_str());
    EXPECT_EQ(runtimeFolder(), writable);
    set("XDG_RUNTIME_DIR", "/no/such/folder");
    EXPECT_EQ(runtimeFolder(), writable + "/trelvan");
    clear("XDG_CACHE_HOME");
    EXPECT_EQ(runtimeFolder(), "/home/someone/.cache/trelvan");
}

TEST(ColonSeparated, EmptyPartsAreLeftOut) {
    EXPECT_THAT(colonSeparated("a::b:"), ElementsAre("a", "b"));
    EXPECT_THAT(colonSeparated(""), IsEmpty());
}

}  // namespace
}  // namespace trelvan
