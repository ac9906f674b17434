#include "host/cutils/PropertyStore.h"

#include <android/log.h>

#include <algorithm>
#include <cstdlib>
#include <mutex>

namespace zarvo::host {
namespace {

PropertyStore* NewFromEnvironment() {
    auto* store = new PropertyStore();
    const char* text = std::getenv(kPropertiesVariable);
    if (text == nullptr) return store;
    for (const std::string& error : store->SetAll(text))
        __android_log_print(ANDROID_LOG_WARN, "cutils", "%s: %s", kPropertiesVariable,
                            error.c_str());
    return store;
}

}  // namespace

uint64_t PropertyStore::MarkOf(std::string_view name) {
    if (name.empty()) return 1;
    const auto last = static_cast<unsigned char>(name.back());
    const auto middle = static_cast<unsigned char>(name[name.size() / 2]);
    return uint64_t{1} << ((name.size() * 7 + last * 5U + middle) % 64);
}

PropertyStore& PropertyStore::Instance() {
    static PropertyStore* const store = NewFromEnvironment();
    return *store;
}

bool PropertyStore::Set(std::string_view name, std::string_view value) {
    if (PropertyFault(name, value) != nullptr) return false;
    const std::unique_lock lock(mLock);
    mMarks.fetch_or(MarkOf(name));
    mValues.insert_or_assign(std::string(name), std::string(value));
    return true;
}

std::vector<std::string> PropertyStore::SetAll(std::string_view text) {
    ParsedProperties parsed = ParseProperties(text);
    for (const Property& property : parsed.properties)
        Set(property.name, property.value);
    return std::move(parsed.errors);
}

void PropertyStore::Clear() {
    const std::unique_lock lock(mLock);
    mMarks = 0;
    mValues.clear();
}

size_t PropertyStore::Read(std::string_view name, std::span<char> value) const {
    const std::shared_lock lock(mLock);
    const auto found = mValues.find(name);
    if (found == mValues.end()) return 0;
    const size_t size = std::min(found->second.size(), value.size());
    std::copy_n(found->second.data(), size, value.data());
    return size;
}

}  // namespace zarvo::host
