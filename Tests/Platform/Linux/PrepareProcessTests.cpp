#include "Platform/Platform.hpp"
#include "Platform/Shared/AtomicFile.hpp"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <functional>
#include <string>

namespace trelvan {
namespace {

/// The wait status of a process that does the job and ends with what it answers.
int statusOf(const std::function<int()>& job) {
    const pid_t child = fork();
    if (child == 0) _exit(job());
    int status = -1;
    waitpid(child, &status, 0);
    return status;
}

TEST(PrepareProcess, SignalsThatTheParentBlocked_EndTheProcessAgain) {
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
        const int status = statusOf([number] {
            sigset_t all;
            sigfillset(&all);
            sigprocmask(SIG_BLOCK, &all, nullptr);
            prepareProcess();
            raise(number);
            return 0;
        });
        EXPECT_TRUE(WIFSIGNALED(status)) << number;
        EXPECT_EQ(WTERMSIG(status), number);
    }
}

TEST(PrepareProcess, FileSizeLimit_IsAnErrorAndNotTheEnd) {
    std::string folder = std::filesystem::temp_directory_path() / "trelvan-limit-XXXXXX";
    ASSERT_NE(mkdtemp(folder.data()), nullptr);
    const int status = statusOf([&] {
        prepareProcess();
        const rlimit tight{.rlim_cur = 100, .rlim_max = 100};
        setrlimit(RLIMIT_FSIZE, &tight);
        const auto error = replaceWhole(folder + "/f", std::string(1000, 'x'), NewFile::forOwner);
        return error == std::errc::file_too_large ? 0 : 1;
    });
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0);
    EXPECT_TRUE(std::filesystem::is_empty(folder));
    std::filesystem::remove_all(folder);
}

TEST(PrepareProcess, ProgramsStartedFromThisOne_HaveTheOrdinaryMeaningAgain) {
    const int status = statusOf([] {
        prepareProcess();
        execl("/bin/sh", "sh", "-c", "kill -XFSZ $$", nullptr);
        return 127;
    });
    EXPECT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(WTERMSIG(status), SIGXFSZ);
}

}  // namespace
}  // namespace trelvan
