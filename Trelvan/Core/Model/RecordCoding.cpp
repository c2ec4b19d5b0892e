#include "Core/Model/RecordCoding.hpp"

#include "Core/Model/RecordJson.hpp"

namespace trelvan {

Coded<std::string> encodeProfiles(const std::vector<TrackballProfile>& profiles) {
    return json::encode(profiles);
}

Coded<std::vector<TrackballProfile>> decodeProfiles(std::string_view bytes, const UuidSource& newId) {
    return json::decode<std::vector<TrackballProfile>>(bytes, newId);
}

Coded<TrackballProfile> decodeProfile(std::string_view bytes, const UuidSource& newId) {
    return json::decode<TrackballProfile>(bytes, newId);
}

}  // namespace trelvan
