#pragma once

#include <memory>
#include <string>

namespace orvalo {

class UIImageView;

/// Shows the picture at an address (http, https, file) in the view, from the main queue, which
/// waits while it is read; the view is not kept alive meanwhile. Lines through debugprint():
/// "UIImageView::loadFrom() : Could not encode url string : " + URLAddress for a text that is no
/// address, "UIImageView::loadFrom() : Could not encode image data." when it cannot be read, and
/// "UIImageView::loadFrom() : Could not assign image." whenever it could, shown or not. Any thread.
void loadFrom(const std::shared_ptr<UIImageView>& imageView, const std::string& URLAddress);

/// Shows the picture at an address (http, https, file) in the view, which is kept alive meanwhile,
/// and returns at once. What is no picture clears the view, whatever the server's status. Lines
/// through print(): "Fetched image successfully" for the status 200, the error's description when
/// the address could not be loaded; none for a text that is no address. Any thread.
void getImageFromURLString(const std::shared_ptr<UIImageView>& imageView,
                           const std::string& imageURLString);

}  // namespace orvalo
