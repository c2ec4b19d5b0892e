#include "Core/Check/MappingCheck.hpp"
#include "Core/Model/RecordCoding.hpp"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace trelvan {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class MappingCheckTest : public testing::Test {
  protected:
    /// "path: text" of each finding about a profile with these mappings.
    std::vector<std::string> check(const std::string& mappings, const std::string& more = "") {
        const auto profile =
            decodeProfile(R"({"name":"P","mappings":[)" + mappings + "]" + more + "}", &Uuid::random);
        if (!profile) return {profile.error().text()};
        Findings findings;
        checkProfile(*profile, "p", surroundings, findings);
        std::vector<std::string> lines;
        for (const auto& finding : findings)
            lines.push_back(finding.path + ": " + finding.text(AppLanguage::english));
        return lines;
    }

    static std::string mapping(int button, const std::string& rest) {
        return R"({"buttonNumber":)" + std::to_string(button) + R"(,"buttonLabel":"",)" + rest + "}";
    }

    CheckSurroundings surroundings;
};

TEST_F(MappingCheckTest, OrdinaryMappingsHaveNoFindings) {
    EXPECT_THAT(
        check(mapping(0, R"("action":"Click Izquierdo","secondaryAction":"Copiar",)"
                         R"("secondaryTrigger1":"Shift")") +
              "," + mapping(3, R"("action":"Copiar","secondaryAction":"Pegar","secondaryTrigger1":"Shift")") +
              "," + mapping(-100, R"("action":"Volumen +")") + "," +
              mapping(-101, R"("action":"Volumen -")")),
        IsEmpty());
    EXPECT_THAT(check(mapping(3, R"("action":"Copiar","primaryTrigger1":"Shift","secondaryAction":"Pegar")")),
                IsEmpty());
}

TEST_F(MappingCheckTest, SecondMappingOfAButtonNeverFires) {
    EXPECT_THAT(check(mapping(3, R"("action":"Copiar")") + "," + mapping(3, R"("action":"Pegar")")),
                ElementsAre(HasSubstr("p.mappings[1]: never fires: an earlier mapping has the same button")));
}

TEST_F(MappingCheckTest, SecondMappingOfAWheelDirectionFiresOnlyWhereTheFirstDoesNothing) {
    EXPECT_THAT(check(mapping(-100, R"("action":"Copiar")") + "," + mapping(-102, R"("action":"Pegar")")),
                ElementsAre(HasSubstr("p.mappings[1].action: never fires")));
    EXPECT_THAT(check(mapping(-100, R"("action":"Copiar","primaryTrigger1":"Shift")") + "," +
                      mapping(-102, R"("action":"Pegar")")),
                IsEmpty());
}

TEST_F(MappingCheckTest, FunctionWithoutModifierBesideAFreePrimaryNeverFires) {
    EXPECT_THAT(check(mapping(3, R"("action":"Copiar","secondaryAction":"Pegar")")),
                ElementsAre(HasSubstr("p.mappings[0].secondaryAction: never fires: it has no modifier, and "
                                      "the main function needs none either")));
    EXPECT_THAT(check(mapping(0, R"("secondaryAction":"Pegar")")),
                ElementsAre(HasSubstr("on the left and right buttons a function needs a modifier")));
}

TEST_F(MappingCheckTest, OnlyTheLowestFunctionWithoutModifierStandsIn) {
    EXPECT_THAT(check(mapping(3, R"("action":"Copiar","primaryTrigger1":"Shift","secondaryAction":"Pegar",)"
                                 R"("tertiaryAction":"Cortar")")),
                ElementsAre(HasSubstr("p.mappings[0].tertiaryAction: never fires: it has no modifier, and an "
                                      "earlier function")));
}

TEST_F(MappingCheckTest, FunctionBehindAHigherOneWithFewerModifiersNeverFires) {
    EXPECT_THAT(
        check(mapping(3, R"("action":"Copiar","secondaryAction":"Pegar","secondaryTrigger1":"Shift",)"
                         R"("secondaryTrigger2":"Control","tertiaryAction":"Cortar",)"
                         R"("tertiaryTrigger1":"Shift")")),
        ElementsAre(HasSubstr("p.mappings[0].secondaryAction: never fires: with its modifiers held")));
}

TEST_F(MappingCheckTest, FunctionBeyondTheNumberOfFunctionsNeverFires) {
    EXPECT_THAT(check(mapping(3, R"("action":"Copiar","functionSlots":1,"secondaryAction":"Pegar",)"
                                 R"("secondaryTrigger1":"Shift")")),
                ElementsAre(HasSubstr("secondaryAction: never fires: 'functionSlots' leaves")));
}

