#include <vector>

#include "service/StatusWriter.h"

namespace zarvo::aon {
namespace {

/** Texts here are the service's own and hold no control characters. */
std::string Quoted(std::string_view text) {
    std::string quoted = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') quoted += '\\';
        quoted += c;
    }
    return quoted + '"';
}

/** "client calls" becomes clientCalls. */
std::string Key(std::string_view name) {
    std::string key;
    bool upper = false;
    for (const char c : name) {
        if (c != ' ') key += upper ? static_cast<char>(c - 'a' + 'A') : c;
        upper = c == ' ';
    }
    return Quoted(key);
}

class JsonWriter : public StatusWriter {
  public:
    void Begin(std::string_view name) override { Open(name, '{', '}'); }
    void BeginList(std::string_view name) override { Open(name, '[', ']'); }
    void End() override {
        mText += mClosers.back();
        mClosers.pop_back();
        mFirst = false;
    }

    void Text(std::string_view name, std::string_view text) override { Put(name, Quoted(text)); }
    void Number(std::string_view name, int64_t number) override {
        Put(name, std::to_string(number));
    }
    void Numbers(std::string_view name, std::span<const int32_t> numbers) override {
        std::string list;
        for (const int32_t number : numbers)
            list += (list.empty() ? "" : ",") + std::to_string(number);
        Put(name, '[' + list + ']');
    }
    void Flag(std::string_view name, bool flag) override { Put(name, flag ? "true" : "false"); }
    void Types(std::string_view name, int32_t types) override { Number(name, types); }
    void Time(std::string_view name, Moment::Wall time) override {
        Number(name, Milliseconds(time.time_since_epoch()));
    }
    void Duration(std::string_view name, Span duration) override {
        Number(name, Milliseconds(duration));
    }

    std::string Result() const override { return mText + "}\n"; }

  private:
    template <typename Duration>
    static int64_t Milliseconds(Duration duration) {
        return std::chrono::duration_cast<std::chrono::milliseconds>(duration).count();
    }
    void Open(std::string_view name, char opener, char closer) {
        Put(name, {&opener, 1});
        mClosers.push_back(closer);
        mFirst = true;
    }
    void Put(std::string_view name, std::string_view value) {
        if (!mFirst) mText += ',';
        mFirst = false;
        const bool named = mClosers.empty() || mClosers.back() == '}';
        if (named) mText += Key(name) + ':';
        mText += value;
    }

    std::string mText = "{";
    std::vector<char> mClosers;
    bool mFirst = true;
};

}  // namespace

std::unique_ptr<StatusWriter> MakeJsonWriter() {
    return std::make_unique<JsonWriter>();
}

}  // namespace zarvo::aon
