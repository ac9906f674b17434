#include "host/binder/Parcel.h"

#include <algorithm>
#include <cstdlib>

using zarvo::host::RecycledBlock;
using zarvo::host::Ref;

namespace {

constexpr size_t kPad = 4;

constexpr size_t Padded(size_t length) {
    return (length + kPad - 1) & ~(kPad - 1);
}

/** How often, and beyond that how many, bytes are given out before reading fails. An honest reader
 * takes each once; some take another look. */
constexpr uint64_t kMostReadings = 4;
constexpr uint64_t kFreeBytes = 4096;

}  // namespace

void* AParcel::operator new(size_t size) {
    void* const place = RecycledBlock::Of(size).Release();
    // Nobody could catch an exception across the C interface either.
    if (place == nullptr) std::abort();
    return place;
}

void AParcel::operator delete(void* parcel) {
    RecycledBlock::Adopt(parcel, sizeof(AParcel));
}

void AParcel::Reset() {
    DropObjects();
    mBuffer.Clear();
    SetPosition(0);
}

binder_status_t AParcel::SetBytes(const uint8_t* bytes, size_t length) {
    uint8_t* const place = ForBytes(length);
    if (place == nullptr) return STATUS_NO_MEMORY;
    if (length > 0) std::memcpy(place, bytes, length);
    return STATUS_OK;
}

uint8_t* AParcel::ForBytes(size_t length) {
    Reset();
    if (length > INT32_MAX - 3 || !mBuffer.Reserve(Padded(length))) return nullptr;
    uint8_t* const place = Append(length);
    SetPosition(0);
    return place;
}

void AParcel::HandOver() const {
    for (Object& object : mObjects)
        object.lent = false;
}

uint8_t* AParcel::Append(size_t length) {
    if (length > INT32_MAX - 3) return nullptr;
    const size_t padded = Padded(length);
    uint8_t* const place = mBuffer.Extend(mPosition, padded);
    if (place == nullptr) return nullptr;
    if (padded != length) std::memset(place + padded - kPad, 0, kPad);
    mPosition += padded;
    return place;
}

binder_status_t AParcel::Take(size_t length, const uint8_t** place) const {
    if (length > INT32_MAX - 3 || Padded(length) > Remaining()) return STATUS_NOT_ENOUGH_DATA;
    // Counted also when refused: what was too much for one reader stays so for the next.
    mGiven += Padded(length);
    if (mGiven > kMostReadings * Size() + kFreeBytes) return STATUS_NO_MEMORY;
    *place = Data() + mPosition;
    mPosition += Padded(length);
    return STATUS_OK;
}

binder_status_t AParcel::WriteUnits(std::u16string_view units) {
    const size_t bytes = units.size() * sizeof(char16_t);
    if (bytes > INT32_MAX - 8) return STATUS_NO_MEMORY;
    uint8_t* const place = Append(sizeof(int32_t) + bytes + sizeof(char16_t));
    if (place == nullptr) return STATUS_NO_MEMORY;
    const auto count = static_cast<int32_t>(units.size());
    std::memcpy(place, &count, sizeof(count));
    std::memcpy(place + sizeof(count), units.data(), bytes);
    std::memset(place + sizeof(count) + bytes, 0, sizeof(char16_t));
    return STATUS_OK;
}

binder_status_t AParcel::ReadUnits(const uint8_t** units, size_t* count) const {
    *units = nullptr;
    *count = 0;
    int32_t announced = 0;
    binder_status_t status = Read(&announced);
    if (status != STATUS_OK) return status;
    if (announced < 0 || static_cast<size_t>(announced) > Remaining() / sizeof(char16_t)) {
        return STATUS_OK;
    }
    const size_t bytes = static_cast<size_t>(announced) * sizeof(char16_t);
    const uint8_t* place = nullptr;
    status = Take(bytes + sizeof(char16_t), &place);
    if (status == STATUS_NO_MEMORY) return status;
    if (status != STATUS_OK || place[bytes] != 0 || place[bytes + 1] != 0) return STATUS_OK;
    *units = place;
    *count = static_cast<size_t>(announced);
    return STATUS_OK;
}

/* The functions of the C interface that move, fill and empty a parcel as a whole. */

AParcel* AParcel_create() {
    return new AParcel;
}

void AParcel_delete(AParcel* parcel) {
    delete parcel;
}

binder_status_t AParcel_setDataPosition(const AParcel* parcel, int32_t position) {
    if (position < 0) return STATUS_BAD_VALUE;
    parcel->SetPosition(static_cast<size_t>(position));
    return STATUS_OK;
}

int32_t AParcel_getDataPosition(const AParcel* parcel) {
    return static_cast<int32_t>(parcel->Position());
}

int32_t AParcel_getDataSize(const AParcel* parcel) {
    return static_cast<int32_t>(std::max(parcel->Size(), parcel->Position()));
}

binder_status_t AParcel_reset(AParcel* parcel) {
    parcel->Reset();
    return STATUS_OK;
}

binder_status_t AParcel_appendFrom(const AParcel* from, AParcel* to, int32_t start, int32_t size) {
    if (start < 0 || size < 0) return STATUS_BAD_VALUE;
    return to->AppendFrom(*from, static_cast<size_t>(start), static_cast<size_t>(size));
}

binder_status_t AParcel_marshal(const AParcel* parcel, uint8_t* buffer, size_t start, size_t len) {
    if (!parcel->Objects().empty() || parcel->MayHideObject(0, parcel->Size())) {
        return STATUS_INVALID_OPERATION;
    }
    if (start > parcel->Size() || len > parcel->Size() - start) return STATUS_BAD_VALUE;
    if (len > 0) std::memcpy(buffer, parcel->Data() + start, len);
    return STATUS_OK;
}

binder_status_t AParcel_unmarshal(AParcel* parcel, const uint8_t* buffer, size_t len) {
    return parcel->SetBytes(buffer, len);
}
