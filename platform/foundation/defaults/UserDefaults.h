#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/foundation/NSObject.h"
#include "platform/foundation/URL.h"
#include "platform/foundation/defaults/PropertyList.h"

namespace orvalo {

class DefaultsDomain;

/// Settings that survive the process: values under keys, in a domain of the user. A write is there
/// when it returns: every process of the user sees it at its next read, and it outlives the death
/// of this one. Reads are answered from memory as long as nobody has written. Any thread.
///
/// Nothing here fails towards its caller. What cannot be stored (a full or read-only disk, a text
/// that is not UTF-8 or holds a NUL, a date beyond those of PropertyList, nesting deeper than 128,
/// more than 16 MB) is left as it was, with one line on standard error.
class UserDefaults : public NSObject {
  public:
    /// The application's own domain: that of the bundle's identifier, or of the program's name when
    /// the bundle states none. It reads the search list of the process: its own domain, then the
    /// suites added with addSuiteNamed(), in that order. Writes go to its own domain.
    static const std::shared_ptr<UserDefaults>& standard();
    /// A store for one suite, which every process of the user that names it shares. Absent, with
    /// the reason on standard error, when the name is empty, a path or the application's own
    /// domain, or when the suite cannot be opened.
    static std::shared_ptr<UserDefaults> suiteName(std::string_view name);

    /// Puts a suite at the end of the process's search list; one that is there keeps its place. One
    /// that cannot be had (see suiteName()) is left out, with the reason on standard error.
    void addSuiteNamed(std::string_view name);

    /// Stores a text, an integer, a float, a double, a truth value or any property list. An absent
    /// value removes the key.
    void set(const std::optional<PropertyList>& value, std::string_view forKey);
    /// Stores an address as its text. An absent one removes the key.
    void set(const std::optional<URL>& value, std::string_view forKey);
    /// The same as set().
    void setValue(const std::optional<PropertyList>& value, std::string_view forKey);
    /// Removes the key from the domain that set() writes to.
    void removeObject(std::string_view forKey);

    std::optional<PropertyList> object(std::string_view forKey) const;
    /// The same as object().
    std::optional<PropertyList> value(std::string_view forKey) const;
    /// Absent when the value is not a text.
    std::optional<std::string> string(std::string_view forKey) const;
    /// 0 without a value. A float loses its fraction and is held to the range (not a number: 0), a
    /// truth value is 1 or 0, a text counts as the number that it begins with; all else is 0.
    std::int64_t integer(std::string_view forKey) const;
    /// 0 without a value; converted as integer() does, to the nearest float.
    float float_(std::string_view forKey) const;
    /// 0 without a value; converted as integer() does, to the nearest double.
    double double_(std::string_view forKey) const;
    /// False without a value. A number is true unless it is 0; a text when it begins, behind
    /// blanks, a sign and zeros, with one of "YyTt" or a digit from 1 to 9; all else is false.
    bool bool_(std::string_view forKey) const;
    /// The address that a text is, or else the file whose path it is ("~" is the home folder).
    /// Absent when the value is not a text, or an empty one.
    std::optional<URL> url(std::string_view forKey) const;

    /// Every entry that object() finds.
    PropertyList::Dictionary dictionaryRepresentation() const;

  private:
    UserDefaults(std::shared_ptr<DefaultsDomain> domain, bool isStandard);

    /// What the key's value converts to; the neutral value without one.
    template <typename Result>
    Result converted(std::string_view key, Result (*conversion)(const PropertyList&)) const;

    std::shared_ptr<DefaultsDomain> domain_;
    bool isStandard_;
};

}  // namespace orvalo
