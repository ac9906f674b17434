#pragma once

#include <android/binder_auto_utils.h>

#include <deque>
#include <map>
#include <memory>
#include <semaphore>
#include <string>
#include <vector>

#include "host/log/LogTap.h"
#include "service/AONService.h"
#include "tests/model/Process.h"
#include "tests/model/World.h"
#include "tests/support/ScriptedStream.h"

namespace zarvo::test {

/**
 * The real service in this process, on the scripted stream, with clients behind proxies. Each has
 * a stream manager of its own; the registry is the process's one. One at a time.
 *
 * Whatever a step sets off on other threads, a death's notice or the work for a camera, is over
 * when the step returns.
 */
class RealWorld : public World {
  public:
    RealWorld();
    ~RealWorld() override;

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
    void RefuseNextStart() override { mStream.startFault.FailCalls(1); }
    void RefuseNextStop() override { mStream.stopFault.FailCalls(1); }
    void RefuseNextCameraNotice() override { mStream.notifyFault.FailCalls(1); }
    void DeliverFrame() override;
    Outcome Look(std::string answer) override;

  private:
    using Processes = std::vector<std::unique_ptr<Process>>;

    std::unique_ptr<Process>& At(User user) { return mProcesses[static_cast<size_t>(user)]; }
    std::unique_ptr<Process> End(User user);
    void MakeService();
    static void ResetRegistry();
    void WaitForCameraWork();
    void AwaitCameraNotice();
    std::vector<std::string> TakeStreamCalls();

    /** They serve several worlds in turn. */
    static Processes& TheProcesses();

    const host::LogTap mSilence{[](const host::LogLine&) {}};
    ScriptedStream& mStream = ScriptedStream::Instance();
    Processes& mProcesses = TheProcesses();
    std::deque<std::unique_ptr<Process>> mUnnoticed;
    /** Counts the camera notices that the stream was given. */
    std::counting_semaphore<> mCameraNotices{0};
    const std::shared_ptr<aon::AONManager> mManager = std::make_shared<aon::AONManager>();
    std::shared_ptr<aon::AONService> mService;
};

}  // namespace zarvo::test
