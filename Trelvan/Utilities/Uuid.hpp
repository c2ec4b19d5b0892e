#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace trelvan {

/// A universally unique identifier (RFC 9562), compared by its 16 bytes.
class Uuid {
  public:
    using Bytes = std::array<std::uint8_t, 16>;

    Uuid() = default;
    explicit Uuid(const Bytes& bytes) : bytes_(bytes) {}

    /// A new random one (version 4) from the system's source of randomness.
    [[nodiscard]] static Uuid random();
    /// Version 4 bits around the given bytes; for sources that must repeat.
    [[nodiscard]] static Uuid version4(Bytes bytes);
    /// From the canonical 36 characters, hexadecimal digits in either case; none for anything else.
    [[nodiscard]] static std::optional<Uuid> parse(std::string_view text);

    /// The canonical 36 characters with upper-case digits.
    [[nodiscard]] std::string text() const;
    [[nodiscard]] const Bytes& bytes() const { return bytes_; }

    // clang-tidy 14 sees a null pointer in the comparison it makes up.
    // NOLINTNEXTLINE(modernize-use-nullptr)
    friend auto operator<=>(const Uuid&, const Uuid&) = default;

  private:
    Bytes bytes_{};
};

/// Where new identifiers come from; a dry run uses one that repeats.
using UuidSource = std::function<Uuid()>;

}  // namespace trelvan
