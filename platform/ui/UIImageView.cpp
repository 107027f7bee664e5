#include "platform/ui/UIImageView.h"

#include <gtk/gtk.h>

#include "platform/ui/MainThread.h"

namespace orvalo {

namespace {

GtkWidget* newPicture() {
    requireMainThread("UIImageView");
    return gtk_picture_new();
}

}  // namespace

UIImageView::UIImageView() : UIImageView(newPicture()) {}

UIImageView::UIImageView(GtkWidget* widget) : UIView(widget) {
    auto* shown = gtk_picture_get_paintable(GTK_PICTURE(widget));
    if (shown != nullptr && GDK_IS_TEXTURE(shown)) {
        image_ = std::make_shared<UIImage>(GDK_TEXTURE(shown));
    }
}

void UIImageView::registerClass() {
    UIView::setClass(GTK_TYPE_PICTURE,
                     [](GtkWidget* widget) { return std::make_shared<UIImageView>(widget); });
}

void UIImageView::setImage(const std::shared_ptr<UIImage>& image) {
    requireMainThread("UIImageView.image");
    image_ = image;
    gtk_picture_set_paintable(GTK_PICTURE(widget()),
                              image ? GDK_PAINTABLE(image->texture()) : nullptr);
}

}  // namespace orvalo
