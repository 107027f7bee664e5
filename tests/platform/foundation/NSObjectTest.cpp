#include "platform/foundation/NSObject.h"

#include <gtest/gtest.h>

#include <memory>

namespace orvalo {
namespace {

class Thing : public NSObject {
  public:
    std::shared_ptr<Thing> strongSelf() { return shared(this); }
    std::weak_ptr<Thing> weakSelf() { return weak(this); }
};

TEST(NSObject, SharesItselfAsItsOwnClass) {
    auto thing = std::make_shared<Thing>();
    auto again = thing->strongSelf();
    EXPECT_EQ(again, thing);
    EXPECT_EQ(thing.use_count(), 2);
}

TEST(NSObject, IsNotKeptAliveByWeakReferences) {
    auto thing = std::make_shared<Thing>();
    const auto weak = thing->weakSelf();
    EXPECT_EQ(thing.use_count(), 1);
    EXPECT_EQ(weak.lock(), thing);
    thing.reset();
    EXPECT_EQ(weak.lock(), nullptr);
}

}  // namespace
}  // namespace orvalo
