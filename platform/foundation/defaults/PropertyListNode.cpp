#include "platform/foundation/defaults/PropertyListNode.h"

#include <glib.h>

#include <array>
#include <bit>
#include <cstdlib>
#include <cstring>

#include "platform/foundation/NSError.h"
#include "platform/foundation/defaults/PropertyListDate.h"
#include "platform/foundation/defaults/PropertyListError.h"

namespace orvalo {

namespace {

using Text = std::unique_ptr<char, Release<std::free>>;

void checkDepth(int depth) {
    if (depth > kMostPropertyListDepth) {
        throw propertyListError("it is nested too deeply");
    }
}

/// For libplist, a text ends at its first NUL.
const std::string& checkedText(const std::string& text) {
    if (g_utf8_validate_len(text.data(), text.size(), nullptr) == FALSE) {
        throw propertyListError("a text in it is not UTF-8 or holds a NUL");
    }
    return text;
}

// libplist's own functions take and give a date as 32 bits of seconds; its binary form has all of
// it.

/// The binary form of a date alone, at which libplist puts the seconds behind the value's first
/// byte.
constexpr std::array<std::uint8_t, 50> kBinaryDate{
    'b',  'p', 'l', 'i', 's', 't', '0', '0',     //
    0x33, 0,   0,   0,   0,   0,   0,   0,   0,  // A date of 2^3 bytes.
    8,                                           // Where it stands: the table of one place.
    0,    0,   0,   0,   0,   0,   1,   1,       // Bytes of a place and of a reference.
    0,    0,   0,   0,   0,   0,   0,   1,       // Values in all.
    0,    0,   0,   0,   0,   0,   0,   0,       // The outermost of them.
    0,    0,   0,   0,   0,   0,   0,   17};     // Where the table stands.
constexpr std::size_t kSecondsAt = 9;

PropertyListNode dateNode(PropertyList::Date date) {
    const double seconds = secondsOf(date);
    if (dateOf(seconds) != date) {
        throw propertyListError("a date in it is out of range");
    }
    auto bytes = kBinaryDate;
    const auto bits = GUINT64_TO_BE(std::bit_cast<std::uint64_t>(seconds));
    std::memcpy(&bytes[kSecondsAt], &bits, sizeof bits);
    plist_t node = nullptr;
    plist_from_bin(reinterpret_cast<const char*>(bytes.data()), bytes.size(), &node);
    return PropertyListNode(node);
}

class NodeMaker {
  public:
    /// room: how many more values there may be.
    NodeMaker(int depth, std::size_t& room) : depth_(depth), room_(room) {}

    PropertyListNode operator()(bool value) const {
        return PropertyListNode(plist_new_bool(value ? 1 : 0));
    }
    PropertyListNode operator()(std::int64_t value) const {
        // Written and read as signed, whatever libplist calls it.
        return PropertyListNode(plist_new_uint(static_cast<std::uint64_t>(value)));
    }
    PropertyListNode operator()(double value) const {
        return PropertyListNode(plist_new_real(value));
    }
    PropertyListNode operator()(const std::string& value) const {
        return PropertyListNode(plist_new_string(checkedText(value).c_str()));
    }
    PropertyListNode operator()(const Data& value) const {
        return PropertyListNode(
            plist_new_data(reinterpret_cast<const char*>(value.data()), value.size()));
    }
    PropertyListNode operator()(PropertyList::Date value) const { return dateNode(value); }
    PropertyListNode operator()(const PropertyList::List& list) const {
        enter(list.size());
        PropertyListNode node(plist_new_array());
        for (const auto& element : list) {
            plist_array_append_item(node.get(), inner(element).release());
        }
        return node;
    }
    PropertyListNode operator()(const PropertyList::Dictionary& dictionary) const {
        enter(2 * dictionary.size());
        PropertyListNode node(plist_new_dict());
        for (const auto& [key, element] : dictionary) {
            const auto& name = checkedText(key);
            plist_dict_set_item(node.get(), name.c_str(), inner(element).release());
        }
        return node;
    }

