#pragma once

#include "platform/FileDescriptor.h"
#include "tools/equalize/sound/AudioReader.h"
#include "tools/equalize/sound/ChunkAppender.h"
#include "tools/equalize/sound/ContainerChunks.h"
#include "tools/equalize/sound/FileBytes.h"
#include "tools/equalize/sound/SoundTags.h"

#include <optional>
#include <string>
#include <vector>

namespace eq {

/// Copies the metadata of an audio file to the output: tags, pictures and chunks.
///
///     WAV, RF64 -> WAV, RF64; AIFF -> AIFF    every chunk, byte for byte
///     MP3 -> MP3                              every tag, byte for byte
///     any -> MP3, FLAC, Ogg                   tags and pictures
///     any -> WAV, RF64, AIFF                  libsndfile's texts, marks and loops (in WAV), and an ID3v2 tag
///     any -> any other                        libsndfile's texts
class MetadataCopy {
public:
    /// Throws FileError if the source cannot be read.
    MetadataCopy(const AudioReader& source, int outputFormat);

    /// Passes to libsndfile the metadata that libsndfile writes into the header. Call this function before the first
    /// sample is written.
    void addToHeader(SNDFILE* output);
    /// Adds all other metadata to a file that libsndfile has closed. Throws FileError.
    void addAfterSound(const FileBytes& output);

    /// The bytes before and after the sound of a stream.
    struct StreamParts {
        std::string header;
        std::string trailer;
    };
    /// Adds to the header of a stream the metadata that `addAfterSound` adds to a file. Returns the new header, and the
    /// bytes to send after the sound. Throws FileError.
    [[nodiscard]] StreamParts addToStream(const std::string& header);

    /// Returns notes for the user, one sentence each: metadata that the output cannot hold, or that does not fit the
    /// new sound.
    [[nodiscard]] const std::vector<std::string>& notes() const { return m_notes; }

private:
    void readSource(bool isSoundOpen);
    [[nodiscard]] bool staysMpeg() const;
    void copyTexts(SNDFILE* output);
    void copyChunk(const Chunk& chunk, ChunkAppender& output);
    void noteLostChunks();
    void noteLostTags();
    void noteLost(const char* one, const char* several, const std::vector<std::string>& names);

    std::string m_name;
    SNDFILE* m_source;
    int m_inputFormat;
    int m_outputFormat;
    int m_channels;
    FileDescriptor m_descriptor;
    FileBytes m_bytes;
    std::optional<ContainerChunks> m_chunks;
    bool m_copiesChunks = false;
    SoundTags m_tags;
    std::vector<std::string> m_notes;
};

} // namespace eq
