#include "effect/ui/model/TextEntry.h"

namespace orvalo::effect::ui {

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
    if (text_.size() < longest) {
        text_.insert(caret_, 1, character);
        ++caret_;
    }
}

void TextEntry::eraseBefore() {
    if (!eraseSelection() && caret_ > 0) {
        --caret_;
        text_.erase(caret_, 1);
    }
}

void TextEntry::eraseAfter() {
    if (!eraseSelection() && caret_ < text_.size()) {
        text_.erase(caret_, 1);
    }
}

void TextEntry::moveBy(int direction) {
    if (allSelected_) {
        caret_ = direction < 0 ? 0 : text_.size();
        allSelected_ = false;
    } else if (direction < 0) {
        caret_ -= caret_ > 0 ? 1U : 0U;
    } else {
        caret_ += caret_ < text_.size() ? 1U : 0U;
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
