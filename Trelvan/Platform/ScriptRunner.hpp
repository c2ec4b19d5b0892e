#pragma once

#include <string>
#include <string_view>

namespace trelvan {

/// How the run of a script ended.
struct ScriptResult {
    enum class Status { ran, notCreated, failed } status = Status::ran;
    /// The error's description when it failed, else empty.
    std::string error;
};

/// Runs a script of the system's automation language. Any thread; returns when the script is done.
class ScriptRunner {
  public:
    virtual ~ScriptRunner() = default;

    [[nodiscard]] virtual ScriptResult run(std::string_view source) = 0;
};

/// Where the system has no automation language no script can be made.
class NoScriptRunner final : public ScriptRunner {
  public:
    [[nodiscard]] ScriptResult run(std::string_view /*source*/) override {
        return {.status = ScriptResult::Status::notCreated, .error = {}};
    }
};

}  // namespace trelvan
