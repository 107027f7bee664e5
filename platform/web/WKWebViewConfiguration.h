#pragma once

#include <memory>
#include <utility>

#include "platform/foundation/NSObject.h"

namespace orvalo {

class WKWebView;

/// What a new web view starts from: nothing, or the view whose page opens it.
class WKWebViewConfiguration : public NSObject {
  public:
    WKWebViewConfiguration() = default;

  private:
    friend class WKWebView;

    explicit WKWebViewConfiguration(std::weak_ptr<WKWebView> opener) : opener_(std::move(opener)) {}

    std::weak_ptr<WKWebView> opener_;
};

}  // namespace orvalo
