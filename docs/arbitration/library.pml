/*
 * What the library does with its locks, function by function. The function CLASS::NAME is the
 * inline CLASS_NAME, or NAME where only one class has it; the lock CLASS::NAME is CLASS_NAME. Other
 * members keep their names.
 *
 * There is one handle, and one sensor that the stream runs on. A set of service types is empty or
 * not; a decision that hangs on sets, sizes or rates is left open, both ways. `admitted` is the
 * answer of the last question.
 *
 * Between lock and unlock nothing waits, so this is one step. Were a client called in between, the
 * step would end there, with the lock held.
 */

byte AONService_mLock, AONManager_mMutex, AONManager_mNotifyMutex, RemoteCallbackManager_mLock;

inline lock(mutex) { mutex == 0 -> mutex = _pid + 1 }

inline unlock(mutex) {
    assert(mutex == _pid + 1);
    assert(CAMERA_WINS);
    mutex = 0
}

/* ---- RemoteCallbackManager ---- */

byte mClientCallbacks;       /* the client that is registered */
mtype mSensorStates = idle;  /* the last one of the sensor */

inline OnAONSensorEvent(state) {
    atomic {
        lock(RemoteCallbackManager_mLock);
        receiver = mClientCallbacks;
        REMEMBER(state);
        unlock(RemoteCallbackManager_mLock);
        printf("%e: OnAONSensorEvent: the sensor is %e\n", THREAD, state);
        callClient(receiver, onSensorStateChanged)
    };
    whileItHangs();
    receiver = NOBODY
}

inline RemoteCallbackManager_RegisterClient(client) {
    callClient(client, getInterfaceVersion);
    whileItHangs();
    atomic {
        lock(RemoteCallbackManager_mLock);
        admitted = (mClientCallbacks == NOBODY || mClientCallbacks == client);
        if
        :: admitted ->
           mClientCallbacks = client;
           linkToDeath(client);
           printf("%e: RegisterClient: client %d is registered\n", THREAD, client)
        :: else
        fi;
        unlock(RemoteCallbackManager_mLock);
        if
        :: admitted -> callClient(client, onSensorStateChanged)
        :: else
        fi
    };
    whileItHangs()
}

inline RemoteCallbackManager_UnregisterClient() {
    atomic {
        lock(RemoteCallbackManager_mLock);
        unlinkToDeath(mClientCallbacks);
        mClientCallbacks = NOBODY;
        unlock(RemoteCallbackManager_mLock)
    }
}

inline CheckClientHandleRegistered() {
    atomic {
        lock(RemoteCallbackManager_mLock);
        admitted = (mClientCallbacks != NOBODY);
        unlock(RemoteCallbackManager_mLock)
    }
}

/* Up to where the listener is told: if it was the registered one. */
inline RemoteCallbackManager_OnRemoteCallbackDied(client) {
    atomic {
        lock(RemoteCallbackManager_mLock);
        admitted = (mClientCallbacks == client);
        if
        :: admitted -> unlinkToDeath(client); mClientCallbacks = NOBODY
        :: else
        fi;
        unlock(RemoteCallbackManager_mLock)
    }
}

/* ---- AONManager ---- */

bool mOpenedSensorId;           /* the stream runs */
bool mOpenDeviceMap[DEVICES];
bool mNotifyFuture;             /* a task is on its way, or at work */
bool taskOpens;                 /* the running task: ReportOpen or ReportClose, */
byte taskDevice;                /* of this device */

inline AONManager_StartService() {
    atomic {
        lock(AONManager_mMutex);
        admitted = false;
        if
        :: mOpenDeviceMap[0] || mOpenDeviceMap[1]
        :: else ->
           if
           :: admitted = true; mOpenedSensorId = true;
              printf("%e: StartService: no open device has the sensor, the stream runs\n", THREAD)
           :: true  /* the stream refuses */
           fi
        fi;
        unlock(AONManager_mMutex)
    };
    if
    :: admitted -> OnAONSensorEvent(started)
    :: else
    fi
}

inline AONManager_StopService() {
    atomic {
        lock(AONManager_mMutex);
        admitted = mOpenedSensorId;
        mOpenedSensorId = false;
        unlock(AONManager_mMutex)
    };
    if
    :: admitted -> OnAONSensorEvent(idle)
    :: else
    fi
}

inline GetServiceTypeStarted() {
    atomic {
        lock(AONManager_mMutex);
        admitted = mOpenedSensorId;
        unlock(AONManager_mMutex)
    }
}

/* Also UnsubscribeSensor: of the configuration nothing is modelled but that its lock is taken. */
inline AONManager_SubscribeSensor() {
    atomic { lock(AONManager_mMutex); unlock(AONManager_mMutex) }
}

inline NotifyOpen(device) {
    atomic {
        MAY_OPEN(device);
        lock(AONManager_mMutex);
        if
        :: mOpenDeviceMap[device] ->
           printf("%e: NotifyOpen(%d): finds itself in mOpenDeviceMap\n", THREAD, device)
        :: else -> printf("%e: NotifyOpen(%d): enters mOpenDeviceMap\n", THREAD, device)
        fi;
        mOpenDeviceMap[device] = true;
        mOpenedSensorId = false;
        cameraHolds[device] = true;
        unlock(AONManager_mMutex)
    };
    LaunchNotification(true, device)
}

inline NotifyClose(device) {
    atomic {
        cameraHolds[device] = false;
        printf("%e: NotifyClose(%d)\n", THREAD, device);
        LaunchNotification(false, device)
    }
}

