#include <glib.h>

#include <algorithm>
#include <cmath>

#include "programs/defaults/format/Escaped.h"
#include "programs/defaults/format/FormatError.h"
#include "programs/defaults/format/ScalarText.h"
#include "programs/defaults/format/XMLForm.h"

namespace orvalo {

namespace {

constexpr auto kHead = R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
)";

/// XML 1.0, production 2: the characters that a document can have.
bool isCarried(gunichar character) {
    return character >= 0x20 ? character != 0xFFFE && character != 0xFFFF
                             : character == '\t' || character == '\n' || character == '\r';
}

/// Writes values behind what stands.
class Writer {
  public:
    explicit Writer(std::string& text) : text_(text) {}

    void operator()(bool value) { line(value ? "<true/>" : "<false/>"); }
    void operator()(std::int64_t value) { element("integer", std::to_string(value)); }
    void operator()(double value) {
        const auto* infinity = value < 0 ? "-infinity" : "+infinity";
        element("real", std::isinf(value) ? infinity : realText(value));
    }
    void operator()(const std::string& value) { element("string", escapedForXML(value)); }
    void operator()(const Data& value) { element("data", base64Text(value)); }
    void operator()(const PropertyList::Date& value) { element("date", dateText(value)); }
    void operator()(const PropertyList::List& list) {
        line("<array>");
        ++depth_;
        for (const auto& value : list) {
            std::visit(*this, value.value());
        }
        --depth_;
        line("</array>");
    }
    void operator()(const PropertyList::Dictionary& dictionary) {
        line("<dict>");
        ++depth_;
        for (const auto& [key, value] : dictionary) {
            key_ = &key;
            element("key", escapedForXML(key));
            std::visit(*this, value.value());
        }
        --depth_;
        line("</dict>");
    }

  private:
    void line(const std::string& content) {
        text_.append(depth_, '\t').append(content).append("\n");
    }
    void element(const std::string& name, const std::string& content) {
        line("<" + name + ">" + content + "</" + name + ">");
    }
    std::string escapedForXML(const std::string& text) const;

    std::string& text_;
    std::size_t depth_ = 0;
    const std::string* key_ = nullptr;
};

std::string Writer::escapedForXML(const std::string& text) const {
    const char* const end = text.c_str() + text.size();
    for (const char* at = text.c_str(); at < end; at = g_utf8_next_char(at)) {
        if (!isCarried(g_utf8_get_char(at))) {
            const std::string character(at, static_cast<const char*>(g_utf8_next_char(at)));
            throw FormatError(inQuotes(*key_) + ": XML cannot carry the character " +
                              inQuotes(character) + "; JSON can.");
        }
    }
    std::string result;
    for (const char character : text) {
        switch (character) {
            case '&':
                result += "&amp;";
                break;
            case '<':
                result += "&lt;";
                break;
            case '>':
                result += "&gt;";
                break;
            case '\r':
                // A reader would take a bare one for a line feed.
                result += "&#13;";
                break;
            default:
                result += character;
                break;
        }
    }
    return result;
}

}  // namespace

std::string xmlText(const PropertyList::Dictionary& domain) {
    std::string text = kHead;
    Writer writer(text);
    writer(domain);
    return text + "</plist>\n";
}

}  // namespace orvalo
