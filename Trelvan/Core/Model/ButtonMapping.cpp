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
    std::int64_t count = maximumFunctionSlots;
    while (count > minimumFunctionSlots &&
           functions[static_cast<std::size_t>(count - 1)].action == ButtonAction::none)
        --count;
    return count;
}

}  // namespace trelvan
