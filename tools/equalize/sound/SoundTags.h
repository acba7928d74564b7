#pragma once

#include "tools/equalize/sound/FileBytes.h"

#include <memory>
#include <string>
#include <vector>

#include <id3v2tag.h>
#include <sndfile.h>
#include <tpropertymap.h>

namespace eq {

/// The tags and pictures of an audio file, in a form that can be written into every format with tags.
class SoundTags {
public:
    /// Reads the tags and pictures of an MP3 (ID3v2, APE and ID3v1 tags), FLAC, Ogg Vorbis, Opus or Ogg FLAC file. Does
    /// nothing for other formats. Throws FileError.
    void read(const FileBytes& file, int format);
    /// Reads an ID3v2 tag from the contents of a chunk.
    void readId3(const std::string& tag);
    /// Reads the texts of a LIST chunk that libsndfile does not read. The identifier of a text becomes its name.
    void readInfo(const std::string& list);
    /// Adds libsndfile's texts of a file, if there is no tag with the same name.
    void addTexts(SNDFILE* file);

    [[nodiscard]] bool empty() const { return m_properties.isEmpty() && m_pictures.empty(); }
    [[nodiscard]] std::size_t pictures() const { return m_pictures.size(); }
    /// Returns the names of all tags that are not among libsndfile's texts.
    [[nodiscard]] std::vector<std::string> namesBeyondTexts() const;
    /// Returns whether a tag states the loudness of the sound. Players use such a tag to play all sounds at the same
    /// level.
    [[nodiscard]] bool statesLoudness() const;
    /// Returns the identifiers of the frames that only ID3v2 can hold.
    [[nodiscard]] std::vector<std::string> framesOfId3Only() const;

    /// Returns whether `read` and `write` support the tags of this format.
    [[nodiscard]] static bool knows(int format);
    /// Writes the tags and pictures into a complete file. Throws FileError.
    void write(const FileBytes& file, int format);
    /// Returns the bytes of an ID3v2 tag. Call this function only once, because it adds the pictures to `m_id3`.
    [[nodiscard]] std::string id3();

private:
    void add(const TagLib::PropertyMap& properties);
    void take(TagLib::ID3v2::Tag& tag);

    TagLib::PropertyMap m_properties;
    std::vector<TagLib::ByteVector> m_pictures; ///< in the form of FLAC's picture blocks
    std::shared_ptr<TagLib::ID3v2::Tag> m_id3 = std::make_shared<TagLib::ID3v2::Tag>(); ///< frames of ID3v2 only
};

} // namespace eq
