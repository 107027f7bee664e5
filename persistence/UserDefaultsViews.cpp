#include "persistence/UserDefaultsViews.h"

#include "support/FileLocations.h"
#include "support/Unwrapped.h"

namespace orvalo {

std::shared_ptr<UserDefaults> UserDefaultsViews::shared() {
    auto store = UserDefaults::suiteName(sharedContainer);
    unwrapped(store);
    return store;
}

std::shared_ptr<UserDefaults> UserDefaultsViews::combined() {
    const auto& store = UserDefaults::standard();
    store->addSuiteNamed(sharedContainer);
    return store;
}

}  // namespace orvalo
