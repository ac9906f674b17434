#pragma once

#include "host/aidl/Diagnostics.h"
#include "host/aidl/Program.h"

namespace zarvo::host::aidl {

struct CheckOptions {
    /** Every type has to be, and only then may be, marked @VintfStability. */
    bool vintfStability = false;
};

/**
 * Gives the loaded types their meaning: connects the types of members with definitions, computes
 * constants, default values, enumerators and method numbers, and checks all rules that syntax
 * does not hold. False if a rule is broken; what and where is then reported. After a true return
 * every field of the syntax tree that is "set by checking" is set.
 */
bool CheckProgram(const Program& program, const CheckOptions& options, Diagnostics& diagnostics);

}  // namespace zarvo::host::aidl
