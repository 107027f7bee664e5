#pragma once

#include "tests/platform/web/Site.h"

namespace orvalo::testing {

/// The maker's site of a program whose screens are tested inside it: at work before main(), so that
/// the address is known, to the program's end.
Site& loopbackSite();

}  // namespace orvalo::testing
