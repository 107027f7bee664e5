#include "tests/testing/Picture.h"

#include <gdk-pixbuf/gdk-pixbuf.h>

namespace orvalo::testing {

std::string pngFile(int width, int height) {
    auto* picture = gdk_pixbuf_new(GDK_COLORSPACE_RGB, FALSE, 8, width, height);
    gdk_pixbuf_fill(picture, 0x808080ff);
    char* bytes = nullptr;
    gsize size = 0;
    gdk_pixbuf_save_to_buffer(picture, &bytes, &size, "png", nullptr, nullptr);
    std::string file(bytes, size);
    g_free(bytes);
    g_object_unref(picture);
    return file;
}

}  // namespace orvalo::testing
