#include "platform/foundation/defaults/PropertyList.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>

#include "platform/foundation/defaults/PropertyListDate.h"

namespace orvalo {

namespace {

constexpr std::size_t kIndent = 4;

bool isPlain(char character) {
    return (character >= '0' && character <= '9') || (character >= 'A' && character <= 'Z') ||
           (character >= 'a' && character <= 'z') ||
           std::string_view("_$/:.").find(character) != std::string_view::npos;
}

std::string quoted(const std::string& text) {
    if (!text.empty() && std::ranges::all_of(text, isPlain)) {
        return text;
    }
    std::string result = "\"";
    for (const char character : text) {
        if (character == '"' || character == '\\') {
            result += '\\';
        }
        result += character;
    }
    return result + "\"";
}

template <typename Float>
std::string shortest(Float number) {
    std::array<char, 32> digits{};
    auto* const end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    return {digits.data(), end};
}

std::string textOf(double number) {
    // A number out of a float's range becomes infinite.
    const auto narrow = static_cast<float>(number);
    return narrow == number ? shortest(narrow) : shortest(number);
}

std::string textOf(const Data& data) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string result = "{length = " + std::to_string(data.size()) + ", bytes = 0x";
    for (const auto byte : data) {
        result += digits[byte >> 4U];
        result += digits[byte & 0xFU];
    }
    return result + "}";
}

std::string textOf(PropertyList::Date date) {
    const auto dateTime = dateTimeOf(date);
    if (!dateTime) {
        return "a date outside the years 1 to 9999";
    }
    // Unlike %Y, %C%y always has four digits.
    return GText(g_date_time_format(dateTime.get(), "%C%y-%m-%d %H:%M:%S +0000")).get();
}

/// Appends a value to the text; depth: how many lists and dictionaries it lies in.
class Describer {
  public:
    Describer(std::string& text, std::size_t depth) : text_(text), depth_(depth) {}

    void operator()(bool value) const { text_ += value ? '1' : '0'; }
    void operator()(std::int64_t value) const { text_ += std::to_string(value); }
    void operator()(const std::string& value) const {
        text_ += depth_ == 0 ? value : quoted(value);
    }
    void operator()(const PropertyList::Date& value) const {
        text_ += depth_ == 0 ? textOf(value) : quoted(textOf(value));
    }
    void operator()(const PropertyList::List& list) const {
        text_ += "(\n";
        for (const auto& element : list) {
            indent(depth_ + 1);
            std::visit(Describer(text_, depth_ + 1), element.value());
            text_ += &element == &list.back() ? "\n" : ",\n";
        }
        indent(depth_);
        text_ += ')';
    }
    void operator()(const PropertyList::Dictionary& dictionary) const {
        text_ += "{\n";
        for (const auto& [key, element] : dictionary) {
            indent(depth_ + 1);
            text_ += quoted(key) + " = ";
            std::visit(Describer(text_, depth_ + 1), element.value());
            text_ += ";\n";
        }
        indent(depth_);
        text_ += '}';
    }
    template <typename Other>
    void operator()(const Other& value) const {
        text_ += textOf(value);
    }

  private:
    void indent(std::size_t depth) const { text_.append(depth * kIndent, ' '); }

    std::string& text_;
    std::size_t depth_;
};

}  // namespace

std::string description(const PropertyList& value) {
    std::string text;
    std::visit(Describer(text, 0), value.value());
    return text;
}

}  // namespace orvalo
