#include <gmock/gmock.h>

#include <csignal>
#include <fstream>
#include <utility>

#include "platform/web/WebSandbox.h"
#include "tests/app/ApplicationFixture.h"
#include "tests/app/Screenshot.h"
#include "tests/platform/web/Site.h"
#include "tests/testing/WaitUntil.h"

namespace orvalo::testing {

namespace {

using ::testing::HasSubstr;

class PagesTest : public ApplicationFixture {
  protected:
    PagesTest() {
        environment["ORVALO_TEST_SITE"] = site.address("");
        // The leak check would read memory that the web engine protects, and crash.
        environment["ASAN_OPTIONS"] = "detect_leaks=0";
        // The sandbox is not under test, and some machines cannot create it.
        if (sandboxProblem()) {
            environment["WEBKIT_DISABLE_SANDBOX_THIS_IS_DANGEROUS"] = "1";
        }
        makeBrowser();
    }

    /// A browser that records the addresses to open and prints a line.
    void makeBrowser() {
        const auto applications = folder.path() / "data/applications";
        std::filesystem::create_directories(applications);
        std::filesystem::create_directories(folder.path() / "config");
        std::ofstream(folder.path() / "browser")
            << "#!/bin/sh\necho foreign\nprintf '%s\\n' \"$1\" >" << opened().string()
            << ".new\nmv " << opened().string() << ".new " << opened().string() << "\n";
        std::filesystem::permissions(folder.path() / "browser", std::filesystem::perms::owner_all);
        std::ofstream(applications / "browser.desktop")
            << "[Desktop Entry]\nType=Application\nName=Browser\nExec="
            << (folder.path() / "browser").string()
            << " %u\nMimeType=x-scheme-handler/http;x-scheme-handler/https;text/html;\n";
        std::ofstream(folder.path() / "config/mimeapps.list")
            << "[Default "
               "Applications]\nx-scheme-handler/http=browser.desktop\ntext/html=browser.desktop\n";
    }
    std::filesystem::path opened() const { return folder.path() / "opened"; }

    void leavePage() {
        ASSERT_TRUE(pollUntil([this] { return tree.shows("Back"); }));
        focus();
        key("Escape");
        ASSERT_TRUE(pollUntil([this] { return tree.shows("Play") && !tree.shows("Back"); }));
    }

    /// Whether most of the window has the ground of the installed pages.
    static bool showsGround() {
        const auto window = place();
        return Screenshot().count(0xF7F8F9, window.x, window.y, window.width, window.height) >
               window.width * window.height / 2;
    }
    static bool showsInstalledPage() {
        // The engine draws in another process.
        return pollUntil(showsGround);
    }

