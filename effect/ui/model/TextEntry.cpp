#include "effect/ui/model/TextEntry.h"

#include <cstdint>

namespace orvalo::effect::ui {

namespace {

bool isContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

/// The character in UTF-8.
std::string encoded(char32_t character) {
    if (character < 0x80) {
        return {static_cast<char>(character)};
    }
    std::string bytes;
    char32_t rest = character;
    // The first byte has room for fewer bits the more bytes follow.
    for (char32_t room = 0x40; rest >= room; room = room == 0x40 ? 0x20 : room >> 1U) {
        bytes.insert(bytes.begin(), static_cast<char>(0x80U | (rest & 0x3FU)));
        rest >>= 6U;
    }
    const auto lead = static_cast<std::uint32_t>(0xFF00U >> (bytes.size() + 1)) & 0xFFU;
    return static_cast<char>(lead | rest) + bytes;
}

}  // namespace

/// Where the character before the caret starts, and where the one behind it ends.
std::size_t TextEntry::before() const {
    std::size_t place = caret_;
    while (place > 0 && isContinuation(text_[--place])) {
    }
    return place;
}

std::size_t TextEntry::after() const {
    std::size_t place = caret_ < text_.size() ? caret_ + 1 : caret_;
    while (place < text_.size() && isContinuation(text_[place])) {
        ++place;
    }
    return place;
}

bool TextEntry::eraseSelection() {
    if (!allSelected_) {
        return false;
    }
    text_.clear();
    caret_ = 0;
    allSelected_ = false;
    return true;
}

void TextEntry::insert(char32_t character) {
    const bool isControl = character < ' ' || (character > '~' && character < 0xA0);
    const bool isSurrogate = character >= 0xD800 && character <= 0xDFFF;
    if (isControl || isSurrogate || character > 0x10FFFF) {
        return;
    }
    eraseSelection();
    const std::string bytes = encoded(character);
    if (text_.size() + bytes.size() <= most_) {
        text_.insert(caret_, bytes);
        caret_ += bytes.size();
    }
}

void TextEntry::eraseBefore() {
    if (!eraseSelection() && caret_ > 0) {
        const std::size_t start = before();
        text_.erase(start, caret_ - start);
        caret_ = start;
    }
}

void TextEntry::eraseAfter() {
    if (!eraseSelection() && caret_ < text_.size()) {
        text_.erase(caret_, after() - caret_);
    }
}

void TextEntry::moveBy(int direction) {
    if (allSelected_) {
        caret_ = direction < 0 ? 0 : text_.size();
        allSelected_ = false;
    } else if (direction < 0) {
        caret_ = before();
    } else {
        caret_ = after();
    }
}

void TextEntry::moveToStart() {
    caret_ = 0;
    allSelected_ = false;
}

void TextEntry::moveToEnd() {
    caret_ = text_.size();
    allSelected_ = false;
}

}  // namespace orvalo::effect::ui
