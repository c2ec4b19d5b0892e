#pragma once

#include <cstdint>
#include <optional>
#include <vector>

struct _XDisplay;

namespace trelvan {

/// Key codes that carry the desktop's media keysyms.
///
/// Where the keyboard mapping has no key for one, an unused key code is given that keysym; it keeps it while
/// the program runs, since every change of the mapping makes all clients read it again, and is given back at
/// the end. Not thread-safe; guarded by the poster's lock.
class MediaKeycodes {
  public:
    explicit MediaKeycodes(_XDisplay* display) : display_(display) {}
    MediaKeycodes(const MediaKeycodes&) = delete;
    MediaKeycodes& operator=(const MediaKeycodes&) = delete;
    ~MediaKeycodes();

    /// The key code of a media key (NX_KEYTYPE); none for a key that has no keysym.
    [[nodiscard]] std::optional<int> keycode(std::int64_t mediaKey);

  private:
    [[nodiscard]] std::optional<int> bind(unsigned long keysym);

    _XDisplay* display_;
    std::vector<int> bound_;
};

}  // namespace trelvan
