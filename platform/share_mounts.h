// Where a share of the network is mounted, told from the system's mount table or from the folders of the
// desktop's virtual file system. Server, share and folder names are compared without regard to letter case.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

/// A folder that stands for the first Components names of \\server\share\folder\...
struct ShareMount {
    std::string Folder;
    std::size_t Components;
};

/// Looks for the cifs or smb3 mount that holds the path made of names (server, share, folders ...) in the
/// text of a mountinfo table. The mount that covers most of the path wins, among equals the last one.
std::optional<ShareMount> FindShareMount(std::string_view mountInfo, std::span<const std::string> names);

/// Looks among folder names of the form smb-share:server=HOST,share=NAME[,user=...] for one that stands for
/// server and share; gives the folder's name.
std::optional<std::string> FindVirtualShare(std::span<const std::string> folderNames, std::string_view server,
                                            std::string_view share);

}  // namespace platform
