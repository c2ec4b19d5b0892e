#pragma once

#include "Platform/Linux/XTest/PressedState.hpp"

#include <memory>
#include <string>
#include <string_view>

namespace trelvan {

/// A held page in a file of its own, which is locked for as long as one of the processes that share it lives.
///
/// Memory behind a file is gone when somebody cuts the file off, and the next look at it ends the process. So
/// only a file that nobody but this user can change is used, in a folder of which the same is true.
class PressedStateFile {
  public:
    /// Takes a free page of the display. Pages that nobody holds any more are read and removed: their
    /// programs were killed. Where no file can be had the page is memory without a file.
    PressedStateFile(const std::string& folder, std::string_view display);
    PressedStateFile(const PressedStateFile&) = delete;
    PressedStateFile& operator=(const PressedStateFile&) = delete;
    /// Leaves the file.
    ~PressedStateFile();

    /// The page of another process, by the descriptor that it handed on, which this takes over, and the path
    /// of the file; null for what is no page.
    [[nodiscard]] static std::unique_ptr<PressedStateFile> handedOn(int descriptor, const std::string& path);

    [[nodiscard]] PressedState& page() { return *page_; }
    /// What programs that were killed left behind.
    [[nodiscard]] const PendingReleases& leftOver() const { return leftOver_; }
    /// The open file, or the memory in its place. It is closed in programs started from this one.
    [[nodiscard]] int descriptor() const { return descriptor_; }
    /// Of the file; empty where there is none.
    [[nodiscard]] const std::string& path() const { return path_; }
    /// Removes the file if it is still this one.
    void remove();

  private:
    PressedStateFile(int descriptor, PressedState* page, std::string path);

    void visit(int folder, const std::string& folderPath, const std::string& name);
    [[nodiscard]] bool claim(int folder, const std::string& name, int descriptor);
    void useMemory();

    std::string path_;
    int descriptor_ = -1;
    PressedState* page_ = nullptr;
    PendingReleases leftOver_;
};

}  // namespace trelvan
