#pragma once

#include <android/binder_ibinder.h>

#ifdef __cplusplus
extern "C" {
#endif

/*
 * How far an interface is promised not to change. An object carries its level with it; a call is
 * sent only if that level holds everything the caller's level asks for. Levels are set on local
 * objects, before they are first sent; on anything else setting is logged and does nothing. An
 * object without one has the level of this (system) library.
 */

enum {
    /** The caller is vendor code: it may call vendor and VINTF objects. Consumed by the call. */
    FLAG_PRIVATE_VENDOR = 0x10000000,
};

/** Promised between system and vendor images, and to either of them. */
ABINDER_API void AIBinder_markVintfStability(AIBinder* binder);
/** Promised within the vendor image. */
ABINDER_API void AIBinder_markVendorStability(AIBinder* binder);
/** Promised within the system image. */
ABINDER_API void AIBinder_markSystemStability(AIBinder* binder);
/** Takes the VINTF promise back, down to vendor. */
ABINDER_API void AIBinder_forceDowngradeToVendorStability(AIBinder* binder);
/** Takes the VINTF promise back, down to system. */
ABINDER_API void AIBinder_forceDowngradeToSystemStability(AIBinder* binder);

#if defined(__ANDROID_VENDOR__)

enum {
    FLAG_PRIVATE_LOCAL = FLAG_PRIVATE_VENDOR,
};

/** Gives a local object the level of the code that includes this. */
static inline void AIBinder_markCompilationUnitStability(AIBinder* binder) {
    AIBinder_markVendorStability(binder);
}
/** Takes the VINTF promise back, down to the level of the code that includes this. */
static inline void AIBinder_forceDowngradeToLocalStability(AIBinder* binder) {
    AIBinder_forceDowngradeToVendorStability(binder);
}

#else

enum {
    FLAG_PRIVATE_LOCAL = 0,
};

/** Gives a local object the level of the code that includes this. */
static inline void AIBinder_markCompilationUnitStability(AIBinder* binder) {
    AIBinder_markSystemStability(binder);
}
/** Takes the VINTF promise back, down to the level of the code that includes this. */
static inline void AIBinder_forceDowngradeToLocalStability(AIBinder* binder) {
    AIBinder_forceDowngradeToSystemStability(binder);
}

#endif

#ifdef __cplusplus
}
#endif
