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
class Model : public World {
  public:
    std::string Register(User user, int32_t types) override;
    std::string RegisterNothing() override;
    std::string Subscribe(User user, const Config& config) override;
    std::string Start(User user, int32_t types) override;
    std::string Stop(User user, int32_t types) override;
    std::string Unsubscribe(User user) override;
    std::string Unregister(User user) override;
    void Die(User user) override;
    void DieUnnoticed(User user) override;
    void TellDeath() override;
    void RestartService() override;
    void OpenCamera(int device, bool listed) override;
    void CloseCamera(int device) override;
    void RefuseNextStart() override { mRefuseStart = true; }
    void RefuseNextStop() override { mRefuseStop = true; }
    void RefuseNextCameraNotice() override {}  // is logged, nothing else
    void DeliverFrame() override;
    Outcome Look(std::string answer) override;

  private:
    /** One life of a program. */
    struct Process {
        User user;
        int life;
        bool operator==(const Process&) const = default;
    };
    struct Client {
        explicit Client(Process owner) : process(owner) {}

        Process process;
        bool alive = true;
        int32_t registered = 0;
        std::optional<Config> config;
        /** What it started and did not stop; a camera may have stopped the stream since. */
        int32_t started = 0;
    };

    Process Now(User user) const;
    /** The registered client, if it is its handle that the user has. */
    Client* Find(User user);

    std::string StartTypes(int32_t types);
    void StopTypes(int32_t types);
    void DropSubscription();
    void Forget(const Process& process);
    Process End(User user);
    Config Merged() const;

    bool IsHeldByCamera(int32_t sensor) const;
    bool StartStream(int32_t types);
    bool AskStreamToStart(int32_t types);
    /** The sensor on which it ran. */
    std::optional<int32_t> StopStream();
    void StopStreamAndTell();

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
