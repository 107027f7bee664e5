#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "platform/foundation/GLibPointer.h"
#include "tests/platform/web/Toolkit.h"
#include "tests/platform/web/WebFixture.h"
#include "tests/platform/web/WebProcess.h"
#include "tests/testing/TemporaryFolder.h"

namespace orvalo::testing {

namespace {

class SandboxTest : public WebFixture {};

TEST_F(SandboxTest, APageSeesItsOwnFileSystemIfTheMachineSupportsIt) {
    const Site site({{"/", titled("start")}});
    loadWholly(site.address("/"), "start");
    const auto own = std::filesystem::read_symlink("/proc/self/ns/mnt");
    int seen = 0;
    for (const auto process : webProcesses()) {
        std::error_code hasEnded;
        const auto page =
            std::filesystem::read_symlink("/proc/" + std::to_string(process) + "/ns/mnt", hasEnded);
        if (!hasEnded) {
            EXPECT_EQ(page != own, canSandbox());
            ++seen;
        }
    }
    EXPECT_GT(seen, 0);
}

TEST_F(SandboxTest, WithoutASandboxNoPageIsShown) {
    // The child process starts the toolkit again, with a bubblewrap that fails.
    const TemporaryFolder folder;
    const GText server(g_find_program_in_path("Xvfb"));
    std::filesystem::create_symlink(server.get(), folder.path() / "Xvfb");
    std::ofstream(folder.path() / "bwrap") << "#!/bin/sh\necho 'bwrap: No.' >&2\nexit 1\n";
    std::filesystem::permissions(folder.path() / "bwrap", std::filesystem::perms::owner_all);
    const std::string path = g_getenv("PATH");
    g_setenv("PATH", folder.path().c_str(), TRUE);
    EXPECT_EXIT(
        {
            g_setenv("WEBKIT_DISABLE_SANDBOX_THIS_IS_DANGEROUS", "0", TRUE);
            view->loadHTMLString("<title>text</title>", std::nullopt);
            load("http://127.0.0.1/");
            std::_Exit(webkit_web_view_is_loading(engine()) == FALSE ? 0 : 1);
        },
        ::testing::ExitedWithCode(0),
        "No web page can be shown, because the sandbox cannot be created: bwrap: No\\.\n.*"
        "No web page can be shown, because the sandbox cannot be created: bwrap: No\\.");
    g_setenv("PATH", path.c_str(), TRUE);
}

}  // namespace

}  // namespace orvalo::testing
