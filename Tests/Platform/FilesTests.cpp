#include "Platform/Files.hpp"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace trelvan {
namespace {

class StandardFilesTest : public testing::Test {
  protected:
    StandardFilesTest() {
        std::string name = testing::TempDir() + "files-XXXXXX";
        place = mkdtemp(name.data());
    }
    ~StandardFilesTest() override { std::filesystem::remove_all(place); }

    std::string readError(const std::string& path) {
        const auto result = files.read(path);
        const auto* error = std::get_if<FileError>(&result);
        return error != nullptr ? error->text : "(none)";
    }

    std::string place;
    StandardFiles files;
};

TEST_F(StandardFilesTest, WhatIsWrittenIsRead) {
    const std::string bytes("a\0b\n\xff", 5);
    EXPECT_FALSE(files.write(place + "/f", "first"));
    EXPECT_FALSE(files.write(place + "/f", bytes));
    EXPECT_EQ(std::get<std::string>(files.read(place + "/f")), bytes);
    EXPECT_FALSE(std::filesystem::exists(place + "/f.new"));
}

TEST_F(StandardFilesTest, EmptyFileIsEmpty) {
    EXPECT_FALSE(files.write(place + "/f", ""));
    EXPECT_EQ(std::get<std::string>(files.read(place + "/f")), "");
}

TEST_F(StandardFilesTest, MissingFileIsNamed) {
    EXPECT_TRUE(readError(place + "/none").starts_with(place + "/none: "));
}

TEST_F(StandardFilesTest, FolderAndDeviceAreNoFiles) {
    EXPECT_EQ(readError(place), place + ": Is a directory");
    EXPECT_TRUE(readError("/dev/zero").starts_with("/dev/zero: "));
}

TEST_F(StandardFilesTest, WhatIsNoFileIsNotReplacedByOne) {
    const std::string pipe = place + "/pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const auto error = files.write(pipe, "x");
    ASSERT_TRUE(error);
    EXPECT_TRUE(error->text.starts_with(pipe + ": "));
    EXPECT_TRUE(std::filesystem::is_fifo(pipe));
    EXPECT_NE(readError(pipe), "(none)");
}

TEST_F(StandardFilesTest, LinkStaysAndWhatItLeadsToIsWritten) {
    std::filesystem::create_directory(place + "/far");
    EXPECT_FALSE(files.write(place + "/far/f", "first"));
    std::filesystem::create_symlink("far/f", place + "/link");
    EXPECT_FALSE(files.write(place + "/link", "second"));
    EXPECT_TRUE(std::filesystem::is_symlink(place + "/link"));
    EXPECT_EQ(std::get<std::string>(files.read(place + "/far/f")), "second");
}

TEST_F(StandardFilesTest, NeighbouringFileIsLeftAlone) {
    EXPECT_FALSE(files.write(place + "/f.new", "mine"));
    EXPECT_FALSE(files.write(place + "/f", "x"));
    EXPECT_EQ(std::get<std::string>(files.read(place + "/f.new")), "mine");
}

TEST_F(StandardFilesTest, ImmenseFileIsRefused) {
    std::ofstream(place + "/big").close();
    std::filesystem::resize_file(place + "/big", Files::largest + 1);
    EXPECT_TRUE(readError(place + "/big").starts_with(place + "/big: "));
}

TEST_F(StandardFilesTest, WriteThatFailsLeavesTheFile) {
    const auto error = files.write(place + "/no/f", "x");
    ASSERT_TRUE(error);
    EXPECT_TRUE(error->text.starts_with(place + "/no/f: ")) << error->text;
    std::filesystem::create_directory(place + "/taken");
    std::ofstream(place + "/taken/inside").close();
    EXPECT_TRUE(files.write(place + "/taken", "x"));
    EXPECT_TRUE(std::filesystem::exists(place + "/taken/inside"));
    EXPECT_FALSE(std::filesystem::exists(place + "/taken.new"));
}

}  // namespace
}  // namespace trelvan
