#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/ui/UIStoryboard.h"

namespace orvalo {

/// Reads from a layout's text which screens, segues and window it has, what each screen names, and
/// the text of each, so that one can be made without the toolkit's knowing the classes of others.
class UIStoryboardReader {
  public:
    explicit UIStoryboardReader(UIStoryboard& into) : into_(into) {}

    /// Throws NSError, naming the layout, for a text that is not well-formed.
    void read(std::string_view name, std::string_view text);

    // What the parser finds, in the order of the text.
    void begin(std::string_view element, const char** names, const char** values);
    void take(std::string_view text);
    void end(std::string_view element);

  private:
    enum class Kind { screen, segue, window };

    void copyTag(std::string_view element, const char** names, const char** values);
    void beginObject(const std::string& type, const std::string& id);
    std::string* property(const std::string& name);

    UIStoryboard& into_;
    std::size_t depth_ = 0;  // Of the objects around.
    Kind kind_ = Kind::screen;
    std::string id_;                   // Of the object at the top that is read,
    std::string object_;               // and its text.
    std::string* property_ = nullptr;  // The segue's property whose text comes.
};

}  // namespace orvalo
