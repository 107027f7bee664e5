#include <glib.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <optional>

#include "platform/foundation/GLibPointer.h"
#include "programs/defaults/format/Escaped.h"
#include "programs/defaults/format/FormatError.h"
#include "programs/defaults/format/ScalarText.h"
#include "programs/defaults/format/ValueBuilder.h"
#include "programs/defaults/format/XMLForm.h"

namespace orvalo {

namespace {

constexpr std::string_view kBlanks = " \t\n";

bool isBlank(std::string_view text) {
    return text.find_first_not_of(kBlanks) == std::string_view::npos;
}

std::string_view trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(kBlanks);
    return first == std::string_view::npos
               ? std::string_view()
               : text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

/// The value of an element that holds text; absent when it is none.
std::optional<PropertyList> scalar(std::string_view element, const std::string& text) {
    if (element == "string") {
        return text;
    }
    if (element == "integer") {
        return integerValue(trimmed(text));
    }
    if (element == "real") {
        return realValue(trimmed(text));
    }
    if (element == "date") {
        return dateValue(trimmed(text));
    }
    if (element == "data") {
        return base64Value(text);
    }
    return isBlank(text) ? std::optional<PropertyList>(element == "true") : std::nullopt;
}

bool isScalar(std::string_view element) {
    constexpr std::array names{"string", "integer", "real", "date", "data", "true", "false", "key"};
    return std::ranges::find(names, element) != names.end();
}

/// Takes elements and texts in turn. Everything throws FormatError.
class Reader {
  public:
    void begin(std::string_view element);
    void end(std::string_view element);
    void text(std::string_view piece);
    PropertyList take() { return builder_.take(); }

  private:
    ValueBuilder builder_;
    enum class Where { before, inside, after } where_ = Where::before;  // the element plist
    std::optional<std::string> text_;  // of the scalar that is open
};

void Reader::begin(std::string_view element) {
    if (where_ != Where::inside) {
        if (element != "plist" || where_ == Where::after) {
            throw FormatError("<" + escaped(element) + "> stands outside of the element plist.");
        }
        where_ = Where::inside;
        return;
    }
    if (text_) {
        throw FormatError("<" + escaped(element) + "> stands in the text of another element.");
    }
    if (element == "dict") {
        builder_.beginDictionary();
    } else if (element == "array") {
        builder_.beginList();
    } else if (isScalar(element)) {
        text_.emplace();
    } else {
        throw FormatError("<" + escaped(element) + "> is no element of a property list.");
    }
}

void Reader::end(std::string_view element) {
    if (element == "dict" || element == "array") {
        builder_.end();
    } else if (element == "key") {
        builder_.key(*std::move(text_));
    } else if (element == "plist") {
        where_ = Where::after;
    } else {
        auto value = scalar(element, *text_);
        if (!value) {
            builder_.fail(inQuotes(*text_) + " is no value of <" + std::string(element) + ">.");
        }
        builder_.add(*std::move(value));
    }
    text_.reset();
}

void Reader::text(std::string_view piece) {
    if (text_) {
        text_->append(piece);
    } else if (!isBlank(piece)) {
        builder_.fail("the text " + inQuotes(trimmed(piece)) + " stands in no element of its own.");
    }
}

/// Calls the reader from C, which no exception may cross. Its trouble becomes GLib's.
template <typename Action>
void guarded(gpointer reader, GError** error, const Action& action) {
    try {
        action(*static_cast<Reader*>(reader));
    } catch (const FormatError& trouble) {
        g_set_error_literal(error, G_MARKUP_ERROR, G_MARKUP_ERROR_INVALID_CONTENT, trouble.what());
    }
}

constexpr GMarkupParser kCallbacks{
    .start_element =
        [](GMarkupParseContext*, const gchar* element, const gchar**, const gchar**,
           gpointer reader, GError** error) {
            guarded(reader, error, [element](Reader& to) { to.begin(element); });
        },
    .end_element =
        [](GMarkupParseContext*, const gchar* element, gpointer reader, GError** error) {
            guarded(reader, error, [element](Reader& to) { to.end(element); });
        },
    .text =
        [](GMarkupParseContext*, const gchar* text, gsize size, gpointer reader, GError** error) {
            guarded(reader, error, [text, size](Reader& to) { to.text({text, size}); });
        },
    .passthrough = nullptr,
    .error = nullptr};

/// XML 1.0, section 2.11: what ends a line is a line feed.
std::string withLineFeeds(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (std::size_t index = 0; index < text.size(); ++index) {
        if (text[index] != '\r') {
            result += text[index];
        } else if (index + 1 == text.size() || text[index + 1] != '\n') {
            result += '\n';
        }
    }
    return result;
}

/// GLib looks at one piece after the other, and goes on behind a bad one in CDATA.
void checkUTF8(const std::string& text) {
    const char* end = nullptr;
    if (g_utf8_validate_len(text.data(), text.size(), &end) == FALSE) {
        const auto line = 1 + std::count(text.data(), end, '\n');
        throw FormatError("line " + std::to_string(line) + ": it is not UTF-8 or holds a NUL.");
    }
}

/// What GLib says, in one line of a reasonable length, behind the line's number.
std::string message(GMarkupParseContext* context, const char* said) {
    int line = 0;
    int column = 0;
    g_markup_parse_context_get_position(context, &line, &column);
    // An element is told of when the character behind it is read, which may end the line.
    line -= line > 1 && column <= 1 ? 1 : 0;
    std::string_view text = said;
    // GLib names a place of its own in most messages: "Error on line 1 char 9: ...".
    if (const auto end = text.find(": ");
        text.starts_with("Error on line ") && end != std::string_view::npos) {
        text.remove_prefix(end + 2);
    }
    return "line " + std::to_string(line) + ": " + shortened(text);
}

}  // namespace

PropertyList::Dictionary xmlDomain(std::string_view text) {
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    const auto lines =
        withLineFeeds(text.substr(text.starts_with(kByteOrderMark) ? kByteOrderMark.size() : 0));
    checkUTF8(lines);
    Reader reader;
    const std::unique_ptr<GMarkupParseContext, Release<g_markup_parse_context_free>> context(
        g_markup_parse_context_new(&kCallbacks,
                                   static_cast<GMarkupParseFlags>(G_MARKUP_TREAT_CDATA_AS_TEXT),
                                   &reader, nullptr));
    GError* failure = nullptr;
    if (g_markup_parse_context_parse(context.get(), lines.data(), static_cast<gssize>(lines.size()),
                                     &failure) == FALSE ||
        g_markup_parse_context_end_parse(context.get(), &failure) == FALSE) {
        const std::unique_ptr<GError, Release<g_error_free>> error(failure);
        throw FormatError(message(context.get(), error->message));
    }
    const auto value = reader.take();
    const auto* entries = value.as<PropertyList::Dictionary>();
    if (entries == nullptr) {
        throw FormatError("it holds no dictionary of keys and values.");
    }
    return *entries;
}

}  // namespace orvalo
