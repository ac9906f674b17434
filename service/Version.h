#pragma once

namespace zarvo::aon {

/** The library's version, as the build files and the programs have it. */
inline constexpr char kVersion[] = "1.0.0";

}  // namespace zarvo::aon
