#include "vesk/Linux/DoctorSecrets.hpp"

#include <gtest/gtest.h>
#include <set>

namespace vesk {
namespace {

struct Case {
    const char* name;
    KeychainSurvey survey;
    bool canPrompt;
    std::string service;
    std::vector<std::string> problems;
};

KeychainSurvey service(const std::string& program, std::optional<bool> isLocked, const std::string& trouble = "") {
    return {.service = SecretServiceState{program, isLocked, trouble}, .file = {}, .trouble = {}};
}
KeychainSurvey file(std::optional<SealingKeyKind> kind, const std::string& trouble = "",
                    std::int32_t status = KeychainStatus::success) {
    return {.service = {}, .file = SealedFileState{"/s/secrets.sqlite", kind, trouble, status}, .trouble = {}};
}

TEST(DoctorSecretsTests, NamesTheStoreAndWhatIsAmiss) {
    const std::string keyring = "The Secret Service of keyring", sealed = "The file /s/secrets.sqlite";
    const Case cases[] = {
        {"unlocked", service("keyring", false), false, keyring + " (unlocked)", {}},
        {"locked", service("keyring", true), true, keyring + " (locked)", {}},
        {"locked for good",
         service("keyring", true),
         false,
         keyring + " (locked)",
         {"The secrets are locked and nobody can be asked to unlock them."}},
        {"no collection", service("keyring", {}), true, keyring, {"There is no keyring for new secrets yet."}},
        {"dormant", service("", {}), true, "The Secret Service (started when it is asked)", {}},
        {"silent",
         service("keyring", {}, "T."),
         true,
         "The Secret Service",
         {"The Secret Service does not answer: T."}},
        {"no secrets", file({}), true, sealed + " (no secrets yet)", {}},
        {"key file", file(SealingKeyKind::keyFile), true, sealed + " (sealed with a key file)", {}},
        {"passphrase",
         file(SealingKeyKind::passphrase, "Missing.", KeychainStatus::locked),
         true,
         sealed + " (sealed with a passphrase)",
         {"Missing."}},
        {"damaged", file({}, "Damaged.", KeychainStatus::decode), true, sealed + " (no secrets yet)", {"Damaged."}},
        {"nothing", {.service = {}, .file = {}, .trouble = "No module."}, true, "The Secret Service", {"No module."}},
    };
    for (const Case& each : cases) {
        const DoctorService result = secretsService(each.survey, each.canPrompt);
        std::vector<std::string> problems;
        for (const DoctorFinding& finding : result.findings) {
            problems.push_back(finding.problem);
            EXPECT_TRUE(finding.remedy) << each.name;
        }
        EXPECT_EQ(result.service, each.service) << each.name;
        EXPECT_EQ(problems, each.problems) << each.name;
    }
}

TEST(DoctorSecretsTests, EachTroubleOfTheFileHasARemedyOfItsOwn) {
    std::set<std::string> remedies;
    for (const std::int32_t status : {KeychainStatus::denied, KeychainStatus::locked, KeychainStatus::unavailable,
                                      KeychainStatus::decode, KeychainStatus::failed})
        remedies.insert(secretsService(file({}, "T.", status), true).findings.at(0).remedy.value());
    EXPECT_EQ(remedies.size(), 5U);
}

} // namespace
} // namespace vesk
