// site_dump SITE [NAME [NUMBER...]]: shows what the engine sees of a site, for a developer before whom a
// customer's file looks odd. SITE is a folder as sample_site writes it (tmp/kSWCatalog.ini,
// config/Vantora.conf).
//
//   without NAME    the site, its links and the file behind every link
//   NAME            one logical file: its directory entry, then record zero and the chain of deleted records
//                   of a plain file, or header, levels and count of an index
//   NAME NUMBER...  records, or index blocks, in hexadecimal
//
// Nothing is written to the site: a missing LINKSFILE or directory file is reported, not created.
#pragma once

#include <ostream>
#include <span>
#include <string>

namespace site_dump {

/// Does what the words after the program's name ask for. Gives the exit status: 0, 1 after an error that
/// errors tells in a line, 2 for words that ask for nothing. Leaves the environment pointing at SITE.
int Run(std::span<const std::string> words, std::ostream& out, std::ostream& errors);

}  // namespace site_dump
