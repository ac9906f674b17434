package vendor.zarvo.hardware.camera.aon;

import vendor.zarvo.hardware.camera.aon.AONCallBackInfo;
import vendor.zarvo.hardware.camera.aon.AONSensorStateInfo;

/**
 * What a client of IAONService implements to receive events.
 *
 * THREADS. The calls come on binder threads of the client's process; the client needs a running
 * thread pool. Sensor states that an operation of the service brings about arrive while the
 * client's call of that operation is still waiting for its answer, possibly on the very thread
 * that waits.
 *
 * THE SERVICE WAITS for each call to return. It delivers an event on the thread that reads the
 * sensor and a state often with its own lock held, so a slow callback delays every event behind
 * it, and one that never returns stops the service for everybody. Copy what is needed and return.
 *
 * DO NOT CALL IAONService from inside a callback. While an operation of the service delivers, such
 * a call on the thread that delivers fails with EX_ILLEGAL_STATE, "called from inside a callback".
 * And a client that waits inside a callback for another of its threads to call the service may
 * wait for itself: that call only begins when the callback has returned. Hand the work to another
 * thread and return.
 *
 * DEATH. A client whose process ends is noticed by itself, and what it had started is stopped.
 * A client that does not answer a ping is passed over until then. Whatever a callback returns as
 * its status is ignored.
 */
@VintfStability
interface IAONServiceCallBack {
    /**
     * One frame has been analysed.
     *
     * @param clientHandle the handle under which this callback is registered.
     * @param info the results.
     */
    void onAONEvent(in long clientHandle, in AONCallBackInfo info);

    /**
     * The sensor started, stopped, became idle or was taken by the regular camera.
     *
     * @param clientHandle the handle under which this callback is registered. During
     *        registerClient it may come before the client has that handle from the call itself.
     * @param info the sensor and its new state.
     */
    void onSensorStateChanged(in long clientHandle, in AONSensorStateInfo info);
}
