#include <gmock/gmock.h>

#include <fstream>

#include "platform/foundation/FileManager.h"
#include "platform/foundation/URL.h"
#include "tests/app/HelpPageFixture.h"

namespace orvalo::testing {

namespace {

using ::testing::HasSubstr;

class BundleResourcesTest : public HelpPageFixture {
  protected:
    /// Writes a help page into the bundle and returns its address.
    static URL writeHelp(const std::string& content) {
        const auto path = resources() / "help.html";
        std::filesystem::create_directories(resources());
        std::ofstream(path) << content;
        return URL::fileURLWithPath(path.string());
    }

    std::shared_ptr<ViewController> main = std::make_shared<ViewController>(std::nullopt, nullptr);
};

TEST_F(BundleResourcesTest, TheHelpPageIsShownFromItsFile) {
    const auto file = writeHelp("<title>Own page</title>");
    const CapturedOutput output;
    screen->loadHelpHtml();
    EXPECT_TRUE(waitForTitle("Own page"));
    EXPECT_EQ(output.lines(), (Lines{"navigationAction: ", file.absoluteString()}));
    EXPECT_EQ(requested(), Lines{});
}

TEST_F(BundleResourcesTest, AHelpPageThatIsNotTextIsReportedAndNotShown) {
    const auto file = writeHelp("<title>Own page</title>\xFF");
    const Lines described{"Error Domain=NSCocoaErrorDomain Code=261 \"" + file.path() +
                          " is no text in UTF-8\""};
    const CapturedOutput output;
    screen->loadHelpHtml();
    EXPECT_EQ(output.lines(), described);
    // Any earlier navigation would have been printed before this one.
    screen->loadHelpPdf();
    EXPECT_TRUE(waitForTitle("Help"));
    auto expected = described;
    const auto next = linesOf("/DYNAMICS/");
    expected.insert(expected.end(), next.begin(), next.end());
    EXPECT_EQ(output.lines(), expected);
}

TEST_F(BundleResourcesTest, AMissingHelpPageEndsTheProgram) {
    EXPECT_DEATH(screen->loadHelpHtml(),
                 HasSubstr("Fatal error: Unexpectedly found nil while unwrapping an Optional "
                           "value\n"));
}

TEST_F(BundleResourcesTest, MissingResourcesKeepTheOldPath) {
    const auto documents =
        FileManager::default_()
            .urls(SearchPathDirectory::documentDirectory, SearchPathDomainMask::userDomainMask)
            .front()
            .path();
    const CapturedOutput output;
    ViewControllerPeer::getDirectories(*main);
    EXPECT_EQ(output.lines(), (Lines{"ViewController: The app's documents path is: " + documents,
                                     "ViewController: Resources folder is nil."}));
    EXPECT_EQ(ViewControllerPeer::documentsPath(*main), documents);
    EXPECT_EQ(ViewControllerPeer::resourcesPath(*main), "");
}

TEST_F(BundleResourcesTest, EveryRunOverwritesBothPaths) {
    writeHelp("");
    ViewControllerPeer::documentsPath(*main) = "/before";
    ViewControllerPeer::resourcesPath(*main) = "/before";
    const CapturedOutput output;
    ViewControllerPeer::getDirectories(*main);
    EXPECT_EQ(output.lines(),
              (Lines{"ViewController: The app's documents path is: " +
                         ViewControllerPeer::documentsPath(*main),
                     "ViewController: The app's resources path is: " + resources().string()}));
    EXPECT_NE(ViewControllerPeer::documentsPath(*main), "/before");
    EXPECT_EQ(ViewControllerPeer::resourcesPath(*main), resources().string());
    EXPECT_EQ(ViewControllerPeer::sharedPath(*main), "");
}

}  // namespace

}  // namespace orvalo::testing
