#include "tests/hosting/ManagerFixture.h"

#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "tests/testing/WaitUntil.h"

namespace orvalo::testing {

ManagerFixture::ManagerFixture(const char* effectsPath) {
    // No other thread reads the environment.
    setenv("LV2_PATH", effectsPath, 1);
}

ManagerFixture::~ManagerFixture() = default;

void ManagerFixture::makeManager() {
    manager = AUExtensionManager::init(delegate, player);
    EXPECT_TRUE(pollUntil([this] { return manager.use_count() == 1; }));
    // Reading the count does not synchronise with the search's thread; releasing a reference does.
    std::shared_ptr(manager).reset();
}

const std::string kNote =
    "NOTE: WE ARE IN AUDIO UNIT RELEASE MODE. ENSURE THE STORYBOARD CONNECTIONS ARE VALID!";

Lines report(const std::string& flags) {
    const auto name = std::filesystem::read_symlink("/proc/self/exe").filename().string();
    return {"",
            "Process Name: " + name + " PID: " + std::to_string(getpid()),
            "",
            "AUExtension (",
            "type: aumf",
            "subtype: orVL",
            "manufacturer: TSLY",
            "flags: " + flags,
            ")"};
}

}  // namespace orvalo::testing
