#include "programs/defaults/format/ValueBuilder.h"

#include "programs/defaults/format/Escaped.h"
#include "programs/defaults/format/FormatError.h"

namespace orvalo {

namespace {

// Twice what the store takes, as a form of one key can stand around each dictionary, in the domain.
constexpr std::size_t kMostDepth = 1 + 2 * 128;

// Beyond it a message would say nothing more.
constexpr std::size_t kMostPlaces = 6;

}  // namespace

void ValueBuilder::beginList() {
    begin(true);
}

void ValueBuilder::beginDictionary() {
    begin(false);
}

void ValueBuilder::begin(bool isList) {
    if (open_.size() == kMostDepth) {
        fail("it is nested too deeply.");
    }
    checkPlace();
    open_.push_back({.isList = isList, .list = {}, .dictionary = {}, .key = {}});
}

void ValueBuilder::checkPlace() const {
    if (open_.empty()) {
        if (whole_) {
            fail("there is more than one value at the top.");
        }
    } else if (!open_.back().isList && !open_.back().key) {
        fail("a value has no key.");
    }
}

void ValueBuilder::key(std::string name) {
    if (open_.empty() || open_.back().isList) {
        fail("a key stands outside of a dictionary.");
    }
    auto& inner = open_.back();
    if (inner.key) {
        fail("the key has no value.");
    }
    if (inner.dictionary.contains(name)) {
        fail("the key " + inQuotes(name) + " stands twice.");
    }
    if (name.find('\0') != std::string::npos) {
        fail("the key " + inQuotes(name) + " holds a NUL, which no key can.");
    }
    inner.key = std::move(name);
}

void ValueBuilder::add(PropertyList value) {
    checkPlace();
    if (open_.empty()) {
        whole_ = std::move(value);
        return;
    }
    auto& inner = open_.back();
    if (inner.isList) {
        inner.list.push_back(std::move(value));
        return;
    }
    inner.dictionary.emplace(*std::move(inner.key), std::move(value));
    inner.key.reset();
}

void ValueBuilder::end() {
    if (open_.back().key) {
        fail("the key has no value.");
    }
    auto inner = std::move(open_.back());
    open_.pop_back();
    add(inner.isList ? PropertyList(std::move(inner.list))
                     : PropertyList(std::move(inner.dictionary)));
}

PropertyList ValueBuilder::take() {
    if (!whole_) {
        fail("there is no value.");
    }
    return *std::move(whole_);
}

void ValueBuilder::fail(const std::string& trouble) const {
    std::string place;
    for (std::size_t depth = 0; depth < open_.size() && depth < kMostPlaces; ++depth) {
        const auto& one = open_[depth];
        if (one.isList) {
            place +=
                (place.empty() ? "element " : ", element ") + std::to_string(one.list.size() + 1);
        } else if (one.key) {
            place += (place.empty() ? "" : ", ") + inQuotes(*one.key);
        }
    }
    throw FormatError(place.empty() ? trouble : place + ": " + trouble);
}

}  // namespace orvalo
