#include "platform/foundation/defaults/PropertyListCoding.h"

#include <glib.h>

#include <memory>
#include <string_view>

#include "platform/foundation/GLibPointer.h"
#include "platform/foundation/defaults/PropertyListDate.h"

namespace orvalo {

namespace {

using VariantPointer = std::unique_ptr<GVariant, Release<g_variant_unref>>;
using BuilderPointer = std::unique_ptr<GVariantBuilder, Release<g_variant_builder_unref>>;

constexpr std::size_t kMostBytes = std::size_t{16} << 20U;

VariantPointer owned(GVariant* value) {
    return VariantPointer(g_variant_ref_sink(value));
}

const char* checkedText(const std::string& text) {
    if (g_utf8_validate_len(text.data(), text.size(), nullptr) == FALSE) {
        throw propertyListError("a text in it is not UTF-8 or holds a NUL");
    }
    return text.c_str();
}

void checkDate(PropertyList::Date date) {
    if (!dateTimeOf(date)) {
        throw propertyListError("a date in it is outside the years 1 to 9999");
    }
}

void checkDepth(int depth) {
    if (depth > kMostPropertyListDepth) {
        throw propertyListError("it is nested too deeply");
    }
}

/// Makes the floating variant of a value; depth: how deep a list or dictionary would lie here, from
/// 1.
class Encoder {
  public:
    explicit Encoder(int depth) : depth_(depth) {}

    GVariant* operator()(bool value) const { return g_variant_new_boolean(value ? TRUE : FALSE); }
    GVariant* operator()(std::int64_t value) const { return g_variant_new_int64(value); }
    GVariant* operator()(double value) const { return g_variant_new_double(value); }
    GVariant* operator()(const std::string& value) const {
        return g_variant_new_string(checkedText(value));
    }
    GVariant* operator()(const Data& value) const {
        return g_variant_new_fixed_array(G_VARIANT_TYPE_BYTE, value.data(), value.size(), 1);
    }
    GVariant* operator()(PropertyList::Date value) const {
        checkDate(value);
        return g_variant_new("(x)", static_cast<gint64>(value.time_since_epoch().count()));
    }
    GVariant* operator()(const PropertyList::List& list) const {
        checkDepth(depth_);
        const BuilderPointer builder(g_variant_builder_new(G_VARIANT_TYPE("av")));
        for (const auto& element : list) {
            g_variant_builder_add(builder.get(), "v", inner(element));
        }
        return g_variant_builder_end(builder.get());
    }
    GVariant* operator()(const PropertyList::Dictionary& dictionary) const {
        checkDepth(depth_);
        const BuilderPointer builder(g_variant_builder_new(G_VARIANT_TYPE_VARDICT));
        for (const auto& [key, element] : dictionary) {
            const char* text = checkedText(key);
            g_variant_builder_add(builder.get(), "{sv}", text, inner(element));
        }
        return g_variant_builder_end(builder.get());
    }

  private:
    GVariant* inner(const PropertyList& element) const {
        return std::visit(Encoder(depth_ + 1), element.value());
    }

    int depth_;
};

PropertyList decoded(GVariant* value, int depth) {
    const std::string_view type = g_variant_get_type_string(value);
    if (type == "b") {
        return g_variant_get_boolean(value) != FALSE;
    }
    if (type == "x") {
        return g_variant_get_int64(value);
    }
    if (type == "d") {
        return g_variant_get_double(value);
    }
    if (type == "s") {
        return g_variant_get_string(value, nullptr);
    }
    gsize size = 0;
    if (type == "ay") {
        const auto* bytes =
            static_cast<const std::uint8_t*>(g_variant_get_fixed_array(value, &size, 1));
        return Data(bytes, bytes + size);
    }
    if (type == "(x)") {
        gint64 count = 0;
        g_variant_get(value, "(x)", &count);
        const PropertyList::Date date{std::chrono::microseconds(count)};
        checkDate(date);
        return date;
    }
    checkDepth(depth);
    size = type == "av" || type == "a{sv}" ? g_variant_n_children(value) : 0;
    if (type == "av") {
        PropertyList::List list;
        for (gsize index = 0; index < size; ++index) {
            const VariantPointer element(g_variant_get_child_value(value, index));
            const VariantPointer content(g_variant_get_variant(element.get()));
            list.push_back(decoded(content.get(), depth + 1));
        }
        return list;
    }
    if (type == "a{sv}") {
        PropertyList::Dictionary dictionary;
        for (gsize index = 0; index < size; ++index) {
            const char* key = nullptr;
            GVariant* element = nullptr;
            g_variant_get_child(value, index, "{&sv}", &key, &element);
            const VariantPointer content(element);
            dictionary.insert_or_assign(key, decoded(element, depth + 1));
        }
        return dictionary;
    }
    throw propertyListError("it is of a kind that settings do not have");
}

}  // namespace

NSError propertyListError(const std::string& reason) {
    constexpr int corrupt = 3840;  // NSPropertyListReadCorruptError
    return {"NSCocoaErrorDomain", corrupt, reason};
}

Data binaryPropertyList(const PropertyList& value) {
    const auto variant = owned(g_variant_new_variant(std::visit(Encoder(1), value.value())));
    const auto size = g_variant_get_size(variant.get());
    if (size > kMostBytes) {
        throw propertyListError("it is larger than 16 MB");
    }
    Data bytes(size);
    g_variant_store(variant.get(), bytes.data());
    return bytes;
}

PropertyList propertyList(std::span<const std::uint8_t> binary) {
    const auto variant = owned(g_variant_new_from_data(G_VARIANT_TYPE_VARIANT, binary.data(),
                                                       binary.size(), FALSE, nullptr, nullptr));
    if (g_variant_is_normal_form(variant.get()) == FALSE) {
        throw propertyListError("it is damaged");
    }
    const VariantPointer content(g_variant_get_variant(variant.get()));
    return decoded(content.get(), 1);
}

}  // namespace orvalo
