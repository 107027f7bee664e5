#pragma once

namespace orvalo {

/// From now on the effect starts as it was when the application ended last, if it is the same
/// effect. The state is one file in the user's state folder. Call once, before UIApplicationMain().
void restoreEffect();

}  // namespace orvalo
