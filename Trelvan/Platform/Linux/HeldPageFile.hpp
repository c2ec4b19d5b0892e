#pragma once

#include "Platform/Linux/HeldPage.hpp"

#include <string>
#include <string_view>

namespace trelvan {

/// A held page in a file of its own, which is locked for as long as one of the processes that share it lives.
class HeldPageFile {
  public:
    /// Takes a free page of the display. Pages that nobody holds any more are read and removed: their
    /// programs were killed. Where no file can be had the page is memory only.
    HeldPageFile(const std::string& folder, std::string_view display);
    HeldPageFile(const HeldPageFile&) = delete;
    HeldPageFile& operator=(const HeldPageFile&) = delete;
    /// Leaves the file.
    ~HeldPageFile();

    /// The user's folder for what lasts as long as the session.
    [[nodiscard]] static std::string defaultFolder();

    [[nodiscard]] HeldPage& page() { return *page_; }
    /// What programs that were killed left behind.
    [[nodiscard]] const Owed& leftOver() const { return leftOver_; }
    /// The open file, -1 without one. It is closed in programs started from this one.
    [[nodiscard]] int descriptor() const { return descriptor_; }
    /// Removes the file if it is still this one.
    void remove();

  private:
    void visit(const std::string& path);
    [[nodiscard]] bool claim(const std::string& path, int descriptor);

    std::string path_;
    int descriptor_ = -1;
    HeldPage* page_ = nullptr;
    Owed leftOver_;
};

}  // namespace trelvan
