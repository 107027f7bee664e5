#include "support/view/ImageLoading.h"

#include <cstdint>
#include <utility>
#include <variant>

#include "platform/foundation/DispatchQueue.h"
#include "platform/foundation/NSError.h"
#include "platform/foundation/Print.h"
#include "platform/foundation/URLRequest.h"
#include "platform/foundation/loading/ContentsOf.h"
#include "platform/foundation/loading/URLSession.h"
#include "platform/ui/UIImageView.h"
#include "support/Logging.h"

namespace orvalo {

namespace {

constexpr std::int64_t successStatus = 200;

void assignFrom(const URL& url, const std::weak_ptr<UIImageView>& imageView) {
    Data data;
    try {
        data = contentsOf(url);
    } catch (const NSError&) {
        debugprint("UIImageView::loadFrom() : Could not encode image data.");
        return;
    }
    const auto image = UIImage::data(data);
    const auto target = imageView.lock();
    if (image && target) {
        target->setImage(image);
    }
    // Also after a success: readers of the lines rely on it.
    debugprint("UIImageView::loadFrom() : Could not assign image.");
}

/// A reference whose last copy releases the view on the main thread, where views must be destroyed.
std::shared_ptr<UIImageView> heldForMain(const std::shared_ptr<UIImageView>& imageView) {
    return {imageView.get(), [view = imageView](UIImageView* /*held*/) mutable {
                DispatchQueue::main()->async([last = std::move(view)] {});
            }};
}

void requestImageFromURL(const URL& url, const std::shared_ptr<UIImageView>& imageView) {
    URLSession::shared()->data(URLRequest{.url = url}, [imageView](const URLResult& result) {
        if (const auto* error = std::get_if<NSError>(&result)) {
            print(error->description());
            return;
        }
        const auto& contents = std::get<URLContents>(result);
        const auto response = std::dynamic_pointer_cast<HTTPURLResponse>(contents.response);
        if (response && response->statusCode == successStatus) {
            print("Fetched image successfully");
        }
        DispatchQueue::main()->async(
            [imageView, image = UIImage::data(contents.data)] { imageView->setImage(image); });
    });
}

}  // namespace

void loadFrom(const std::shared_ptr<UIImageView>& imageView, const std::string& URLAddress) {
    const auto url = URL::string(URLAddress);
    if (!url) {
        debugprint("UIImageView::loadFrom() : Could not encode url string : " + URLAddress);
        return;
    }
    DispatchQueue::main()->async(
        [url = *url, weak = std::weak_ptr(imageView)] { assignFrom(url, weak); });
}

void getImageFromURLString(const std::shared_ptr<UIImageView>& imageView,
                           const std::string& imageURLString) {
    const auto url = URL::string(imageURLString);
    if (!url) {
        return;
    }
    DispatchQueue::global()->async(
        [url = *url, held = heldForMain(imageView)] { requestImageFromURL(url, held); });
}

}  // namespace orvalo
