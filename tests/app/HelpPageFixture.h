#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "platform/web/WKWebView.h"
#include "tests/app/LoopbackSite.h"
#include "tests/app/ScreenFixture.h"

namespace orvalo::testing {

/// A help screen with a working web view, ready to be presented, in a bundle that has no resources
/// at first.
class HelpPageFixture : public ScreenFixture {
  protected:
    HelpPageFixture();
    ~HelpPageFixture() override;

    /// The folder of the bundle's resources.
    static std::filesystem::path resources();
    /// Presents the screen, and waits until it is shown.
    void present() const;
    void dismiss() const;
    /// Waits until the page of that title is loaded; false when it does not load.
    bool waitForTitle(const std::string& title) const;
    /// The requested paths since the start of the test.
    Lines requested() const;
    /// The lines that the screen prints for a page's request and response.
    static Lines linesOf(const std::string& path);

    std::shared_ptr<WKWebView> page;
    std::shared_ptr<UIViewController> presenter =
        std::make_shared<UIViewController>(std::nullopt, nullptr);
    std::shared_ptr<HelpViewController> screen =
        std::make_shared<HelpViewController>(std::nullopt, nullptr);

  private:
    const std::size_t requestedBefore_ = loopbackSite().requested().size();
};

}  // namespace orvalo::testing
