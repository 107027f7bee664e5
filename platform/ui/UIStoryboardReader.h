#pragma once

#include <string>
#include <string_view>

#include "platform/ui/UIStoryboard.h"

namespace orvalo {

/// Reads the screens, segues and the window of a layout, and the text of each. With the text of a
/// single object, the toolkit needs no classes of the other objects to create it.
class UIStoryboardReader {
  public:
    explicit UIStoryboardReader(UIStoryboard& into) : into_(into) {}

    /// Throws NSError, naming the layout, for text that is not well-formed.
    void read(std::string_view name, std::string_view text);

    // Called by the parser, in the order of the text.
    void begin(std::string_view element, const char** names, const char** values);
    void take(std::string_view text);
    void end(std::string_view element);

  private:
    enum class Kind { screen, segue, window };

    void copyTag(std::string_view element, const char** names, const char** values);
    void beginObject(const std::string& type, const std::string& id);
    std::string* property(const std::string& name);

    UIStoryboard& into_;
    std::size_t depth_ = 0;  // Of nested objects.
    Kind kind_ = Kind::screen;
    std::string id_;                   // Of the current top-level object.
    std::string object_;               // Its text so far.
    std::string* property_ = nullptr;  // The current property of a segue.
};

}  // namespace orvalo
