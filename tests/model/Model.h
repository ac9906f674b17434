#pragma once

#include <deque>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "tests/model/World.h"

namespace zarvo::test {

/** What all configurations come to together; -1 as sensor when there is none. */
Config MergeAll(const std::vector<Config>& configs);
/** Whether a configuration can join the merged one, while the stream runs or not. */
bool CanJoin(const Config& merged, const Config& wanted, bool running);

/**
 * The service as its clients, the stream and the cameras see it, in plain values: no binder, no
 * thread, no lock. One client at a time can be registered, under handle 1.
 */
class Model {
  public:
    /** Lets the step happen, and gives what could be seen of it. */
    Outcome Do(const Step& step);

  private:
    /** One life of a program. */
    struct Process {
        User user;
        int life;
        bool operator==(const Process&) const = default;
    };
    struct Client {
        Process process;
        bool alive = true;
        int32_t registered = 0;
        std::optional<Config> config = {};
        /** What it started and did not stop; a camera may have stopped the stream since. */
        int32_t started = 0;
    };

    std::string Happen(const Step& step);
    std::string Register(const Process& process, int32_t types);
    /** What wants the handle of a client. */
    std::string Call(const Step& step);
    std::string Subscribe(const Config& config);
    std::string Start(int32_t types);
    void Stop(int32_t types);
    std::string Unregister();
    /** Stops and unsubscribes. */
    void LetGo();
    Process End(User user);
    void Forget(const Process& process);
    Config Merged() const;

    bool IsHeldByCamera(int32_t sensor) const;
    bool StartStream(int32_t types);
    bool AskStreamToStart(int32_t types);
    /** The sensor on which it ran. */
    std::optional<int32_t> StopStream();
    void OpenCamera(int device, const std::vector<int32_t>& sensors);
    void CloseCamera(int device);

    void Tell(int32_t sensor, int32_t state);
    void TellClient(const std::string& news);

    std::optional<Client> mClient;
    std::map<int32_t, int32_t> mSensorStates;

    /** What the stream will be started with; serviceType has no part in it. */
    Config mSubscribed;
    std::optional<int32_t> mRunningSensor;
    int32_t mRunningTypes = 0;
    /** Differs from mRunningSensor when the stream refused to stop. */
    bool mStreamOn = false;
    bool mRefuseStart = false, mRefuseStop = false;
    std::map<int, std::vector<int32_t>> mOpenCameras;

    std::map<User, int> mLives;
    std::deque<Process> mUnnoticed;

    std::map<User, std::vector<std::string>> mTold;
    std::vector<std::string> mStreamCalls;
};

}  // namespace zarvo::test
