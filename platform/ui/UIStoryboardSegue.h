#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "platform/foundation/NSObject.h"

namespace orvalo {

class UIViewController;

/// The way from one screen to another that is about to be taken.
class UIStoryboardSegue : public NSObject {
  public:
    UIStoryboardSegue(std::optional<std::string> name, std::shared_ptr<UIViewController> from,
                      std::shared_ptr<UIViewController> to)
        : identifier(std::move(name)), source(std::move(from)), destination(std::move(to)) {}

    /// Its name in the layout; absent when it has none.
    const std::optional<std::string> identifier;
    const std::shared_ptr<UIViewController> source;
    /// A new screen, whose view is not loaded yet.
    const std::shared_ptr<UIViewController> destination;
};

}  // namespace orvalo
