#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <string>
#include <system_error>

#include "tests/programs/effect-service/HostedEffect.h"
#include "tests/testing/WaitUntil.h"

namespace {

using namespace orvalo;
using namespace orvalo::testing;
using ::testing::StartsWith;

namespace fs = std::filesystem;

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

TEST(ServiceProcess, SetsLimits) {
    HostedEffect effect(ORVALO_ZOO, "urn:orvalo:zoo:probe");
    effect.mustInstantiate();
    const auto limits = processFolder(effect.service) / "limits";
    EXPECT_THAT(lineOf(limits, "Max core file size"), StartsWith("0 "));
    EXPECT_THAT(lineOf(limits, "Max open files"), StartsWith("256 "));
    EXPECT_THAT(lineOf(limits, "Max realtime timeout"), StartsWith("2000000 "));
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
    EXPECT_THAT(lineOf(limits, "Max data size"), StartsWith("4294967296 "));
#endif
    EXPECT_EQ(lineOf(processFolder(effect.service) / "status", "NoNewPrivs:"), "1");
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

TEST(ServiceProcess, HasOnlyItsOwnDescriptors) {
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

/// The descriptors above the standard ones that children inherit.
std::set<std::string> inheritedDescriptors(const ServiceProgram& service) {
    std::set<std::string> result;
    for (const auto& file : fs::directory_iterator(processFolder(service) / "fdinfo")) {
        const auto name = file.path().filename().string();
        const auto flags = lineOf(file.path(), "flags:");
        // Empty when the descriptor was closed after it was listed.
        const bool isClosed = flags.empty() || (std::stol(flags, nullptr, 8) & O_CLOEXEC) != 0;
        if (std::stoi(name) > 2 && !isClosed) {
            result.insert(name);
        }
    }
    return result;
}

TEST(ServiceProcess, ClosesItsDescriptorsInChildren) {
    HostedEffect effect(ORVALO_ZOO, "urn:orvalo:zoo:probe");
    effect.mustInstantiate();
    // The service saves the effect's state, and the effect opens its files without O_CLOEXEC.
    EXPECT_TRUE(pollUntil([&] { return inheritedDescriptors(effect.service).empty(); }))
        << ::testing::PrintToString(inheritedDescriptors(effect.service));
}

TEST(ServiceProcess, LogsNothingInANormalRun) {
    HostedEffect effect(ORVALO_STAGE "/lib/lv2", "urn:tessaly:orvalo");
    effect.mustInstantiate();
    effect.renderQuantum(64);
    effect.service.closeSocket();
    EXPECT_EQ(effect.service.waitForEnd(), 0);
    EXPECT_EQ(effect.service.standardError(), "");
}

}  // namespace
