#pragma once

#include <optional>
#include <string_view>

#include "platform/foundation/Bundle.h"

namespace orvalo {

/// A bundle in which every resource is one file: whichever demonstration is drawn, this one plays.
class OneFileBundle : public Bundle {
  public:
    explicit OneFileBundle(URL file) : Bundle(file), file_(std::move(file)) {}

    std::optional<URL> url(std::string_view /*forResource*/,
                           std::string_view /*withExtension*/) const override {
        return file_;
    }

  private:
    const URL file_;
};

}  // namespace orvalo
