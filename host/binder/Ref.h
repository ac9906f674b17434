#pragma once

#include <utility>

namespace zarvo::host {

/**
 * Holds one strong reference to an AIBinder or what derives from it, or null. As thread-safe as a
 * plain pointer.
 */
template <typename T>
class Ref {
  public:
    Ref() = default;
    /** Takes over a reference the caller has. */
    static Ref Adopt(T* object) { return Ref(object); }
    /** Takes one more reference. */
    static Ref Share(T* object) {
        if (object != nullptr) object->IncStrong();
        return Ref(object);
    }
    Ref(const Ref& other) : Ref(Share(other.mObject)) {}
    Ref(Ref&& other) noexcept : mObject(std::exchange(other.mObject, nullptr)) {}
    Ref& operator=(Ref other) noexcept {
        std::swap(mObject, other.mObject);
        return *this;
    }
    ~Ref() {
        if (mObject != nullptr) mObject->DecStrong();
    }

    T* Get() const { return mObject; }
    T* operator->() const { return mObject; }
    explicit operator bool() const { return mObject != nullptr; }
    /** Hands the reference to the caller. */
    [[nodiscard]] T* Release() { return std::exchange(mObject, nullptr); }

  private:
    explicit Ref(T* object) : mObject(object) {}

    T* mObject = nullptr;
};

}  // namespace zarvo::host
