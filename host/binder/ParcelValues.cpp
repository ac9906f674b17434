#include "host/binder/Parcel.h"

/* Single values: everything shorter than a word travels as one. */

binder_status_t AParcel_writeInt32(AParcel* parcel, int32_t value) {
    return parcel->Write(value);
}

binder_status_t AParcel_writeUint32(AParcel* parcel, uint32_t value) {
    return parcel->Write(value);
}

binder_status_t AParcel_writeInt64(AParcel* parcel, int64_t value) {
    return parcel->Write(value);
}

binder_status_t AParcel_writeUint64(AParcel* parcel, uint64_t value) {
    return parcel->Write(value);
}

binder_status_t AParcel_writeFloat(AParcel* parcel, float value) {
    return parcel->Write(value);
}

binder_status_t AParcel_writeDouble(AParcel* parcel, double value) {
    return parcel->Write(value);
}

binder_status_t AParcel_writeBool(AParcel* parcel, bool value) {
    return parcel->Write<int32_t>(value ? 1 : 0);
}

binder_status_t AParcel_writeChar(AParcel* parcel, char16_t value) {
    return parcel->Write<uint32_t>(value);
}

binder_status_t AParcel_writeByte(AParcel* parcel, int8_t value) {
    return parcel->Write<int32_t>(value);
}

binder_status_t AParcel_readInt32(const AParcel* parcel, int32_t* value) {
    return parcel->Read(value);
}

binder_status_t AParcel_readUint32(const AParcel* parcel, uint32_t* value) {
    return parcel->Read(value);
}

binder_status_t AParcel_readInt64(const AParcel* parcel, int64_t* value) {
    return parcel->Read(value);
}

binder_status_t AParcel_readUint64(const AParcel* parcel, uint64_t* value) {
    return parcel->Read(value);
}

binder_status_t AParcel_readFloat(const AParcel* parcel, float* value) {
    return parcel->Read(value);
}

binder_status_t AParcel_readDouble(const AParcel* parcel, double* value) {
    return parcel->Read(value);
}

binder_status_t AParcel_readBool(const AParcel* parcel, bool* value) {
    int32_t word = 0;
    const binder_status_t status = parcel->Read(&word);
    if (status == STATUS_OK) *value = word != 0;
    return status;
}

binder_status_t AParcel_readChar(const AParcel* parcel, char16_t* value) {
    uint32_t word = 0;
    const binder_status_t status = parcel->Read(&word);
    if (status == STATUS_OK) *value = static_cast<char16_t>(word);
    return status;
}

binder_status_t AParcel_readByte(const AParcel* parcel, int8_t* value) {
    int32_t word = 0;
    const binder_status_t status = parcel->Read(&word);
    if (status == STATUS_OK) *value = static_cast<int8_t>(word);
    return status;
}
