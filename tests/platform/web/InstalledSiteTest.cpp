#include <gmock/gmock.h>

#include <fstream>

#include "tests/platform/web/WebFixture.h"
#include "tests/testing/Program.h"
#include "tests/testing/TemporaryFolder.h"

namespace orvalo::testing {

namespace {

using ::testing::ElementsAre;

/// Longer than the engine needs to ask for a page.
constexpr double kTimeout = 2;

class InstalledSiteTest : public WebFixture {
  protected:
    InstalledSiteTest() {
        std::filesystem::create_directories(folder.path() / "guide");
        std::ofstream(folder.path() / "index.html")
            << titled("installed", "<a href='guide/#end'>guide</a><a href='none/'>none</a>")
                   .content;
        std::ofstream(folder.path() / "guide/index.html")
            << titled("installed guide",
                      "<a href='../index.html'>back</a><a href='#end'>end</a>"
                      "<p style='height: 4000px'><p id='end'>end")
                   .content;
    }

    /// Loads the first page of a site whose pages are installed, too.
    void loadFrom(const std::string& site, double timeout = URLRequest::defaultTimeout) {
        view->setInstalledSite({site, URL::fileURLWithPath(folder.path().string())});
        load(site + "/", timeout);
    }
    static std::string siteOf(std::string address) {
        address.pop_back();
        return address;
    }
    void click(int link) const { evaluate("document.links[" + std::to_string(link) + "].click()"); }

    const TemporaryFolder folder;
};

TEST_F(InstalledSiteTest, ReplacesASiteThatRefuses) {
    const auto site = siteOf(LoopbackServer::refusedAddress());
    loadFrom(site);
    EXPECT_TRUE(waitForTitle("installed"));
    EXPECT_THAT(delegate->calls, ElementsAre("action " + site + "/"));
}

TEST_F(InstalledSiteTest, ReplacesASiteWhoseNameIsUnknown) {
    loadFrom("https://orvalo.invalid");
    EXPECT_TRUE(waitForTitle("installed"));
    EXPECT_THAT(delegate->calls, ElementsAre("action https://orvalo.invalid/"));
}

TEST_F(InstalledSiteTest, ReplacesASiteThatDoesNotAnswer) {
    const Site site({{"/", {.manner = Page::Manner::never}}});
    loadFrom(siteOf(site.address("/")), kTimeout);
    EXPECT_TRUE(waitForTitle("installed"));
    EXPECT_THAT(delegate->calls, ElementsAre("action " + site.address("/")));
}

TEST_F(InstalledSiteTest, ReplacesASiteWithoutATrustedCertificate) {
    const auto certificate = (folder.path() / "certificate").string();
    const auto key = (folder.path() / "key").string();
    ASSERT_EQ(Program({"openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt",
                       "ec_paramgen_curve:prime256v1", "-nodes", "-keyout", key, "-out",
                       certificate, "-subj", "/CN=127.0.0.1"})
                  .wait(),
              0);
    Program server({"openssl", "s_server", "-accept", "127.0.0.1:0", "-cert", certificate, "-key",
                    key, "-www"});
    const auto lines = server.readUntil("ACCEPT 127.0.0.1:");
    ASSERT_FALSE(lines.empty());
    const auto site = "https://" + lines.back().substr(lines.back().find("127"));
    loadFrom(site);
    EXPECT_TRUE(waitForTitle("installed"));
    EXPECT_THAT(delegate->calls, ElementsAre("action " + site + "/"));
}

TEST_F(InstalledSiteTest, LinksShowInstalledPagesAtOnceAndAskTheDelegate) {
    const Site site({{"/", {.manner = Page::Manner::never}}, {"/guide/", titled("guide")}});
    loadFrom(siteOf(site.address("/")), kTimeout);
    ASSERT_TRUE(waitForTitle("installed"));
    click(0);
    EXPECT_TRUE(waitForTitle("installed guide"));
    EXPECT_EQ(evaluate("location.href"), site.address("/guide/#end"));
    EXPECT_EQ(evaluate("window.scrollY > 1000"), "true");
    click(0);
    EXPECT_TRUE(waitForTitle("installed"));
    EXPECT_THAT(delegate->calls,
                ElementsAre("action " + site.address("/"), "action " + site.address("/guide/#end"),
                            "action " + site.address("/index.html")));
    EXPECT_THAT(site.requested(), ElementsAre("/"));
}

TEST_F(InstalledSiteTest, ALinkWithinAnInstalledPageLoadsNothing) {
    const auto site = siteOf(LoopbackServer::refusedAddress());
    view->setInstalledSite({site, URL::fileURLWithPath(folder.path().string())});
    load(site + "/guide/");
    ASSERT_TRUE(waitForTitle("installed guide"));
    evaluate("window.unchanged = 'kept'");
    click(1);
    EXPECT_TRUE(waitUntil([this] { return evaluate("window.scrollY > 1000") == "true"; }));
    EXPECT_EQ(evaluate("window.unchanged"), "kept");
}

TEST_F(InstalledSiteTest, ALinkThatTheDelegateRefusesShowsNothing) {
    const Site other({{"/", titled("other")}});
    const auto site = siteOf(LoopbackServer::refusedAddress());
    loadFrom(site);
    ASSERT_TRUE(waitForTitle("installed"));
    delegate->onAction = [](const auto&) { return RecordingDelegate::Answer::cancel; };
    click(0);
    EXPECT_TRUE(waitUntil([this] { return delegate->calls.size() == 2; }));
    passTime(other, "/");
    EXPECT_EQ(title(), "installed");
}

TEST_F(InstalledSiteTest, ASiteThatAnswersIsShown) {
    const Site site({{"/", titled("online")}});
    loadFrom(siteOf(LoopbackServer::refusedAddress()));
    ASSERT_TRUE(waitForTitle("installed"));
    loadFrom(siteOf(site.address("/")));
    EXPECT_TRUE(waitForTitle("online"));
}

TEST_F(InstalledSiteTest, AnotherSitesPageIsNotReplaced) {
    const Site site({{"/", titled("online")}, {"/broken", {.manner = Page::Manner::broken}}});
    view->setInstalledSite({"https://other.invalid", URL::fileURLWithPath(folder.path().string())});
    loadWholly(site.address("/"), "online");
    load(site.address("/broken"));
    passTime(site, "/");
    EXPECT_TRUE(waitForTitle("online"));
}

}  // namespace

}  // namespace orvalo::testing
