// The link table: which directory file holds the entry of a qualified logical name such as ":D01:ARMAST".
//
// LINKSFILE on the link share is a run of 160-byte entries without a header: byte 1 unused, bytes 2-80 the
// qualified name, byte 81 unused, bytes 82-160 the resolution path with ":" between its components. Both
// texts end before their trailing NULs, tabs, line ends and blanks.
#pragma once

#include <memory>
#include <string_view>

#include "engine/collection.h"
#include "platform/byte_string.h"

namespace engine {

using platform::ByteString;

struct cLink {
    ByteString LinkFile;        // the qualified logical name
    ByteString ResolutionFile;  // where the directory file lies below the link share
};

/// The links of a site, by qualified name without regard to letter case.
class cLinks : public cCollection<cLink> {
  public:
    /// Loads LINKSFILE of the site; creates it empty when it is missing. The first of several entries of one
    /// name (in any letter case) stays. Raises the file error when it can be neither opened nor created.
    cLinks();

    /// Adds a link, under sKey when it is not empty, and returns it. Raises 457 for a key in use.
    Handle Add(const ByteString& LinkFile, const ByteString& ResolutionFile, std::string_view sKey = {});
};

extern std::unique_ptr<cLinks> gLinks;

}  // namespace engine
