#include "platform/foundation/URLResponse.h"
#include "platform/web/WKNavigation.h"
#include "tests/app/ScreenFixture.h"

namespace orvalo::testing {

namespace {

class HelpScreenTest : public ScreenFixture {
  protected:
    static std::shared_ptr<WKNavigationAction> action(const std::optional<URL>& url) {
        return std::make_shared<WKNavigationAction>(URLRequest{url});
    }
    /// The screen's answer to a response from that address; absent when it does not answer.
    std::optional<WKNavigationResponsePolicy> answerTo(const std::optional<URL>& url) {
        std::optional<WKNavigationResponsePolicy> answer;
        screen->webView(nullptr,
                        std::make_shared<WKNavigationResponse>(std::make_shared<URLResponse>(url)),
                        [&answer](WKNavigationResponsePolicy policy) { answer = policy; });
        return answer;
    }

    std::shared_ptr<HelpViewController> screen =
        std::make_shared<HelpViewController>(std::nullopt, nullptr);
};

TEST_F(HelpScreenTest, EveryNavigationWithAnAddressIsAllowed) {
    std::optional<WKNavigationActionPolicy> answer;
    const CapturedOutput output;
    screen->webView(nullptr, action(URL::string("https://a.example/b.php?c#d")),
                    [&answer](WKNavigationActionPolicy policy) { answer = policy; });
    EXPECT_EQ(answer, WKNavigationActionPolicy::allow);
    EXPECT_EQ(output.lines(), (Lines{"navigationAction: ", "https://a.example/b.php?c#d"}));
}

TEST_F(HelpScreenTest, ANavigationWithoutAnAddressStaysOpen) {
    std::optional<WKNavigationActionPolicy> answer;
    const CapturedOutput output;
    screen->webView(nullptr, action(std::nullopt),
                    [&answer](WKNavigationActionPolicy policy) { answer = policy; });
    EXPECT_EQ(answer, std::nullopt);
    EXPECT_EQ(output.lines(), Lines{"navigationAction: "});
}

TEST_F(HelpScreenTest, PagesAndDocumentsAreShownAndOthersAreNot) {
    using enum WKNavigationResponsePolicy;
    const std::vector<std::pair<const char*, WKNavigationResponsePolicy>> cases{
        {"https://a.example/", allow},         {"https://a.example/DYNAMICS/", allow},
        {"https://a.example/x", allow},        {"https://a.example/x.html", allow},
        {"https://a.example/x.HtMl", allow},   {"https://a.example/x.pdf", allow},
        {"https://a.example/x.PDF", allow},    {"https://a.example/x.htm", cancel},
        {"https://a.example/x.php", cancel},   {"https://a.example/x.jpg", cancel},
        {"https://a.example/x.pdf.z", cancel}, {"https://a.example/x.%FC", cancel},
        {"https://a.example/x.%C3", cancel},   {"https://a.example/x.pdf%00jpg", cancel}};
    for (const auto& [address, expected] : cases) {
        const CapturedOutput output;
        EXPECT_EQ(answerTo(URL::string(address)), expected) << address;
        EXPECT_EQ(output.lines(), (Lines{"navigationResponse: ", address}));
    }
}

TEST_F(HelpScreenTest, AResponseWithoutAnAddressStaysOpen) {
    const CapturedOutput output;
    EXPECT_EQ(answerTo(std::nullopt), std::nullopt);
    EXPECT_EQ(output.lines(), Lines{"navigationResponse: "});
}

TEST_F(HelpScreenTest, ANewWindowOpensNothing) {
    const CapturedOutput output;
    EXPECT_EQ(
        screen->webView(nullptr, nullptr, action(URL::string("https://a.example/new")), nullptr),
        nullptr);
    EXPECT_EQ(screen->webView(nullptr, nullptr, action(std::nullopt), nullptr), nullptr);
    EXPECT_EQ(output.lines(),
              (Lines{"createWebViewWith:", "https://a.example/new", "createWebViewWith:"}));
}

TEST_F(HelpScreenTest, WithoutItsViewALoadEndsTheProgram) {
    EXPECT_DEATH(screen->navigateWeb(),
                 "Fatal error: The outlet HelpViewController.webView is not connected.");
}

}  // namespace

}  // namespace orvalo::testing
