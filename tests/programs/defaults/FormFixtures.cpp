#include "tests/programs/defaults/FormFixtures.h"

#include <cstdint>
#include <limits>

namespace orvalo::testing {

Dictionary everyKind() {
    const PropertyList::Date date{std::chrono::microseconds(1'700'000'000'250'000)};
    return {
        {"", "an empty key"},
        {"truth", List{true, false}},
        {"integers", List{0, -1, INT64_MIN, INT64_MAX}},
        {"floats", List{0.0, 1.0, 0.1, 1e300, 5e-324, -2.5, std::numeric_limits<double>::infinity(),
                        -std::numeric_limits<double>::infinity()}},
        {"texts", List{"", " blanks ", "São Tomé <&>\"' ]]>", "a\nb\tc\r\nd\r", "😀"}},
        {"data", List{Data{}, Data{0, 1, 0xFF}}},
        {"dates", List{date, PropertyList::Date{}, date + std::chrono::microseconds(1),
                       date + std::chrono::years(7'000), date - std::chrono::years(1'900)}},
        {"empty list", List{}},
        {"empty dictionary", Dictionary{}},
        {"nested", Dictionary{{"a", List{Dictionary{{"b", List{1}}}}}}},
        {"like a date", Dictionary{{"$date", "a text"}}},
        {"like data", Dictionary{{"$data", List{}}}},
        {"like a wrapped one", Dictionary{{"$dictionary", Dictionary{{"$real", "x"}}}}},
        {"two of them", Dictionary{{"$date", 1}, {"$real", 2}}},
        {"$date", "a key of the domain"},
        {"Größe <&>", 1}};
}

PropertyList deepestValue() {
    PropertyList value = 1;
    for (int depth = 0; depth < 40; ++depth) {
        value = Dictionary{{"$dictionary", value}};
    }
    return value;
}

}  // namespace orvalo::testing
