#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "platform/foundation/NSObject.h"

namespace orvalo {

class UIViewController;

/// A transition to another screen that is about to be performed.
class UIStoryboardSegue : public NSObject {
  public:
    UIStoryboardSegue(std::optional<std::string> name, std::shared_ptr<UIViewController> from,
                      std::shared_ptr<UIViewController> to)
        : identifier(std::move(name)), source(std::move(from)), destination(std::move(to)) {}

    /// Its identifier in the layout; may be absent.
    const std::optional<std::string> identifier;
    const std::shared_ptr<UIViewController> source;
    /// The new screen. Its view is not loaded yet.
    const std::shared_ptr<UIViewController> destination;
};

}  // namespace orvalo
