#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "host/demo/Stage.h"

namespace zarvo::host::demo {

/**
 * The director's side of a process that does what it is asked, see ServeCommands. What it reports
 * besides its answers goes to a sink, whenever the stage hears it.
 */
class Actor {
  public:
    using FactSink = std::function<void(std::string_view kind, std::string_view text)>;

    /** Starts this program once more, as `role`. */
    Actor(Stage& stage, Narrator& narrator, const std::string& name, const std::string& role,
          FactSink sink);
    Actor(const Actor&) = delete;
    Actor& operator=(const Actor&) = delete;

    struct Answer {
        bool accepted = false;
        /** Why not. */
        std::string refusal;
    };
    /** Asks it, and waits for its answer. */
    Answer Ask(const std::string& command);

    /** Waits until it has found what it uses. */
    void AwaitReady();
    /** Lets it end in good order, or kills it, and waits for its end. */
    void Dismiss();
    void Kill();
    const Process& GetProcess() const { return mProcess; }

  private:
    void OnLine(std::string_view line);

    Stage& mStage;
    Narrator& mNarrator;
    const FactSink mSink;
    bool mReady = false;
    bool mAnswered = false;
    Answer mAnswer;
    Process& mProcess;
};

}  // namespace zarvo::host::demo
