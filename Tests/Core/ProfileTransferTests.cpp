#include "Core/Model/RecordJson.hpp"
#include "Core/ProfileManager.hpp"
#include "Support/CapturingLog.hpp"
#include "Support/FakeUserDefaults.hpp"
#include "Support/SequentialUuids.hpp"

#include <gmock/gmock.h>

#include <map>
#include <string>
#include <variant>
#include <vector>

namespace trelvan {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

/// Files in memory.
class FakeFiles final : public Files {
  public:
    [[nodiscard]] std::variant<std::string, FileError> read(const std::string& path) override {
        const auto found = content.find(path);
        if (found == content.end()) return FileError{path + ": gone"};
        return found->second;
    }
    [[nodiscard]] std::optional<FileError> write(const std::string& path, std::string_view bytes) override {
        if (isFull) return FileError{path + ": full"};
        content[path] = bytes;
        return std::nullopt;
    }
    std::map<std::string, std::string> content;
    bool isFull = false;
};

class ProfileTransferTest : public testing::Test {
  protected:
    static std::string profile(const std::string& id, const std::string& name) {
        return R"({"id":"10000000-0000-4000-8000-00000000000)" + id + R"(","name":")" + name +
               R"(","mappings":[]})";
    }
    std::vector<std::string> names() const {
        std::vector<std::string> result;
        for (const auto& each : store.profiles.get()) result.push_back(each.name);
        return result;
    }
    std::string importError(const std::string& bytes) {
        files.content["f"] = bytes;
        const auto result = store.importBackup(files, "f");
        const auto* error = std::get_if<TransferError>(&result);
        return error != nullptr ? error->text : "(none)";
    }
    std::int64_t import(const std::string& bytes) {
        files.content["f"] = bytes;
        const auto result = store.importBackup(files, "f");
        const auto* imported = std::get_if<BackupImportResult>(&result);
        return imported != nullptr ? imported->profileCount : -1;
    }
    std::vector<std::string> logged() const { return log.messages(LogLevel::info); }

    test::FakeUserDefaults defaults;
    test::CapturingLog log;
    FakeFiles files;
    ProfileManager store{defaults, log.logger, test::sequentialUuids()};
};

TEST_F(ProfileTransferTest, ExportWritesAllProfilesIndentedWithSortedKeys) {
    store.createProfile("Work");
    EXPECT_FALSE(store.exportBackup(files, "out.json", std::nullopt));
    const std::string text = files.content.at("out.json");
    EXPECT_TRUE(text.starts_with("{\n  \"activeProfileID\": ")) << text.substr(0, 40);
    EXPECT_EQ(text.find("\"settings\""), std::string::npos);
    const auto package = json::decode<BackupPackage>(text, nullptr);
    ASSERT_TRUE(package);
    EXPECT_EQ(package->formatVersion, 1);
    EXPECT_EQ(package->profiles, store.profiles.get());
    EXPECT_EQ(package->activeProfileID, store.activeProfileID.get());
    EXPECT_EQ(logged().back(), "Backup exportado a JSON: out.json");
}

TEST_F(ProfileTransferTest, ExportThatCannotBeWrittenSaysWhy) {
    files.isFull = true;
    const auto error = store.exportBackup(files, "out.json", std::nullopt);
    ASSERT_TRUE(error);
    EXPECT_EQ(error->text, "out.json: full");
    EXPECT_THAT(logged(), testing::Not(testing::Contains(HasSubstr("Backup exportado"))));
}

TEST_F(ProfileTransferTest, BackupReplacesProfilesAndStoresTheActiveOne) {
    EXPECT_EQ(import(R"({"formatVersion":7,"profiles":[)" + profile("1", "A") + "," + profile("2", "B") +
                     R"(],"activeProfileID":"10000000-0000-4000-8000-000000000002"})"),
              2);
    EXPECT_THAT(names(), ElementsAre("A", "B"));
    EXPECT_EQ(store.activeProfile().name, "B");
    EXPECT_EQ(asText(defaults.object(ProfileManager::activeKey)), "10000000-0000-4000-8000-000000000002");
    EXPECT_EQ(logged().back(), "Backup importado. Perfiles reemplazados: 2");
    const ProfileManager again(defaults, log.logger, test::sequentialUuids());
    EXPECT_EQ(again.profiles.get(), store.profiles.get());
}

