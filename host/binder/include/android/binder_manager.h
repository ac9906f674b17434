#pragma once

#include <android/binder_ibinder.h>
#include <android/binder_status.h>

#ifdef __cplusplus
extern "C" {
#endif

/*
 * Services by name. An instance is "<descriptor>/<instance>", 1 to 127 letters, digits, '_', '-',
 * '.' and '/', not beginning with a '.'.
 *
 * Here a name is a socket file in one runtime directory of the user: the one that AON_RUNTIME_DIR
 * names, else aon/ in XDG_RUNTIME_DIR, else /tmp/aon-<uid>. Any thread may call these functions.
 */

/**
 * Publishes a local object; a name that this process has published is replaced. Calls arrive once
 * the thread pool is started. The name is taken back when the process exits.
 *
 * EX_ILLEGAL_ARGUMENT for null arguments, a bad name, a remote object, or an object with VINTF
 * stability whose instance is not declared; EX_SECURITY if the runtime directory is somebody
 * else's; EX_ILLEGAL_STATE if another process serves that name, or the system refuses.
 */
__attribute__((warn_unused_result)) ABINDER_API binder_exception_t
AServiceManager_addService(AIBinder* binder, const char* instance);

/** The service, a reference for the caller, or null if nobody serves it. In the process that
 * published it, the object itself. Waits up to five seconds for a service that is there to answer:
 * if it does not, null, and errno is ETIMEDOUT. */
__attribute__((warn_unused_result)) ABINDER_API AIBinder* AServiceManager_checkService(
        const char* instance);

/** The same; waits up to five seconds for it to appear and answer. */
__attribute__((warn_unused_result)) ABINDER_API AIBinder* AServiceManager_getService(
        const char* instance);

/** The same; waits for as long as it takes. Null only for a bad name, or if the system refuses. */
__attribute__((warn_unused_result)) ABINDER_API AIBinder* AServiceManager_waitForService(
        const char* instance);

/** Whether a device with this software must have the instance. */
ABINDER_API bool AServiceManager_isDeclared(const char* instance);

#ifdef __cplusplus
}
#endif
