// What the system says about the workstation and the network: folders, shares, names, addresses, profiles and
// settings. One implementation a system: site_posix.cpp, site_windows.cpp.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

/// The separator between the components of the system's own paths.
extern const char PathSeparator;

/// The folder for temporary files, ending in PathSeparator; empty when the system names none.
std::string TempDirectory();

/// The name by which the folder that holds it lists the entry at path, "." for a path that ends in a
/// separator, empty when there is no such entry. Raises 57.
std::string ListedName(std::string_view path);

/// Turns a path of the system's texts into one that the operating system opens: \\SERVER\SHARE\rest and
/// X:\rest are looked up as the settings and mounts say, each component without regard to letter case (the
/// exact name first); every other path stays as it stands. A name that does not exist (yet) is kept as given
/// below the last folder found. Nothing when the share or drive is unknown, the path climbs out of its share
/// or holds a NUL. Raises 57 when the share does not say what is there.
std::optional<std::string> ResolvePath(std::string_view path);

/// Whether the share at root (such as \\SRV1\KSTLLNK\) answers: its folder exists and can be listed.
bool ShareAnswers(std::string_view root);

/// The workstation's name as the system gives it, which may carry a domain; empty when it gives none.
std::string HostName();

/// The workstation's name without a domain: HostName up to its first dot.
std::string ComputerName();

/// The IPv4 address of a host name or dotted literal, first octet in the highest byte; nothing when it cannot
/// be found.
std::optional<std::uint32_t> HostAddress(const std::string& name);

/// The value of a key in a profile (INI) file: section and key without letter case, first match, blanks
/// trimmed, one pair of surrounding quotes removed, at most capacity - 1 bytes; empty when the file, section
/// or key is missing. Raises 57, 70 or 75 for a file that is there and cannot be read.
std::string ProfileText(std::string_view path, std::string_view section, std::string_view key,
                        std::size_t capacity);

/// The per-user settings store: a section and key of the application "Vantora"; fallback where it is not set.
/// Raises 57, 70 or 75 for a store that is there and cannot be read.
std::string Setting(std::string_view section, std::string_view key, std::string_view fallback);

/// The folder in which a save dialog starts.
std::string DocumentsFolder();

/// Has this process look for a site that lies in a folder of its own: temporary files in folder/tmp and,
/// where the settings store is a file, settings in folder/config. For programs that work on a made-up site.
void UseSiteIn(const std::string& folder);

}  // namespace platform
