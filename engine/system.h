// The site: what the configuration file says (cEpcInfo) and what engine routines use of it (cSystem).
#pragma once

#include <cstdint>
#include <memory>

#include "platform/byte_string.h"

namespace engine {

using platform::ByteString;

struct cEpcInfo {
    ByteString Server;
    ByteString DataShare;
    ByteString CatalogShare;  // \\Server\value\ in full
    ByteString Directory;
    ByteString TerminalID;
    std::int32_t CustomerNumber = 0;
};

/// The site in hand.
class cSystem {
  public:
    ByteString mUNCDrive;   // server name
    ByteString mDirectory;  // site directory name
    ByteString TerminalID;  // terminal number of this workstation, "0" when none
    ByteString ComputerName;
    ByteString IP;  // dotted form

    /// The site's link directory, \\server\KSTLLNK\directory.
    ByteString KSTLLNK() const { return LinkShare() + mDirectory; }

    /// The catalogue directory on the server, \\server\CATCON\.
    ByteString CATCON() const { return "\\\\" + mUNCDrive + "\\CATCON\\"; }

    /// The link share's root, \\server\KSTLLNK\.
    ByteString LinkShare() const { return "\\\\" + mUNCDrive + "\\KSTLLNK\\"; }
};

extern std::unique_ptr<cEpcInfo> gEpcInfo;
extern std::unique_ptr<cSystem> gSystem;

/// The site object of gSystem. Raises 91 when there is none.
cSystem& CurrentSystem();

}  // namespace engine
