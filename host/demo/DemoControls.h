#pragma once

#include <aidl/zarvo/aon/host/Cast.h>

#include <cstdint>
#include <string>

#include "host/demo/Actor.h"

namespace zarvo::host::demo {

/** The hand that turns the simulator's knobs, from another process. A refusal is a failed check. */
class DemoControls {
  public:
    using Cast = aidl::zarvo::aon::host::Cast;

    DemoControls(Stage& stage, Narrator& narrator);

    void SetSeed(uint64_t seed);
    void SetCast(Cast cast);
    /** Lets the service log every frame. */
    void SetVerbose();
    void OpenCamera(int camera);
    void CloseCamera(int camera);
    bool IsStreaming();

    Actor& GetActor() { return mActor; }

  private:
    void Ask(const std::string& command);
    void OnFact(std::string_view kind, std::string_view text);

    Narrator& mNarrator;
    bool mStreaming = false;
    Actor mActor;
};

}  // namespace zarvo::host::demo
