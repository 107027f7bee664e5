#include "platform/foundation/URL.h"
#include "tests/app/ScreenFixture.h"

namespace orvalo::testing {

namespace {

class FolderPickerTest : public ScreenFixture {
  protected:
    std::shared_ptr<ViewController> screen =
        std::make_shared<ViewController>(std::nullopt, nullptr);
};

TEST_F(FolderPickerTest, APickedFolderIsTwoLines) {
    const CapturedOutput output;
    screen->documentPicker(nullptr, std::vector{URL::fileURLWithPath("/music/my loops"),
                                                URL::fileURLWithPath("/other")});
    EXPECT_EQ(output.lines(), (Lines{"documentPicker: [file:///music/my%20loops, file:///other]",
                                     "documentPicker (didPickDocumentsAt): /music/my loops"}));
}

TEST_F(FolderPickerTest, TheOlderFormIsOneLine) {
    const CapturedOutput output;
    screen->documentPicker(nullptr, URL::fileURLWithPath("/music"));
    EXPECT_EQ(output.lines(), Lines{"documentPicker (didPickDocumentAt): /music"});
}

TEST_F(FolderPickerTest, CancellingIsOneLine) {
    const CapturedOutput output;
    screen->documentPickerWasCancelled(nullptr);
    EXPECT_EQ(output.lines(), Lines{"The document picker was canceled."});
}

TEST_F(FolderPickerTest, NothingPickedEndsTheProgram) {
    EXPECT_DEATH(screen->documentPicker(nullptr, std::vector<URL>{}),
                 "Fatal error: The document picker has picked nothing.");
}

}  // namespace

}  // namespace orvalo::testing
