#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/foundation/defaults/DefaultsChanges.h"
#include "platform/foundation/defaults/PropertyList.h"

namespace orvalo {

class DefaultsDomain;

/// A domain by its name: the application's own or a suite, whether it is there or not. Reading does
/// not create it. Every operation throws NSError, and all is as it was then.
class Domain {
  public:
    /// Throws BadOption for what can be no domain's name.
    explicit Domain(std::string name);
    ~Domain();
    Domain(const Domain&) = delete;
    Domain& operator=(const Domain&) = delete;

    /// The names of all that are there, in their order.
    static std::vector<std::string> names();

    const std::string& name() const { return name_; }
    /// All entries; none of a domain that is not there.
    PropertyList::Dictionary entries();
    /// All of the changes together, or none.
    void change(DefaultsChanges changes);

    /// Whether there is such a domain, entries or not.
    bool isThere() const;

  private:
    DefaultsDomain& opened();

    std::string name_;
    std::string path_;
    std::shared_ptr<DefaultsDomain> domain_;
};

}  // namespace orvalo
