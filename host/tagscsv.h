// SPDX-License-Identifier: MIT
// A project as comma-separated values. The header line names the columns, in any order and letter case:
//   name,type,count,device,id  and, if wanted,  first,elements
// Lines before it that begin with '#' may carry settings:  "# password: TEXT"  and  "# strings: char-paired".
#pragma once

#include <string>
#include <string_view>

#include "host/project.h"

namespace ostravel::host {

// Throws UserError with one line "file:line:column: what and how to mend it".
Project project_from_csv(std::string_view text, const std::string& source);

// What project_from_csv reads back as the same project.
std::string project_to_csv(const Project& project);

}  // namespace ostravel::host
