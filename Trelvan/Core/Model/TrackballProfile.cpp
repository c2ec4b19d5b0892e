#include "Core/Model/TrackballProfile.hpp"

namespace trelvan {

TrackballProfile TrackballProfile::minimalProfile(const UuidSource& newId) {
    TrackballProfile profile;
    profile.id = newId();
    profile.name = "Default";
    profile.mappings.push_back(ButtonMapping::unassigned(newId(), 0, "Click izquierdo"));
    profile.mappings.back().action() = ButtonAction::leftClick;
    profile.mappings.push_back(ButtonMapping::unassigned(newId(), 1, "Click derecho"));
    profile.mappings.back().action() = ButtonAction::rightClick;
    return profile;
}

TrackballProfile TrackballProfile::defaultProfile(const UuidSource& newId) {
    TrackballProfile profile = minimalProfile(newId);
    profile.mappings.push_back(ButtonMapping::unassigned(newId(), 2, "Click medio"));
    profile.mappings.push_back(ButtonMapping::unassigned(newId(), 3, "Botón extra 1"));
    profile.mappings.push_back(ButtonMapping::unassigned(newId(), 4, "Botón extra 2"));
    return profile;
}

}  // namespace trelvan
