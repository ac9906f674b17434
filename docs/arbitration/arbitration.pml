/*
 * The world around the library: two client processes, of which one hangs and dies when it likes,
 * and two camera devices, both with the stream's sensor. To run it: ./aon prove. What it proves and
 * what it leaves out: docs/arbitration.md.
 *
 * Without a switch this is the proof. Each switch lets one hazard in and asks only for that:
 *
 *     HAZARD_OPEN_OVERTAKES_CLOSE  a device opens while a close of it is pending
 *     HAZARD_CLIENT_HANGS          a client that hangs in a camera's notice is not killed
 *     HAZARD_LATE_NOTICE           what the client is told last, next to what is so
 */

mtype = { notification_thread, binder_thread, death_notice, camera_thread,  /* THREAD */
          getInterfaceVersion, onSensorStateChanged,                        /* what is called */
          started, busy, idle,                                              /* sensor states */
          unlinked, linked, refused };                                      /* deathLink */

#define DEVICES 2
#define NOBODY 0
#define MORTAL 1
#define NEXT 2

bool died, deathNotice;        /* of the mortal client; binder owes the notice */
mtype deathLink = unlinked;    /* between it and the registry */
bool cameraHolds[DEVICES];     /* from the end of NotifyOpen's first part to NotifyClose */

/* What the service promises to whoever opens a camera. Looked at whenever a lock is let go. */
#define CAMERA_WINS !(mOpenedSensorId && (cameraHolds[0] || cameraHolds[1]))

/* Nor does a client get the sensor, or the stream, of the one before it. */
#define NEWCOMER_HAS_NOTHING(client) \
    (mRegisterCallbackMap == client || !mStartServiceTypeMap && !mSensorConfigMap)

#ifdef HAZARD_OPEN_OVERTAKES_CLOSE
#define MAY_OPEN(device) true
#else
#define MAY_OPEN(device) !mOpenDeviceMap[device]
#endif

#ifdef HAZARD_CLIENT_HANGS
#define MAY_HANG THREAD == notification_thread
#else
#define MAY_HANG true
#endif

#define THREAD (_pid == 1 -> notification_thread : (_pid == 6 -> death_notice : \
                (_pid % 2 == 0 -> camera_thread : binder_thread)))

/* A call to a client returns, at once or, when it hangs, with the client's death. */
inline callClient(client, what) {
    if
    :: true
    :: client == MORTAL && !died && MAY_HANG -> hung = true;
       printf("%e: client %d does not return from %e\n", THREAD, client, what)
    fi
}

#ifdef HAZARD_LATE_NOTICE
#define REMEMBER(state) mSensorStates = state
#else
#define REMEMBER(state) skip
#endif

/* The notice of the death may come on the thread of the call, inside an operation. */
inline whileItHangs() {
    if
    :: hung ->
       atomic { died -> hung = false };
       if
       :: atomic { deathNotice && AONService_mLock == _pid + 1 -> deathNotice = false };
          askedBefore = admitted;
          RemoteCallbackManager_OnRemoteCallbackDied(MORTAL);
          mPendingDeaths = admitted;
          d_step { admitted = askedBefore; askedBefore = false }
       :: true
       fi
    :: else
    fi
}

/* A client may call back from inside a notice that a camera brought about. What the operation does
 * is not repeated here: the binder threads do it. */
inline mayCallBack() {
    if
    :: atomic { !died -> lock(AONService_mLock); unlock(AONService_mLock) }
    :: true
    fi
}

inline linkToDeath(client) {
    if
    :: client == MORTAL -> deathLink = (died -> refused : linked)
    :: else
    fi
}

inline unlinkToDeath(client) {
    if
    :: client == MORTAL -> deathLink = unlinked
    :: else
    fi
}

#include "library.pml"

/* What a client had called runs on when it dies. */
proctype BinderThread(byte client) {
    byte receiver;
    bool admitted, askedBefore, hung;
    do
    :: client == NEXT || !died -> Operation(client)
    :: break
    od
}

proctype BinderDied() {
    byte receiver;
    bool admitted, askedBefore, hung;
    atomic { died = true; deathNotice = (deathLink == linked) };
    if
    :: atomic { deathNotice -> deathNotice = false };
       RemoteCallbackManager_OnRemoteCallbackDied(MORTAL);
       if
       :: admitted -> AONService_OnRemoteCallbackDied(MORTAL)
       :: else
       fi
    :: !deathNotice
    fi
}

proctype CameraThread(byte device) {
    do
    :: NotifyOpen(device);
       if
       :: NotifyClose(device)
       :: break
       fi
    :: break
    od
}

#define AT_REST (_nr_pr == 2 && !mNotifyFuture)

init {
    atomic {
        run NotificationThread();
        run CameraThread(0);
#if defined HAZARD_CLIENT_HANGS
        run BinderThread(MORTAL)
    };
    timeout;
    printf("camera_thread: waits still, and nothing else can move\n");
    assert(AONManager_mNotifyMutex == 0)
#elif defined HAZARD_OPEN_OVERTAKES_CLOSE
        run BinderThread(NEXT)
    }  /* CAMERA_WINS is asked all the time */
#elif defined HAZARD_LATE_NOTICE
        run BinderThread(NEXT)
    };
    AT_REST;
    printf("binder_thread: the client was last told %e, and no stream runs\n", mSensorStates);
    assert(mSensorStates != started || mOpenedSensorId)
#else
        run BinderThread(NEXT);
        run CameraThread(1);
        run BinderThread(MORTAL);
        run BinderDied()
    };
    AT_REST;
    /* No sensor stays held for a closed camera. */
    assert(mOpenDeviceMap[0] == cameraHolds[0] && mOpenDeviceMap[1] == cameraHolds[1]);
    /* A dead client is forgotten, unless it had died before it was registered. */
    assert(mClientCallbacks != MORTAL || deathLink == refused);
    /* A living one is not. */
    assert(mClientCallbacks != NEXT || mRegisterCallbackMap == NEXT);
    /* No stream runs for nobody. */
    assert(!mOpenedSensorId || mStartServiceTypeMap && mSensorConfigMap);
    assert(!mOpenedSensorId || mClientCallbacks != NOBODY)
#endif
}
