#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <random>
#include <string>

#include "platform/foundation/defaults/UserDefaults.h"

namespace orvalo::testing {

/// Reads and writes a suite at random while other Hammers do the same. Each writes growing numbers
/// to its own keys and any number to a common key, and checks that no value is torn and no number
/// of an own key shrinks.
class Hammer {
  public:
    Hammer(UserDefaults& settings, int self, int all);

    /// Runs for some seconds. Returns "KEY=NUMBER;" for each own key with the last number. Throws
    /// std::logic_error for a torn value and for a number that shrinks.
    std::string run(double seconds);

    /// A value that holds the number and shows damage.
    static PropertyList valueOf(std::int64_t number);
    /// The number in a value; absent without one. Throws std::logic_error when it is torn.
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
