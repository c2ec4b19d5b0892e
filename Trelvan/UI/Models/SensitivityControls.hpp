#pragma once

#include "Core/EventMonitor.hpp"
#include "Core/Model/AppLanguage.hpp"

#include <array>
#include <string>
#include <vector>

namespace trelvan {

/// A switch of the sensitivity controls.
struct SensitivityToggle {
    TextPair label;
    /// One line of help.
    TextPair help;
    Setting<bool> EventMonitor::*value;
};

/// A slider of the sensitivity controls; its range and default are its setting's.
struct SensitivitySlider {
    enum class Unit { factor, percent };

    TextPair label;
    TextPair help;
    const SettingRow& row;
    Setting<double> EventMonitor::*value;
    Unit unit = Unit::factor;
    double step = 0.1;
};

inline constexpr TextPair sensitivityTitle{"Sensitivity", "Sensibilidad"};
inline constexpr std::string_view sensitivityIcon = "speedometer";

[[nodiscard]] const std::array<SensitivityToggle, 3>& sensitivityToggles();
[[nodiscard]] const std::array<SensitivitySlider, 4>& sensitivitySliders();

/// "1.4x", "60%".
[[nodiscard]] std::string shownValue(const SensitivitySlider& slider, double value);

/// Whether the slider changes anything with the settings as they are.
[[nodiscard]] bool isEffective(const SensitivitySlider& slider, const EventMonitor& monitor);

/// A point of the gain plot: hand speed in units an event and the factor on the pointer's movement.
struct GainPoint {
    double handSpeed = 0;
    double gain = 1;
};
/// The hand speed at the right end of the plot.
inline constexpr double plottedHandSpeed = 32;
/// `count` points from 0 to `plottedHandSpeed`.
[[nodiscard]] std::vector<GainPoint> gainCurve(double speed, double acceleration, int count);

}  // namespace trelvan