TEST_F(ProfileTransferTest, BackupsSettingsAreHandedOn) {
    AppSettingsSnapshot settings;
    settings.set(setting::row("mouseSpeed"), 1.3);
    settings.set(setting::row("language"), std::string("Español"));
    ASSERT_FALSE(store.exportBackup(files, "f", settings));
    const auto result = store.importBackup(files, "f");
    const auto* imported = std::get_if<BackupImportResult>(&result);
    ASSERT_NE(imported, nullptr);
    EXPECT_EQ(imported->settings, settings);
}

TEST_F(ProfileTransferTest, ThirdProfileOfOneIdentifierGetsItsOwnToo) {
    EXPECT_EQ(import(R"({"formatVersion":1,"profiles":[)" + profile("1", "A") + "," + profile("1", "B") +
                     "," + profile("1", "C") + "]}"),
              3);
    const auto& all = store.profiles.get();
    EXPECT_NE(all[0].id, all[1].id);
    EXPECT_NE(all[1].id, all[2].id);
    EXPECT_NE(all[0].id, all[2].id);
}

TEST_F(ProfileTransferTest, EmptyBackupLeavesTheDefaultProfile) {
    EXPECT_EQ(import(R"({"formatVersion":1,"profiles":[]})"), 1);
    EXPECT_THAT(names(), ElementsAre("Default"));
    EXPECT_EQ(store.activeProfile().mappings.size(), 5U);
}

TEST_F(ProfileTransferTest, BareProfilesAreAddedAndTheActiveOneStays) {
    const auto active = store.activeProfileID.get();
    EXPECT_EQ(import("[" + profile("1", "A") + "," + profile("2", "B") + "]"), 2);
    EXPECT_EQ(import(profile("1", "\\t \\n")), 1);
    EXPECT_THAT(names(), ElementsAre("Default", "A", "B", "Imported Profile"));
    EXPECT_NE(store.profiles.get()[3].id, store.profiles.get()[1].id);
    EXPECT_EQ(store.activeProfileID.get(), active);
    EXPECT_EQ(logged().back(), "Perfiles importados desde JSON: 1");
}

TEST_F(ProfileTransferTest, SameIdentifierTwiceInOneImportIsTold) {
    EXPECT_EQ(import("[" + profile("1", "A") + "," + profile("1", "B") + "]"), 2);
    EXPECT_NE(store.profiles.get()[1].id, store.profiles.get()[2].id);
}

TEST_F(ProfileTransferTest, FailedImportChangesNothing) {
    const auto before = store.profiles.get();
    EXPECT_EQ(importError("[]"), "No hay perfiles para importar.");
    for (const std::string bad : {"", "nonsense", "{}", "3", "[1]", R"({"hello":1})", R"({"profiles":[]})",
                                  R"({"formatVersion":1,"profiles":[],"settings":{}})"}) {
        EXPECT_EQ(importError(bad), "El archivo JSON no tiene un formato de perfil válido.") << bad;
    }
    EXPECT_EQ(importError("[" + profile("1", "A") + R"(,{"name":3}])"),
              "El archivo JSON no tiene un formato de perfil válido.");
    const auto result = store.importBackup(files, "missing");
    EXPECT_EQ(std::get<TransferError>(result).text, "missing: gone");
    EXPECT_EQ(store.profiles.get(), before);
}

TEST_F(ProfileTransferTest, BareImportTakesNoBackup) {
    files.content["f"] = R"({"formatVersion":1,"profiles":[]})";
    const auto result = store.importProfiles(files, "f");
    EXPECT_EQ(std::get<TransferError>(result).kind, ProfileTransferError::invalidJSON);
}

}  // namespace
}  // namespace trelvan
