#pragma once

#include "Core/MappingResolution.hpp"
#include "Core/Model/ButtonMapping.hpp"

namespace trelvan {

/// The modifiers that the function asks for; 0 for one without triggers.
[[nodiscard]] EventFlags wantedBy(const ButtonMapping& mapping, FunctionSlot slot);

/// Drawn dimmed: a second, third or fourth function without a modifier.
[[nodiscard]] bool isMuted(const ButtonMapping& mapping, FunctionSlot slot);
/// Another function in use asks for the same modifiers. Functions that ask for none are muted, not doubled.
[[nodiscard]] bool hasDuplicateFunction(const ButtonMapping& mapping, FunctionSlot slot);

/// Shows one more function, empty; nothing where all four are shown.
void addFunction(ButtonMapping& mapping);
/// Removes the second, third or fourth function; the ones behind it move up.
void removeFunction(ButtonMapping& mapping, FunctionSlot slot);

}  // namespace trelvan
