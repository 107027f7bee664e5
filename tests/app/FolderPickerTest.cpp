#include <gmock/gmock.h>
#include <unistd.h>

#include "platform/foundation/URL.h"
#include "platform/ui/UIDocumentPickerViewController.h"
#include "tests/app/ScreenFixture.h"
#include "tests/testing/Desktop.h"

namespace orvalo::testing {

namespace {

using ::testing::HasSubstr;

class FolderPickerTest : public ScreenFixture {
  protected:
    std::shared_ptr<ViewController> screen =
        std::make_shared<ViewController>(std::nullopt, nullptr);
};

TEST_F(FolderPickerTest, APickedFolderPrintsTwoLines) {
    const CapturedOutput output;
    screen->documentPicker(nullptr, std::vector{URL::fileURLWithPath("/music/my loops"),
                                                URL::fileURLWithPath("/other")});
    EXPECT_EQ(output.lines(), (Lines{"documentPicker: [file:///music/my%20loops, file:///other]",
                                     "documentPicker (didPickDocumentsAt): /music/my loops"}));
}

TEST_F(FolderPickerTest, TheOperationForOneAddressPrintsOneLine) {
    const CapturedOutput output;
    screen->documentPicker(nullptr, URL::fileURLWithPath("/music"));
    EXPECT_EQ(output.lines(), Lines{"documentPicker (didPickDocumentAt): /music"});
}

TEST_F(FolderPickerTest, CancellingPrintsOneLine) {
    const CapturedOutput output;
    screen->documentPickerWasCancelled(nullptr);
    EXPECT_EQ(output.lines(), Lines{"The document picker was canceled."});
}

TEST_F(FolderPickerTest, AnEmptyListEndsTheProgramAfterItsLine) {
    EXPECT_DEATH(
        {
            dup2(STDERR_FILENO, STDOUT_FILENO);
            screen->documentPicker(nullptr, std::vector<URL>{});
        },
        HasSubstr("documentPicker: []\nFatal error: The document picker has picked nothing.\n"));
}

TEST_F(FolderPickerTest, OpensForOneFolderAndIsCancelledByEscape) {
    screen = showMainScreen();
    waitForKeyboard(true);
    const CapturedOutput output;
    screen->openFilePicker();
    const auto picker = std::dynamic_pointer_cast<UIDocumentPickerViewController>(
        screen->presentedViewController());
    ASSERT_NE(picker, nullptr);
    EXPECT_EQ(picker->delegate(), screen);
    EXPECT_FALSE(picker->allowsMultipleSelection);
    waitForKeyboard(false);
    act({"key", "Escape"});
    ASSERT_TRUE(waitUntil([&output] { return !output.lines().empty(); }));
    serveMainQueue();
    EXPECT_EQ(output.lines(), Lines{"The document picker was canceled."});
    EXPECT_EQ(screen->presentedViewController(), nullptr);
}

}  // namespace

}  // namespace orvalo::testing
