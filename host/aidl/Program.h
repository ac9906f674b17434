#pragma once

#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/aidl/Ast.h"
#include "host/aidl/Diagnostics.h"
#include "host/aidl/FileSystem.h"

namespace zarvo::host::aidl {

/** Where a type lies below a root: a/b/C.aidl for a.b.C. */
std::string AidlPath(std::string_view qualifiedName);

/**
 * The types of one run: those of the files on the command line, and all that they use, directly
 * or not, found below the import roots. Owns the documents; pointers to definitions stay valid
 * for its lifetime. Not for several threads.
 */
class Program {
  public:
    /** `files` and `roots` are kept as given; a type a.b.C is looked for in ROOT/a/b/C.aidl. */
    Program(FileSystem& files, std::vector<std::string> roots, Diagnostics& diagnostics);

    /**
     * Reads the given files and every type they name. Names that are found nowhere are left to
     * Find. False if a file is missing, unreadable or malformed; the reasons are then reported.
     */
    bool Load(std::span<const std::string> paths);

    /** The definitions of the files given to Load, in that order. */
    const std::vector<Definition*>& Inputs() const { return mInputs; }
    /** All documents, those given to Load first. */
    const std::vector<std::unique_ptr<Document>>& Documents() const { return mDocuments; }

    /**
     * The type that a name stands for in a file: a qualified name, an imported one, the file's own
     * type or one of its package. Null if there is none.
     */
    Definition* Find(const Document& document, std::string_view name) const;
    /** Null if no file that was read defines the type. */
    Definition* FindQualified(std::string_view qualifiedName) const;

  private:
    Document* Take(const std::string& path, const FileSystem::Content& content);
    bool Add(std::unique_ptr<Document> document);
    void LoadUsedTypes(const Document& document);
    void LoadImports(const Document& document);
    void LoadName(const Document& document, const std::string& name);
    void LoadReferences(const Document& document, const Expression& expression);
    void LoadQualified(const std::string& qualifiedName);

    FileSystem& mFiles;
    const std::vector<std::string> mRoots;
    Diagnostics& mDiagnostics;
    std::vector<std::unique_ptr<Document>> mDocuments;
    std::vector<Definition*> mInputs;
    /** By qualified name; null for names that were looked for in vain. */
    std::map<std::string, Definition*, std::less<>> mTypes;
};

}  // namespace zarvo::host::aidl
