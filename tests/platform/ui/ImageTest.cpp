#include <gdk-pixbuf/gdk-pixbuf.h>
#include <gtest/gtest.h>

#include <string>
#include <thread>

#include "platform/ui/UIImage.h"
#include "tests/testing/Picture.h"

namespace orvalo::testing {
namespace {

std::shared_ptr<UIImage> imageOf(const std::string& bytes) {
    return UIImage::data(Data(bytes.begin(), bytes.end()));
}

std::string fileOfKind(const char* kind) {
    auto* picture = gdk_pixbuf_new(GDK_COLORSPACE_RGB, FALSE, 8, 6, 4);
    gdk_pixbuf_fill(picture, 0x204060ff);
    char* bytes = nullptr;
    gsize size = 0;
    EXPECT_TRUE(gdk_pixbuf_save_to_buffer(picture, &bytes, &size, kind, nullptr, nullptr));
    std::string file(bytes, size);
    g_free(bytes);
    g_object_unref(picture);
    return file;
}

TEST(Image, IsReadFromAFilesBytes) {
    for (const auto* kind : {"png", "jpeg", "tiff", "bmp"}) {
        const auto image = imageOf(fileOfKind(kind));
        ASSERT_TRUE(image) << kind;
        EXPECT_EQ(image->size(), (CGSize{6, 4})) << kind;
    }
}

TEST(Image, IsAbsentForOtherBytes) {
    EXPECT_FALSE(imageOf(""));
    EXPECT_FALSE(imageOf("<html>no picture</html>"));
    EXPECT_FALSE(imageOf(std::string(1000, '\0')));
}

TEST(Image, IsAbsentForATruncatedPicture) {
    const auto whole = pngFile(64, 64);
    EXPECT_TRUE(imageOf(whole));
    EXPECT_FALSE(imageOf(whole.substr(0, whole.size() / 2)));
    EXPECT_FALSE(imageOf(whole.substr(0, 8)));
}

TEST(Image, IsReadOnAnyThread) {
    std::shared_ptr<UIImage> image;
    std::thread([&image] { image = imageOf(pngFile(3, 2)); }).join();
    ASSERT_TRUE(image);
    EXPECT_EQ(image->size(), (CGSize{3, 2}));
}

}  // namespace
}  // namespace orvalo::testing
