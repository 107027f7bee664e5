#include "platform/ui/UIImage.h"

#include <gdk/gdk.h>

#include "platform/foundation/GLibPointer.h"

namespace orvalo {

std::shared_ptr<UIImage> UIImage::data(const Data& data) {
    const GBytesPointer bytes(g_bytes_new(data.data(), data.size()));
    const GObjectPointer<GdkTexture> texture(gdk_texture_new_from_bytes(bytes.get(), nullptr));
    return texture ? std::make_shared<UIImage>(texture.get()) : nullptr;
}

UIImage::UIImage(GdkTexture* texture) : texture_(static_cast<GdkTexture*>(g_object_ref(texture))) {}

UIImage::~UIImage() {
    g_object_unref(texture_);
}

CGSize UIImage::size() const {
    return {static_cast<double>(gdk_texture_get_width(texture_)),
            static_cast<double>(gdk_texture_get_height(texture_))};
}

}  // namespace orvalo
