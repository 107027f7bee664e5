#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>

#include "platform/foundation/URL.h"
#include "platform/ui/UIResponder.h"

namespace orvalo {

class UIApplicationDelegate;

/// The running application. Main thread.
class UIApplication : public UIResponder {
  public:
    /// The one application; UIApplicationMain() makes it.
    static const std::shared_ptr<UIApplication>& shared();

    std::shared_ptr<UIApplicationDelegate> delegate() const { return delegate_; }

    /// Has the desktop open an address with the program that is meant for it, and returns at once.
    /// completion (may be empty): on the main thread, with whether that went well; if not, a line
    /// on standard error says why. options: none are known.
    virtual void open(const URL& url, const std::map<std::string, std::string>& options,
                      std::function<void(bool)> completion);

  protected:
    friend struct UIApplicationStart;

    std::shared_ptr<UIApplicationDelegate> delegate_;
};

}  // namespace orvalo
