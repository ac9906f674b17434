#include "host/aidl/Parser.h"

#include <charconv>
#include <utility>

#include "host/aidl/ExpressionParser.h"
#include "host/aidl/Remark.h"
#include "host/aidl/TokenStream.h"
#include "host/aidl/TypeParser.h"

namespace zarvo::host::aidl {

namespace {

constexpr size_t kMaxMembers = 2048;
constexpr size_t kMaxImports = 1024;

/** Recursive descent over one file. Every loop ends because a failed stream is at its end. */
class Parser {
  public:
    Parser(std::string path, std::string_view text, Diagnostics& diagnostics)
        : mDocument(NewDocument(std::move(path))),
          mTokens(mDocument->path, text, diagnostics),
          mTypes(mTokens) {}
    std::unique_ptr<Document> Parse();

  private:
    static std::unique_ptr<Document> NewDocument(std::string path) {
        auto document = std::make_unique<Document>();
        document->path = std::move(path);
        return document;
    }
    void ParsePackage();
    void ParseImports();
    std::unique_ptr<Definition> ParseDefinition();
    bool ParseKind(Definition& definition);
    void ParseBody(Definition& definition);
    void ParseMember(Definition& definition);
    void ParseEnumerators(Definition& definition);
    Constant ParseConstant(std::vector<Annotation> annotations);
    Field ParseField(Type type);
    Method ParseMethod(bool oneway, Type type);
    void ParseArguments(Method& method);
    Argument ParseArgument();
    std::optional<uint32_t> ParseMethodId();
    void ParseName(Named& named, std::string_view what);
    Expression ParseExpression() { return ExpressionParser(mTokens).Parse(); }
    bool RefuseNestedType();

