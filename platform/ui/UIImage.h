#pragma once

#include <memory>

#include "platform/foundation/CGRect.h"
#include "platform/foundation/Data.h"
#include "platform/foundation/NSObject.h"

using GdkTexture = struct _GdkTexture;  // NOLINT(bugprone-reserved-identifier): GDK's own.

namespace orvalo {

/// A picture. Immutable: any thread.
class UIImage : public NSObject {
  public:
    /// A picture from a file's bytes: PNG, JPEG, TIFF and whatever else gdk-pixbuf has a loader
    /// for. Absent when they are no picture.
    static std::shared_ptr<UIImage> data(const Data& data);

    /// Of a texture, which it keeps.
    explicit UIImage(GdkTexture* texture);
    ~UIImage() override;

    /// The extent in points, of which a pixel is one.
    CGSize size() const;
    GdkTexture* texture() const { return texture_; }

  private:
    GdkTexture* texture_;
};

}  // namespace orvalo
