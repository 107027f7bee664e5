#include "platform/ui/UIStoryboardReader.h"

#include <glib.h>

#include <memory>
#include <utility>

#include "platform/foundation/GLibPointer.h"
#include "platform/foundation/NSError.h"

namespace orvalo {

namespace {

std::string escaped(std::string_view text) {
    const GText result(g_markup_escape_text(text.data(), static_cast<gssize>(text.size())));
    return result.get();
}

std::string valueOf(const char* wanted, const char** names, const char** values) {
    for (; *names != nullptr; ++names, ++values) {
        if (std::string_view(*names) == wanted) {
            return *values;
        }
    }
    return "";
}

UIStoryboardReader& of(void* reader) {
    return *static_cast<UIStoryboardReader*>(reader);
}

constexpr GMarkupParser kParser{
    [](GMarkupParseContext*, const char* element, const char** names, const char** values,
       void* reader, GError**) { of(reader).begin(element, names, values); },
    [](GMarkupParseContext*, const char* element, void* reader, GError**) {
        of(reader).end(element);
    },
    [](GMarkupParseContext*, const char* text, gsize length, void* reader, GError**) {
        of(reader).take({text, length});
    },
    nullptr, nullptr};

}  // namespace

void UIStoryboardReader::read(std::string_view name, std::string_view text) {
    const std::unique_ptr<GMarkupParseContext, Release<g_markup_parse_context_free>> context(
        g_markup_parse_context_new(&kParser, GMarkupParseFlags{}, this, nullptr));
    GError* error = nullptr;
    const auto length = static_cast<gssize>(text.size());
    if (g_markup_parse_context_parse(context.get(), text.data(), length, &error) == FALSE ||
        g_markup_parse_context_end_parse(context.get(), &error) == FALSE) {
        const GErrorPointer held(error);
        throw NSError("UIStoryboardErrorDomain", held->code,
                      std::string(name) + ": " + held->message);
    }
}

void UIStoryboardReader::begin(std::string_view element, const char** names, const char** values) {
    if (element == "object") {
        ++depth_;
    }
    copyTag(element, names, values);
    if (element == "object") {
        beginObject(valueOf("class", names, values), valueOf("id", names, values));
    } else if (element == "signal" && kind_ == Kind::screen && depth_ > 0) {
        into_.screens_.back().actions.push_back(valueOf("handler", names, values));
    } else if (element == "property" && kind_ == Kind::segue && depth_ == 1) {
        property_ = property(valueOf("name", names, values));
    }
}

void UIStoryboardReader::copyTag(std::string_view element, const char** names,
                                 const char** values) {
    if (depth_ == 0) {
        return;
    }
    object_.append("<").append(element);
    for (; *names != nullptr; ++names, ++values) {
        object_.append(" ").append(*names).append("=\"").append(escaped(*values)).append("\"");
    }
    object_ += ">";
}

void UIStoryboardReader::beginObject(const std::string& type, const std::string& id) {
    if (depth_ == 1) {
        id_ = id;
        if (type == "UIStoryboardSegue") {
            kind_ = Kind::segue;
            into_.segues_.emplace_back();
        } else if (type == "GtkApplicationWindow") {
            kind_ = Kind::window;
            into_.window_ = id;
        } else {
            kind_ = Kind::screen;
            into_.screens_.push_back({id, {}, {}});
        }
    } else if (kind_ == Kind::screen && !id.empty() && !id.starts_with('_')) {
        into_.screens_.back().outlets.push_back(id);
    }
}

std::string* UIStoryboardReader::property(const std::string& name) {
    auto& segue = into_.segues_.back();
    if (name == "identifier") {
        return &segue.identifier;
    }
    if (name == "source") {
        return &segue.source;
    }
    if (name == "destination") {
        return &segue.destination;
    }
    if (name == "presentation") {
        return &segue.presentation;
    }
    return name == "trigger" ? &segue.trigger : nullptr;
}

void UIStoryboardReader::take(std::string_view text) {
    if (property_ != nullptr) {
        property_->append(text);
    }
    if (depth_ > 0) {
        object_ += escaped(text);
    }
}

void UIStoryboardReader::end(std::string_view element) {
    if (depth_ > 0) {
        object_.append("</").append(element).append(">");
    }
    if (element == "property") {
        property_ = nullptr;
    } else if (element == "object" && --depth_ == 0) {
        into_.objects_[id_] = "<interface>" + std::exchange(object_, {}) + "</interface>";
    }
}

}  // namespace orvalo
