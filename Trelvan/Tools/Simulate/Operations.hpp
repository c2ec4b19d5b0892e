#pragma once

#include "Core/Model/RecordJson.hpp"
#include "Platform/Files.hpp"
#include "Tools/Simulate/SimulatedMenu.hpp"
#include "TrelvanApp.hpp"
#include "Utilities/Uuid.hpp"

#include <functional>
#include <string>
#include <string_view>
#include <variant>

namespace trelvan {

/// Why an operation did not do what it was asked to.
struct OperationError {
    std::string text;
};

/// What an operation returned, as JSON, or why it failed.
using Outcome = std::variant<std::string, OperationError>;

/// Told once how the operation ended.
using TellOutcome = std::function<void(std::string_view operation, const Outcome& outcome)>;

/// What operations work on.
struct OperationScope {
    TrelvanApp& app;
    const SimulatedMenu& menu;
    Files& files;
    const UuidSource& uuids;
};

/// Calls the operation that the line names, with the line's arguments, and tells how it ended. An unknown
/// operation, and a missing or mistyped argument, are errors of the line and nothing is called.
[[nodiscard]] json::Problem callOperation(const OperationScope& scope, const json::Value& line,
                                          const TellOutcome& tell);

}  // namespace trelvan
