#include <algorithm>
#include <array>
#include <cerrno>
#include <cinttypes>
#include <cstring>
#include <limits>
#include <string_view>

#pragma GCC visibility push(default)
#include "host/cutils/include/cutils/properties.h"
#pragma GCC visibility pop
#include "host/cutils/PropertyStore.h"

using zarvo::host::PropertyStore;

static_assert(PROPERTY_VALUE_MAX == zarvo::host::kMaxPropertyValue + 1);

namespace {

/** A property's value on the caller's stack, ended by a zero. */
class Value {
  public:
    explicit Value(const char* key) {
        if (key != nullptr) {
            mSize = PropertyStore::Instance().Read(key, {mBytes.data(), PROPERTY_VALUE_MAX - 1});
        }
        mBytes[mSize] = '\0';
    }
    std::string_view View() const { return {mBytes.data(), mSize}; }
    const char* Text() const { return mBytes.data(); }

  private:
    std::array<char, PROPERTY_VALUE_MAX> mBytes;
    size_t mSize = 0;
};

/** Most properties that are read are never set: that much is known at once, every time anew. */
bool IsUnset(const char* key) {
    const PropertyStore& store = PropertyStore::Instance();
    return !store.MayHaveAny() || key == nullptr || !store.MayHave(key);
}

template <size_t N>
bool IsOneOf(std::string_view text, const std::array<std::string_view, N>& words) {
    return std::find(words.begin(), words.end(), text) != words.end();
}

constexpr std::array<std::string_view, 5> kTrueWords{"1", "y", "yes", "on", "true"};
constexpr std::array<std::string_view, 5> kFalseWords{"0", "n", "no", "off", "false"};

}  // namespace

int property_get(const char* key, char* value, const char* default_value) {
    if (value == nullptr) return 0;
    const Value found(key);
    std::string_view text = found.View();
    if (text.empty() && default_value != nullptr)
        text = {default_value, strnlen(default_value, PROPERTY_VALUE_MAX - 1)};
    std::copy(text.begin(), text.end(), value);
    value[text.size()] = '\0';
    return static_cast<int>(text.size());
}

int property_set(const char* key, const char* value) {
    PropertyStore& store = PropertyStore::Instance();
    if (store.setFault.ShouldFail() || key == nullptr) return -1;
    return store.Set(key, value == nullptr ? "" : value) ? 0 : -1;
}

int8_t property_get_bool(const char* key, int8_t default_value) {
    if (IsUnset(key)) return default_value;
    const Value value(key);
    if (IsOneOf(value.View(), kTrueWords)) return 1;
    if (IsOneOf(value.View(), kFalseWords)) return 0;
    return default_value;
}

int32_t property_get_int32(const char* key, int32_t default_value) {
    if (IsUnset(key)) return default_value;
    const Value value(key);
    const int callersErrno = errno;
    char* end = nullptr;
    const intmax_t number = std::strtoimax(value.Text(), &end, 0);
    // A number too large even for intmax_t comes back as its limit: out of range all the same.
    errno = callersErrno;
    if (end == value.Text()) return default_value;
    if (number < std::numeric_limits<int32_t>::min()) return default_value;
    if (number > std::numeric_limits<int32_t>::max()) return default_value;
    return static_cast<int32_t>(number);
}
