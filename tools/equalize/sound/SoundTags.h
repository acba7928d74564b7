#pragma once

#include "tools/equalize/sound/FileBytes.h"

#include <memory>
#include <string>
#include <vector>

#include <id3v2tag.h>
#include <sndfile.h>
#include <tpropertymap.h>

namespace eq {

/// The tags and pictures of an audio file, in a form that every tagged format can take.
class SoundTags {
public:
    /// Reads an MP3 (ID3v2, APE and ID3v1 tags), FLAC, Ogg Vorbis, Opus or Ogg FLAC file. Other formats have none.
    void read(const FileBytes& file, int format);
    /// Reads an ID3v2 tag from the contents of a chunk.
    void readId3(const std::string& tag);
    /// Reads the texts of a chunk LIST that libsndfile does not know. Their identifiers become their names.
    void readInfo(const std::string& list);
    /// Adds the texts that libsndfile knows, for the names that have no tag.
    void addTexts(SNDFILE* file);

    [[nodiscard]] bool empty() const { return m_properties.isEmpty() && m_pictures.empty(); }
    [[nodiscard]] std::size_t pictures() const { return m_pictures.size(); }
    /// Returns the names of all tags that `addTexts` does not know.
    [[nodiscard]] std::vector<std::string> namesBeyondTexts() const;
    /// Returns true if a tag states the loudness of the sound, for players that bring all sound to one level.
    [[nodiscard]] bool statesLoudness() const;
    /// Returns the identifiers of the frames that only ID3v2 knows.
    [[nodiscard]] std::vector<std::string> framesOfId3Only() const;

    /// Whether `read` and `write` know the tags of this format.
    [[nodiscard]] static bool knows(int format);
    /// Replaces all tags and pictures of a complete file. Throws FileError.
    void write(const FileBytes& file, int format);
    /// Returns an ID3v2 tag.
    [[nodiscard]] std::string id3();

private:
    void add(const TagLib::PropertyMap& properties);
    void take(TagLib::ID3v2::Tag& tag);

    TagLib::PropertyMap m_properties;
    std::vector<TagLib::ByteVector> m_pictures; ///< in the form of FLAC's picture blocks
    std::shared_ptr<TagLib::ID3v2::Tag> m_id3 = std::make_shared<TagLib::ID3v2::Tag>(); ///< frames of ID3v2 only
};

} // namespace eq
