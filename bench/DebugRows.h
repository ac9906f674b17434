#pragma once

#include "bench/Rows.h"

namespace zarvo::bench {

/** The rows of the group "growth" about what is for debugging: the verbose log and the dumps. */
void AddDebugRows(RowList& rows);

}  // namespace zarvo::bench
