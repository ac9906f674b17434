package com.example.aon;

import android.os.Binder;
import android.os.DeadObjectException;
import android.os.IBinder;
import android.os.RemoteException;
import android.os.ServiceManager;
import android.os.ServiceSpecificException;
import android.util.Log;

import java.util.concurrent.BlockingQueue;
import java.util.concurrent.LinkedBlockingQueue;

import vendor.zarvo.hardware.camera.aon.AONCallBackInfo;
import vendor.zarvo.hardware.camera.aon.AONResult;
import vendor.zarvo.hardware.camera.aon.AONSensorStateInfo;
import vendor.zarvo.hardware.camera.aon.IAONService;
import vendor.zarvo.hardware.camera.aon.IAONServiceCallBack;
import vendor.zarvo.hardware.camera.aon.SensorConfigInfo;

/**
 * A system component that watches how many faces are seen, until it is interrupted. A thread of the
 * component runs {@link #watch}; it alone calls the service.
 */
public final class AonClient {
    private static final String TAG = "AonClient";
    private static final String SERVICE = IAONService.DESCRIPTOR + "/default";
    private static final int FUSION = IAONService.SERVICE_TYPE_FUSION;

    private enum News { SENSOR_IDLE, SERVICE_DIED }

    /** What callbacks leave for the watching thread: they must not call the service themselves. */
    private final BlockingQueue<News> mNews = new LinkedBlockingQueue<>();

    private final IAONServiceCallBack mCallback = new IAONServiceCallBack.Stub() {
        @Override
        public void onAONEvent(long clientHandle, AONCallBackInfo info) {
            for (AONResult result : info.results) {
                if (result.key == AONResult.RESULT_KEY_FUSION_COUNT) {
                    Log.i(TAG, result.value.getIntValue() + " face(s)");
                }
            }
        }

        @Override
        public void onSensorStateChanged(long clientHandle, AONSensorStateInfo info) {
            if (info.state == AONSensorStateInfo.SENSOR_STATE_BUSY) {
                Log.i(TAG, "the sensor is busy");
            } else if (info.state == AONSensorStateInfo.SENSOR_STATE_IDLE) {
                mNews.add(News.SENSOR_IDLE);
            }
        }

        @Override
        public int getInterfaceVersion() {
            return IAONServiceCallBack.VERSION;
        }

        @Override
        public String getInterfaceHash() {
            return IAONServiceCallBack.HASH;
        }
    };

    /** Watches until the calling thread is interrupted. A service that dies is waited for anew. */
    public void watch() throws InterruptedException, RemoteException {
        while (true) {
            try {
                watchOneService();
            } catch (DeadObjectException e) {
                Log.w(TAG, "the service died");
            }
        }
    }

    private void watchOneService() throws InterruptedException, RemoteException {
        IBinder binder = Binder.allowBlocking(ServiceManager.waitForDeclaredService(SERVICE));
        if (binder == null) throw new RemoteException("this device has no " + SERVICE);
        IAONService service = IAONService.Stub.asInterface(binder);
        mNews.clear();
        binder.linkToDeath(() -> mNews.add(News.SERVICE_DIED), 0);

        long handle = service.registerClient(mCallback, FUSION);
        service.subscribeSensor(handle, sensorConfig());
        try {
            do {
                start(service, handle);
            } while (mNews.take() == News.SENSOR_IDLE);
        } catch (InterruptedException e) {
            service.stopService(handle, FUSION);
            service.unsubscribeSensor(handle);
            service.unregisterClient(handle);
            throw e;
        }
        throw new DeadObjectException();
    }

    /** Refused while the sensor is busy; SENSOR_IDLE then says when to try again. */
    private static void start(IAONService service, long handle) throws RemoteException {
        try {
            service.startService(handle, FUSION);
        } catch (ServiceSpecificException e) {
            Log.i(TAG, "not started: " + e.getMessage());
        }
    }

    /** Sensor 0, 640x480 at 10 frames per second, as getAonSensorInfoList() offers it. */
    private static SensorConfigInfo sensorConfig() {
        SensorConfigInfo config = new SensorConfigInfo();
        config.sensorId = 0;
        config.frameWidth = 640;
        config.frameHeight = 480;
        config.fps = 10;
        config.serviceType = FUSION;
        config.deliveryMode = IAONService.DELIVERY_MODE_TIME_BASED;
        return config;
    }
}
