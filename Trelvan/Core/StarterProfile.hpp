#pragma once

#include "Core/Model/AppLanguage.hpp"
#include "Core/Model/TrackballProfile.hpp"
#include "Utilities/Uuid.hpp"

namespace trelvan {

/// A profile to begin with, which does something useful with a mouse of five buttons. Its name and labels are
/// in the language.
[[nodiscard]] TrackballProfile starterProfile(AppLanguage language, const UuidSource& newId);

}  // namespace trelvan
