#pragma once

#include <android/binder_parcel.h>
#include <android/binder_status.h>
#include <stdint.h>
#include <sys/types.h>
#include <unistd.h>

#ifdef __cplusplus
extern "C" {
#endif

/** Which method of an interface a call means: FIRST_CALL_TRANSACTION plus its place. */
typedef uint32_t transaction_code_t;
/** How a call is made: FLAG_ONEWAY and others, or 0. */
typedef uint32_t binder_flags_t;

enum {
    FIRST_CALL_TRANSACTION = 0x00000001,
    LAST_CALL_TRANSACTION = 0x00FFFFFF,
};

enum {
    /** The caller waits for no reply and learns of no failure in the callee. */
    FLAG_ONEWAY = 0x01,
};

/**
 * The kind of a binder object: its interface's name and how its instances are made, called and
 * ended. Lives for ever. Two classes of the same name are different classes.
 */
struct AIBinder_Class;
typedef struct AIBinder_Class AIBinder_Class;

/**
 * A binder object: one of this process (local), or what stands for one behind a connection
 * (remote). Counted by strong references; any thread may use it while it holds one. For one object
 * there is one AIBinder as long as anything holds it, so addresses tell whether two are the same.
 */
struct AIBinder;
typedef struct AIBinder AIBinder;

/** Names an AIBinder without keeping it. One thread at a time may use it. */
struct AIBinder_Weak;
typedef struct AIBinder_Weak AIBinder_Weak;

/** What to call when a remote object is gone; one may watch many. */
struct AIBinder_DeathRecipient;
typedef struct AIBinder_DeathRecipient AIBinder_DeathRecipient;

/** Makes the user data of a new local object from what AIBinder_new was given. */
typedef void* (*AIBinder_Class_onCreate)(void* args);
/** Ends the user data, on the thread that let go of the last reference. */
typedef void (*AIBinder_Class_onDestroy)(void* userData);
/**
 * Serves one call, after the interface token was checked and read; `out` is empty. Runs on the
 * thread of the caller or of the connection, on several at once, with no lock held.
 */
typedef binder_status_t (*AIBinder_Class_onTransact)(AIBinder* binder, transaction_code_t code,
                                                     const AParcel* in, AParcel* out);
/** Writes what helps at debugging to `fd`, which stays the caller's. */
typedef binder_status_t (*AIBinder_onDump)(AIBinder* binder, int fd, const char** args,
                                           uint32_t numArgs);

/** Makes a class; null if any argument is null or the name is no UTF-8. The name is copied. */
ABINDER_API AIBinder_Class* AIBinder_Class_define(const char* interfaceDescriptor,
                                                  AIBinder_Class_onCreate onCreate,
                                                  AIBinder_Class_onDestroy onDestroy,
                                                  AIBinder_Class_onTransact onTransact)
        __attribute__((warn_unused_result));
/** Sets what AIBinder_dump calls; before the class has any instance. */
ABINDER_API void AIBinder_Class_setOnDump(AIBinder_Class* clazz, AIBinder_onDump onDump);
/** Calls of this class carry no interface token; before it has any instance. */
ABINDER_API void AIBinder_Class_disableInterfaceTokenHeader(AIBinder_Class* clazz);
/** The interface's name, valid for ever. */
ABINDER_API const char* AIBinder_Class_getDescriptor(const AIBinder_Class* clazz);

/**
 * Makes a local object with user data from onCreate(args), called at once; the caller has the one
 * strong reference. Null for a null class.
 */
ABINDER_API AIBinder* AIBinder_new(const AIBinder_Class* clazz, void* args)
        __attribute__((warn_unused_result));

/** True for an object behind a connection; false for null. */
ABINDER_API bool AIBinder_isRemote(const AIBinder* binder);
/** What is known without asking: false for null and once the connection is known to be gone. */
ABINDER_API bool AIBinder_isAlive(const AIBinder* binder);
/** Goes to the object and back. STATUS_UNEXPECTED_NULL for null, STATUS_DEAD_OBJECT if gone. */
ABINDER_API binder_status_t AIBinder_ping(AIBinder* binder);
/**
 * Lets a local object dump itself to `fd`. STATUS_UNEXPECTED_NULL for null, STATUS_BAD_TYPE for a
 * remote object: connections carry no files.
 */
ABINDER_API binder_status_t AIBinder_dump(AIBinder* binder, int fd, const char** args,
                                          uint32_t numArgs);

/**
 * Asks for a notice when `binder` is gone; `cookie` goes with it. Each link gives one notice at
 * most, on a thread of the connection's; the same pair may be linked several times. The caller
 * keeps all three alive until the link is gone; who lets go of the last reference to `binder`
 * before it dies gets no notice.
 *
 * STATUS_INVALID_OPERATION for a local object and where nobody would notice: the connection takes
 * no calls from the other end, so that no thread listens to it. STATUS_NO_MEMORY if there is no
 * thread to give the notice, STATUS_DEAD_OBJECT for an object already gone, STATUS_UNEXPECTED_NULL
 * for null. A link that fails is unlinked at once (see setOnUnlinked).
 */
ABINDER_API binder_status_t AIBinder_linkToDeath(AIBinder* binder,
                                                 AIBinder_DeathRecipient* recipient, void* cookie);
/**
 * Takes back one link made with the same three. STATUS_NAME_NOT_FOUND if there is none, also after
 * its notice; STATUS_DEAD_OBJECT if the notice is already on its way; STATUS_UNEXPECTED_NULL for
 * null.
 */
ABINDER_API binder_status_t AIBinder_unlinkToDeath(AIBinder* binder,
                                                   AIBinder_DeathRecipient* recipient,
                                                   void* cookie);

/** Whose call this thread is serving; this process's own user when it serves none. */
ABINDER_API uid_t AIBinder_getCallingUid(void);
/** Whose call this thread is serving; this process itself when it serves none. */
ABINDER_API pid_t AIBinder_getCallingPid(void);
/** Whether this thread is serving a call of a connection's other end. */
ABINDER_API bool AIBinder_isHandlingTransaction(void);

/** Takes one more strong reference; null is fine. */
ABINDER_API void AIBinder_incStrong(AIBinder* binder);
/**
 * Gives a strong reference back; null is logged. The last one of a local object runs onDestroy
 * before this returns.
 */
ABINDER_API void AIBinder_decStrong(AIBinder* binder);
/** The number of strong references a moment ago, for debugging; -1 for null. */
ABINDER_API int32_t AIBinder_debugGetRefCount(AIBinder* binder);

/**
 * Says which class an object is meant to be of; a proxy needs one before it can be called. A
 * remote object is asked for its name, once, and the first class that fits stays. False if the
 * name differs, the object is gone, or anything is null. A local object has its class from the
 * beginning: true for that very class alone.
 */
ABINDER_API bool AIBinder_associateClass(AIBinder* binder, const AIBinder_Class* clazz);
/** The class, null if none is associated yet. */
ABINDER_API const AIBinder_Class* AIBinder_getClass(AIBinder* binder);
/** What onCreate gave; null for remote objects. */
ABINDER_API void* AIBinder_getUserData(AIBinder* binder);

/**
 * Begins a call: `*in` is a parcel for this object, with the interface token written, for the
 * arguments. It is the caller's until AIBinder_transact takes it. On failure it is null:
 * STATUS_UNEXPECTED_NULL for null, STATUS_INVALID_OPERATION without an associated class.
 */
ABINDER_API binder_status_t AIBinder_prepareTransaction(AIBinder* binder, AParcel** in);
/**
 * Makes the call and waits for its reply, `*out`, which is the caller's; with FLAG_ONEWAY a remote
 * object is only sent to, and the reply is empty. Takes and ends `*in` in every case; on failure
 * `*out` is null.
 *
 * STATUS_UNEXPECTED_NULL for null, STATUS_UNKNOWN_TRANSACTION for a code that is no method's,
 * STATUS_BAD_VALUE for unknown flags or a parcel made for another object, STATUS_BAD_TYPE if the
 * object's stability does not allow it or the callee is of another interface, STATUS_DEAD_OBJECT
 * if it is gone. STATUS_FAILED_TRANSACTION for a request or reply that is too long to send and for
 * too many calls inside each other, STATUS_WOULD_BLOCK if the other end takes no calls from this
 * thread. Other failures are the callee's, none of them an exception of the method.
 */
ABINDER_API binder_status_t AIBinder_transact(AIBinder* binder, transaction_code_t code,
                                              AParcel** in, AParcel** out, binder_flags_t flags);

/** Names `binder` without keeping it; null for null. */
ABINDER_API AIBinder_Weak* AIBinder_Weak_new(AIBinder* binder) __attribute__((warn_unused_result));
/** Ends a weak reference; null is fine. */
ABINDER_API void AIBinder_Weak_delete(AIBinder_Weak* weakBinder);
/** A strong reference to the object, null if it has ended. */
ABINDER_API AIBinder* AIBinder_Weak_promote(AIBinder_Weak* weakBinder)
        __attribute__((warn_unused_result));
/** One more name of the same object; null for null. */
ABINDER_API AIBinder_Weak* AIBinder_Weak_clone(const AIBinder_Weak* weak);
/** An order that holds for as long as either side lives, also when the objects have ended. */
ABINDER_API bool AIBinder_Weak_lt(const AIBinder_Weak* lhs, const AIBinder_Weak* rhs);
/** The same order, of the objects themselves; null comes first. */
ABINDER_API bool AIBinder_lt(const AIBinder* lhs, const AIBinder* rhs);

/**
 * Makes a recipient whose `onBinderDied(cookie)` is called for each link whose object dies; null
 * for null. The caller ends it with AIBinder_DeathRecipient_delete.
 */
ABINDER_API AIBinder_DeathRecipient* AIBinder_DeathRecipient_new(void (*onBinderDied)(void* cookie))
        __attribute__((warn_unused_result));
/**
 * Sets what is called, once for every link, when that link is gone for any reason: after
 * onBinderDied if it died, also if the linking itself failed. The place to free a cookie. Set it
 * before linking.
 */
ABINDER_API void AIBinder_DeathRecipient_setOnUnlinked(AIBinder_DeathRecipient* recipient,
                                                       void (*onUnlinked)(void* cookie));
/**
 * Ends a recipient and with it its links: onUnlinked runs for each before this returns, except
 * for one whose notice is being given on another thread at this moment. Null is fine.
 */
ABINDER_API void AIBinder_DeathRecipient_delete(AIBinder_DeathRecipient* recipient);

/**
 * Attaches `ext`, kept strongly, to a local object; before others see it. STATUS_UNEXPECTED_NULL
 * for a null binder, STATUS_INVALID_OPERATION for a remote one.
 */
ABINDER_API binder_status_t AIBinder_setExtension(AIBinder* binder, AIBinder* ext);
/** What is attached: a reference for the caller, or null. */
ABINDER_API binder_status_t AIBinder_getExtension(AIBinder* binder, AIBinder** outExt);

#ifdef __cplusplus
}
#endif
