#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "tests/platform/plugin-ui/view/StageWindow.h"
#include "tests/platform/plugin-ui/x11/Effects.h"
#include "tests/platform/plugin-ui/x11/Pointer.h"
#include "tests/platform/plugin-ui/x11/Screen.h"
#include "tests/testing/WaitUntil.h"

namespace orvalo::testing {

/// The UI of a test effect in a window's stage.
class ViewFixture : public ::testing::Test {
  protected:
    static void SetUpTestSuite() { startToolkit(); }

    ViewFixture() : record_(uiRecord()) {
        movePointer(1, 1);
        resetRecord();
        window_ = std::make_unique<StageWindow>();
    }

    ~ViewFixture() override {
        window_ = nullptr;
        controller_ = nullptr;
        EXPECT_EQ(record_.cleanups, record_.instantiations);
        EXPECT_FALSE(record_.wasMappedAtCleanup);
    }

    std::shared_ptr<UIViewController> request(const std::string& name) {
        unit_ = makeUnit(name);
        return requestPluginUI(*unit_);
    }

    void embed(const std::string& name = "probe") {
        controller_ = request(name);
        ASSERT_NE(controller_, nullptr);
        window_->embed(*controller_);
    }

    void show() {
        window_->present();
        ASSERT_TRUE(pollUntil([this] { return record_.exposures > 0; }));
    }

    bool fillsItsStage() {
        return pollUntil([this] {
            const auto place = window_->place();
            return !place.isEmpty() && rectangleOf(record_.window) == place;
        });
    }

    void commit(zoo::Misdeed misdeed) {
        record_.misdeed = misdeed;
        ASSERT_TRUE(pollUntil([this] { return record_.misdeed == zoo::Misdeed::none; }));
    }

    zoo::UIRecord& record_;
    std::unique_ptr<StageWindow> window_;
    std::shared_ptr<LV2LocalAudioUnit> unit_;
    std::shared_ptr<UIViewController> controller_;
};

}  // namespace orvalo::testing
