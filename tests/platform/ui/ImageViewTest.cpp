#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include <thread>

#include "platform/ui/UIImageView.h"
#include "tests/testing/Desktop.h"
#include "tests/testing/Picture.h"

namespace orvalo::testing {
namespace {

class ImageView : public ::testing::Test {
  protected:
    ImageView() { startDesktop(); }

    static std::shared_ptr<UIImage> picture(int width, int height) {
        const auto file = pngFile(width, height);
        return UIImage::data(Data(file.begin(), file.end()));
    }
};

TEST_F(ImageView, ShowsItsImage) {
    UIImageView view;
    EXPECT_EQ(view.image(), nullptr);
    const auto image = picture(5, 3);
    view.setImage(image);
    EXPECT_EQ(view.image(), image);
    auto* shown = gtk_picture_get_paintable(GTK_PICTURE(view.widget()));
    EXPECT_EQ(shown, GDK_PAINTABLE(image->texture()));
    EXPECT_EQ(gdk_paintable_get_intrinsic_width(shown), 5);
    view.setImage(nullptr);
    EXPECT_EQ(view.image(), nullptr);
    EXPECT_EQ(gtk_picture_get_paintable(GTK_PICTURE(view.widget())), nullptr);
}

TEST_F(ImageView, IsTheClassOfPicturesInLayouts) {
    UIImageView::registerClass();
    auto* widget = gtk_picture_new_for_paintable(GDK_PAINTABLE(picture(7, 2)->texture()));
    const auto view = std::dynamic_pointer_cast<UIImageView>(UIView::of(widget));
    ASSERT_TRUE(view);
    ASSERT_TRUE(view->image());
    EXPECT_EQ(view->image()->size(), (CGSize{7, 2}));
}

using ImageViewDeathTest = ImageView;

TEST_F(ImageViewDeathTest, IsForTheMainThread) {
    EXPECT_EXIT(std::thread([] { const UIImageView view; }).join(),
                ::testing::KilledBySignal(SIGABRT), "Fatal error: .*UIImageView");
    EXPECT_EXIT(
        {
            UIImageView view;
            std::thread([&view] { view.setImage(nullptr); }).join();
        },
        ::testing::KilledBySignal(SIGABRT), "Fatal error: .*UIImageView\\.image");
}

}  // namespace
}  // namespace orvalo::testing
