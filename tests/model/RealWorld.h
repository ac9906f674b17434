#pragma once

#include <deque>
#include <memory>
#include <semaphore>
#include <string>
#include <vector>

#include "host/log/LogTap.h"
#include "service/AONService.h"
#include "tests/clients/RemoteCallback.h"
#include "tests/model/World.h"
#include "tests/support/ScriptedStream.h"

namespace zarvo::test {

/** A client's process, which can end with the notice of its death held back. For one thread. */
class Process : public RemoteCallback {
  public:
    Process() { AIBinder_linkToDeath(proxy->asBinder().get(), mGate.get(), this); }
    ~Process() {
        connection->Kill();
        TellDeath();
    }

    /** Lets the notices go, and returns when they have been given. */
    void TellDeath() {
        mMayBeTold.release();
        connection->WaitForNotices();
    }

  private:
    /** First in line for the notice of death: whoever comes after waits until it is told. */
    static void HoldNotice(void* process) { static_cast<Process*>(process)->mMayBeTold.acquire(); }

    std::counting_semaphore<> mMayBeTold{0};
    const ndk::ScopedAIBinder_DeathRecipient mGate{AIBinder_DeathRecipient_new(HoldNotice)};
};

/**
 * The real service in this process, on the scripted stream, with clients behind proxies. Each has
 * a stream manager of its own; the registry is the process's one. One at a time.
 *
 * Whatever a step sets off on other threads, a death's notice or the work for a camera, is over
 * when the step returns.
 */
class RealWorld {
  public:
    RealWorld();
    ~RealWorld();

    /** Lets the step happen, and gives what could be seen of it. */
    Outcome Do(const Step& step);

  private:
    std::string Happen(const Step& step);
    std::string Register(const Process& process, int32_t types);
    /** They serve several worlds in turn. */
    static std::unique_ptr<Process>& At(User user);
    static std::unique_ptr<Process> End(User user);
    void TellDeath();
    void MakeService();
    void OpenCamera(int device, bool listed);
    void CloseCamera(int device);
    void AwaitCameraNotice();
    Outcome Look(std::string answer);
    static void ResetRegistry();

    const host::LogTap mSilence{[](const host::LogLine&) {}};
    ScriptedStream& mStream = ScriptedStream::Instance();
    std::deque<std::unique_ptr<Process>> mUnnoticed;
    /** Counts the camera notices that the stream was given. */
    std::counting_semaphore<> mCameraNotices{0};
    const std::shared_ptr<aon::AONManager> mManager = std::make_shared<aon::AONManager>();
    std::shared_ptr<aon::AONService> mService;
};

}  // namespace zarvo::test
