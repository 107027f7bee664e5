#pragma once

#include <memory>
#include <string>

namespace orvalo {

class UIImageView;

/// Shows the picture at an address (http, https, file) in the view. Blocks the main queue while it
/// loads; does not keep the view alive. Prints with debugprint() "UIImageView::loadFrom() : Could
/// not encode url string : " + URLAddress for a text that is no address, "UIImageView::loadFrom() :
/// Could not encode image data." when it cannot be read, and else always "UIImageView::loadFrom() :
/// Could not assign image.". Any thread.
void loadFrom(const std::shared_ptr<UIImageView>& imageView, const std::string& URLAddress);

/// Shows the picture at an address (http, https, file) in the view when it is loaded; returns at
/// once. Keeps the view alive until then. Content that is no picture clears the view, whatever the
/// server's status. Prints "Fetched image successfully" for status 200 and the error's description
/// when the address cannot be loaded; nothing for a text that is no address. Any thread.
void getImageFromURLString(const std::shared_ptr<UIImageView>& imageView,
                           const std::string& imageURLString);

}  // namespace orvalo
