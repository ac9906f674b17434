#include "host/aidl/Program.h"

#include <algorithm>
#include <utility>

#include "host/aidl/Builtins.h"
#include "host/aidl/Parser.h"

namespace zarvo::host::aidl {

namespace {

constexpr size_t kMaxDocuments = 1000;

std::string_view LastPart(std::string_view name) {
    return name.substr(name.rfind('.') + 1);
}

std::string_view WithoutLastPart(std::string_view name) {
    const size_t dot = name.rfind('.');
    return dot == std::string_view::npos ? std::string_view() : name.substr(0, dot);
}

/** The qualified name that `name` stands for in a file, whether or not there is such a type. */
std::string Qualify(const Document& document, std::string_view name) {
    if (name.find('.') != std::string_view::npos) return std::string(name);
    for (const Import& import : document.imports) {
        if (LastPart(import.name) == name) return import.name;
    }
    return document.package + "." + std::string(name);
}

std::string_view Reason(FileSystem::Status status) {
    switch (status) {
        case FileSystem::Status::kMissing:
            return "does not exist";
        case FileSystem::Status::kTooLarge:
            return "is larger than 256 KiB";
        default:
            return "cannot be read";
    }
}

}  // namespace

std::string AidlPath(std::string_view qualifiedName) {
    std::string path(qualifiedName);
    std::replace(path.begin(), path.end(), '.', '/');
    return path + ".aidl";
}

Program::Program(FileSystem& files, std::vector<std::string> roots, Diagnostics& diagnostics)
    : mFiles(files), mRoots(std::move(roots)), mDiagnostics(diagnostics) {}

bool Program::Load(std::span<const std::string> paths) {
    for (const std::string& path : paths) {
        const Document* document = Take(path, mFiles.Read(path));
        if (document != nullptr) mInputs.push_back(document->definition.get());
    }
    // A list that grows while it is walked, and no recursion: imports may form long chains.
    for (size_t at = 0; at < mDocuments.size() && !mDiagnostics.HasErrors(); ++at) {
        LoadUsedTypes(*mDocuments[at]);
    }
    return !mDiagnostics.HasErrors();
}

Document* Program::Take(const std::string& path, const FileSystem::Content& content) {
    if (mDocuments.size() == kMaxDocuments) {
        mDiagnostics.Error("more than 1000 files");
        return nullptr;
    }
    if (content.status != FileSystem::Status::kOk) {
        mDiagnostics.Error(path + " " + std::string(Reason(content.status)));
        return nullptr;
    }
    std::unique_ptr<Document> document = ParseDocument(path, content.text, mDiagnostics);
    if (document == nullptr || !Add(std::move(document))) return nullptr;
    return mDocuments.back().get();
}

bool Program::Add(std::unique_ptr<Document> document) {
    Definition* definition = document->definition.get();
    const std::string name = definition->QualifiedName();
    const std::string place = AidlPath(name);
    if (!("/" + document->path).ends_with("/" + place)) {
        mDiagnostics.Error(document->path, definition->position,
                           "type " + name + " has to lie in a file " + place);
        return false;
    }
    if (const auto found = mTypes.find(name); found != mTypes.end() && found->second != nullptr) {
        mDiagnostics.Error(document->path, definition->position,
                           "type " + name + " is defined twice");
        return false;
    }
    mTypes[name] = definition;
    mDocuments.push_back(std::move(document));
    return true;
}

void Program::LoadUsedTypes(const Document& document) {
    LoadImports(document);
    const Definition& definition = *document.definition;
    for (const Constant& constant : definition.constants) {
        LoadName(document, constant.type.name);
        LoadReferences(document, constant.expression);
    }
    for (const Field& field : definition.fields) {
        LoadName(document, field.type.name);
        if (field.initializer) LoadReferences(document, *field.initializer);
    }
    for (const Enumerator& enumerator : definition.enumerators) {
        if (enumerator.expression) LoadReferences(document, *enumerator.expression);
    }
    for (const Method& method : definition.methods) {
        LoadName(document, method.returnType.name);
        for (const Argument& argument : method.arguments) {
            LoadName(document, argument.type.name);
        }
    }
}

void Program::LoadImports(const Document& document) {
    for (const Import& import : document.imports) {
        LoadQualified(import.name);
        if (FindQualified(import.name) == nullptr) {
            mDiagnostics.Error(document.path, import.position,
                               "cannot find the imported type " + import.name);
        }
    }
}

void Program::LoadName(const Document& document, const std::string& name) {
    if (FindBuiltin(name) == Builtin::kNone) LoadQualified(Qualify(document, name));
}

void Program::LoadReferences(const Document& document, const Expression& expression) {
    for (const ExpressionStep& step : expression.steps) {
        const std::string_view type = WithoutLastPart(step.text);
        if (step.kind == ExpressionStep::Kind::kReference && !type.empty()) {
            LoadName(document, std::string(type));
        }
    }
}

void Program::LoadQualified(const std::string& qualifiedName) {
    if (mTypes.find(qualifiedName) != mTypes.end()) return;
    mTypes[qualifiedName] = nullptr;
    for (const std::string& root : mRoots) {
        const std::string path = root + "/" + AidlPath(qualifiedName);
        const FileSystem::Content content = mFiles.Read(path);
        if (content.status == FileSystem::Status::kMissing) continue;
        Take(path, content);
        return;
    }
}

Definition* Program::Find(const Document& document, std::string_view name) const {
    return FindQualified(Qualify(document, name));
}

Definition* Program::FindQualified(std::string_view qualifiedName) const {
    const auto found = mTypes.find(qualifiedName);
    return found == mTypes.end() ? nullptr : found->second;
}

}  // namespace zarvo::host::aidl
