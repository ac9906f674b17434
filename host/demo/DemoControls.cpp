#include "host/demo/DemoControls.h"

namespace zarvo::host::demo {

DemoControls::DemoControls(Stage& stage, Narrator& narrator)
    : mNarrator(narrator),
      mActor(stage, narrator, "controls", "controls",
             [this](std::string_view kind, std::string_view text) { OnFact(kind, text); }) {}

void DemoControls::SetSeed(uint64_t seed) {
    Ask("seed " + std::to_string(static_cast<int64_t>(seed)));
}

void DemoControls::SetCast(Cast cast) {
    Ask("cast " + std::to_string(static_cast<int>(cast)));
}

void DemoControls::SetVerbose() {
    Ask("verbose");
}

void DemoControls::OpenCamera(int camera) {
    Ask("open-camera " + std::to_string(camera));
}

void DemoControls::CloseCamera(int camera) {
    Ask("close-camera " + std::to_string(camera));
}

bool DemoControls::IsStreaming() {
    Ask("streaming");
    return mStreaming;
}

void DemoControls::Ask(const std::string& command) {
    const Actor::Answer answer = mActor.Ask(command);
    mNarrator.Check(answer.accepted, command + ": " + answer.refusal);
}

void DemoControls::OnFact(std::string_view kind, std::string_view text) {
    if (kind == "streaming") mStreaming = text == "1";
}

}  // namespace zarvo::host::demo
