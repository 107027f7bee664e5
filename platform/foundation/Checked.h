#pragma once

#include <concepts>

#include "platform/foundation/FatalError.h"

namespace orvalo {

// Integer arithmetic whose overflow is a fatal error that names the operation.

template <std::integral T>
T checkedAdd(T left, T right) {
    T result{};
    if (__builtin_add_overflow(left, right, &result)) {
        fatalError("Integer overflow in an addition.");
    }
    return result;
}

template <std::integral T>
T checkedSubtract(T left, T right) {
    T result{};
    if (__builtin_sub_overflow(left, right, &result)) {
        fatalError("Integer overflow in a subtraction.");
    }
    return result;
}

template <std::integral T>
T checkedMultiply(T left, T right) {
    T result{};
    if (__builtin_mul_overflow(left, right, &result)) {
        fatalError("Integer overflow in a multiplication.");
    }
    return result;
}

/// The number as another integer type. A number that does not fit is a fatal error.
template <std::integral To, std::integral From>
To exactly(From value) {
    To result{};
    if (__builtin_add_overflow(value, From{0}, &result)) {
        fatalError("An integer does not fit its type.");
    }
    return result;
}

}  // namespace orvalo
