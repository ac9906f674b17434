#include <string>

#include "host/aidl/NdkPrinter.h"
#include "host/aidl/Text.h"

namespace zarvo::host::aidl {

std::string PrintConstantDeclarations(const Definition& definition) {
    std::string lines;
    for (const Constant& constant : definition.constants) {
        if (constant.type.builtin == Builtin::kString) {
            lines += "    static const char* " + constant.name + ";\n";
            continue;
        }
        lines += Fill("    enum : ${type} { ${name} = ${value} };\n",
                      {{"type", NdkType(constant.type)},
                       {"name", constant.name},
                       {"value", NdkValue(constant.value, constant.type)}});
    }
    return lines;
}

std::string PrintConstantDefinitions(const Definition& definition) {
    std::string lines = "const char* " + definition.name + "::descriptor = \"" +
                        definition.QualifiedName() + "\";\n";
    for (const Constant& constant : definition.constants) {
        if (constant.type.builtin != Builtin::kString) continue;
        lines += "const char* " + definition.name + "::" + constant.name + " = " +
                 NdkValue(constant.value, constant.type) + ";\n";
    }
    return lines + "\n";
}

}  // namespace zarvo::host::aidl
