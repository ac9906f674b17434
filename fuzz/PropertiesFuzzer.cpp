// The list of properties in the environment: what is taken is a property and can be read back.

#include <cutils/properties.h>

#include <array>
#include <cstdlib>
#include <cstring>

#include "fuzz/Input.h"
#include "host/cutils/PropertyParser.h"
#include "host/cutils/PropertyStore.h"

namespace {

using namespace zarvo::host;

void Check(const Property& property) {
    if (PropertyFault(property.name, property.value) != nullptr) std::abort();
    if (!PropertyStore::Instance().Set(property.name, property.value)) std::abort();
    std::array<char, PROPERTY_VALUE_MAX> value{};
    const int length = property_get(property.name.c_str(), value.data(), "");
    if (std::string_view(value.data(), static_cast<size_t>(length)) != property.value) std::abort();
    (void)property_get_int32(property.name.c_str(), 0);
    const int8_t truth = property_get_bool(property.name.c_str(), 0);
    if (truth != 0 && truth != 1) std::abort();
}

}  // namespace

/** The input is the text. */
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view text = zarvo::fuzz::Text({data, size});
    const ParsedProperties parsed = ParseProperties(text);
    for (const Property& property : parsed.properties)
        Check(property);
    const auto pieces = static_cast<size_t>(std::count(text.begin(), text.end(), ';')) + 1;
    if (parsed.properties.size() + parsed.errors.size() > pieces) std::abort();
    PropertyStore::Instance().Clear();
    return 0;
}
