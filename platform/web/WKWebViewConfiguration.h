#pragma once

#include <memory>
#include <utility>

#include "platform/foundation/NSObject.h"

namespace orvalo {

class WKWebView;

/// The configuration of a new web view: empty, or with the view whose page opens it.
class WKWebViewConfiguration : public NSObject {
  public:
    WKWebViewConfiguration() = default;

  private:
    friend class WKWebView;

    explicit WKWebViewConfiguration(std::weak_ptr<WKWebView> opener) : opener_(std::move(opener)) {}

    std::weak_ptr<WKWebView> opener_;
};

}  // namespace orvalo
