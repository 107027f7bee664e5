#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/foundation/defaults/PropertyList.h"

namespace orvalo {

/// Puts a value together from the pieces that a parser finds, one after the other. What makes no
/// sense throws FormatError, whose text says where.
class ValueBuilder {
  public:
    void beginList();
    void beginDictionary();
    /// The key of the value that comes next.
    void key(std::string name);
    /// A whole value.
    void add(PropertyList value);
    /// Ends the list or dictionary that was begun last.
    void end();

    /// The finished value.
    PropertyList take();

    /// A FormatError about the value that comes next: "'window', element 3: <trouble>".
    [[noreturn]] void fail(const std::string& trouble) const;

  private:
    /// A list or a dictionary that is not at its end.
    struct Open {
        bool isList = false;
        PropertyList::List list;
        PropertyList::Dictionary dictionary;
        std::optional<std::string> key;
    };

    void begin(bool isList);
    void checkPlace() const;

    std::vector<Open> open_;
    std::optional<PropertyList> whole_;
};

}  // namespace orvalo
