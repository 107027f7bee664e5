#pragma once

#include <functional>
#include <string>

namespace orvalo {

/// One statement of a Turtle file. URIs are whole; a blank node is empty.
struct TurtleStatement {
    std::string subject;
    std::string predicate;
    std::string object;  ///< A URI or a literal's text.
    bool isLiteral;      ///< Whether the object is a literal.
};

/// Reads a Turtle file with serd and calls `handler`, unless it is null, with each statement. `uri`
/// is the file's own. Returns the first fault as a clause; empty for a sound file.
std::string readTurtle(const std::string& path, const std::string& uri,
                       const std::function<void(const TurtleStatement&)>& handler);

/// The first fault in a file of a plug-in's data or presets, by its file URI; empty for a sound
/// file. Files are checked before lilv reads them: lilv keeps the first half of a broken file,
/// never returns from some that end early, and overflows the stack on deep nesting.
std::string turtleFileError(const std::string& uri);

}  // namespace orvalo
