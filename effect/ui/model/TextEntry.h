#pragma once

#include <string>

namespace orvalo::effect::ui {

/// A text field with a caret. Initially the whole text is selected, so that typing replaces it. The
/// text is UTF-8.
class TextEntry {
  public:
    /// The longest value and the longest name of a preset, in bytes.
    static constexpr std::size_t longest = 24;
    static constexpr std::size_t longestName = 40;

    explicit TextEntry(std::string text, std::size_t most = longest)
        : text_(std::move(text)), most_(most), caret_(text_.size()), allSelected_(!text_.empty()) {}

    const std::string& text() const { return text_; }
    /// The number of bytes before the caret.
    std::size_t caret() const { return caret_; }
    bool isAllSelected() const { return allSelected_; }

    /// Ignores control characters, numbers that are no characters, and what exceeds the longest
    /// text.
    void insert(char32_t character);
    void eraseBefore();
    void eraseAfter();
    /// One character to the left (-1) or to the right (1).
    void moveBy(int direction);
    void moveToStart();
    void moveToEnd();
    void selectAll() { allSelected_ = !text_.empty(); }

  private:
    bool eraseSelection();
    std::size_t before() const;
    std::size_t after() const;

    std::string text_;
    std::size_t most_;
    std::size_t caret_;
    bool allSelected_;
};

}  // namespace orvalo::effect::ui
