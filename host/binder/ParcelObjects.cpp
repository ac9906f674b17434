#include <algorithm>

#include "host/binder/Binder.h"
#include "host/binder/Parcel.h"
#include "host/binder/Stability.h"
#include "host/binder/rpc/Wire.h"

using zarvo::host::Ref;
using zarvo::host::Stability;

namespace {

/** A present object: presence word, address, stability. A null one is two zero words. */
constexpr size_t kObjectBytes = 16;
constexpr int32_t kPresent = 1;

/** Whether the bytes could be read as a present object of a session. */
bool LooksLikeObject(const uint8_t* bytes) {
    int32_t present = 0;
    uint64_t address = 0;
    int32_t stability = 0;
    std::memcpy(&present, bytes, 4);
    std::memcpy(&address, bytes + 4, 8);
    std::memcpy(&stability, bytes + 12, 4);
    return (present & kPresent) != 0 && zarvo::host::wire::IsAddress(address) &&
           Stability::IsLevel(stability);
}

}  // namespace

binder_status_t AParcel::WriteObject(AIBinder* binder) {
    if (binder == nullptr) return Write<int64_t>(0);
    Object object{mPosition, 0, Ref<AIBinder>::Share(binder), mSession != nullptr};
    if (mSession == nullptr) {
        object.address = ++mLastOwnAddress;
    } else if (const auto status = mSession->Lend(binder, &object.address); status != STATUS_OK) {
        return status;
    }
    const int32_t stability = Stability::Settle(binder);
    uint8_t* const place = Append(kObjectBytes);
    if (place == nullptr) {
        if (object.lent) mSession->TakeBack(object.address);
        return STATUS_NO_MEMORY;
    }
    std::memcpy(place, &kPresent, 4);
    std::memcpy(place + 4, &object.address, 8);
    std::memcpy(place + 12, &stability, 4);
    Keep(std::move(object));
    return STATUS_OK;
}

binder_status_t AParcel::ReadObject(AIBinder** binder) const {
    *binder = nullptr;
    const size_t position = mPosition;
    int32_t present = 0;
    uint64_t address = 0;
    int32_t stability = 0;
    binder_status_t status = Read(&present);
    present &= kPresent;
    if (status == STATUS_OK && present != 0) status = Read(&address);
    if (status == STATUS_OK) status = Read(&stability);
    if (status != STATUS_OK) return status;
    if (present == 0) return stability == 0 ? STATUS_OK : STATUS_BAD_TYPE;
    if (!Stability::IsLevel(stability)) return STATUS_BAD_TYPE;
    return Find(position, address, stability, binder);
}

bool AParcel::MayHideObject(size_t start, size_t size) const {
    if (mSession == nullptr) return false;
    for (size_t position = start; position + kObjectBytes <= start + size; position += 4) {
        if (!LooksLikeObject(Data() + position)) continue;
        // The word before a known object can look like the beginning of one, too.
        const auto known = Place(position);
        if (known == mObjects.end() || known->position >= position + kObjectBytes) return true;
        position = known->position + kObjectBytes - 4;
    }
    return false;
}

binder_status_t AParcel::AppendFrom(const AParcel& from, size_t start, size_t size) {
    if (start > from.Size() || size > from.Size() - start) return STATUS_BAD_VALUE;
    if (start % 4 != 0 || size % 4 != 0) return STATUS_BAD_VALUE;
    // As bytes alone it would pass uncounted, and end while it is still in use.
    if (from.MayHideObject(start, size)) return STATUS_INVALID_OPERATION;
    const std::vector<Object> objects = from.mObjects;
    const size_t begin = mPosition;
    uint8_t* const place = Append(size);
    if (place == nullptr) return STATUS_NO_MEMORY;
    if (size > 0) std::memmove(place, from.Data() + start, size);
    const size_t end = mPosition;
    for (const Object& object : objects) {
        if (object.position < start || object.position + kObjectBytes > start + size) continue;
        mPosition = begin + (object.position - start);
        const binder_status_t status = WriteObject(object.binder.Get());
        if (status != STATUS_OK) return status;
    }
    mPosition = end;
    return STATUS_OK;
}

binder_status_t AParcel::Find(size_t position, uint64_t address, int32_t stability,
                              AIBinder** binder) const {
    const auto place = Place(position);
    if (place != mObjects.end() && place->position == position && place->address == address) {
        *binder = Ref(place->binder).Release();
        return STATUS_OK;
    }
    if (mSession == nullptr) return STATUS_BAD_VALUE;
    const binder_status_t status = mSession->Resolve(address, stability, binder);
    if (status == STATUS_OK) Keep({position, address, Ref<AIBinder>::Share(*binder), false});
    return status;
}

std::vector<AParcel::Object>::iterator AParcel::Place(size_t position) const {
    return std::lower_bound(
            mObjects.begin(), mObjects.end(), position,
            [](const Object& object, size_t wanted) { return object.position < wanted; });
}

void AParcel::Keep(Object object) const {
    const auto place = Place(object.position);
    if (place == mObjects.end() || place->position != object.position) {
        mObjects.insert(place, std::move(object));
        return;
    }
    std::swap(*place, object);
    if (object.lent) mSession->TakeBack(object.address);
}

void AParcel::DropObjects() {
    for (const Object& object : mObjects) {
        if (object.lent) mSession->TakeBack(object.address);
    }
    mObjects.clear();
}

binder_status_t AParcel_writeStrongBinder(AParcel* parcel, AIBinder* binder) {
    return parcel->WriteObject(binder);
}

binder_status_t AParcel_readStrongBinder(const AParcel* parcel, AIBinder** binder) {
    return parcel->ReadObject(binder);
}

binder_status_t AParcel_writeParcelFileDescriptor(AParcel* parcel, int fd) {
    return fd == -1 ? parcel->Write<int32_t>(0) : STATUS_FDS_NOT_ALLOWED;
}

binder_status_t AParcel_readParcelFileDescriptor(const AParcel* parcel, int* fd) {
    *fd = -1;
    int32_t present = 0;
    const binder_status_t status = parcel->Read(&present);
    return status == STATUS_OK && present != 0 ? STATUS_FDS_NOT_ALLOWED : status;
}
