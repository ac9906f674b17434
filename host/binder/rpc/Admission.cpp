#include "host/binder/rpc/Admission.h"

#include <utility>

namespace zarvo::host {

namespace {

constexpr size_t kMostConnections = 256;
constexpr size_t kMostOfOneProcess = kMostConnections / 2;

}  // namespace

std::shared_ptr<Connection> Admission::Admit(Socket socket) {
    if (!socket.IsOpen()) return nullptr;
    auto connection = std::make_unique<Connection>(std::move(socket));
    const pid_t process = connection->Peer().pid;
    if (!mCount->Enter(process)) return nullptr;
    return {connection.release(), [count = mCount, process](Connection* ended) {
                delete ended;
                count->Leave(process);
            }};
}

bool Admission::Count::Enter(pid_t process) {
    const std::lock_guard lock(mMutex);
    if (mAll >= kMostConnections) return false;
    size_t& ofProcess = mOfProcess[process];
    if (ofProcess >= kMostOfOneProcess) return false;
    ++ofProcess;
    ++mAll;
    return true;
}

void Admission::Count::Leave(pid_t process) {
    const std::lock_guard lock(mMutex);
    --mAll;
    const auto ofProcess = mOfProcess.find(process);
    if (--ofProcess->second == 0) mOfProcess.erase(ofProcess);
}

}  // namespace zarvo::host
