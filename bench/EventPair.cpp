#include "bench/EventPair.h"

#include <android/binder_manager.h>
#include <android/binder_process.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "bench/Fail.h"
#include "bench/QuietStream.h"
#include "bench/Records.h"
#include "bench/Sinks.h"
#include "bench/ThreadCounts.h"
#include "service/AONService.h"

namespace zarvo::bench {

namespace {

constexpr char kVariable[] = "AON_RUNTIME_DIR";

std::optional<std::string> ValueOf(const char* variable) {
    const char* const value = std::getenv(variable);
    return value == nullptr ? std::nullopt : std::optional<std::string>(value);
}

void RemoveFolder(const std::string& path) {
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
}

std::string ServiceName() {
    return std::string(IAONService::descriptor) + "/default";
}

}  // namespace

RuntimeFolder* RuntimeFolder::sInnermost = nullptr;

RuntimeFolder::RuntimeFolder()
    : mOuter(sInnermost),
      mFormer(ValueOf(kVariable)),
      mPath(std::filesystem::temp_directory_path() / "aon-bench-XXXXXX") {
    Require(mkdtemp(mPath.data()) != nullptr, "cannot make a folder for sockets");
    setenv(kVariable, mPath.c_str(), 1);
    sInnermost = this;
}

RuntimeFolder::~RuntimeFolder() {
    mFormer ? setenv(kVariable, mFormer->c_str(), 1) : unsetenv(kVariable);
    sInnermost = mOuter;
    RemoveFolder(mPath);
}

void RuntimeFolder::RemoveAll() {
    for (const RuntimeFolder* folder = sInnermost; folder != nullptr; folder = folder->mOuter)
        RemoveFolder(folder->mPath);
}

ClientProcess::Answer ClientProcess::Order(Task task, uint64_t lives) {
    Answer answer;
    Require(SendValue(mPeer.Socket(), Instruction{task, lives}) &&
                    ReceiveValue(mPeer.Socket(), &answer),
            "the client is gone");
    return answer;
}

ClientProcess::Answer ClientProcess::Do(Client& client, const Instruction& instruction) {
    Answer answer;
    switch (instruction.task) {
        case Task::kBegin:
            client.Begin();
            break;
        case Task::kEnd:
            client.End();
            break;
        case Task::kLive:
            answer.times = client.Live(instruction.lives);
            break;
        case Task::kCount:
            answer.events = client.Events();
            answer.pageFaults = PageFaultsOfProcess();
            break;
    }
    return answer;
}

int ClientProcess::Serve() {
    ABinderProcess_startThreadPool();
    const ndk::SpAIBinder binder(AServiceManager_getService(ServiceName().c_str()));
    const std::shared_ptr<IAONService> service = IAONService::fromBinder(binder);
    Require(service != nullptr, "no service");
    Client client(service);
    Instruction instruction{};
    while (ReceiveValue(STDIN_FILENO, &instruction)) {
        if (!SendValue(STDIN_FILENO, Do(client, instruction))) break;
    }
    return 0;
}

std::shared_ptr<IAONService> TheService() {
    static const auto service = [] {
        auto made = ndk::SharedRefBase::make<aon::AONService>();
        const auto result =
                AServiceManager_addService(made->asBinder().get(), ServiceName().c_str());
        Require(result == EX_NONE, "cannot publish the service");
        ABinderProcess_startThreadPool();
        return made;
    }();
    return service;
}

EventPair::EventPair() {
    mClient.Begin();
    mCallback = QuietStream::Instance().Callback();
    Require(mCallback != nullptr, "the stream was not started");
}

EventPair::~EventPair() {
    Require(mClient.Events() == mDelivered, "events were lost");
    mClient.End();
}

size_t OtherBytesOf(aov_event& event) {
    const ndk::ScopedAParcel parcel(AParcel_create());
    const auto write = [&parcel](const AONCallBackInfo& info) {
        Require(info.writeToParcel(parcel.get()) == STATUS_OK, "cannot write an event");
    };
    Convert(event, write);
    const size_t image = size_t{event.imageInfo.stride} * event.imageInfo.height * 3 / 2;
    return static_cast<size_t>(AParcel_getDataSize(parcel.get())) - image;
}

}  // namespace zarvo::bench
