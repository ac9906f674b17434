#pragma once

#include <android/binder_ibinder.h>
#include <stdbool.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/*
 * The threads on which this process is called. Without any nobody calls it, but for calls back to a
 * thread that is itself inside a call: a service is not reached, a client gets no events and is
 * told no deaths.
 */

/** How many threads, besides the one that startThreadPool makes, may serve one other process;
 * 15 unless set. Before the pool is started; false afterwards. */
ABINDER_API bool ABinderProcess_setThreadPoolMaxThreadCount(uint32_t numThreads);
/** Starts the pool, once. */
ABINDER_API void ABinderProcess_startThreadPool(void);
ABINDER_API bool ABinderProcess_isThreadPoolStarted(void);
/** Gives this thread to calls, and does not start the pool: alone it serves one call at a time.
 * Normally never returns. */
ABINDER_API void ABinderProcess_joinThreadPool(void);

#ifdef __cplusplus
}
#endif
