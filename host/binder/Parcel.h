#pragma once

#include <android/binder_parcel.h>

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>
#include <vector>

#include "host/binder/Binder.h"
#include "host/binder/ParcelBuffer.h"
#include "host/binder/Session.h"

static_assert(std::endian::native == std::endian::little, "parcels carry values as they lie here");

/**
 * The bytes of one request or reply, in the form that RPC binder carries: little-endian, padded to
 * 4 bytes. Made for an object to call, or for a session, or for neither; owned by who made it, used
 * by one thread at a time.
 *
 * A binder object in it is a presence word, an address and a stability. In a session's parcel the
 * address is the session's, elsewhere a number of this parcel's own. Either way the object itself
 * comes from mObjects, by position and address, or else from the session: bytes alone never become
 * a pointer.
 *
 * A record in hostile bytes may end, by the size it tells, inside its own fields, and the next be
 * read from those again. So the bytes given out are counted, and reading fails once they are many
 * times what there is. Moving to the start begins the count anew: no record ends there.
 */
struct AParcel {
  public:
    /** One binder object among the bytes; the parcel holds it. */
    struct Object {
        size_t position;  // of the presence word
        uint64_t address;
        zarvo::host::Ref<AIBinder> binder;
        bool lent;  // the session keeps the address for us
    };

    AParcel() = default;
    /** A parcel of this end of a connection, null for none. */
    explicit AParcel(std::shared_ptr<zarvo::host::Session> session)
        : mSession(std::move(session)) {}
    /** A parcel to call `target` with, which it keeps. */
    AParcel(zarvo::host::Ref<AIBinder> target, std::shared_ptr<zarvo::host::Session> session)
        : mSession(std::move(session)), mTarget(std::move(target)) {}
    AParcel(const AParcel&) = delete;
    AParcel& operator=(const AParcel&) = delete;
    ~AParcel() {
        if (!mObjects.empty()) DropObjects();
    }

    // Memory as of RecycledBlock.
    static void* operator new(size_t size);
    static void operator delete(void* parcel);

    AIBinder* Target() const { return mTarget.Get(); }
    const std::vector<Object>& Objects() const { return mObjects; }

    const uint8_t* Data() const { return mBuffer.Data(); }
    size_t Size() const { return mBuffer.Size(); }
    size_t Position() const { return mPosition; }
    size_t Remaining() const { return mPosition < Size() ? Size() - mPosition : 0; }
    void SetPosition(size_t position) const {
        mPosition = position;
        if (position == 0) mGiven = 0;
    }
    /** Empties it; it stays whose it is. */
    void Reset();
    /** Takes these bytes alone, padded, as content. */
    binder_status_t SetBytes(const uint8_t* bytes, size_t length);

    /** Empties it and makes it that long; the bytes are the caller's to fill, the position is their
     * beginning. Null if no memory. */
    uint8_t* ForBytes(size_t length);
    /** It is sent: what it lent is now the far end's to acknowledge. */
    void HandOver() const;

    /** Room for `length` bytes and zero padding at the position, which moves; null if no memory. */
    uint8_t* Append(size_t length);
    /** The next `length` bytes, the position moving past their padding. STATUS_NOT_ENOUGH_DATA if
     * there are too few, STATUS_NO_MEMORY if too many have been given out. */
    binder_status_t Take(size_t length, const uint8_t** place) const;

    template <typename T>
    binder_status_t Write(T value) {
        static_assert(sizeof(T) % 4 == 0);
        uint8_t* const place = mBuffer.Extend(mPosition, sizeof(T));
        if (place == nullptr) return STATUS_NO_MEMORY;
        std::memcpy(place, &value, sizeof(T));
        mPosition += sizeof(T);
        return STATUS_OK;
    }
    template <typename T>
    binder_status_t Read(T* value) const {
        static_assert(sizeof(T) % 4 == 0);
        const uint8_t* place = nullptr;
        const binder_status_t status = Take(sizeof(T), &place);
        if (status == STATUS_OK) std::memcpy(value, place, sizeof(T));
        return status;
    }

    /** A string in its wire form, whatever its units. */
    binder_status_t WriteUnits(std::u16string_view units);
    /**
     * The bytes of the next string's units, without their NUL. `*units` is null if the bytes hold
     * null or are no string; the position is then after the count, or after the block that lacks
     * only its NUL. Fails only if there is no count, or as Take does without memory.
     */
    binder_status_t ReadUnits(const uint8_t** units, size_t* count) const;

    binder_status_t WriteObject(AIBinder* binder);
    /** The next object, a reference for the caller, or null. */
    binder_status_t ReadObject(AIBinder** binder) const;
    /** Whether bytes may be an object that arrived and was not read, which is not in Objects(). */
    bool MayHideObject(size_t start, size_t size) const;
    /** Appends a stretch of another parcel, its objects under new addresses. */
    binder_status_t AppendFrom(const AParcel& from, size_t start, size_t size);
    /** Puts down that the object at `position`, written with `address`, is `binder`. */
    void AddObject(size_t position, uint64_t address, zarvo::host::Ref<AIBinder> binder) {
        Keep({position, address, std::move(binder), false});
    }

  private:
    binder_status_t Find(size_t position, uint64_t address, int32_t stability,
                         AIBinder** binder) const;
    void Keep(Object object) const;
    void DropObjects();
    /** Where the object at `position` stands in mObjects, or would. */
    std::vector<Object>::iterator Place(size_t position) const;

    const std::shared_ptr<zarvo::host::Session> mSession{};
    const zarvo::host::Ref<AIBinder> mTarget{};
    zarvo::host::ParcelBuffer mBuffer;
    mutable size_t mPosition = 0;
    /** Bytes given out since the position was last set to 0. */
    mutable uint64_t mGiven = 0;
    /** By position. Mutable: what the session resolves is kept, so that it is counted once. */
    mutable std::vector<Object> mObjects;
    uint64_t mLastOwnAddress = 0;
};
