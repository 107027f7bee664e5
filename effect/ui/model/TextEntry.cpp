#include "effect/ui/model/TextEntry.h"

namespace orvalo::effect::ui {

bool TextEntry::eraseChosen() {
    if (!allChosen_) {
        return false;
    }
    text_.clear();
    caret_ = 0;
    allChosen_ = false;
    return true;
}

void TextEntry::insert(char character) {
    if (character < ' ' || character > '~') {
        return;
    }
    eraseChosen();
    if (text_.size() < longest) {
        text_.insert(caret_, 1, character);
        ++caret_;
    }
}

void TextEntry::eraseBefore() {
    if (!eraseChosen() && caret_ > 0) {
        --caret_;
        text_.erase(caret_, 1);
    }
}

void TextEntry::eraseAfter() {
    if (!eraseChosen() && caret_ < text_.size()) {
        text_.erase(caret_, 1);
    }
}

void TextEntry::moveBy(int direction) {
    if (allChosen_) {
        caret_ = direction < 0 ? 0 : text_.size();
        allChosen_ = false;
    } else if (direction < 0) {
        caret_ -= caret_ > 0 ? 1U : 0U;
    } else {
        caret_ += caret_ < text_.size() ? 1U : 0U;
    }
}

void TextEntry::moveToStart() {
    caret_ = 0;
    allChosen_ = false;
}

void TextEntry::moveToEnd() {
    caret_ = text_.size();
    allChosen_ = false;
}

}  // namespace orvalo::effect::ui
