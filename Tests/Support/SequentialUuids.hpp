#pragma once

#include "Utilities/Uuid.hpp"

#include <cstdint>
#include <memory>

namespace trelvan::test {

/// The identifier that `sequentialUuids` gives as its `number`th, counted from 1.
inline Uuid sequentialUuid(std::uint32_t number) {
    Uuid::Bytes bytes{};
    for (std::size_t byte = 0; byte < 4; ++byte) {
        bytes[15 - byte] = static_cast<std::uint8_t>(number >> (8 * byte));
    }
    return Uuid::version4(bytes);
}

/// A source of identifiers that counts; its copies go on with the same count.
inline UuidSource sequentialUuids() {
    return [count = std::make_shared<std::uint32_t>(0)] { return sequentialUuid(++*count); };
}

}  // namespace trelvan::test
