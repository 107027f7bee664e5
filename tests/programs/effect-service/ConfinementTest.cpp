#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <linux/landlock.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <system_error>
#include <vector>

#include "tests/programs/effect-service/HostedEffect.h"
#include "tests/testing/WaitUntil.h"

namespace {

using namespace orvalo;
using namespace orvalo::testing;
using ::testing::Each;
using ::testing::StartsWith;

namespace fs = std::filesystem;

/// The kernel's version of Landlock; below 1 without Landlock.
long landlockVersion() {
    return syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION);
}

fs::path processFolder(const ServiceProgram& service) {
    return fs::path("/proc") / std::to_string(service.id());
}

/// The rest of the line with that beginning, without spaces in front.
std::string lineOf(const fs::path& path, const std::string& beginning) {
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with(beginning)) {
            return line.substr(line.find_first_not_of(" \t", beginning.size()));
        }
    }
    return {};
}

/// The outcomes of the prober's attempts, by name.
class ServiceConfinement : public ::testing::Test {
  protected:
    ServiceConfinement() {
        std::ofstream(outside_.path() / "secret") << "secret";
        outcomes_ = probe(effect_);
    }

    std::map<std::string, std::string> probe(HostedEffect& effect) const {
        effect.request.contextName = outside_.path();
        effect.mustInstantiate();
        std::map<std::string, std::string> outcomes;
        std::istringstream lines(effect.service.standardError());
        for (std::string line; std::getline(lines, line);) {
            const auto name = line.find(": ") + 2;
            const auto outcome = line.rfind(": ");
            outcomes[line.substr(name, outcome - name)] = line.substr(outcome + 2);
        }
        return outcomes;
    }

    /// The user's cache. Set before a service starts.
    struct Cache {
        Cache() {
            // NOLINTNEXTLINE(concurrency-mt-unsafe): no other thread reads the environment.
            setenv("XDG_CACHE_HOME", folder.path().c_str(), 1);
        }
        TemporaryFolder folder;
    } cache_;
    TemporaryFolder outside_;
    HostedEffect effect_{ORVALO_SERVICE_EFFECTS, "urn:orvalo:service:prober"};
    std::map<std::string, std::string> outcomes_;
};

TEST_F(ServiceConfinement, ForbidsAllButUnixSockets) {
    EXPECT_EQ(outcomes_["socket of IPv4"], "EAFNOSUPPORT");
    EXPECT_EQ(outcomes_["socket of IPv6"], "EAFNOSUPPORT");
    EXPECT_EQ(outcomes_["socket of packets"], "EAFNOSUPPORT");
    EXPECT_EQ(outcomes_["ring of requests"], "EPERM");
    EXPECT_EQ(outcomes_["socket of the machine"], "done");
}

TEST_F(ServiceConfinement, ForbidsFilesOutsideTheEffectsPlaces) {
    const std::string forbidden = landlockVersion() > 0 ? "EACCES" : "done";
    EXPECT_EQ(outcomes_["read outside"], forbidden);
    EXPECT_EQ(outcomes_["write outside"], forbidden);
    EXPECT_EQ(outcomes_["list outside"], forbidden);
    EXPECT_EQ(outcomes_["write beside its library"], forbidden);
    EXPECT_EQ(fs::exists(outside_.path() / "made"), landlockVersion() < 1);
    fs::remove(fs::path(ORVALO_SERVICE_EFFECTS) / "prober.lv2/made");
}

TEST_F(ServiceConfinement, AllowsWhatTheEffectNeeds) {
    EXPECT_EQ(outcomes_["read its bundle"], "done");
    EXPECT_EQ(outcomes_["write a temporary file"], "done");
    EXPECT_TRUE(fs::exists(effect_.stateFolder() / "made"));
    EXPECT_EQ(outcomes_["write nowhere"], "done");
    EXPECT_EQ(outcomes_["read the system's files"], "done");
    EXPECT_EQ(outcomes_["run a program"], "done");
}

TEST_F(ServiceConfinement, KeepsAnEffectsShadersForItsNextStart) {
    EXPECT_EQ(outcomes_["read a shader of an earlier start"], "ENOENT");
    EXPECT_EQ(outcomes_["keep a shader"], "done");
    const auto effects = cache_.folder.path() / "orvalo/effects";
    fs::create_directory(effects / "other");
    std::ofstream(effects / "other/shader") << "shader";
    HostedEffect next(ORVALO_SERVICE_EFFECTS, "urn:orvalo:service:prober");
    auto outcomes = probe(next);
    EXPECT_EQ(outcomes["read a shader of an earlier start"], "done");
    EXPECT_EQ(outcomes["read another effect's shader"], landlockVersion() > 0 ? "EACCES" : "done");
}

