#pragma once

#include <functional>

namespace trelvan {

/// How a further start of the program reaches the one that runs, whoever decides which of them that is. Main
/// thread.
class SingleInstance {
  public:
    SingleInstance() = default;
    SingleInstance(const SingleInstance&) = delete;
    SingleInstance& operator=(const SingleInstance&) = delete;
    virtual ~SingleInstance() = default;

    enum class Reach {
        reachable,
        /// The session has no way for one program to call another.
        noBus,
        /// Somebody else has the program's name there.
        taken,
    };

    /// Has `onShow` called each time a further start, of the same user, asks to see the window, for as long
    /// as this object lives.
    [[nodiscard]] virtual Reach serve(std::function<void()> onShow) = 0;
};

}  // namespace trelvan
