#pragma once

#include "Core/MappingResolution.hpp"
#include "Core/Model/AppLanguage.hpp"
#include "Core/Model/ButtonMapping.hpp"
#include "UI/Models/MappingText.hpp"
#include "UI/Models/ModifierSigns.hpp"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace trelvan {

/// What a function needs besides its action.
enum class ExtraEditor : std::uint8_t {
    none,
    /// A key recorder and a name.
    shortcut,
    /// A key recorder for what starts dictation.
    dictation,
    application,
    folder,
    /// The left and right buttons keep no shortcut and no application.
    notKept,
};

[[nodiscard]] ExtraEditor extraEditorFor(const ButtonMapping& mapping, FunctionSlot slot);

/// One function as the open row shows it.
struct FunctionSection {
    FunctionSlot slot = FunctionSlot::primary;
    std::string_view title;
    ButtonAction action = ButtonAction::none;
    std::array<ButtonModifierTrigger, 2> triggers{};
    /// Drawn dimmed.
    bool isMuted = false;
    /// Another function asks for the same modifiers.
    bool isDuplicate = false;
    /// The main function of the left and right buttons, which keeps its click.
    bool isLocked = false;
    /// When it fires.
    std::string sentence;
    bool fires = false;
    ExtraEditor editor = ExtraEditor::none;
    CustomShortcut shortcut;
    std::string shortcutName;
    /// "Shortcut 1:" to "Shortcut 4:".
    std::string recorderLabel;
    /// Its own among all recorders.
    std::string recorderID;
    /// Of the application or folder chosen; empty for none.
    std::string path;
    /// "Remove second function"; empty for the main function.
    std::string_view removeHelp;
    friend bool operator==(const FunctionSection&, const FunctionSection&) = default;
};

/// A function of a closed row, in short.
struct FunctionSummary {
    /// "⇧⌘"; empty for none.
    std::string signs;
    std::string label;
    bool isMuted = false;
    friend bool operator==(const FunctionSummary&, const FunctionSummary&) = default;
};

/// One mapping as the editor shows it.
struct MappingRow {
    Uuid id;
    std::int64_t buttonNumber = 0;
    std::string title;
    std::string spokenTitle;
    std::string_view icon;
    std::vector<FunctionSummary> summary = {};
    bool isLocked = false;
    bool canMoveUp = false;
    bool canMoveDown = false;
    bool canRemove = false;
    /// Another row of the same button comes first, and only the first counts.
    bool isShadowed = false;
    bool isExpanded = false;
    /// Of an open row.
    std::vector<FunctionSection> sections = {};
    bool canAddFunction = false;
    friend bool operator==(const MappingRow&, const MappingRow&) = default;
};

/// The left and right buttons, which the store keeps fixed.
[[nodiscard]] bool isLocked(const ButtonMapping& mapping);

[[nodiscard]] MappingRow makeRow(const ButtonMapping& mapping, bool isExpanded, AppLanguage language,
                                 EventFlags reported = combinationModifiers);

/// The identifier of the recorder of a function's shortcut.
[[nodiscard]] std::string recorderIDFor(const Uuid& mapping, FunctionSlot slot);

/// Texts of the editor.
namespace editorText {
inline constexpr TextPair locked{"Locked", "Fijo"};
inline constexpr TextPair moveUp{"Move up", "Mover arriba"};
inline constexpr TextPair moveDown{"Move down", "Mover abajo"};
inline constexpr TextPair remove{"Remove", "Quitar"};
inline constexpr TextPair expand{"Expand button", "Expandir botón"};
inline constexpr TextPair collapse{"Collapse button", "Contraer botón"};
inline constexpr TextPair addAction{"Add Action", "Agregar acción"};
inline constexpr TextPair addButton{"Add Btn", "Add Btn"};
inline constexpr TextPair addScroll{"Add Scroll", "Add Scroll"};
inline constexpr TextPair optionalName{"Optional name", "Nombre opcional"};
inline constexpr TextPair customShortcut{"Atajo Personalizado", "Atajo Personalizado"};
inline constexpr TextPair openApplication{"Abrir Aplicación", "Abrir Aplicación"};
inline constexpr TextPair openFolder{"Abrir carpeta", "Abrir carpeta"};
inline constexpr TextPair noneSelected{"None selected", "Ninguna seleccionada"};
inline constexpr TextPair noFolder{"Folder: None Selected", "Carpeta: Ninguna seleccionada"};
inline constexpr TextPair folder{"Folder: ", "Carpeta: "};
inline constexpr TextPair select{"Select...", "Seleccionar..."};
inline constexpr TextPair activity{"Button Activity", "Actividad Botones"};
inline constexpr TextPair detect{"Detect button", "Detectar botón"};
inline constexpr TextPair detecting{"Press an extra button or turn the wheel…",
                                    "Pulsa un botón extra o gira la rueda…"};
inline constexpr TextPair cancel{"Cancel", "Cancelar"};
inline constexpr TextPair tryIt{"Try it", "Probar"};
inline constexpr TextPair why{"Why", "Por qué"};
inline constexpr TextPair keep{"Keep", "Conservar"};
inline constexpr TextPair undo{"Undo", "Deshacer"};
inline constexpr TextPair shadowed{"Never fires: another row of this button comes first",
                                   "Nunca se ejecuta: otra fila de este botón va antes"};
inline constexpr TextPair notKept{"The left and right buttons keep no shortcut and no application",
                                  "Los botones izquierdo y derecho no guardan atajo ni aplicación"};
inline constexpr TextPair duplicate{"Same keys as another function", "Las mismas teclas que otra función"};
}  // namespace editorText

}  // namespace trelvan
