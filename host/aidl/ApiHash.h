#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "host/aidl/Diagnostics.h"
#include "host/aidl/FileSystem.h"

namespace zarvo::host::aidl {

/**
 * The hash of a frozen version: the SHA-1 of one line "<sha1 of the file>  ./<path>" for each
 * *.aidl file below `folder`, in byte order of the paths, and of a last line that holds
 * "latest-version" for version 1 and the number of the version before for the others. Changes with
 * every byte of every file. Nothing, after a report, if there is no file or one cannot be read.
 */
std::optional<std::string> HashApi(FileSystem& files, const std::string& folder, uint32_t version,
                                   Diagnostics& diagnostics);

}  // namespace zarvo::host::aidl
