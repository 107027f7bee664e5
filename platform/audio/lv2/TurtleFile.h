#pragma once

#include <serd/serd.h>

#include <cstddef>
#include <functional>
#include <optional>
#include <string>

namespace orvalo {

/// One statement of a Turtle text; valid during the call of the handler.
class TurtleStatement {
  public:
    TurtleStatement(const SerdEnv* environment, const SerdNode* subject, const SerdNode* predicate,
                    const SerdNode* object)
        : environment_(environment), subject_(subject), predicate_(predicate), object_(object) {}

    /// Whole URIs; empty for a blank node.
    std::string subject() const { return text(*subject_); }
    std::string predicate() const { return text(*predicate_); }
    /// A whole URI or a literal's text; empty for a blank node.
    std::string object() const { return text(*object_); }
    bool isLiteral() const { return object_->type == SERD_LITERAL; }

  private:
    std::string text(const SerdNode& node) const;

    const SerdEnv* environment_;
    const SerdNode* subject_;
    const SerdNode* predicate_;
    const SerdNode* object_;
};

/// The bytes of a regular file of at most `limit` bytes; absent when there is none. A warning names
/// a path that is not a regular file, is too large or cannot be read.
std::optional<std::string> readTurtle(const std::string& path, std::size_t limit);

/// Calls `handler` with each statement of a Turtle text whose own URI is `base`. Returns the
/// first fault with its line; empty for a sound text.
std::string readStatements(const std::string& text, const std::string& base,
                           const std::function<void(const TurtleStatement&)>& handler);

/// The first fault in a file of a plug-in's data or presets, by its file URI; empty for a sound
/// file. Files are checked before lilv reads them: lilv keeps the first half of a broken file,
/// never returns from some that end early, and overflows the stack on deep nesting.
std::string turtleFileError(const std::string& uri);

}  // namespace orvalo
