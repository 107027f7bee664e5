#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace orvalo {

/// A constant list of texts that is made at its first use. Any thread.
// NOLINTBEGIN(readability-convert-member-functions-to-static): used as an object.
class Capitals {
  public:
    /// The list itself.
    operator const std::vector<std::string>&() const { return list(); }

    auto begin() const { return list().begin(); }
    auto end() const { return list().end(); }
    std::size_t size() const { return list().size(); }
    const std::string& front() const { return list().front(); }
    const std::string& back() const { return list().back(); }
    /// index: below size().
    const std::string& operator[](std::size_t index) const { return list()[index]; }

  private:
    static const std::vector<std::string>& list();
};
// NOLINTEND(readability-convert-member-functions-to-static)

/// 197 capitals, from Afghanistan's to Zimbabwe's, in the order of the countries' English names.
/// UTF-8; users rely on the exact spelling.
inline constexpr Capitals capitals;

}  // namespace orvalo
