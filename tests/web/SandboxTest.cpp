#include <gmock/gmock.h>

#include <filesystem>

#include "tests/web/Toolkit.h"
#include "tests/web/WebFixture.h"
#include "tests/web/WebProcess.h"

namespace orvalo::testing {

namespace {

class SandboxTest : public WebFixture {};

TEST_F(SandboxTest, APageSeesAFileSystemOfItsOwnWhereTheMachineCanDoThat) {
    const Site site({{"/", titled("start")}});
    loadWholly(site.address("/"), "start");
    const auto processes = webProcesses();
    ASSERT_FALSE(processes.empty());
    const auto own = std::filesystem::read_symlink("/proc/self/ns/mnt");
    for (const auto process : processes) {
        const auto page =
            std::filesystem::read_symlink("/proc/" + std::to_string(process) + "/ns/mnt");
        EXPECT_EQ(page != own, canSandbox());
    }
}

}  // namespace

}  // namespace orvalo::testing
