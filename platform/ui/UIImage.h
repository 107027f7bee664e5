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
    /// A picture from the bytes of a file: PNG, JPEG, TIFF and the other formats of gdk-pixbuf's
    /// loaders. Absent for other bytes.
    static std::shared_ptr<UIImage> data(const Data& data);

    /// Keeps the texture alive.
    explicit UIImage(GdkTexture* texture);
    ~UIImage() override;

    /// The size in points; one pixel is one point.
    CGSize size() const;
    GdkTexture* texture() const { return texture_; }

  private:
    GdkTexture* texture_;
};

}  // namespace orvalo