TEST_F(MappingCheckTest, ModifierThatTheSystemDoesNotReportNeverFires) {
    surroundings.modifiers &= ~flag::function;
    EXPECT_THAT(
        check(mapping(3, R"("action":"Copiar","secondaryAction":"Pegar","secondaryTrigger1":"Fn")")),
        ElementsAre(HasSubstr("secondaryAction: never fires: a key that it asks for is not reported")));
}

TEST_F(MappingCheckTest, NumbersThatNoDeviceHasAreTold) {
    for (const int number : {-1, -99, 32, 1000})
        EXPECT_THAT(check(mapping(number, R"("action":"Copiar")")),
                    ElementsAre(HasSubstr("buttonNumber: no device has a button of that number")))
            << number;
}

TEST_F(MappingCheckTest, LonelyWheelDownCountsAsWheelUp) {
    EXPECT_THAT(check(mapping(-101, R"("action":"Copiar")")),
                ElementsAre(HasSubstr("buttonNumber: counts as -100, the wheel up")));
}

TEST_F(MappingCheckTest, WhatIsWrittenOnTheLeftButtonAndDroppedIsTold) {
    EXPECT_THAT(check(mapping(0, R"("action":"Copiar","primaryTrigger1":"Shift")")),
                ElementsAre(HasSubstr("primaryTrigger1: has no effect"), HasSubstr("action: has no effect")));
}

TEST_F(MappingCheckTest, ActionsThatSendNothingAreTold) {
    surroundings.exists = [](const std::string& path) { return path == "/there"; };
    EXPECT_THAT(check(mapping(3, R"("action":"Atajo Personalizado")")),
                ElementsAre("p.mappings[0].action: sends nothing: 'shortcut' has no key"));
    EXPECT_THAT(check(mapping(3, R"("action":"Copiar","secondaryAction":"Atajo Personalizado",)"
                                 R"("secondaryTrigger1":"Shift")")),
                ElementsAre("p.mappings[0].secondaryAction: sends nothing: 'secondaryShortcut' has no key"));
    EXPECT_THAT(check(mapping(3, R"("action":"Iniciar dictado")")),
                ElementsAre("p.mappings[0].action: sends nothing: 'dictationShortcut' has no key"));
    EXPECT_THAT(check(mapping(3, R"("action":"Abrir Aplicación")")),
                ElementsAre("p.mappings[0].action: opens nothing: 'appPath' names no application"));
    EXPECT_THAT(check(mapping(3, R"("action":"Abrir Aplicación","appPath":"/gone")")),
                ElementsAre("p.mappings[0].appPath: is not there"));
    EXPECT_THAT(check(mapping(3, R"("action":"Abrir carpeta","folderPath":"/gone")")),
                ElementsAre("p.mappings[0].folderPath: is not there; the home folder opens instead"));
    EXPECT_THAT(check(mapping(3, R"("action":"Abrir Aplicación","appPath":"/there")") + "," +
                      mapping(4, R"("action":"Abrir carpeta")")),
                IsEmpty());
    EXPECT_THAT(check(mapping(3, R"("action":"Smart Button")")),
                ElementsAre("p.mappings[0].action: opens nothing: the radial menu has no entries"));
}

TEST_F(MappingCheckTest, MenuEntriesThatDoNothingAreTold) {
    surroundings.exists = [](const std::string&) { return false; };
    EXPECT_THAT(check("", R"(,"smartButton":{"apps":[{"kind":"shortcut"},{"path":""},{"path":"/gone"}]})"),
                ElementsAre("p.smartButton.apps[0]: sends nothing: 'shortcut' has no key",
                            "p.smartButton.apps[1]: opens nothing: 'path' names no application",
                            "p.smartButton.apps[2].path: is not there"));
}

TEST_F(MappingCheckTest, ActionsThatTheDesktopCannotDoAreTold) {
    surroundings.obstacle = [](ButtonAction action) {
        return action == ButtonAction::launchpad
                   ? std::optional(LocalizedString{"no launcher", "sin lanzador"})
                   : std::nullopt;
    };
    EXPECT_THAT(check(mapping(3, R"("action":"Launchpad")") + "," + mapping(4, R"("action":"Copiar")")),
                ElementsAre("p.mappings[0].action: no launcher"));
}

TEST_F(MappingCheckTest, ThirdTriggerIsToldAsUnused) {
    EXPECT_THAT(check(mapping(3, R"("action":"Copiar","secondaryAction":"Pegar","secondaryTrigger1":"Shift",)"
                                 R"("secondaryTrigger3":"Command")")),
                ElementsAre(HasSubstr("secondaryTrigger3: is kept but never consulted")));
}

}  // namespace
}  // namespace trelvan
