package vendor.zarvo.hardware.camera.aon;

import vendor.zarvo.hardware.camera.aon.AONSensorInfo;
import vendor.zarvo.hardware.camera.aon.IAONServiceCallBack;
import vendor.zarvo.hardware.camera.aon.SensorConfigInfo;

/**
 * The always-on camera: low-power analysis of what a camera sensor sees, while no one uses the
 * regular camera.
 *
 * A client goes through these steps, and back through them in the opposite order:
 *
 *     registerClient    give a callback, get a handle
 *     subscribeSensor   say which sensor, frame size, rate and service types are wanted
 *     startService      start service types; events arrive from now on
 *     stopService       stop some or all of them
 *     unsubscribeSensor give the sensor configuration back
 *     unregisterClient  give the handle back
 *
 * ONE CLIENT. The service holds one callback at a time. A client that registers another callback
 * takes the place of the one before: whatever ran for the old client is stopped and unsubscribed,
 * and its handle stands for the new client. If a stream ran, the old client is told
 * SENSOR_STATE_IDLE for its stop; nothing tells it that it was replaced.
 *
 * HANDLES ARE REUSED, after a client left, died or was replaced, and the service asks for nothing
 * but the handle. A client that was put out and goes on calling acts on its successor: its
 * stopService stops what the successor has started.
 *
 * EVERY EVENT CARRIES THE PICTURE, if the stream delivers one, whatever service types are started.
 * Treat what arrives as what it is: pictures of people.
 *
 * SERVICE TYPES are bits (SERVICE_TYPE_...), joined with OR. What is subscribed must lie within
 * what was registered, and what is started within what is subscribed.
 *
 * THE REGULAR CAMERA ALWAYS WINS. When a camera device opens, whichever sensor it uses, a running
 * stream stops, and the client hears of it through IAONServiceCallBack.onSensorStateChanged. The
 * stream does not come back by itself: after the sensor is idle again the client calls
 * startService anew. What was registered and subscribed stays as it was. What was started stays
 * noted, though it does not run, until the next startService, stopService or unsubscribeSensor:
 * unregisterClient is refused, and a stopService that leaves some of it starts what is left, if no
 * camera device holds the sensor any more.
 *
 * ERRORS. Every operation answers with OK or with one of:
 *
 *     service-specific error 1   general: an unknown handle, a conflict with another client, a
 *                                configuration that no sensor offers, a stream that refused
 *     service-specific error 2   the service types are not within what this client may use
 *     EX_ILLEGAL_ARGUMENT        registerClient with a null callback (a binder of another
 *                                interface arrives as null, too)
 *     EX_ILLEGAL_STATE           called from inside a callback (see IAONServiceCallBack)
 *
 * The message of an error is a fixed text, meant for logs. Some of the texts say the opposite of
 * what they mean; each operation below gives the real cause beside the text.
 *
 * THREADS AND DEATH. Operations may be called from any thread; the service handles them one at a
 * time, and one that brings about a callback waits for it to return. When the client's process
 * dies the service stops and unsubscribes what it had and frees its handle. When the service
 * dies, the client's calls fail with STATUS_DEAD_OBJECT and nothing of the client is remembered:
 * link to the service's death, and start from registerClient.
 */
@VintfStability
interface IAONService {
    /** Faces as a list, with the rotation of the scene: keys 100 to 103 of AONResult. */
    const int SERVICE_TYPE_FUSION = 1;
    /** How the head is turned: key 200 of AONResult. */
    const int SERVICE_TYPE_FACE_ANGLE = 2;
    /** Where the eyes look: key 300 of AONResult. */
    const int SERVICE_TYPE_GAZE = 4;
    /** A descriptor of the face: key 400 of AONResult. */
    const int SERVICE_TYPE_FACE_FEATURE = 8;

    /**
     * Delivery at the subscribed rate. Any other value of SensorConfigInfo.deliveryMode has its
     * meaning in the vision stream, which may then lower the rate.
     */
    const int DELIVERY_MODE_TIME_BASED = 1;

    /**
     * Registers a callback for the given service types.
     *
     * Before this returns, the callback is asked for its interface version and hash, and it is
     * told the state of every sensor that is not idle. Registering the same callback again gives
     * the same handle, replaces the service types and tells the states again. A client that takes
     * another's place is not told them: it hears of a sensor with its next change.
     *
     * @param callback where events go; never null.
     * @param serviceType the service types that this client may subscribe and start.
     * @return the client handle, never 0, for all further calls.
     *
     * Errors, in the order in which they are checked: EX_ILLEGAL_ARGUMENT for a null callback;
     * 1 "aon manager is null"; 2 "some type not support"; 1 "RemoteCallBackManager is null";
     * 1 "register callback failed".
     */
    long registerClient(in IAONServiceCallBack callback, int serviceType);

