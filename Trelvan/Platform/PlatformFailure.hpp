#pragma once

#include <string>

namespace trelvan {

/// Why the platform cannot be had: one line for a person, naming what is missing, in each language.
struct PlatformFailure {
    std::string english;
    std::string spanish;
    /// The program runs already on what this one wanted to serve.
    bool alreadyRuns = false;
};

}  // namespace trelvan
