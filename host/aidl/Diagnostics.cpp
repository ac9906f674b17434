#include "host/aidl/Diagnostics.h"

#include <utility>

namespace zarvo::host::aidl {

namespace {

constexpr size_t kMaxMessages = 50;

}  // namespace

void Diagnostics::Error(std::string_view path, Position position, std::string_view text) {
    Add(std::string(path) + ":" + std::to_string(position.line) + ":" +
        std::to_string(position.column) + ": error: " + std::string(text));
}

void Diagnostics::Error(std::string_view text) {
    Add("error: " + std::string(text));
}

void Diagnostics::Add(std::string message) {
    ++mCount;
    if (mMessages.size() < kMaxMessages) {
        mMessages.push_back(std::move(message));
    }
}

std::string Diagnostics::Text() const {
    std::string text;
    for (const std::string& message : mMessages) {
        text += message + "\n";
    }
    if (mCount > mMessages.size()) {
        text += "and " + std::to_string(mCount - mMessages.size()) + " more errors\n";
    }
    return text;
}

}  // namespace zarvo::host::aidl