    std::unique_ptr<Document> mDocument;
    TokenStream mTokens;
    TypeParser mTypes;
};

std::unique_ptr<Document> Parser::Parse() {
    for (const std::string_view comment : mTokens.Peek().comments) {
        mDocument->leadingComments.emplace_back(comment);
    }
    ParsePackage();
    ParseImports();
    mDocument->definition = ParseDefinition();
    if (!mTokens.AtEnd()) mTokens.FailHere("only one type per file is supported");
    return mTokens.Failed() ? nullptr : std::move(mDocument);
}

void Parser::ParsePackage() {
    mTokens.Expect("package");
    mDocument->packagePosition = mTokens.Peek().position;
    mDocument->package = mTokens.ExpectQualifiedName("the package's name");
    mTokens.Expect(";");
}

void Parser::ParseImports() {
    while (mTokens.Accept("import")) {
        if (mDocument->imports.size() == kMaxImports) return mTokens.FailHere("too many imports");
        Import import;
        import.position = mTokens.Peek().position;
        import.name = mTokens.ExpectQualifiedName("the type to import");
        mTokens.Expect(";");
        mDocument->imports.push_back(std::move(import));
    }
}

std::unique_ptr<Definition> Parser::ParseDefinition() {
    auto definition = std::make_unique<Definition>();
    definition->package = mDocument->package;
    definition->document = mDocument.get();
    definition->remark = FindRemark(mTokens.Peek().comments);
    definition->annotations = mTypes.ParseAnnotations();
    if (!ParseKind(*definition)) return nullptr;
    ParseName(*definition, "the type's name");
    if (mTokens.Peek().Is(";") || mTokens.Peek().Is("cpp_header")) {
        mTokens.FailHere("a type without a body (unstructured parcelable) is not supported");
    }
    if (mTokens.Peek().Is("<")) mTokens.FailHere("generic types are not supported");
    mTokens.Expect("{");
    if (definition->IsEnum()) {
        ParseEnumerators(*definition);
    } else {
        ParseBody(*definition);
    }
    mTokens.Expect("}");
    return definition;
}

bool Parser::ParseKind(Definition& definition) {
    definition.oneway = mTokens.Accept("oneway");
    if (mTokens.Accept("interface")) {
        definition.kind = Definition::Kind::kInterface;
        return true;
    }
    if (definition.oneway) {
        mTokens.FailExpected("'interface'");
    } else if (mTokens.Accept("parcelable")) {
        definition.kind = Definition::Kind::kParcelable;
    } else if (mTokens.Accept("union")) {
        definition.kind = Definition::Kind::kUnion;
    } else if (mTokens.Accept("enum")) {
        definition.kind = Definition::Kind::kEnum;
    } else {
        mTokens.FailExpected("'interface', 'parcelable', 'union' or 'enum'");
    }
    return !mTokens.Failed();
}

void Parser::ParseBody(Definition& definition) {
    size_t members = 0;
    while (!mTokens.Peek().Is("}") && !mTokens.AtEnd()) {
        if (++members > kMaxMembers) return mTokens.FailHere("too many members");
        ParseMember(definition);
    }
}

void Parser::ParseMember(Definition& definition) {
    const std::string remark = FindRemark(mTokens.Peek().comments);
    std::vector<Annotation> annotations = mTypes.ParseAnnotations();
    if (RefuseNestedType()) return;
    if (mTokens.Accept("const")) {
        definition.constants.push_back(ParseConstant(std::move(annotations)));
        definition.constants.back().remark = remark;
    } else if (definition.IsInterface()) {
        const bool oneway = mTokens.Accept("oneway");
        definition.methods.push_back(ParseMethod(oneway, mTypes.ParseType(std::move(annotations))));
        definition.methods.back().remark = remark;
    } else {
        definition.fields.push_back(ParseField(mTypes.ParseType(std::move(annotations))));
        definition.fields.back().remark = remark;
    }
}

bool Parser::RefuseNestedType() {
    for (const std::string_view word : {"interface", "parcelable", "union", "enum"}) {
        if (mTokens.Peek().Is(word)) mTokens.FailHere("nested types are not supported");
    }
    return mTokens.Failed();
}

void Parser::ParseEnumerators(Definition& definition) {
    while (!mTokens.Peek().Is("}") && !mTokens.AtEnd()) {
        if (definition.enumerators.size() == kMaxMembers)
            return mTokens.FailHere("too many enumerators");
        Enumerator enumerator;
        enumerator.remark = FindRemark(mTokens.Peek().comments);
        ParseName(enumerator, "an enumerator's name");
        if (mTokens.Accept("=")) enumerator.expression = ParseExpression();
        definition.enumerators.push_back(std::move(enumerator));
        if (!mTokens.Accept(",")) break;
    }
}

Constant Parser::ParseConstant(std::vector<Annotation> annotations) {
    Constant constant;
    constant.type = mTypes.ParseType(std::move(annotations));
    ParseName(constant, "the constant's name");
    mTokens.Expect("=");
    constant.expression = ParseExpression();
    mTokens.Expect(";");
    return constant;
}

Field Parser::ParseField(Type type) {
    Field field;
    field.type = std::move(type);
    ParseName(field, "the field's name");
    if (mTokens.Accept("=")) field.initializer = ParseExpression();
    mTokens.Expect(";");
    return field;
}

Method Parser::ParseMethod(bool oneway, Type type) {
    Method method;
    method.oneway = oneway;
    method.returnType = std::move(type);
    ParseName(method, "the method's name");
    mTokens.Expect("(");
    ParseArguments(method);
    mTokens.Expect(")");
    if (mTokens.Accept("=")) method.givenId = ParseMethodId();
    mTokens.Expect(";");
    return method;
}

void Parser::ParseArguments(Method& method) {
    while (!mTokens.Peek().Is(")") && !mTokens.AtEnd()) {
        if (method.arguments.size() == kMaxMembers) return mTokens.FailHere("too many arguments");
        method.arguments.push_back(ParseArgument());
        if (!mTokens.Accept(",")) break;
    }
}

Argument Parser::ParseArgument() {
    Argument argument;
    if (mTokens.Accept("in")) {
        argument.direction = Direction::kIn;
    } else if (mTokens.Accept("out")) {
        argument.direction = Direction::kOut;
    } else if (mTokens.Accept("inout")) {
        argument.direction = Direction::kInOut;
    }
    argument.type = mTypes.ParseType(mTypes.ParseAnnotations());
    ParseName(argument, "the argument's name");
    return argument;
}

std::optional<uint32_t> Parser::ParseMethodId() {
    const Token token = mTokens.Peek();
    uint32_t id = 0;
    const char* const end = token.text.data() + token.text.size();
    if (token.kind != Token::Kind::kInteger ||
        std::from_chars(token.text.data(), end, id) != std::from_chars_result{end, {}}) {
        mTokens.FailExpected("the method's number in decimal digits");
    }
    mTokens.Take();
    return id;
}

void Parser::ParseName(Named& named, std::string_view what) {
    named.position = mTokens.Peek().position;
    named.name = mTokens.ExpectIdentifier(what);
}

}  // namespace

std::unique_ptr<Document> ParseDocument(std::string path, std::string_view text,
                                        Diagnostics& diagnostics) {
    return Parser(std::move(path), text, diagnostics).Parse();
}

}  // namespace zarvo::host::aidl
