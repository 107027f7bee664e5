#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "tests/interface/Effects.h"
#include "tests/interface/Pointer.h"
#include "tests/interface/Screen.h"
#include "tests/interface/StageWindow.h"

namespace orvalo::testing {

/// An interface in a window's stage.
class ViewFixture : public ::testing::Test {
  protected:
    static void SetUpTestSuite() { startToolkit(); }

    ViewFixture() : record_(interfaceRecord()) {
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
        return requestInterface(*unit_);
    }

    void embed(const std::string& name = "probe") {
        controller_ = request(name);
        ASSERT_NE(controller_, nullptr);
        window_->embed(*controller_);
    }

    void show() {
        window_->present();
        ASSERT_TRUE(waitFor([this] { return record_.exposures > 0; }));
    }

    bool fillsItsStage() {
        return waitFor([this] {
            const auto place = window_->place();
            return !place.isEmpty() && rectangleOf(record_.window) == place;
        });
    }

    void commit(zoo::Misdeed misdeed) {
        record_.misdeed = misdeed;
        ASSERT_TRUE(waitFor([this] { return record_.misdeed == zoo::Misdeed::none; }));
    }

    zoo::InterfaceRecord& record_;
    std::unique_ptr<StageWindow> window_;
    std::shared_ptr<LV2LocalAudioUnit> unit_;
    std::shared_ptr<UIViewController> controller_;
};

}  // namespace orvalo::testing
