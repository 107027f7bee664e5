#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/foundation/URL.h"
#include "platform/ui/UIResponder.h"

namespace orvalo {

class UIApplicationDelegate;

/// The running application. Main thread.
class UIApplication : public UIResponder {
  public:
    /// The only application.
    static const std::shared_ptr<UIApplication>& shared();

    std::shared_ptr<UIApplicationDelegate> delegate() const { return delegate_; }

    /// Makes the desktop open an address with its default program, and returns at once. completion
    /// (may be empty): called on the main thread with whether it succeeded; a failure is logged.
    /// options: ignored.
    virtual void open(const URL& url, const std::map<std::string, std::string>& options,
                      std::function<void(bool)> completion);

    /// Calls work when the application ends: after its window is closed, and on SIGTERM, SIGINT and
    /// SIGHUP.
    void atEnd(std::function<void()> work) { endings_.push_back(std::move(work)); }

  protected:
    friend struct UIApplicationStart;

    std::shared_ptr<UIApplicationDelegate> delegate_;
    std::vector<std::function<void()>> endings_;
};

}  // namespace orvalo