  private:
    void enter(std::size_t elements) const {
        checkDepth(depth_ + 1);
        if (elements > room_) {
            throw propertyListError("it stands for more than a million values");
        }
        room_ -= elements;
    }
    PropertyListNode inner(const PropertyList& element) const {
        return std::visit(NodeMaker(depth_ + 1, room_), element.value());
    }

    int depth_;
    std::size_t& room_;
};

PropertyList integerOf(plist_t node) {
    std::uint64_t value = 0;
    plist_get_uint_val(node, &value);
    // libplist gives a number above 64 signed bits the same bits as a negative one; they differ
    // when compared.
    const PropertyListNode same(plist_new_uint(value));
    if (plist_compare_node_value(node, same.get()) == 0) {
        throw propertyListError("an integer in it has more than 64 bits");
    }
    return static_cast<std::int64_t>(value);
}

PropertyList dateValue(plist_t node) {
    char* binary = nullptr;
    std::uint32_t size = 0;
    plist_to_bin(node, &binary, &size);
    const std::unique_ptr<char, Release<plist_to_bin_free>> owner(binary);
    std::uint64_t bits = 0;
    std::memcpy(&bits, binary + kSecondsAt, sizeof bits);
    const auto date = dateOf(std::bit_cast<double>(GUINT64_FROM_BE(bits)));
    if (!date) {
        throw propertyListError("a date in it is out of range");
    }
    return *date;
}

PropertyList value(plist_t node, int depth);

PropertyList listOf(plist_t node, int depth) {
    checkDepth(depth);
    PropertyList::List list;
    plist_array_iter iterator = nullptr;
    plist_array_new_iter(node, &iterator);
    const Text owner(static_cast<char*>(iterator));
    for (;;) {
        plist_t element = nullptr;
        plist_array_next_item(node, iterator, &element);
        if (element == nullptr) {
            return list;
        }
        list.push_back(value(element, depth));
    }
}

PropertyList dictionaryOf(plist_t node, int depth) {
    checkDepth(depth);
    PropertyList::Dictionary dictionary;
    plist_dict_iter iterator = nullptr;
    plist_dict_new_iter(node, &iterator);
    const Text owner(static_cast<char*>(iterator));
    for (;;) {
        char* name = nullptr;
        plist_t element = nullptr;
        plist_dict_next_item(node, iterator, &name, &element);
        const Text key(name);
        if (element == nullptr) {
            return dictionary;
        }
        dictionary.insert_or_assign(checkedText(key ? key.get() : std::string()),
                                    value(element, depth));
    }
}

PropertyList value(plist_t node, int depth) {
    switch (plist_get_node_type(node)) {
        case PLIST_BOOLEAN: {
            std::uint8_t truth = 0;
            plist_get_bool_val(node, &truth);
            return truth != 0;
        }
        case PLIST_UINT:
            return integerOf(node);
        case PLIST_REAL: {
            double number = 0;
            plist_get_real_val(node, &number);
            return number;
        }
        case PLIST_STRING: {
            std::uint64_t size = 0;
            const char* text = plist_get_string_ptr(node, &size);
            return checkedText(text == nullptr ? "" : std::string(text, size));
        }
        case PLIST_DATA: {
            std::uint64_t size = 0;
            const auto* bytes =
                reinterpret_cast<const std::uint8_t*>(plist_get_data_ptr(node, &size));
            return bytes == nullptr ? Data() : Data(bytes, bytes + size);
        }
        case PLIST_DATE:
            return dateValue(node);
        case PLIST_ARRAY:
            return listOf(node, depth + 1);
        case PLIST_DICT:
            return dictionaryOf(node, depth + 1);
        default:
            throw propertyListError("it is none of a property list's kinds");
    }
}

}  // namespace

PropertyListNode nodeOf(const PropertyList& value) {
    std::size_t room = kMostPropertyListValues - 1;
    return std::visit(NodeMaker(0, room), value.value());
}

PropertyList valueOf(plist_t node) {
    return value(node, 0);
}

}  // namespace orvalo