    Site site{{{"/", titled("Information", "<h1>About</h1>")},
               {"/DYNAMICS/", titled("Help", "<h1>Help</h1>")}}};
};

TEST_F(PagesTest, InformationShowsTheRootAndReturns) {
    start();
    ASSERT_TRUE(tree.press("Information"));
    const auto lines = program->readUntil("navigationResponse: ");
    EXPECT_EQ(lines,
              (Lines{"ShowInfo", "navigationAction: ", site.address("/"), "navigationResponse: "}))
        << program->standardError();
    EXPECT_EQ(program->readUntil("http://"), Lines{site.address("/")});
    ASSERT_FALSE(site.requested().empty());
    EXPECT_EQ(site.requested().front(), "/");
    leavePage();
    EXPECT_EQ(quit(), 0);
}

TEST_F(PagesTest, HelpShowsItsPageAndOpensTheSiteInTheBrowser) {
    start();
    key("F1");
    const auto lines = program->readUntil("navigationResponse: ");
    EXPECT_EQ(lines, (Lines{"ShowHelp", "navigationAction: ", site.address("/DYNAMICS/"),
                            "navigationResponse: "}));
    EXPECT_EQ(site.requested().front(), "/DYNAMICS/");
    ASSERT_TRUE(pollUntil([this] { return std::filesystem::exists(opened()); }));
    std::string address;
    std::getline(std::ifstream(opened()), address);
    EXPECT_EQ(address, environment["ORVALO_TEST_SITE"]);
    leavePage();
    EXPECT_EQ(quit(), 0);
    EXPECT_EQ(program->readAll(), Lines{site.address("/DYNAMICS/")});
    EXPECT_THAT(program->standardError(), HasSubstr("foreign\n"));
}

TEST_F(PagesTest, WithoutASiteTheInstalledPagesAreShown) {
    environment.erase("ORVALO_TEST_SITE");
    start();
    key("F1");
    EXPECT_EQ(program->readUntil("https://"),
              (Lines{"ShowHelp", "navigationAction: ", "https://orvalo.example/DYNAMICS/"}));
    EXPECT_TRUE(showsInstalledPage());
    ASSERT_TRUE(pollUntil([this] { return std::filesystem::exists(opened()); }));
    std::string address;
    std::getline(std::ifstream(opened()), address);
    EXPECT_EQ(address, std::filesystem::path(ORVALO_TEST_STAGE "/share/orvalo/site/index.html"));
    leavePage();
    EXPECT_EQ(quit(), 0);
    EXPECT_EQ(program->readAll(), Lines{});
}

TEST_F(PagesTest, WhileTheSiteDoesNotAnswerTheInstalledPageIsOffered) {
    const Site silent{{{"/DYNAMICS/", {.manner = Page::Manner::never}}}};
    environment["ORVALO_TEST_SITE"] = silent.address("");
    start();
    const auto shows = [this](const std::string& text) {
        return pollUntil([&] {
            const auto names = tree.names();
            return std::ranges::find(names, text) != names.end();
        });
    };
    key("F1");
    EXPECT_EQ(program->readUntil("http://"),
              (Lines{"ShowHelp", "navigationAction: ", silent.address("/DYNAMICS/")}));
    EXPECT_TRUE(shows("Loading the page…"));
    ASSERT_TRUE(tree.press("Show the Installed Page"));
    EXPECT_TRUE(showsInstalledPage());
    EXPECT_TRUE(pollUntil([this] { return !tree.shows("Show the Installed Page"); }));
    EXPECT_EQ(silent.requested(), Lines{"/DYNAMICS/"});
    leavePage();
    EXPECT_EQ(quit(), 0);
    EXPECT_EQ(program->readAll(), Lines{});
}

TEST_F(PagesTest, ASiteWithoutAnAddressEndsTheProgram) {
    environment["ORVALO_TEST_SITE"] = "no address";
    for (const auto& [shortcut, lines] :
         {std::pair{"F1", Lines{}}, std::pair{"ctrl+i", Lines{"ShowInfo"}}}) {
        start();
        key(shortcut);
        EXPECT_EQ(program->readAll(), lines) << shortcut;
        EXPECT_EQ(program->wait(), -SIGABRT) << shortcut;
        EXPECT_THAT(program->standardError(),
                    HasSubstr("Fatal error: Unexpectedly found nil while unwrapping an Optional "
                              "value\n"));
    }
    EXPECT_FALSE(std::filesystem::exists(opened()));
    EXPECT_EQ(site.requested(), Lines{});
}

TEST_F(PagesTest, APageStaysWhileAPartOfItChanges) {
    const Site changing{{{"/", titled("Changing", R"(<style>body { background: #F7F8F9 }</style>
<p id='part'>0</p>
<script>
let steps = 0;
function step() {
    ++steps;
    part.style.background = steps % 2 ? 'red' : 'blue';
    if (steps % 20 == 0) new Image().src = '/steps' + steps;
    requestAnimationFrame(step);
}
addEventListener('load', step);
</script>)")}}};
    environment["ORVALO_TEST_SITE"] = changing.address("");
    start();
    key("ctrl+i");
    EXPECT_TRUE(pollUntil([&] {
        const auto requested = changing.requested();
        return std::ranges::find(requested, "/steps40") != requested.end();
    }));
    EXPECT_TRUE(showsGround());
    leavePage();
    EXPECT_EQ(quit(), 0);
}

TEST_F(PagesTest, APageIsReloadedEveryTime) {
    start();
    for (int round = 0; round < 3; ++round) {
        key("ctrl+i");
        EXPECT_EQ(program->readUntil("ShowInfo"), Lines{"ShowInfo"});
        program->readUntil("navigationResponse: ");
        EXPECT_EQ(lineWith("http://"), site.address("/"));
        leavePage();
    }
    EXPECT_EQ(quit(), 0);
}

TEST_F(PagesTest, TheMainScreensKeysAreDisabledWhileAPageIsShown) {
    start();
    key("ctrl+i");
    program->readUntil("navigationResponse: ");
    ASSERT_TRUE(pollUntil([this] { return tree.shows("Back"); }));
    focus();
    key("space");
    key("F1");
    key("ctrl+i");
    leavePage();
    EXPECT_EQ(program->readUntil("http://"), Lines{site.address("/")});
    EXPECT_EQ(quit(), 0);
    EXPECT_EQ(program->readAll(), Lines{});
}

}  // namespace

}  // namespace orvalo::testing
