#pragma once

#include "Core/Model/TrackballProfile.hpp"

namespace trelvan {

/// The mapping with the left and right buttons' plain click pinned to themselves. What modifier keys choose
/// on those buttons stays, and so does every mapping of another button.
[[nodiscard]] ButtonMapping normalizeMapping(ButtonMapping mapping);

/// The profile with every mapping normalised. One that scrolls down only was written before the two
/// directions were told apart: its first scroll mapping becomes the one for up.
[[nodiscard]] TrackballProfile normalizeProfile(TrackballProfile profile);

}  // namespace trelvan
