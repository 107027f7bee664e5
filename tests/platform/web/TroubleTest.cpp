#include <gmock/gmock.h>

#include <csignal>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include "tests/platform/web/WebFixture.h"
#include "tests/platform/web/WebProcess.h"
#include "tests/testing/CapturedOutput.h"

namespace orvalo::testing {

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

std::size_t count(const std::string& text, const std::string& word) {
    std::size_t result = 0;
    for (auto place = text.find(word); place != std::string::npos;
         place = text.find(word, place + 1)) {
        ++result;
    }
    return result;
}

class TroubleTest : public WebFixture {
  protected:
    const Site site{{{"/", titled("start", "<a href='/file' download='taken.bin'>file</a>")},
                     {"/file", {.content = "bytes", .type = "application/octet-stream"}},
                     {"/broken", {.manner = Page::Manner::broken}},
                     {"/next", titled("next")}}};
};

TEST_F(TroubleTest, AKilledPageIsLoggedAndTheViewLoadsAgain) {
    loadWholly(site.address("/"), "start");
    const CapturedOutput errors(2);
    const auto processes = webProcesses();
    ASSERT_FALSE(processes.empty());
    for (const auto process : processes) {
        kill(process, SIGKILL);
    }
    EXPECT_TRUE(waitUntil([&] {
        return errors.text().find("The process of the page " + site.address("/") + " crashed.") !=
               std::string::npos;
    }));
    // The engine's spare process was killed too, and the engine may notice that only at the next
    // load.
    std::size_t told = 0;
    EXPECT_TRUE(waitUntil([&] {
        if (const auto crashes = count(errors.text(), "crashed."); crashes > told) {
            told = crashes;
            load(site.address("/next"));
        }
        return title() == "next";
    })) << errors.text();
    EXPECT_TRUE(loadWholly(site.address("/"), "start"));
}

TEST_F(TroubleTest, AViewLoadsAgainAfterAKillDuringALoad) {
    loadWholly(site.address("/"), "start");
    delegate->onResponse = [](const auto&) { return RecordingDelegate::Answer::hold; };
    load(site.address("/next"));
    ASSERT_TRUE(waitUntil([this] { return delegate->heldResponses.size() == 1; }));
    const CapturedOutput errors(2);
    webkit_web_view_terminate_web_process(engine());
    EXPECT_TRUE(waitUntil([&] { return errors.text().find(" was ended.") != std::string::npos; }));
    delegate->onResponse = {};
    delegate->heldResponses[0](WKNavigationResponsePolicy::allow);
    EXPECT_TRUE(loadWholly(site.address("/next"), "next"));
}

TEST_F(TroubleTest, AFailedLoadIsLoggedAndNotShown) {
    loadWholly(site.address("/"), "start");
    delegate->calls.clear();
    for (const auto& address : {site.address("/broken"), LoopbackServer::refusedAddress()}) {
        const CapturedOutput errors(2);
        load(address);
        EXPECT_TRUE(waitUntil([&] {
            return errors.text().find(address + " could not be loaded: ") != std::string::npos;
        }));
        EXPECT_TRUE(waitForTitle("start"));
    }
    passTime(site, "/next");
    EXPECT_THAT(delegate->calls, ElementsAre("action " + site.address("/broken"),
                                             "action " + LoopbackServer::refusedAddress()));
    EXPECT_EQ(evaluate("document.body.textContent"), "file");
}

TEST_F(TroubleTest, ARefusalOfTheDelegateIsNotLogged) {
    loadWholly(site.address("/"), "start");
    const CapturedOutput errors(2);
    delegate->onResponse = [](const auto&) { return RecordingDelegate::Answer::cancel; };
    load(site.address("/next"));
    EXPECT_TRUE(waitUntil([this] { return delegate->calls.size() == 4; }));
    EXPECT_TRUE(waitForTitle("start"));
    passTime(site, "/next");
    EXPECT_THAT(errors.text(), Not(HasSubstr("could not be loaded")));
}

TEST_F(TroubleTest, DownloadsAreRefused) {
    loadWholly(site.address("/"), "start");
    const CapturedOutput errors(2);
    evaluate("document.querySelector('a').click()");
    EXPECT_TRUE(waitUntil([&] {
        return errors.text().find("The download of " + site.address("/file") + " was refused.") !=
               std::string::npos;
    }));
    passTime(site, "/next");
    std::vector<std::string> taken;
    // The engine removes folders of its own meanwhile, which ends a listing early.
    EXPECT_TRUE(pollUntil([&taken] {
        std::error_code gone;
        std::filesystem::recursive_directory_iterator entry(g_get_home_dir(), gone);
        for (; entry != std::filesystem::recursive_directory_iterator(); entry.increment(gone)) {
            if (entry->path().string().find("taken") != std::string::npos) {
                taken.push_back(entry->path());
            }
        }
        return !gone;
    }));
    EXPECT_THAT(taken, IsEmpty());
}

}  // namespace

}  // namespace orvalo::testing
