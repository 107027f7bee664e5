#include <glib.h>
#include <gmock/gmock.h>

#include <csignal>
#include <memory>
#include <string>

#include "platform/ui/UIDocumentPickerViewController.h"
#include "tests/app/ApplicationFixture.h"
#include "tests/app/ScreenFixture.h"
#include "tests/app/Screenshot.h"
#include "tests/platform/web/Site.h"
#include "tests/testing/SessionBus.h"

namespace orvalo::testing {

namespace {

/// Makes GTK use portals as in Flatpak. Call before GTK starts.
void usePortals() {
    g_setenv("GDK_DEBUG", "portals", TRUE);
}

/// Starts a portal and waits for it. Needs the session bus.
std::unique_ptr<Program> startPortal(const std::string& colorScheme, const std::string& folder) {
    auto portal = std::make_unique<Program>(std::vector<std::string>{
        ORVALO_TEST_STAGE "/bin/fake-portal", colorScheme, "true", folder});
    EXPECT_EQ(portal->readUntil("ready"), Lines{"ready"});
    return portal;
}

class PortalTest : public ApplicationFixture {
  protected:
    static void SetUpTestSuite() { usePortals(); }

    PortalTest() {
        // The same for GLib; since 2.84 under another name.
        environment["GTK_USE_PORTAL"] = "1";
        environment["GIO_USE_PORTALS"] = "1";
        environment["ORVALO_TEST_SITE"] = site_.address("/");
    }

    /// The brightness of the lower left corner of the window, 0 to 255.
    static unsigned background() {
        const auto window = place();
        return Screenshot().at(window.x + 8, window.y + window.height - 8) & 0xFFU;
    }

    Site site_{{{"/DYNAMICS/", titled("Help", "<h1>Help</h1>")}}};
};

TEST_F(PortalTest, TheStyleIsThePortals) {
    const auto portal = startPortal("1", "/");
    start();
    EXPECT_TRUE(pollUntil([] { return background() < 0x40; })) << background();
    portal->signal(SIGUSR1);
    EXPECT_TRUE(pollUntil([] { return background() > 0xC0; })) << background();
    EXPECT_EQ(quit(), 0);
}

TEST_F(PortalTest, AddressesAreOpenedByThePortal) {
    const auto portal = startPortal("0", "/");
    // Flatpak's applications see no browser.
    environment["XDG_DATA_DIRS"] = folder.path().string();
    start();
    key("F1");
    EXPECT_EQ(portal->readUntil("OpenURI"), Lines{"OpenURI " + site_.address("/")});
}

class PortalPickerTest : public ScreenFixture {
  protected:
    static void SetUpTestSuite() { usePortals(); }
};

TEST_F(PortalPickerTest, FoldersAreChosenInThePortal) {
    startSessionBus();
    const auto portal = startPortal("0", "/music/my loops");
    const auto screen = showMainScreen();
    const CapturedOutput output;
    screen->openFilePicker();
    EXPECT_TRUE(waitUntil([&output] { return output.lines().size() == 2; }));
    EXPECT_EQ(output.lines(), (Lines{"documentPicker: [file:///music/my%20loops]",
                                     "documentPicker (didPickDocumentsAt): /music/my loops"}));
    EXPECT_EQ(portal->readUntil("OpenFile"), Lines{"OpenFile Choose a Folder, a folder"});
    EXPECT_EQ(screen->presentedViewController(), nullptr);
}

}  // namespace

}  // namespace orvalo::testing
