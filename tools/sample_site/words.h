// Invented names, places, goods and remarks.
#pragma once

#include <string>

#include "tools/sample_site/random.h"

namespace sample {

/// A multi-line address of 120 characters in four lines of 30, and what an export takes out of it.
struct Address {
    std::string Text;
    std::string State;       // two letters, or two blanks
    std::string PostalCode;  // "     -    " when there is none
};

Address MakeAddress(Random& random);

/// Upper case, as compressed texts hold it.
std::string CompanyName(Random& random);

/// Mixed case with accents now and then, of code page 1252.
std::string PersonName(Random& random);

std::string PartDescription(Random& random);
std::string Phone(Random& random);
std::string Remark(Random& random);

/// A note of one or more lines that end in CR LF, at most longest bytes of code page 1252.
std::string NoteText(Random& random, std::size_t longest);

}  // namespace sample
