#include "Desktop/DesktopTest.hpp"

#include <X11/keysym.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <optional>
#include <regex>
#include <sstream>

// The same presses on real devices and in a dry run: both must decide the same.

namespace trelvan::desktop {
namespace {

using Json = nlohmann::json;

constexpr unsigned long shiftFlag = 0x20000;

/// One press, or a notch of the wheel where there is no button.
struct Step {
    int button = 0;
    bool withShift = false;
    /// What must have arrived before the next step, so that nothing overlaps.
    std::optional<KeyStroke> stroke;
    static constexpr int wheelUp = -100;
    static constexpr int wheelDown = -101;
};

/// What was decided, whoever decided it.
struct Decisions {
    /// The log's lines about presses, without the labels of the user's.
    std::vector<std::string> messages;
    /// What it says of views that the desktop does not have: the desktop's answers take their time.
    std::vector<std::string> missing;
    /// The X buttons that were let through.
    std::vector<unsigned> buttons;
    std::vector<KeyStroke> strokes;
};

std::string withoutLabel(const std::string& message) {
    static const std::regex label("scroll '[^']*'");
    return std::regex_replace(message, label, "scroll");
}

bool isAboutAPress(const std::string& message) {
    static const std::regex known(
        "^(Ejecutando|Evento botón|Evento scroll|Botón -?[0-9]+ sin|Este escritorio)");
    return std::regex_search(message, known);
}

void addMessage(const std::string& message, Decisions& decisions) {
    if (!isAboutAPress(message)) return;
    auto& place = message.starts_with("Este escritorio") ? decisions.missing : decisions.messages;
    place.push_back(withoutLabel(message));
}

class SimulationAgreementTest : public DesktopTest {
  protected:
    int pressesOf(KeySym key) {
        return static_cast<int>(std::ranges::count_if(client().events(), [key](const ClientEvent& event) {
            return event.kind == Kind::keyPress && event.key == key;
        }));
    }

    void perform(const Step& step) {
        const int shifts = pressesOf(XK_Shift_L);
        if (step.withShift) holdKey(XK_Shift_L);
        const auto before = client().strokes().size();
        if (step.button == Step::wheelUp || step.button == Step::wheelDown) {
            trackball().scrollVertical(step.button == Step::wheelUp ? 1 : -1);
        } else {
            trackball().click(xButton(step.button));
        }
        if (step.stroke) {
            EXPECT_TRUE(client().waitFor([&](const auto&) { return client().strokes().size() > before; }));
        }
        if (step.withShift) {
            // Lifted for the shortcut, it is given back after it.
            EXPECT_TRUE(client().waitFor([&](const auto&) { return pressesOf(XK_Shift_L) >= shifts + 2; }));
            releaseKey(XK_Shift_L);
        }
        EXPECT_TRUE(waitUntil([&] { return !client().isAnythingHeld(); }));
        passSentinel();
    }

    Decisions real() {
        Decisions decisions;
        std::istringstream output(wholeOutput());
        for (std::string line; std::getline(output, line);) {
            const auto message = line.find("] ", line.find(".cpp:"));
            if (message != std::string::npos) addMessage(line.substr(message + 2), decisions);
        }
        for (const auto button : client().buttonsPressed()) decisions.buttons.push_back(button);
        decisions.strokes = client().strokes();
        return decisions;
    }

    /// What the dry run of a script decides.
    Decisions simulated(const std::filesystem::path& script) {
        const auto run = runProgram(desktop(), {"simulate", script}, desktop().environment());
        EXPECT_EQ(run.exitCode, 0) << run.errors;
        Decisions decisions;
        std::istringstream trace(run.output);
        for (std::string text; std::getline(trace, text);) {
            const Json line = Json::parse(text);
            if (line["trace"] == "log") addMessage(line["message"], decisions);
            if (line["trace"] == "event" && line["type"] == 25 && line["answer"] == "pass")
                decisions.buttons.push_back(static_cast<unsigned>(xButton(line["button"])));
            if (line["trace"] == "event" && line["type"] == 22 && line["answer"] == "pass" &&
                line["scrollY"] != 0)
                decisions.buttons.push_back(line["scrollY"] > 0 ? 4 : 5);
            if (line["trace"] == "post" && line["kind"] == "key" && line["down"] == true)
                addStroke(line, decisions);
        }
        return decisions;
    }

