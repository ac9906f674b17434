#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

namespace zarvo::fuzz {

/** Where the inputs go that fuzzing begins with: FOLDER/FUZZER/NAME. */
class SeedFolder {
  public:
    explicit SeedFolder(std::filesystem::path folder) : mFolder(std::move(folder)) {}
    /** Ends the program if it cannot. */
    void Add(std::string_view fuzzer, std::string_view name, std::string_view bytes) const;

  private:
    const std::filesystem::path mFolder;
};

/** A number as it lies in memory. */
template <typename T>
std::string Raw(T value) {
    return {reinterpret_cast<const char*>(&value), sizeof(value)};
}
/** What Input::TakePiece takes. */
inline std::string Piece(std::string_view bytes) {
    return Raw(static_cast<uint16_t>(bytes.size())).append(bytes);
}

// One for each kind of fuzzer's inputs.

void AddRecords(const SeedFolder& seeds);
void AddCalls(const SeedFolder& seeds);
void AddSessions(const SeedFolder& seeds);
/** From the sources below `root`. */
void AddTexts(const SeedFolder& seeds, const std::filesystem::path& root);

}  // namespace zarvo::fuzz
