#include "Core/Model/ButtonMapping.hpp"

#include <utility>

namespace trelvan {

ButtonMapping ButtonMapping::unassigned(const Uuid& id, std::int64_t buttonNumber, std::string buttonLabel) {
    ButtonMapping mapping;
    mapping.id = id;
    mapping.buttonNumber = buttonNumber;
    mapping.buttonLabel = std::move(buttonLabel);
    return mapping;
}

std::int64_t ButtonMapping::functionSlotsInUse() const {
    if (quaternaryAction != ButtonAction::none) return 4;
    if (tertiaryAction != ButtonAction::none) return 3;
    if (secondaryAction != ButtonAction::none) return 2;
    return minimumFunctionSlots;
}

}  // namespace trelvan