    static void addStroke(const Json& post, Decisions& decisions) {
        static const std::map<int, KeySym> keys{{8, XK_c}, {9, XK_v}, {6, XK_z}, {3, XK_f}, {123, XK_Left}};
        const auto key = keys.find(post["keyCode"]);
        if (key == keys.end()) return;
        const auto flags = post["flags"].get<unsigned long>();
        unsigned modifiers = 0;
        if ((flags & shiftFlag) != 0) modifiers |= ShiftMask;
        if ((flags & 0x40000) != 0) modifiers |= ControlMask;
        if ((flags & 0x80000) != 0) modifiers |= Mod1Mask;
        if ((flags & 0x100000) != 0) modifiers |= Mod4Mask;
        decisions.strokes.push_back({key->second, modifiers});
    }

    /// The steps as a script, with the sentinel after each.
    std::filesystem::path writeScript(const Settings& settings, const std::vector<Step>& steps) {
        Json stored = Json::parse(settings.text());
        Json& profiles = stored["trackball_profiles"];
        if (profiles.is_object()) profiles = Json::parse(profiles["utf8"].get<std::string>());
        std::string text;
        const auto add = [&text](const Json& line) { text += line.dump() + "\n"; };
        const auto press = [&add](int button) {
            for (const int type : {25, 26}) add({{"do", "event"}, {"type", type}, {"button", button}});
        };
        add({{"do", "platform"}, {"name", "linux"}});
        add({{"do", "defaults"}, {"set", stored}});
        add({{"do", "start"}});
        for (const Step& step : steps) {
            add({{"do", "modifiers"}, {"flags", step.withShift ? shiftFlag : 0}});
            if (step.button < 0) {
                add({{"do", "event"}, {"type", 22}, {"scrollY", step.button == Step::wheelUp ? 1 : -1}});
            } else {
                press(step.button);
            }
            add({{"do", "wait"}, {"seconds", 0.5}});
            add({{"do", "modifiers"}, {"flags", 0}});
            press(5);
        }
        // The one that shows that the output is whole.
        press(5);
        const auto script = desktop().folder() / "steps.jsonl";
        writeFile(script, text);
        return script;
    }
};

void expectSame(const Decisions& decided, const Decisions& expected) {
    EXPECT_EQ(decided.messages, expected.messages);
    EXPECT_EQ(decided.missing, expected.missing);
    EXPECT_EQ(decided.buttons, expected.buttons);
    EXPECT_EQ(decided.strokes, expected.strokes);
}

TEST_F(SimulationAgreementTest, DryRunOfAScriptAndOfARecordingDecidesAsTheRealServerDoes) {
    const Settings settings =
        Settings()
            .map(3, "Copiar",
                 {{"functionSlots", 2}, {"secondaryTrigger1", "Shift"}, {"secondaryAction", "Pegar"}})
            .map(4, "Atrás")
            .map(6, "Atajo Personalizado",
                 {{"shortcut", {{"keyCode", 3}, {"modifiersRawValue", 0x40000}, {"displayString", "⌃F"}}}})
            .map(2, "Mission Control")
            .map(-100, "Deshacer");
    const std::vector<Step> steps{
        {.button = 3, .withShift = false, .stroke = KeyStroke{XK_c, ControlMask}},
        {.button = 3, .withShift = true, .stroke = KeyStroke{XK_v, ControlMask}},
        {.button = 4, .withShift = false, .stroke = KeyStroke{XK_Left, Mod1Mask}},
        {.button = 6, .withShift = false, .stroke = KeyStroke{XK_f, ControlMask}},
        {.button = Step::wheelUp, .withShift = false, .stroke = KeyStroke{XK_z, ControlMask}},
        {.button = Step::wheelDown, .withShift = false, .stroke = std::nullopt},
        {.button = 2, .withShift = false, .stroke = std::nullopt},
        {.button = 7, .withShift = false, .stroke = std::nullopt},
    };
    const auto recording = desktop().folder() / "recording.jsonl";
    std::filesystem::remove(recording);
    launch(settings, {}, {"record", recording});
    client().forget();
    for (const Step& step : steps) perform(step);
    const Decisions decided = real();
    EXPECT_GT(decided.messages.size(), steps.size());
    EXPECT_EQ(decided.missing.size(), 1U);
    EXPECT_EQ(decided.strokes.size(), 5U);
    stop();

    {
        SCOPED_TRACE("the recording");
        expectSame(simulated(recording), decided);
    }
    SCOPED_TRACE("the script");
    expectSame(simulated(writeScript(settings, steps)), decided);
}

}  // namespace
}  // namespace trelvan::desktop
