#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <random>
#include <string>

#include "platform/foundation/defaults/UserDefaults.h"

namespace orvalo::testing {

/// One of several that read and write a suite at random. Each has keys that it alone writes, with
/// growing numbers, and one that all write; whoever reads sees to it that no value is torn, and
/// that no number ever shrinks.
class Hammer {
  public:
    Hammer(UserDefaults& settings, int self, int all);

    /// Goes on for so long. Returns "KEY=NUMBER" for each own key, with what it wrote last. Throws
    /// std::logic_error when it sees what must not be.
    std::string run(double seconds);

    /// The value of a number, which tells whether it is whole.
    static PropertyList valueOf(std::int64_t number);
    /// The number of a value; nothing for an absent one. Throws std::logic_error when it is torn.
    static std::optional<std::int64_t> numberOf(const std::optional<PropertyList>& value);

  private:
    std::string randomKey(int owner);
    void writeOwn();
    void writeCommon();
    void read();
    void look(const std::string& key, const std::optional<PropertyList>& value);

    UserDefaults& settings_;
    int self_;
    int all_;
    std::mt19937_64 random_;
    std::map<std::string, std::int64_t> seen_;
};

}  // namespace orvalo::testing
