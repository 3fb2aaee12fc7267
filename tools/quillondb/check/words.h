// The words of the site's pages.
#pragma once

#include <string>
#include <vector>

#include "quillondb/check/access.h"

namespace quillon {

// Appends a line where Language.ini lacks words that the pages use, or cannot be read to its end. A
// file that is missing altogether, or that the user may not read, is found with the other files.
void CheckWords(const std::string& directory, const ServiceUser& user,
                std::vector<std::string>& findings);

}  // namespace quillon
