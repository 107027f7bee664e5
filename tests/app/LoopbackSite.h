#pragma once

#include "tests/platform/web/Site.h"

namespace orvalo::testing {

/// The maker's site for tests of screens in the test program itself. Runs from before main(), which
/// needs the address, to the program's end.
Site& loopbackSite();

}  // namespace orvalo::testing
