#include <utility>

#include "host/binder/Parcel.h"
#include "host/binder/Status.h"
#include "host/binder/Utf.h"

namespace {

/** On the wire only: a block of what this library does not know comes before the real outcome. */
constexpr binder_exception_t kExtraHeader = -128;

/** Skips a block that tells its own length, beginning at the position. */
binder_status_t SkipBlock(const AParcel& parcel, bool mayBeMissing) {
    const size_t start = parcel.Position();
    const size_t available = parcel.Remaining();
    int32_t length = 0;
    const binder_status_t status = parcel.Read(&length);
    if (status != STATUS_OK || (length == 0 && mayBeMissing)) return status;
    if (length < 0 || static_cast<size_t>(length) > available) return STATUS_UNKNOWN_ERROR;
    parcel.SetPosition(start + static_cast<size_t>(length));
    return STATUS_OK;
}

binder_status_t ReadMessage(const AParcel& parcel, std::string* message) {
    const uint8_t* units = nullptr;
    size_t count = 0;
    const binder_status_t status = parcel.ReadUnits(&units, &count);
    if (status != STATUS_OK || units == nullptr) return status;
    message->resize(zarvo::host::Utf8Length(units, count));
    zarvo::host::Utf16ToUtf8(units, count, message->data());
    return STATUS_OK;
}

/** What comes after an exception's code: message, stack trace, and what its kind adds. */
binder_status_t ReadException(const AParcel& parcel, AStatus* read) {
    binder_status_t status = ReadMessage(parcel, &read->message);
    if (status == STATUS_OK) status = SkipBlock(parcel, true);
    if (status != STATUS_OK) return status;
    if (read->exception == EX_SERVICE_SPECIFIC) return parcel.Read(&read->detail);
    return read->exception == EX_PARCELABLE ? SkipBlock(parcel, false) : STATUS_OK;
}

binder_status_t WriteException(const AStatus& status, AParcel* parcel) {
    binder_status_t written = parcel->Write(status.exception);
    // A message that is no UTF-8 must not cost the caller the exception itself.
    const auto message = zarvo::host::Utf8ToUtf16(status.message);
    if (written == STATUS_OK) written = parcel->WriteUnits(message.value_or(u""));
    if (written == STATUS_OK) written = parcel->Write<int32_t>(0);
    if (written != STATUS_OK) return written;
    if (status.exception == EX_SERVICE_SPECIFIC) return parcel->Write(status.detail);
    return status.exception == EX_PARCELABLE ? parcel->Write<int32_t>(0) : STATUS_OK;
}

}  // namespace

binder_status_t AParcel_writeStatusHeader(AParcel* parcel, const AStatus* status) {
    if (status->exception == EX_TRANSACTION_FAILED) return status->detail;
    if (status->exception == EX_NONE) return parcel->Write<int32_t>(EX_NONE);
    return WriteException(*status, parcel);
}

binder_status_t AParcel_readStatusHeader(const AParcel* parcel, AStatus** status) {
    *status = nullptr;
    AStatus read;
    binder_status_t result = parcel->Read(&read.exception);
    if (result == STATUS_OK && read.exception == kExtraHeader) {
        read.exception = EX_NONE;
        result = SkipBlock(*parcel, false);
    } else if (result == STATUS_OK && read.exception != EX_NONE) {
        result = ReadException(*parcel, &read);
    }
    if (result != STATUS_OK) return result;
    *status = read.exception == EX_NONE ? AStatus_newOk() : new AStatus(std::move(read));
    return STATUS_OK;
}
