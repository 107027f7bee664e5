#pragma once

#include <string>
#include <vector>

#include "platform/foundation/defaults/DefaultsChanges.h"
#include "platform/foundation/defaults/PropertyList.h"

namespace orvalo {

/// A domain by its name: the application's own or a suite, whether it is there or not. Reading does
/// not create it. Every operation throws NSError, and all is as it was then.
class Domain {
  public:
    /// Throws BadOption for what can be no domain's name.
    explicit Domain(std::string name);

    /// The names of all that are there, in their order.
    static std::vector<std::string> names();

    const std::string& name() const { return name_; }
    /// All entries; none of a domain that is not there.
    PropertyList::Dictionary entries() const;
    /// All of the changes together, or none.
    void change(DefaultsChanges changes) const;

    /// Whether there is such a domain, entries or not.
    bool isThere() const;

  private:
    std::string name_;
    std::string path_;
};

}  // namespace orvalo
