#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace orvalo {

class DefaultsDomain;

/// The domains that the process has open, one for a file. Any thread.
///
/// Neither SQLite's connections nor the counters' locks survive a fork: both processes would take
/// each other's for their own. So all are let go before it, and opened again by whoever needs them.
class DefaultsDomains {
  public:
    static DefaultsDomains& shared();

    /// The domain of a file; it lives as long as somebody holds it.
    std::shared_ptr<DefaultsDomain> domain(const std::string& path);

  private:
    DefaultsDomains();
    void beginFork();
    void endFork(bool isChild);

    std::mutex mutex_;
    std::map<std::string, std::weak_ptr<DefaultsDomain>> domains_;
    std::vector<std::shared_ptr<DefaultsDomain>> held_;  ///< During a fork.
};

}  // namespace orvalo
