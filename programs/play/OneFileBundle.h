#pragma once

#include <optional>
#include <string_view>
#include <utility>

#include "platform/foundation/Bundle.h"

namespace orvalo {

/// A bundle in which every resource is the same file: it plays in place of any demonstration file.
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
