#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <utility>
#include <vector>

#include "platform/foundation/FileManager.h"
#include "platform/foundation/RunLoop.h"
#include "platform/ui/UIDocumentPickerViewController.h"
#include "tests/platform/ui/PresenterFixture.h"
#include "tests/testing/TemporaryFolder.h"

namespace orvalo::testing {
namespace {

using Picker = std::shared_ptr<UIDocumentPickerViewController>;

/// Records its calls.
class Listener : public UIDocumentPickerDelegate {
  public:
    explicit Listener(std::shared_ptr<UIViewController> screen) : screen_(std::move(screen)) {}

    void documentPicker(const Picker& /*controller*/,
                        const std::vector<URL>& didPickDocumentsAt) override {
        note("list");
        for (const auto& url : didPickDocumentsAt) {
            heard.push_back(url.path());
        }
    }
    void documentPicker(const Picker& /*controller*/, const URL& /*didPickDocumentAt*/) override {
        note("single");
    }
    void documentPickerWasCancelled(const Picker& /*controller*/) override { note("cancelled"); }

    std::vector<std::string> heard;

  private:
    void note(const std::string& what) {
        EXPECT_TRUE(RunLoop::isMainThread());
        EXPECT_EQ(screen_->presentedViewController(), nullptr);
        heard.push_back(what);
    }

    std::shared_ptr<UIViewController> screen_;
};

/// Overrides only the operation for one address.
class OlderListener : public UIDocumentPickerDelegate {
  public:
    using UIDocumentPickerDelegate::documentPicker;
    void documentPicker(const Picker& /*controller*/, const URL& didPickDocumentAt) override {
        heard.push_back(didPickDocumentAt.path());
    }
    std::vector<std::string> heard;
};

class DocumentPicker : public PresenterFixture {
  protected:
    DocumentPicker() {
        std::filesystem::create_directories(folder.path() / "one");
        std::filesystem::create_directories(folder.path() / "two");
        std::ofstream(folder.path() / "file.m4a") << "no folder";
    }

    static Picker picker(const std::weak_ptr<UIDocumentPickerDelegate>& delegate) {
        auto made = std::make_shared<UIDocumentPickerViewController>(
            std::vector<std::string>{"public.folder"}, UIDocumentPickerMode::open);
        made->setDelegate(delegate);
        return made;
    }

    /// Types a path into the chooser's entry.
    static void type(const std::string& path) { act({"type", "--delay", "20", path}); }

    TemporaryFolder folder;
    std::shared_ptr<Listener> listener = std::make_shared<Listener>(screen);
};

using Heard = std::vector<std::string>;

TEST_F(DocumentPicker, IsModalAndOffersFoldersOnly) {
    show(picker(listener));
    auto* chooser = GTK_FILE_CHOOSER(dialogWindow());
    EXPECT_EQ(gtk_file_chooser_get_action(chooser), GTK_FILE_CHOOSER_ACTION_SELECT_FOLDER);
    EXPECT_FALSE(gtk_file_chooser_get_select_multiple(chooser));
    EXPECT_TRUE(gtk_window_get_modal(dialogWindow()));
    EXPECT_EQ(gtk_window_get_transient_for(dialogWindow()), GTK_WINDOW(window->widget()));
    act({"key", "Escape"});
    EXPECT_TRUE(waitUntil([this] { return !listener->heard.empty(); }));
}

TEST_F(DocumentPicker, PassesThePickedFolder) {
    const auto path = (folder.path() / "one").string();
    show(picker(listener));
    type(path);
    act({"key", "Return"});
    ASSERT_TRUE(waitUntil([this] { return !listener->heard.empty(); }));
    EXPECT_EQ(listener->heard, (Heard{"list", path}));
    EXPECT_EQ(dialogWindow(), nullptr);
}

TEST_F(DocumentPicker, StartsInTheUsersDocuments) {
    const auto documents = FileManager::default_().urls(SearchPathDirectory::documentDirectory,
                                                        SearchPathDomainMask::userDomainMask);
    show(picker(listener));
    click("Choose");
    ASSERT_TRUE(waitUntil([this] { return !listener->heard.empty(); }));
    EXPECT_EQ(listener->heard, (Heard{"list", documents.front().path()}));
}

TEST_F(DocumentPicker, IsCancelledByEscape) {
    show(picker(listener));
    act({"key", "Escape"});
    ASSERT_TRUE(waitUntil([this] { return !listener->heard.empty(); }));
    EXPECT_EQ(listener->heard, Heard{"cancelled"});
    EXPECT_EQ(dialogWindow(), nullptr);
}

TEST_F(DocumentPicker, IsCancelledByItsButtonAndByClosing) {
    show(picker(listener));
    click("Cancel");
    ASSERT_TRUE(waitUntil([this] { return !listener->heard.empty(); }));
    show(picker(listener));
    act({"key", "alt+F4"});
    ASSERT_TRUE(waitUntil([this] { return listener->heard.size() >= 2; }));
    EXPECT_EQ(listener->heard, (Heard{"cancelled", "cancelled"}));
}

TEST_F(DocumentPicker, DoesNotPickAFile) {
    show(picker(listener));
    type((folder.path() / "file.m4a").string());
    act({"key", "Return", "key", "alt+F4"});
    ASSERT_TRUE(waitUntil([this] { return !listener->heard.empty(); }));
    EXPECT_EQ(listener->heard, Heard{"cancelled"});
}

TEST_F(DocumentPicker, PassesASingleAddressByDefault) {
    const auto older = std::make_shared<OlderListener>();
    const auto path = (folder.path() / "one").string();
    show(picker(older));
    type(path);
    act({"key", "Return"});
    ASSERT_TRUE(waitUntil([&older] { return !older->heard.empty(); }));
    EXPECT_EQ(older->heard, Heard{path});
}

TEST_F(DocumentPicker, DoesNotKeepItsDelegateAlive) {
    const auto made = picker(listener);
    EXPECT_EQ(made->delegate(), listener);
    show(made);
    listener.reset();
    EXPECT_EQ(made->delegate(), nullptr);
    act({"key", "Escape"});
    EXPECT_TRUE(waitUntil([this] { return !screen->presentedViewController(); }));
}

TEST_F(DocumentPicker, OffersSeveralFoldersWhenAllowed) {
    const auto made = picker(listener);
    made->allowsMultipleSelection = true;
    show(made);
    EXPECT_TRUE(gtk_file_chooser_get_select_multiple(GTK_FILE_CHOOSER(dialogWindow())));
    act({"key", "Escape"});
    EXPECT_TRUE(waitUntil([this] { return !listener->heard.empty(); }));
}

TEST_F(DocumentPicker, CallsNothingWhenItIsDismissed) {
    show(picker(listener));
    bool isGone = false;
    screen->dismiss(true, [&isGone] { isGone = true; });
    EXPECT_TRUE(waitUntil([&isGone] { return isGone; }));
    EXPECT_EQ(dialogWindow(), nullptr);
    EXPECT_EQ(listener->heard, Heard{});
}

TEST(DocumentPickerDeathTest, RefusesOtherTypes) {
    const auto make = [](const std::vector<std::string>& types) {
        const UIDocumentPickerViewController picker(types, UIDocumentPickerMode::open);
    };
    EXPECT_EXIT(make({"public.folder", "public.audio"}), ::testing::KilledBySignal(SIGABRT),
                "Fatal error: Document pickers do not support the type \"public.audio\"\\.");
    EXPECT_EXIT(make({}), ::testing::KilledBySignal(SIGABRT),
                "Fatal error: A document picker needs a document type\\.");
}

}  // namespace
}  // namespace orvalo::testing
