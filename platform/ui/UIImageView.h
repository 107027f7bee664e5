#pragma once

#include <memory>

#include "platform/ui/UIImage.h"
#include "platform/ui/UIView.h"

namespace orvalo {

/// A view that shows a picture, scaled to fit. Main thread.
class UIImageView : public UIView {
  public:
    UIImageView();
    /// Over a GtkPicture, whose texture is the initial image.
    explicit UIImageView(GtkWidget* widget);

    /// Registers this class for the GtkPictures of layouts. Before a layout is loaded.
    static void registerClass();

    /// Absent when no picture is shown.
    const std::shared_ptr<UIImage>& image() const { return image_; }
    void setImage(const std::shared_ptr<UIImage>& image);

  private:
    std::shared_ptr<UIImage> image_;
};

}  // namespace orvalo
