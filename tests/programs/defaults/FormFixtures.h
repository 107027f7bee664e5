#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "platform/foundation/defaults/PropertyList.h"

namespace orvalo::testing {

using Dictionary = PropertyList::Dictionary;
using List = PropertyList::List;

/// Values of every kind, also those that are hard to write. Without a NaN, which equals no value.
Dictionary everyKind();

/// The deepest value that the store takes as an entry, of dictionaries that look like a JSON form.
PropertyList deepestValue();

/// The text of the std::runtime_error that the action throws; "no error" when it throws none.
template <typename Action>
std::string errorOf(const Action& action) {
    try {
        action();
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return "no error";
}

}  // namespace orvalo::testing
