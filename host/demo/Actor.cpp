#include "host/demo/Actor.h"

#include <csignal>
#include <utility>

namespace zarvo::host::demo {

Actor::Actor(Stage& stage, Narrator& narrator, const std::string& name, const std::string& role,
             FactSink sink)
    : mStage(stage),
      mNarrator(narrator),
      mSink(std::move(sink)),
      mProcess(stage.Start(name, "aon-demo", {"--role", role}, Process::Errors::kInherited,
                           [this](std::string_view line) { OnLine(line); })) {}

Actor::Answer Actor::Ask(const std::string& command) {
    mAnswered = false;
    mProcess.Send(command);
    mStage.Await(mProcess.Title() + " answers '" + command + "'", [this] { return mAnswered; });
    return mAnswer;
}

void Actor::AwaitReady() {
    mStage.Await(mProcess.Title() + " finds the service", [this] { return mReady; });
}

void Actor::Dismiss() {
    mProcess.CloseInput();
    mStage.AwaitEnd(mProcess);
}

void Actor::Kill() {
    mStage.MayEnd(mProcess);
    mProcess.Signal(SIGKILL);
    mStage.AwaitEnd(mProcess);
}

void Actor::OnLine(std::string_view line) {
    const std::string_view kind = TakeWord(line);
    if (kind == "ready") {
        mReady = true;
    } else if (kind == "lost") {
        // No answer: why the service is gone follows.
        mNarrator.Tell(mProcess.Name(), "  has lost the service");
    } else if (kind == "ok" || kind == "refused") {
        mAnswer = {kind == "ok", std::string(line)};
        mAnswered = true;
    } else {
        mSink(kind, line);
    }
}

}  // namespace zarvo::host::demo
