#include <cstdio>
#include <ctime>

#include "service/StatusWriter.h"

#include <aidl/vendor/zarvo/hardware/camera/aon/IAONService.h>

namespace zarvo::aon {
namespace {

using aidl::vendor::zarvo::hardware::camera::aon::IAONService;

struct TypeName {
    int32_t type;
    const char* name;
};
constexpr TypeName kTypeNames[] = {{IAONService::SERVICE_TYPE_FUSION, "fusion"},
                                   {IAONService::SERVICE_TYPE_FACE_ANGLE, "face angle"},
                                   {IAONService::SERVICE_TYPE_GAZE, "gaze"},
                                   {IAONService::SERVICE_TYPE_FACE_FEATURE, "face feature"}};

std::string TypesText(int32_t types) {
    std::string text = std::to_string(types);
    std::string names;
    for (const TypeName& type : kTypeNames) {
        if ((types & type.type) != 0) names += (names.empty() ? "" : ", ") + std::string(type.name);
    }
    return names.empty() ? text : text + " (" + names + ")";
}

std::string TimeText(Moment::Wall time) {
    const std::time_t seconds = Moment::Wall::clock::to_time_t(time);
    const auto fraction = time - Moment::Wall::clock::from_time_t(seconds);
    std::tm local{};
    localtime_r(&seconds, &local);
    char text[32];
    const size_t length = std::strftime(text, sizeof(text), "%m-%d %H:%M:%S", &local);
    const auto millis = std::chrono::duration_cast<std::chrono::milliseconds>(fraction).count();
    std::snprintf(text + length, sizeof(text) - length, ".%03d", static_cast<int>(millis));
    return text;
}

std::string DurationText(StatusWriter::Span duration) {
    char text[32];
    const double seconds = std::chrono::duration<double>(duration).count();
    std::snprintf(text, sizeof(text), "%.3f s", seconds);
    return text;
}

/** A list's parts stand in one line each, everything else in a line of its own. */
class TextWriter : public StatusWriter {
  public:
    void Begin(std::string_view name) override {
        if (mInList) {
            mText += std::string(Indentation(), ' ') + '-';
            mInItem = true;
        } else {
            mText += std::string(Indentation(), ' ') + std::string(name) + ":\n";
        }
        ++mDepth;
    }
    void BeginList(std::string_view name) override {
        Begin(name);
        mInList = true;
    }
    void End() override {
        if (mInItem) {
            mText += '\n';
        } else if (mText.ends_with(":\n")) {
            mText.insert(mText.size() - 1, " none");
        }
        mInList = mInItem;
        mInItem = false;
        --mDepth;
    }

    void Text(std::string_view name, std::string_view text) override {
        if (mInItem) {
            mText += "  " + std::string(name) + ' ' + std::string(text);
        } else {
            mText += std::string(Indentation(), ' ') + std::string(name) + ": " +
                     std::string(text) + '\n';
        }
    }
    void Number(std::string_view name, int64_t number) override {
        Text(name, std::to_string(number));
    }
    void Numbers(std::string_view name, std::span<const int32_t> numbers) override {
        std::string list;
        for (const int32_t number : numbers)
            list += (list.empty() ? "" : ", ") + std::to_string(number);
        Text(name, list.empty() ? "none" : list);
    }
    void Flag(std::string_view name, bool flag) override { Text(name, flag ? "yes" : "no"); }
    void Types(std::string_view name, int32_t types) override { Text(name, TypesText(types)); }
    void Time(std::string_view name, Moment::Wall time) override { Text(name, TimeText(time)); }
    void Duration(std::string_view name, Span duration) override {
        Text(name, DurationText(duration));
    }

    std::string Result() const override { return mText; }

  private:
    size_t Indentation() const { return 2 * mDepth; }

    std::string mText;
    size_t mDepth = 0;
    bool mInList = false;
    bool mInItem = false;
};

}  // namespace

std::unique_ptr<StatusWriter> MakeTextWriter() {
    return std::make_unique<TextWriter>();
}

}  // namespace zarvo::aon
