#include "UI/Models/SensitivityControls.hpp"

#include "Core/Shaping.hpp"

#include <QString>

namespace trelvan {

const std::array<SensitivityToggle, 3>& sensitivityToggles() {
    static constexpr std::array<SensitivityToggle, 3> toggles{{
        {{"Enable horizontal scroll", "Activar scroll horizontal"},
         {"Horizontal turns get their own speed", "Los giros horizontales tienen su propia velocidad"},
         &EventMonitor::horizontalScrollEnabled},
        {{"Swap scroll direction", "Invertir dirección de scroll"},
         {"Both axes run the other way", "Ambos ejes van al revés"},
         &EventMonitor::swapScrollDirection},
        {{"Advanced speed engine", "Motor avanzado de velocidad"},
         {"Moves the pointer itself, so the speed is right everywhere",
          "Mueve el propio puntero, así que la velocidad vale en todas partes"},
         &EventMonitor::advancedMouseSpeedEnabled},
    }};
    return toggles;
}

const std::array<SensitivitySlider, 4>& sensitivitySliders() {
    using Unit = SensitivitySlider::Unit;
    static const std::array<SensitivitySlider, 4> sliders{{
        {{"Vertical scroll", "Scroll vertical"},
         {"Lines for each turn of the wheel", "Líneas por cada giro de la rueda"},
         setting::row("scrollSpeedVertical"),
         &EventMonitor::scrollSpeedVertical,
         Unit::factor,
         0.1},
        {{"Horizontal scroll", "Scroll horizontal"},
         {"With horizontal scroll enabled", "Con el scroll horizontal activado"},
         setting::row("scrollSpeedHorizontal"),
         &EventMonitor::scrollSpeedHorizontal,
         Unit::factor,
         0.1},
        {{"Mouse speed", "Velocidad de mouse"},
         {"Above 1.4x it lasts until the next start", "Por encima de 1.4x dura hasta el próximo inicio"},
         setting::row("mouseSpeed"),
         &EventMonitor::mouseSpeed,
         Unit::factor,
         0.1},
        {{"Smoothness / Acceleration", "Suavidad / Aceleración"},
         {"How soon a fast hand gets the full speed; counts above 1.0x",
          "Cuándo alcanza una mano rápida la velocidad plena; cuenta por encima de 1.0x"},
         setting::row("mouseAcceleration"),
         &EventMonitor::mouseAcceleration,
         Unit::percent,
         0.05},
    }};
    return sliders;
}

std::string shownValue(const SensitivitySlider& slider, double value) {
    // Qt's own, which knows no locale: the point stays a point.
    if (slider.unit == SensitivitySlider::Unit::percent)
        return QString::asprintf("%.0f%%", value * 100).toStdString();
    return QString::asprintf("%.1fx", value).toStdString();
}

bool isEffective(const SensitivitySlider& slider, const EventMonitor& monitor) {
    if (slider.value == &EventMonitor::scrollSpeedHorizontal) return monitor.horizontalScrollEnabled;
    if (slider.value == &EventMonitor::mouseAcceleration) return monitor.mouseSpeed > 1.0;
    return true;
}

std::vector<GainPoint> gainCurve(double speed, double acceleration, int count) {
    std::vector<GainPoint> points;
    for (int index = 0; index < count; ++index) {
        const double handSpeed = plottedHandSpeed * index / (count - 1);
        points.push_back({handSpeed, pointerGain(handSpeed, speed, acceleration)});
    }
    return points;
}

}  // namespace trelvan
