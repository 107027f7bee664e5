#pragma once

#include <gtest/gtest.h>
#include <webkit/webkit.h>

#include <memory>
#include <string>

#include "platform/web/WKWebView.h"
#include "tests/platform/web/RecordingDelegate.h"
#include "tests/platform/web/Site.h"
#include "tests/testing/WaitUntil.h"

namespace orvalo::testing {

/// A web view in a window. Both delegates record their calls.
class WebFixture : public ::testing::Test {
  protected:
    WebFixture();
    ~WebFixture() override;

    /// Starts to load an address.
    void load(const std::string& address, double timeoutInterval = 60) const;
    /// Loads an address and waits for the page's title; false when it does not appear.
    bool loadWholly(const std::string& address, const std::string& title) const;
    /// Waits until the page has that title and nothing loads.
    bool waitForTitle(const std::string& title) const;
    /// Runs a script in the page and returns its result as text.
    std::string evaluate(const std::string& script) const;
    std::string title() const;
    WebKitWebView* engine() const { return WEBKIT_WEB_VIEW(view->widget()); }
    /// Destroys the view and its window.
    void releaseView();

    /// Loads a page in another view to its end, so that earlier work of this process and of the
    /// engine's shared processes is done.
    static void passTime(const Site& site, const std::string& path);

    /// Loads an address in another view and waits until the load times out.
    static void loadUntilTimeout(const std::string& address, double timeoutInterval);

    std::shared_ptr<RecordingDelegate> delegate = std::make_shared<RecordingDelegate>();
    std::shared_ptr<WKWebView> view;

  private:
    GtkWidget* window_;
};

}  // namespace orvalo::testing
