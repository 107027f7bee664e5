#include "effect/ui/model/TextEntry.h"

namespace orvalo::effect::ui {

namespace {

bool isContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
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

void TextEntry::insert(char character) {
    if (character < ' ' || character > '~') {
        return;
    }
    eraseSelection();
    if (text_.size() < most_) {
        text_.insert(caret_, 1, character);
        ++caret_;
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