TEST_F(ServiceConfinement, ForbidsAccessToOtherProcessesAndTheSystem) {
    EXPECT_EQ(outcomes_["signal the host"], landlockVersion() >= 6 ? "EPERM" : "done");
    EXPECT_EQ(outcomes_["mount"], "EPERM");
    EXPECT_EQ(outcomes_["read the host's memory"], "EPERM");
    EXPECT_EQ(outcomes_["keep a secret from the user"], "EPERM");
    EXPECT_EQ(outcomes_["name a thread"], "done");
}

TEST_F(ServiceConfinement, ForbidsLeavingTheProcessGroup) {
    EXPECT_EQ(outcomes_["leave its group"], "EPERM");
    EXPECT_EQ(outcomes_["leave its session"], "EPERM");
    EXPECT_EQ(outcomes_["outlive the host"], "EPERM");
}

TEST_F(ServiceConfinement, AppliesToAllThreads) {
    std::vector<std::string> filters;
    for (const auto& task : fs::directory_iterator(processFolder(effect_.service) / "task")) {
        const auto privileges = lineOf(task.path() / "status", "NoNewPrivs:");
        const auto filter = lineOf(task.path() / "status", "Seccomp:");
        // Empty when the thread has ended since it was listed.
        if (!filter.empty()) {
            EXPECT_EQ(privileges, "1");
            filters.push_back(filter);
        }
    }
    EXPECT_GE(filters.size(), 2U);
    EXPECT_THAT(filters, Each("2"));
}

TEST_F(ServiceConfinement, SetsLimits) {
    const auto limits = processFolder(effect_.service) / "limits";
    EXPECT_THAT(lineOf(limits, "Max core file size"), StartsWith("0 "));
    EXPECT_THAT(lineOf(limits, "Max open files"), StartsWith("256 "));
    EXPECT_THAT(lineOf(limits, "Max realtime timeout"), StartsWith("2000000 "));
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
    EXPECT_THAT(lineOf(limits, "Max data size"), StartsWith("4294967296 "));
#endif
}

/// The targets of the service's open descriptors, with their counts.
std::map<std::string, int> descriptorTargets(const ServiceProgram& service) {
    std::map<std::string, int> counts;
    for (const auto& file : fs::directory_iterator(processFolder(service) / "fd")) {
        std::error_code closed;
        const auto target = fs::read_symlink(file.path(), closed).string();
        if (!closed) {
            // Without the number of a socket and the "(deleted)" of an unnamed file.
            ++counts[target.substr(0,
                                   target.find_first_of(target.starts_with("socket") ? "[" : "("))];
        }
    }
    return counts;
}

TEST(EffectServiceProcess, HasOnlyItsOwnDescriptors) {
    HostedEffect effect(ORVALO_ZOO, "urn:orvalo:zoo:probe");
    effect.mustInstantiate();
    // The event descriptors wake the main loop and the main queue.
    const std::map<std::string, int> expected{{"/dev/null", 1},
                                              {"/memfd:orvalo-effect-audio ", 1},
                                              {"/memfd:service-errors ", 2},
                                              {"anon_inode:[eventfd]", 2},
                                              {"socket:", 1}};
    // The service saves the effect's state, which opens files for a moment.
    EXPECT_TRUE(pollUntil([&] { return descriptorTargets(effect.service) == expected; }))
        << ::testing::PrintToString(descriptorTargets(effect.service));
}

TEST(EffectServiceProcess, ClosesItsDescriptorsInChildren) {
    HostedEffect effect(ORVALO_ZOO, "urn:orvalo:zoo:probe");
    effect.mustInstantiate();
    const auto folder = processFolder(effect.service) / "fdinfo";
    for (const auto& file : fs::directory_iterator(folder)) {
        if (std::stoi(file.path().filename()) > 2) {
            const auto flags = lineOf(file.path(), "flags:");
            // Empty when the descriptor was closed after it was listed.
            EXPECT_TRUE(flags.empty() || (std::stol(flags, nullptr, 8) & O_CLOEXEC) != 0)
                << file.path();
        }
    }
}

TEST(EffectServiceProcess, LogsNothingInANormalRun) {
    HostedEffect effect(ORVALO_STAGE "/lib/lv2", "urn:tessaly:orvalo");
    effect.mustInstantiate();
    effect.renderQuantum(64);
    effect.service.closeSocket();
    EXPECT_EQ(effect.service.waitForEnd(), 0);
    EXPECT_EQ(effect.service.standardError(), "");
}

}  // namespace
