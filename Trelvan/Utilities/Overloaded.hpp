#pragma once

namespace trelvan {

/// The functions as one, which calls the one that takes its argument: what visits a variant case by case.
template <typename... Functions>
struct Overloaded : Functions... {
    using Functions::operator()...;
};
template <typename... Functions>
Overloaded(Functions...) -> Overloaded<Functions...>;

}  // namespace trelvan
