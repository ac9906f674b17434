#pragma once

#include <android/binder_status.h>
#include <stddef.h>
#include <stdint.h>
#ifndef __cplusplus
#include <uchar.h>
#endif

#ifdef __cplusplus
extern "C" {
#endif

struct AIBinder;
typedef struct AIBinder AIBinder;

/**
 * The packed arguments or results of one call, with one position at which the next value is read
 * or written. Values start at multiples of 4 bytes and are little-endian.
 *
 * One thread at a time may use a parcel; reading moves the position also of a const one. A read
 * past the end gives STATUS_NOT_ENOUGH_DATA and leaves the position; bytes that make no sense give
 * an error and never more than that. A write at a position before the end overwrites. A parcel
 * holds references to the binder objects in it until it ends, is reset, or they are overwritten
 * with everything else.
 *
 * A parcel may be read several times over, but not without end: once it has given out more than
 * four times its bytes and 4096, every read gives STATUS_NO_MEMORY until the position is set to 0.
 * So records that overlap do not grow beyond all measure in the memory of who reads them.
 */
struct AParcel;
typedef struct AParcel AParcel;

/** An empty parcel of no particular call, for AParcel_delete. */
ABINDER_API AParcel* AParcel_create(void);
/** Ends a parcel; null is fine. */
ABINDER_API void AParcel_delete(AParcel* parcel);

/** Moves the position, also beyond the end; 0 begins a new reading. STATUS_BAD_VALUE if negative.
 */
ABINDER_API binder_status_t AParcel_setDataPosition(const AParcel* parcel, int32_t position);
/** The position, in bytes from the start. */
ABINDER_API int32_t AParcel_getDataPosition(const AParcel* parcel);
/** The number of bytes, or the position if that is greater. */
ABINDER_API int32_t AParcel_getDataSize(const AParcel* parcel);
/** Empties the parcel; it stays with the call it was made for. */
ABINDER_API binder_status_t AParcel_reset(AParcel* parcel);

/**
 * Writes `size` bytes of `from`, from `start` on, at the position of `to`, and gives `to` the
 * binder objects among them. STATUS_BAD_VALUE if `from` has not that many bytes or a bound is not
 * a multiple of 4. STATUS_INVALID_OPERATION if the objects are of another connection, and for what
 * arrived and may be an object that was not read yet: read it first.
 */
ABINDER_API binder_status_t AParcel_appendFrom(const AParcel* from, AParcel* to, int32_t start,
                                               int32_t size);

/**
 * Copies `len` bytes from `start` on into `buffer`. STATUS_INVALID_OPERATION if the parcel holds
 * binder objects, which bytes alone do not carry, or what arrived and may be one that was not read
 * yet; STATUS_BAD_VALUE if it has not that many bytes.
 */
ABINDER_API binder_status_t AParcel_marshal(const AParcel* parcel, uint8_t* buffer, size_t start,
                                            size_t len);
/**
 * Makes `len` bytes, zeros following up to a multiple of 4, the content, with the position at the
 * start. Nothing in them names a binder object.
 */
ABINDER_API binder_status_t AParcel_unmarshal(AParcel* parcel, const uint8_t* buffer, size_t len);

/** Writes a reference to `binder`, or null. STATUS_INVALID_OPERATION for another connection's. */
ABINDER_API binder_status_t AParcel_writeStrongBinder(AParcel* parcel, AIBinder* binder);
/**
 * Reads what AParcel_writeStrongBinder wrote: `*binder` is a reference for the caller, or null.
 * STATUS_BAD_TYPE for an impossible stability, STATUS_BAD_VALUE for an object that was not sent.
 */
ABINDER_API binder_status_t AParcel_readStrongBinder(const AParcel* parcel, AIBinder** binder);

/** This system passes no files: STATUS_FDS_NOT_ALLOWED, but -1 is written as null. */
ABINDER_API binder_status_t AParcel_writeParcelFileDescriptor(AParcel* parcel, int fd);
/** Reads null as -1; anything else is STATUS_FDS_NOT_ALLOWED. */
ABINDER_API binder_status_t AParcel_readParcelFileDescriptor(const AParcel* parcel, int* fd);

/**
 * Writes the outcome with which every reply begins. For EX_TRANSACTION_FAILED it writes nothing
 * and returns the status held, which is then the outcome of the whole call.
 */
ABINDER_API binder_status_t AParcel_writeStatusHeader(AParcel* parcel, const AStatus* status);
/** Reads a reply's outcome; `*status` is for AStatus_delete, and null on failure. */
ABINDER_API binder_status_t AParcel_readStatusHeader(const AParcel* parcel, AStatus** status);

/**
 * Asked for room for a string of `length` bytes, its NUL included; puts it in `*buffer`. A length
 * of -1 stands for null and takes no room. false refuses, and the read fails.
 */
typedef bool (*AParcel_stringAllocator)(void* stringData, int32_t length, char** buffer);

/**
 * Writes `length` bytes of UTF-8 as UTF-16; null goes with -1. STATUS_BAD_VALUE, and nothing
 * written, for bytes that are not UTF-8 or a negative length.
 */
ABINDER_API binder_status_t AParcel_writeString(AParcel* parcel, const char* string,
                                                int32_t length);
/**
 * Reads a string as UTF-8 into the room that `allocator` gives. STATUS_UNEXPECTED_NULL if it
 * refuses null, also for bytes that are no string, which read as null; STATUS_NO_MEMORY if it
 * refuses room.
 */
ABINDER_API binder_status_t AParcel_readString(const AParcel* parcel, void* stringData,
                                               AParcel_stringAllocator allocator);

/**
 * Asked for room for `length` elements, -1 for a null array; false refuses, which gives
 * STATUS_UNEXPECTED_NULL for null and STATUS_NO_MEMORY otherwise. It is asked for no more elements
 * than the parcel has bytes left.
 */
typedef bool (*AParcel_stringArrayAllocator)(void* arrayData, int32_t length);
/** The AParcel_stringAllocator of element `index`. */
typedef bool (*AParcel_stringArrayElementAllocator)(void* arrayData, size_t index, int32_t length,
                                                    char** buffer);
/** Element `index` and its length in `*outLength`, null with -1; it stays the callee's. */
typedef const char* (*AParcel_stringArrayElementGetter)(const void* arrayData, size_t index,
                                                        int32_t* outLength);

/** Writes `length` strings; -1 is a null array. */
ABINDER_API binder_status_t AParcel_writeStringArray(AParcel* parcel, const void* arrayData,
                                                     int32_t length,
                                                     AParcel_stringArrayElementGetter getter);
/** Reads what AParcel_writeStringArray wrote. */
ABINDER_API binder_status_t AParcel_readStringArray(
        const AParcel* parcel, void* arrayData, AParcel_stringArrayAllocator allocator,
        AParcel_stringArrayElementAllocator elementAllocator);

/** As AParcel_stringArrayAllocator; but also a refused null gives STATUS_NO_MEMORY. */
typedef bool (*AParcel_parcelableArrayAllocator)(void* arrayData, int32_t length);
/** Writes element `index`; an error ends the writing of the array. */
typedef binder_status_t (*AParcel_writeParcelableElement)(AParcel* parcel, const void* arrayData,
                                                          size_t index);
/** Reads element `index`; an error ends the reading of the array. */
typedef binder_status_t (*AParcel_readParcelableElement)(const AParcel* parcel, void* arrayData,
                                                         size_t index);

/** Writes `length` elements; -1 is a null array. */
ABINDER_API binder_status_t
AParcel_writeParcelableArray(AParcel* parcel, const void* arrayData, int32_t length,
                             AParcel_writeParcelableElement elementWriter);
/** Reads what AParcel_writeParcelableArray wrote. */
ABINDER_API binder_status_t AParcel_readParcelableArray(
        const AParcel* parcel, void* arrayData, AParcel_parcelableArrayAllocator allocator,
        AParcel_readParcelableElement elementReader);

/* Single values. A write fails only for want of memory; a read only as every read of a parcel. */

ABINDER_API binder_status_t AParcel_writeInt32(AParcel* parcel, int32_t value);
ABINDER_API binder_status_t AParcel_writeUint32(AParcel* parcel, uint32_t value);
ABINDER_API binder_status_t AParcel_writeInt64(AParcel* parcel, int64_t value);
ABINDER_API binder_status_t AParcel_writeUint64(AParcel* parcel, uint64_t value);
ABINDER_API binder_status_t AParcel_writeFloat(AParcel* parcel, float value);
ABINDER_API binder_status_t AParcel_writeDouble(AParcel* parcel, double value);
ABINDER_API binder_status_t AParcel_writeBool(AParcel* parcel, bool value);
ABINDER_API binder_status_t AParcel_writeChar(AParcel* parcel, char16_t value);
ABINDER_API binder_status_t AParcel_writeByte(AParcel* parcel, int8_t value);

ABINDER_API binder_status_t AParcel_readInt32(const AParcel* parcel, int32_t* value);
ABINDER_API binder_status_t AParcel_readUint32(const AParcel* parcel, uint32_t* value);
ABINDER_API binder_status_t AParcel_readInt64(const AParcel* parcel, int64_t* value);
ABINDER_API binder_status_t AParcel_readUint64(const AParcel* parcel, uint64_t* value);
ABINDER_API binder_status_t AParcel_readFloat(const AParcel* parcel, float* value);
ABINDER_API binder_status_t AParcel_readDouble(const AParcel* parcel, double* value);
/** Every word but 0 is true. */
ABINDER_API binder_status_t AParcel_readBool(const AParcel* parcel, bool* value);
/** The low half of the word counts. */
ABINDER_API binder_status_t AParcel_readChar(const AParcel* parcel, char16_t* value);
/** The low byte of the word counts. */
ABINDER_API binder_status_t AParcel_readByte(const AParcel* parcel, int8_t* value);

/*
 * Arrays of values in one piece: booleans and chars take 4 bytes each, bytes are packed. Null goes
 * with a length of -1, a null array, or of 0, an empty one. STATUS_BAD_VALUE for null with a
 * length, for a length below -1, and for -1 with anything but null.
 */

ABINDER_API binder_status_t AParcel_writeInt32Array(AParcel* parcel, const int32_t* arrayData,
                                                    int32_t length);
ABINDER_API binder_status_t AParcel_writeUint32Array(AParcel* parcel, const uint32_t* arrayData,
                                                     int32_t length);
ABINDER_API binder_status_t AParcel_writeInt64Array(AParcel* parcel, const int64_t* arrayData,
                                                    int32_t length);
ABINDER_API binder_status_t AParcel_writeUint64Array(AParcel* parcel, const uint64_t* arrayData,
                                                     int32_t length);
ABINDER_API binder_status_t AParcel_writeFloatArray(AParcel* parcel, const float* arrayData,
                                                    int32_t length);
ABINDER_API binder_status_t AParcel_writeDoubleArray(AParcel* parcel, const double* arrayData,
                                                     int32_t length);
ABINDER_API binder_status_t AParcel_writeCharArray(AParcel* parcel, const char16_t* arrayData,
                                                   int32_t length);
ABINDER_API binder_status_t AParcel_writeByteArray(AParcel* parcel, const int8_t* arrayData,
                                                   int32_t length);

/** Element `index` of an array that need not lie in one piece. */
typedef bool (*AParcel_boolArrayGetter)(const void* arrayData, size_t index);
/** Takes element `index`. */
typedef void (*AParcel_boolArraySetter)(void* arrayData, size_t index, bool value);
ABINDER_API binder_status_t AParcel_writeBoolArray(AParcel* parcel, const void* arrayData,
                                                   int32_t length, AParcel_boolArrayGetter getter);

/*
 * Asked for room for `length` elements, -1 for a null array; puts it in `*outBuffer`, which may be
 * null for no elements. false refuses: STATUS_UNEXPECTED_NULL for null, STATUS_NO_MEMORY
 * otherwise. It is asked for no more than the parcel has bytes for; of booleans and chars, which
 * take 4 bytes each, for no more than there are bytes.
 */

typedef bool (*AParcel_int32ArrayAllocator)(void* arrayData, int32_t length, int32_t** outBuffer);
typedef bool (*AParcel_uint32ArrayAllocator)(void* arrayData, int32_t length, uint32_t** outBuffer);
typedef bool (*AParcel_int64ArrayAllocator)(void* arrayData, int32_t length, int64_t** outBuffer);
typedef bool (*AParcel_uint64ArrayAllocator)(void* arrayData, int32_t length, uint64_t** outBuffer);
typedef bool (*AParcel_floatArrayAllocator)(void* arrayData, int32_t length, float** outBuffer);
typedef bool (*AParcel_doubleArrayAllocator)(void* arrayData, int32_t length, double** outBuffer);
typedef bool (*AParcel_boolArrayAllocator)(void* arrayData, int32_t length);
typedef bool (*AParcel_charArrayAllocator)(void* arrayData, int32_t length, char16_t** outBuffer);
typedef bool (*AParcel_byteArrayAllocator)(void* arrayData, int32_t length, int8_t** outBuffer);

/*
 * Reading an array: STATUS_BAD_VALUE for a length below -1, STATUS_NO_MEMORY for more elements
 * than `allocator` may be asked for; either way it is not asked. Booleans and chars that end before
 * their number give STATUS_NOT_ENOUGH_DATA, after it was asked.
 */

ABINDER_API binder_status_t AParcel_readInt32Array(const AParcel* parcel, void* arrayData,
                                                   AParcel_int32ArrayAllocator allocator);
ABINDER_API binder_status_t AParcel_readUint32Array(const AParcel* parcel, void* arrayData,
                                                    AParcel_uint32ArrayAllocator allocator);
ABINDER_API binder_status_t AParcel_readInt64Array(const AParcel* parcel, void* arrayData,
                                                   AParcel_int64ArrayAllocator allocator);
ABINDER_API binder_status_t AParcel_readUint64Array(const AParcel* parcel, void* arrayData,
                                                    AParcel_uint64ArrayAllocator allocator);
ABINDER_API binder_status_t AParcel_readFloatArray(const AParcel* parcel, void* arrayData,
                                                   AParcel_floatArrayAllocator allocator);
ABINDER_API binder_status_t AParcel_readDoubleArray(const AParcel* parcel, void* arrayData,
                                                    AParcel_doubleArrayAllocator allocator);
ABINDER_API binder_status_t AParcel_readBoolArray(const AParcel* parcel, void* arrayData,
                                                  AParcel_boolArrayAllocator allocator,
                                                  AParcel_boolArraySetter setter);
ABINDER_API binder_status_t AParcel_readCharArray(const AParcel* parcel, void* arrayData,
                                                  AParcel_charArrayAllocator allocator);
ABINDER_API binder_status_t AParcel_readByteArray(const AParcel* parcel, void* arrayData,
                                                  AParcel_byteArrayAllocator allocator);

#ifdef __cplusplus
}
#endif
