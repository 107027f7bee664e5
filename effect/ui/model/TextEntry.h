#pragma once

#include <string>

namespace orvalo::effect::ui {

/// A line of text that is being typed. It begins with all of its text chosen, so that typing
/// replaces it. Printable ASCII only, because that is all that a value is written in.
class TextEntry {
  public:
    /// Longer texts are no values.
    static constexpr std::size_t longest = 24;

    explicit TextEntry(std::string text)
        : text_(std::move(text)), caret_(text_.size()), allChosen_(!text_.empty()) {}

    const std::string& text() const { return text_; }
    /// Characters before the caret.
    std::size_t caret() const { return caret_; }
    bool isAllChosen() const { return allChosen_; }

    /// Other characters, and those beyond the longest text, are left out.
    void insert(char character);
    void eraseBefore();
    void eraseAfter();
    /// One character to the left (-1) or to the right (1).
    void moveBy(int direction);
    void moveToStart();
    void moveToEnd();
    void chooseAll() { allChosen_ = !text_.empty(); }

  private:
    bool eraseChosen();

    std::string text_;
    std::size_t caret_;
    bool allChosen_;
};

}  // namespace orvalo::effect::ui
