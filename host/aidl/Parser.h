#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "host/aidl/Ast.h"
#include "host/aidl/Diagnostics.h"

namespace zarvo::host::aidl {

/**
 * Reads one AIDL file: a package line, imports, and one interface, parcelable, union or enum.
 * Takes any bytes. Null, with one message in `diagnostics`, if the text is not such a file;
 * whether the names and values in it make sense is for the Checker.
 *
 * @param path the file's name, for messages.
 */
std::unique_ptr<Document> ParseDocument(std::string path, std::string_view text,
                                        Diagnostics& diagnostics);

}  // namespace zarvo::host::aidl
