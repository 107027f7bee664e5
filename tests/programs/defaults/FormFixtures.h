#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "platform/foundation/defaults/PropertyList.h"
#include "programs/defaults/format/FormatError.h"

namespace orvalo::testing {

using Dictionary = PropertyList::Dictionary;
using List = PropertyList::List;

/// A value of every kind, with what is hard to write among them, but no control characters and no
/// NaN, which is equal to nothing.
Dictionary everyKind();

/// The deepest value that the store takes, of dictionaries that look like a form of JSON.
PropertyList deepestValue();

/// The message of the FormatError that the action throws; "no error" when it throws none.
template <typename Action>
std::string trouble(const Action& action) {
    try {
        action();
    } catch (const FormatError& error) {
        return error.what();
    }
    return "no error";
}

}  // namespace orvalo::testing
