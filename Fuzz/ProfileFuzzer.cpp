#include "Core/Model/Backup.hpp"
#include "Core/Model/RecordCoding.hpp"
#include "Core/Model/RecordJson.hpp"
#include "Utilities/Fatal.hpp"

#include <cstddef>
#include <cstdint>
#include <string_view>

/// Whatever the bytes: decoding ends with profiles, a backup or an error, and profiles that decode are the
/// same after being written and read again.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    using namespace trelvan;
    const std::string_view text(reinterpret_cast<const char*>(bytes), size);
    const UuidSource uuids = [] { return Uuid(); };
    if (const auto backup = json::decode<BackupPackage>(text, uuids)) {
        const auto written = json::encode(*backup, 2);
        if (!written || !json::decode<BackupPackage>(*written, uuids)) fatal("a backup cannot be written");
    }
    const auto decoded = decodeProfiles(text, uuids);
    if (!decoded) {
        if (decoded.error().text().empty()) fatal("an error without a text");
        return 0;
    }
    const auto encoded = encodeProfiles(*decoded);
    if (!encoded) fatal("decoded profiles cannot be encoded");
    const auto again = decodeProfiles(*encoded, uuids);
    if (!again || *again != *decoded) fatal("profiles changed by being written");
    return 0;
}
