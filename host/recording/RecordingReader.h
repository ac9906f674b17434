#pragma once

#include <fstream>
#include <istream>
#include <memory>
#include <string>

#include "host/recording/ChunkReader.h"
#include "host/recording/Recording.h"

namespace zarvo::host::recording {

/**
 * Reads a recording: its configuration first, then events and state notices as they came, then the
 * end note. What is of no known kind is passed over. Holds one chunk at a time, however large the
 * recording is. Used by one thread at a time.
 */
class RecordingReader {
  public:
    /** As ChunkReader has it. */
    explicit RecordingReader(std::istream& bytes) : mChunks(bytes) {}

    /** Reads the next entry; false when there is none, and State() tells why. */
    bool Next(Entry& entry);

    ReadState State() const { return mChunks.State(); }
    /** What is wrong, and at which byte; empty when nothing is. */
    const std::string& Error() const { return mChunks.Error(); }

  private:
    /** False for a kind that is not known. */
    bool Take(Entry& entry);
    template <typename T>
    void TakeParcel(Entry& entry, const char* name);

    ChunkReader mChunks;
    Chunk mChunk;
    bool mHasConfig = false;
};

/** Opens a regular file to be read; null, and why, if that cannot be. */
std::unique_ptr<std::istream> OpenRecording(const std::string& path, std::string& error);

}  // namespace zarvo::host::recording
