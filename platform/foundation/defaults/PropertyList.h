#pragma once

#include <chrono>
#include <concepts>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "platform/foundation/Data.h"

namespace orvalo {

/// A value of the settings: a truth value, a number, a text, data, a date, or a list or a
/// dictionary of such values. Converts from each of its kinds.
class PropertyList {
  public:
    /// UTC. Only the years 1 to 9999 can be stored.
    using Date = std::chrono::sys_time<std::chrono::microseconds>;
    using List = std::vector<PropertyList>;
    using Dictionary = std::map<std::string, PropertyList, std::less<>>;
    using Value =
        std::variant<bool, std::int64_t, double, std::string, Data, Date, List, Dictionary>;

    template <std::same_as<bool> Bool>
    PropertyList(Bool value) : value_(value) {}
    /// 64-bit unsigned integers do not convert: not all of them are values.
    template <std::integral Integer>
    requires(!std::same_as<Integer, bool> &&
             (std::signed_integral<Integer> || sizeof(Integer) < sizeof(std::int64_t)))
        PropertyList(Integer value)
        : value_(std::int64_t{value}) {}
    /// Floats of both widths become one kind, which holds them exactly.
    template <std::floating_point Float>
    requires(sizeof(Float) <= sizeof(double)) PropertyList(Float value) : value_(double{value}) {}
    PropertyList(std::string value) : value_(std::move(value)) {}
    PropertyList(std::string_view value) : value_(std::string(value)) {}
    PropertyList(const char* value) : value_(std::string(value)) {}
    PropertyList(Data value) : value_(std::move(value)) {}
    PropertyList(Date value) : value_(value) {}
    PropertyList(List value) : value_(std::move(value)) {}
    PropertyList(Dictionary value) : value_(std::move(value)) {}

    /// The value as one of its kinds; null when it is of another.
    template <typename Kind>
    const Kind* as() const {
        return std::get_if<Kind>(&value_);
    }
    /// For std::visit.
    const Value& value() const { return value_; }

    friend bool operator==(const PropertyList& left, const PropertyList& right) {
        return left.value_ == right.value_;
    }

  private:
    Value value_;
};

/// The textual form, after the platform's. A truth value is 1 or 0. A number has the fewest digits
/// that tell it from others of its width, which is 32 bits where those hold it exactly. A text
/// stands as it is; data is "{length = 2, bytes = 0x0a1b}"; a date is "2001-01-01 00:00:00 +0000".
/// A list stands in round brackets, a dictionary in curly ones, with an element a line, indented by
/// four blanks a level; a text in them is quoted unless it consists of ASCII letters, digits and
/// "_$/:.".
std::string description(const PropertyList& value);

}  // namespace orvalo
