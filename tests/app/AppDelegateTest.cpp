#include "app/AppDelegate.h"

#include "platform/ui/UIApplication.h"
#include "tests/app/ScreenFixture.h"

namespace orvalo::testing {

namespace {

using AppDelegateTest = ScreenFixture;

TEST_F(AppDelegateTest, AgreesToTheStartAndDoesNothing) {
    AppDelegate delegate;
    const auto& application = UIApplication::shared();
    const CapturedOutput output;
    EXPECT_TRUE(delegate.application(application, {}));
    delegate.applicationDidBecomeActive(application);
    delegate.applicationWillResignActive(application);
    delegate.applicationDidEnterBackground(application);
    delegate.applicationWillEnterForeground(application);
    delegate.applicationWillTerminate(application);
    EXPECT_EQ(delegate.window, nullptr);
    EXPECT_EQ(output.lines(), Lines{});
}

}  // namespace

}  // namespace orvalo::testing