    /**
     * Lists the sensors that can run the always-on stream, with their frame sizes and rates. Once
     * it holds a sensor the list stays the same for as long as the service lives. Needs no
     * registration.
     *
     * Errors: 1 without a message when the stream manager is missing.
     */
    List<AONSensorInfo> getAonSensorInfoList();

    /**
     * Subscribes one sensor configuration for the client, in place of an earlier one.
     *
     * Sensor, size, rate and service types must be offered by getAonSensorInfoList as they stand.
     * The configurations of all clients are merged: the highest width, height and rate, and all
     * service types. While the stream runs, a configuration is only accepted if it asks for no
     * more than what is subscribed so far. It then only limits what the client may start: the
     * stream keeps the size and rate it has, over stops and starts, until a configuration is
     * subscribed while it is stopped.
     *
     * Errors, in the order in which they are checked:
     * 1 "clientHandle not register": the handle is unknown.
     * 2 "service type need subset of register": config.serviceType is not within the registered
     *   service types.
     * 1 "aon manager is null": the stream manager is missing.
     * 1 "config not support": no sensor offers this combination.
     * 1 "can support this config when sensor running": it can NOT be supported, because the
     *   stream runs, and the configuration asks for more than what is subscribed, for another
     *   sensor, or for another delivery mode while neither of the two modes is time-based.
     * 1 "can support this config when other process use": it can NOT be supported, because
     *   another sensor is subscribed.
     * 1 "aon manager SubscribeSensor failed": the stream manager refused.
     */
    void subscribeSensor(in long clientHandle, in SensorConfigInfo config);

    /**
     * Starts service types. Given again, the new set takes the place of the started one; while
     * the stream runs, it can only hold types that already run (stop first to start others).
     *
     * Before this returns, the callback is told SENSOR_STATE_STARTED if the stream was started.
     * While a camera device holds the sensor this fails with "aon manager StartService failed";
     * wait for SENSOR_STATE_IDLE and try again.
     *
     * @param serviceType at least one service type. Do not start 0: the stream would run with no
     *        service type noted for it. Neither unsubscribeSensor nor the client's death nor
     *        another client's registration ends such a stream; only a startService or stopService
     *        that names types does, or a camera device that opens.
     *
     * Errors, in the order in which they are checked:
     * 1 "in_clientHandle not register": the handle is unknown.
     * 2 "start service type is subset of subscribe service type": serviceType is NOT within the
     *   subscribed service types, or nothing is subscribed.
     * 1 "aon manager is null": the stream manager is missing.
     * 1 "aon manager StartService failed": the stream did not start, or the sensor is busy.
     * 1 "sensor hub is running, please do start on other process stop": the stream already runs
     *   without some of these types.
     */
    void startService(in long clientHandle, int serviceType);

    /**
     * Stops service types. The stream stops, and starts anew with the types that are left, if
     * any. Types that are not started are passed over. If the new start is refused the answer is
     * OK all the same, and nothing of the client is started any more: the sign is that no
     * SENSOR_STATE_STARTED follows.
     *
     * Before this returns, the callback is told SENSOR_STATE_IDLE for the stop, if the stream ran,
     * and SENSOR_STATE_STARTED for the new start, if there was one.
     *
     * Errors, in the order in which they are checked: 1 "in_clientHandle not register";
     * 1 without a message when the stream manager is missing.
     */
    void stopService(in long clientHandle, int serviceType);

    /**
     * Gives the sensor configuration back, after stopping whatever the client still has started.
     *
     * Errors, in the order in which they are checked: 1 "in_clientHandle not register";
     * 1 "aon manager is null".
     */
    void unsubscribeSensor(in long clientHandle);

    /**
     * Gives the handle back. No further call reaches the callback, but for one that is already
     * on its way.
     *
     * Errors, in the order in which they are checked:
     * 1 "not stop all service type, unregisterClient failed": service types are still started.
     * 1 "not unsubscribe all service type, unregisterClient failed": a configuration is still
     *   subscribed.
     * 1 "in_clientHandle not register": the handle is unknown.
     */
    void unregisterClient(in long clientHandle);
}
