#pragma once

#include <vector>

#include "host/aidl/Ast.h"
#include "host/aidl/TokenStream.h"

namespace zarvo::host::aidl {

/** Reads types as members use them, and annotations. Errors go to the stream. */
class TypeParser {
  public:
    explicit TypeParser(TokenStream& tokens) : mTokens(tokens) {}

    /** As many as there are, none too; at most 16. */
    std::vector<Annotation> ParseAnnotations();
    /** The type that follows its annotations. */
    Type ParseType(std::vector<Annotation> annotations);

  private:
    Annotation ParseAnnotation();
    void ParseList(Type& type);
    void ParseArraySuffix(Type& type);

    TokenStream& mTokens;
};

}  // namespace zarvo::host::aidl
