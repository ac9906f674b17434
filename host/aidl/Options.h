#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "host/aidl/ApiCheck.h"

namespace zarvo::host::aidl {

/** A command line, understood. */
struct Options {
    enum class Mode { kGenerate, kDumpApi, kCheckApi, kHashApi };

    Mode mode = Mode::kGenerate;
    ApiCheckLevel checkLevel = ApiCheckLevel::kEqual;
    bool structured = false;
    bool vintfStability = false;
    /** 0 if none was given. */
    uint32_t version = 0;
    /** 40 hexadecimal digits, "notfrozen", or empty. */
    std::string hash;
    std::vector<std::string> importRoots;
    std::string headerFolder;
    std::string sourceFolder;
    std::string dumpFolder;
    /** AIDL files; for kCheckApi the older and the newer folder, for kHashApi one folder. */
    std::vector<std::string> files;
};

/** How to call the compiler. */
extern const std::string_view kUsage;

/** Reads the arguments, without the program's name. A string says what is wrong with them. */
std::variant<Options, std::string> ParseOptions(std::span<const std::string_view> arguments);

}  // namespace zarvo::host::aidl
