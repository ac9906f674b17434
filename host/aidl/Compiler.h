#pragma once

#include <string>

#include "host/aidl/Diagnostics.h"
#include "host/aidl/FileSystem.h"
#include "host/aidl/Options.h"

namespace zarvo::host::aidl {

/**
 * Does what a command line asks for. False if that failed, after a report; then no file was
 * written, unless it was the writing that failed.
 *
 * @param output what is to be printed; set by Options::Mode::kHashApi only.
 */
bool RunCompiler(const Options& options, FileSystem& files, std::string& output,
                 Diagnostics& diagnostics);

}  // namespace zarvo::host::aidl