inline LaunchNotification(opens, device) {
    atomic {
        lock(AONManager_mNotifyMutex);
        if
        :: mNotifyFuture ->
           printf("%e: waits in mNotifyFuture.get(), holds mNotifyMutex\n", THREAD);
           !mNotifyFuture
        :: else
        fi;
        mNotifyFuture = true;
        taskOpens = opens;
        taskDevice = device;
        if
        :: opens -> printf("%e: launches ReportOpen(%d)\n", THREAD, device)
        :: else -> printf("%e: launches ReportClose(%d)\n", THREAD, device)
        fi;
        unlock(AONManager_mNotifyMutex)
    }
}

/* ---- AONService. `local` tells spin that mLock keeps all others away from these. ---- */

local byte mRegisterCallbackMap;  /* the client that is registered, as the service knows it */
local bool mSensorConfigMap;      /* it is subscribed */
local bool mStartServiceTypeMap;  /* it has started something */
local bool mPendingDeaths;

inline UnsubscribeSensorLocked() {
    if
    :: mStartServiceTypeMap -> StopServiceLocked()
    :: else
    fi;
    mSensorConfigMap = false;
    AONManager_SubscribeSensor()  /* UnsubscribeSensor */
}

/* With all that was started. */
inline StopServiceLocked() {
    mStartServiceTypeMap = false;
    AONManager_StopService()
}

inline StartServiceLocked() {
    if
    :: mSensorConfigMap ->
       GetServiceTypeStarted();
       if
       :: admitted -> mStartServiceTypeMap = true  /* joins */
       :: admitted                                 /* asks for more than runs */
       :: !admitted ->
          mStartServiceTypeMap = true;
          AONManager_StartService();
          mStartServiceTypeMap = admitted
       fi
    :: else
    fi
}

inline CleanUpClientLocked() {
    UnsubscribeSensorLocked();
    mRegisterCallbackMap = NOBODY
}

inline HandleDeathLocked(client) {
    if
    :: mRegisterCallbackMap == NOBODY || mRegisterCallbackMap == client -> CleanUpClientLocked()
    :: else  /* the handle is another's by now */
    fi
}

inline registerClient(client) {
    RemoteCallbackManager_RegisterClient(client);
    if
    :: !admitted ->  /* EvictLocked */
       UnsubscribeSensorLocked();
       RemoteCallbackManager_UnregisterClient();  /* Clear */
       RemoteCallbackManager_RegisterClient(client)
    :: admitted && mRegisterCallbackMap != NOBODY && mRegisterCallbackMap != client ->
       CleanUpClientLocked()
    :: else
    fi;
    assert(NEWCOMER_HAS_NOTHING(client));
    mRegisterCallbackMap = client
}

inline subscribeSensor() {
    AONManager_SubscribeSensor();
    if
    :: mRegisterCallbackMap != NOBODY -> mSensorConfigMap = true
    :: true  /* not supported, or more than the running stream gives */
    fi
}

inline stopService() {
    if
    :: StopServiceLocked()
    :: mStartServiceTypeMap -> AONManager_StopService(); StartServiceLocked()  /* some are left */
    fi
}

inline unregisterClient() {
    if
    :: !mStartServiceTypeMap && !mSensorConfigMap ->
       RemoteCallbackManager_UnregisterClient();
       mRegisterCallbackMap = NOBODY
    :: else
    fi
}

/* An operation of the client's choice, from begin to end of the class Operation. */
inline Operation(client) {
    if
    :: atomic { lock(AONService_mLock) };
       registerClient(client)
    :: atomic { lock(AONService_mLock); CheckClientHandleRegistered() };
       if
       :: !admitted
       :: admitted -> subscribeSensor()
       :: admitted -> StartServiceLocked()
       :: admitted -> stopService()
       :: admitted -> UnsubscribeSensorLocked()
       :: admitted -> unregisterClient()
       fi
    fi;
    endOfOperation()
}

inline endOfOperation() {
    do
    :: mPendingDeaths -> mPendingDeaths = false; HandleDeathLocked(MORTAL)
    :: else -> break
    od;
    atomic { unlock(AONService_mLock); admitted = false }
}

inline AONService_OnRemoteCallbackDied(client) {
    atomic { lock(AONService_mLock) };
    HandleDeathLocked(client);
    endOfOperation()
}

/* ---- The threads that std::async makes. No two are at work at a time; one stands for all. ---- */

inline ReportOpen(device) {
    atomic { lock(AONManager_mMutex); unlock(AONManager_mMutex) };  /* copies what it needs */
    OnAONSensorEvent(busy);
    mayCallBack()
}

inline ReportClose(device) {
    atomic {
        lock(AONManager_mMutex);
        mOpenDeviceMap[device] = false;
        printf("%e: ReportClose(%d): erases its device from mOpenDeviceMap\n", THREAD, device);
        unlock(AONManager_mMutex)
    };
    OnAONSensorEvent(idle);
    mayCallBack()
}

proctype NotificationThread() {
    byte receiver;
    bool admitted, askedBefore, hung;
end:
    do
    :: mNotifyFuture && taskOpens -> ReportOpen(taskDevice); goto notificationDone
    :: mNotifyFuture && !taskOpens -> ReportClose(taskDevice);
notificationDone:
       atomic { mNotifyFuture = false; taskOpens = false; taskDevice = 0 }
    od
}
