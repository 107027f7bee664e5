#pragma once

#include <string>
#include <string_view>

#include "platform/foundation/defaults/PropertyList.h"

namespace orvalo {

// Domains as XML property lists (the document type "-//Apple//DTD PLIST 1.0//EN"), in UTF-8.
//
// libplist reads and writes these too, but drops the fractions of dates and the carriage returns
// of texts, writes what is no XML, and has nothing to say of where a file is wrong.

/// The entries in one dictionary, indented by tabs. Fractions of a second stand in a date where it
/// has them, which not every other reader takes. Throws FormatError for a text with a control
/// character, which XML cannot carry.
std::string xmlText(const PropertyList::Dictionary& domain);

/// The entries of a domain. Throws FormatError, whose text names the line, for what is no property
/// list with a dictionary at its top.
PropertyList::Dictionary xmlDomain(std::string_view text);

}  // namespace orvalo
