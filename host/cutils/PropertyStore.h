#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <map>
#include <shared_mutex>
#include <span>
#include <string>
#include <string_view>

#include "host/common/FaultPoint.h"
#include "host/cutils/PropertyParser.h"

namespace zarvo::host {

/** Environment variable that gives properties to a program: `name=value;name=value;…`. */
inline constexpr char kPropertiesVariable[] = "AON_PROPERTIES";

/**
 * The properties of this process, behind the functions of <cutils/properties.h>; tests and
 * programs set and clear them here.
 *
 * One per process, made at first use from the environment and never destroyed, so that threads
 * may read while the process ends. A malformed pair in the environment costs one warning in the
 * log, the others are taken. All operations may be called from any thread; reads share a lock and
 * allocate nothing.
 */
class [[gnu::visibility("default")]] PropertyStore {
  public:
    static PropertyStore& Instance();

    PropertyStore() = default;
    PropertyStore(const PropertyStore&) = delete;
    PropertyStore& operator=(const PropertyStore&) = delete;

    /** Sets a property; false, and nothing changed, when PropertyFault() has something to say. */
    bool Set(std::string_view name, std::string_view value);
    /** Takes over every good pair of the text and returns what was wrong with the others. */
    std::vector<std::string> SetAll(std::string_view text);
    /** Forgets every property, those of the environment too. */
    void Clear();
    /** Copies the value without a terminating zero, cut to the room, and returns its length; 0
     * when the property is unset. */
    size_t Read(std::string_view name, std::span<char> value) const;
    /** False only if the property is not set. Takes no lock. */
    bool MayHave(std::string_view name) const {
        return (mMarks.load() & MarkOf(name)) != 0;
    }
    /** False only if no property is set. Takes no lock. */
    bool MayHaveAny() const {
        return mMarks.load() != 0;
    }

    /** Failure of property_set(), by call number. */
    FaultPoint setFault;

  private:
    /** One of 64 bits, told apart by it are names that differ in length or end. */
    static uint64_t MarkOf(std::string_view name);

    /** The marks of all names that were set since the last Clear(). Changed under mLock. */
    std::atomic<uint64_t> mMarks{0};
    mutable std::shared_mutex mLock;
    std::map<std::string, std::string, std::less<>> mValues;
};

}  // namespace zarvo::host
