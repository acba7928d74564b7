#include "tools/equalize/sound/SoundTags.h"

#include "support/BinaryReader.h"
#include "tools/common/Errors.h"
#include "tools/equalize/sound/TagStream.h"

#include <algorithm>
#include <array>
#include <memory>
#include <utility>

#include <apetag.h>
#include <attachedpictureframe.h>
#include <flacfile.h>
#include <id3v1tag.h>
#include <id3v2tag.h>
#include <mpegfile.h>
#include <oggflacfile.h>
#include <opusfile.h>
#include <tbytevectorstream.h>
#include <vorbisfile.h>
#include <xiphcomment.h>

namespace eq {
namespace {

using TagLib::ByteVector;
using TagLib::String;
using PictureType = TagLib::FLAC::Picture::Type;

constexpr std::array<std::pair<int, const char*>, 10> TextNames = {{
    {SF_STR_TITLE, "TITLE"},
    {SF_STR_COPYRIGHT, "COPYRIGHT"},
    {SF_STR_SOFTWARE, "SOFTWARE"},
    {SF_STR_ARTIST, "ARTIST"},
    {SF_STR_COMMENT, "COMMENT"},
    {SF_STR_DATE, "DATE"},
    {SF_STR_ALBUM, "ALBUM"},
    {SF_STR_LICENSE, "LICENSE"},
    {SF_STR_TRACKNUMBER, "TRACKNUMBER"},
    {SF_STR_GENRE, "GENRE"},
}};

/// Returns a text of a WAV file. The bytes are UTF-8 or, in old files, Latin-1.
String textOf(const std::string& bytes) {
    const String text(bytes, String::UTF8);
    return text.isEmpty() || text.to8Bit(true) != bytes ? String(bytes, String::Latin1) : text;
}

ByteVector picture(int type, const String& mimeType, const String& description, const ByteVector& data) {
    TagLib::FLAC::Picture block;
    block.setType(static_cast<PictureType>(type));
    block.setMimeType(mimeType);
    block.setDescription(description);
    block.setData(data);
    return block.render();
}

/// Adds the pictures of an APE tag. An item such as "Cover Art (Front)" has a file name, a zero byte, and the picture.
void addApePictures(const TagLib::APE::Tag& tag, std::vector<ByteVector>& pictures) {
    for (const auto& [key, item] : tag.itemListMap()) {
        if (!key.upper().startsWith("COVER ART") || item.type() != TagLib::APE::Item::Binary) continue;
        const ByteVector value = item.binaryData();
        const int end = value.find('\0');
        if (end < 0) continue;
        const ByteVector data = value.mid(static_cast<unsigned int>(end) + 1);
        const bool isPng = data.startsWith("\x89PNG");
        const auto type = key.upper().find("BACK") >= 0 ? PictureType::BackCover : PictureType::FrontCover;
        pictures.push_back(picture(type, isPng ? "image/png" : "image/jpeg", "", data));
    }
}

void addPictures(const TagLib::List<TagLib::FLAC::Picture*>& list, std::vector<ByteVector>& pictures) {
    for (const TagLib::FLAC::Picture* block : list) pictures.push_back(block->render());
}

/// Sets the comments of a FLAC or Ogg file, and adds pictures to `owner`, the object that owns the pictures of the
/// file.
template <typename PictureOwner>
void replaceXiph(TagLib::Ogg::XiphComment& comment, PictureOwner& owner, const TagLib::PropertyMap& properties,
                 const std::vector<ByteVector>& pictures) {
    comment.setProperties(properties);
    // `owner` deletes the pictures.
    for (const ByteVector& block : pictures) owner.addPicture(new TagLib::FLAC::Picture(block));
}

template <typename File>
std::unique_ptr<File> open(TagStream& stream) {
    constexpr bool WithoutProperties = false;
    if constexpr (std::is_same_v<File, TagLib::FLAC::File> || std::is_same_v<File, TagLib::MPEG::File>)
        return std::make_unique<File>(&stream, TagLib::ID3v2::FrameFactory::instance(), WithoutProperties);
    else
        return std::make_unique<File>(&stream, WithoutProperties);
}

enum class TagKind { None, Mpeg, Flac, Vorbis, Opus };

TagKind kindOf(int format) {
    const int container = format & SF_FORMAT_TYPEMASK;
    const int sampleFormat = format & SF_FORMAT_SUBMASK;
    if (container == SF_FORMAT_MPEG) return TagKind::Mpeg;
    if (container == SF_FORMAT_FLAC) return TagKind::Flac;
    if (container == SF_FORMAT_OGG && sampleFormat == SF_FORMAT_VORBIS) return TagKind::Vorbis;
    if (container == SF_FORMAT_OGG && sampleFormat == SF_FORMAT_OPUS) return TagKind::Opus;
    // For Ogg FLAC, libsndfile reports a format of integer samples.
    return container == SF_FORMAT_OGG ? TagKind::Flac : TagKind::None;
}

} // namespace

void SoundTags::add(const TagLib::PropertyMap& properties) {
    for (const auto& [name, values] : properties)
        if (!m_properties.contains(name)) m_properties.insert(name, values);
}

void SoundTags::take(TagLib::ID3v2::Tag& tag) {
    add(tag.properties());
    // Copy the pointers into a vector, because a copy of TagLib's own list would delete the frames.
    const std::vector<TagLib::ID3v2::Frame*> frames(tag.frameList().begin(), tag.frameList().end());
    for (TagLib::ID3v2::Frame* const frame : frames) {
        if (const auto* const shown = dynamic_cast<const TagLib::ID3v2::AttachedPictureFrame*>(frame)) {
            m_pictures.push_back(picture(shown->type(), shown->mimeType(), shown->description(), shown->picture()));
            continue;
        }
        // A tag owns its frames, so each frame is moved into a temporary tag. If the properties of this tag contain the
        // frame, the temporary tag deletes the frame. All other frames are moved to `m_id3`.
        TagLib::ID3v2::Tag single;
        tag.removeFrame(frame, false);
        single.addFrame(frame);
        if (single.properties().unsupportedData().isEmpty()) continue;
        single.removeFrame(frame, false);
        m_id3->addFrame(frame);
    }
}

void SoundTags::read(const FileBytes& bytes, int format) {
    TagStream stream(bytes);
    const auto readXiph = [&](const auto& file) {
        if (!file->isValid() || file->tag() == nullptr) return false;
        add(file->tag()->properties());
        addPictures(file->tag()->pictureList(), m_pictures);
        return true;
    };
    switch (kindOf(format)) {
    case TagKind::None:
        break;
    case TagKind::Mpeg: {
        // The first tag counts, and the others fill its gaps. An ID3v1 tag is the last, because it cuts texts to 30
        // characters.
        const auto file = open<TagLib::MPEG::File>(stream);
        if (file->hasID3v2Tag()) take(*file->ID3v2Tag());
        if (file->hasAPETag()) {
            add(file->APETag()->properties());
            if (m_pictures.empty()) addApePictures(*file->APETag(), m_pictures);
        }
        if (file->hasID3v1Tag()) add(file->ID3v1Tag()->properties());
        break;
    }
    case TagKind::Flac: {
        const auto file = open<TagLib::FLAC::File>(stream);
        if (file->isValid()) {
            add(file->properties());
            addPictures(file->pictureList(), m_pictures);
            if (file->hasXiphComment()) addPictures(file->xiphComment()->pictureList(), m_pictures);
        } else {
            readXiph(open<TagLib::Ogg::FLAC::File>(stream));
        }
        break;
    }
    case TagKind::Vorbis:
        readXiph(open<TagLib::Ogg::Vorbis::File>(stream));
        break;
    case TagKind::Opus:
        readXiph(open<TagLib::Ogg::Opus::File>(stream));
        break;
    }
    stream.requireSuccess();
}

void SoundTags::readId3(const std::string& tag) {
    TagLib::ByteVectorStream stream(ByteVector(tag.data(), static_cast<unsigned int>(tag.size())));
    TagLib::MPEG::File file(&stream, TagLib::ID3v2::FrameFactory::instance(), false);
    if (file.hasID3v2Tag()) take(*file.ID3v2Tag());
}

void SoundTags::readInfo(const std::string& list) {
    constexpr std::array Known = {"INAM", "ICOP", "ISFT", "IART", "ICMT", "ICRD", "IPRD", "ITRK", "IGNR"};
    try {
        BinaryReader reader(list.data(), list.size());
        reader.skip(4);
        while (reader.remaining() > 0) {
            const std::string id(reader.readBytes(4));
            std::string text(reader.readBytes(reader.read<std::uint32_t>()));
            text.resize(std::min(text.find('\0'), text.size()));
            const bool isKnown = std::find(Known.begin(), Known.end(), id) != Known.end();
            if (!isKnown && !text.empty() && !m_properties.contains(id)) m_properties.insert(id, textOf(text));
            reader.align(2);
        }
    } catch (const EndOfData&) {
        // The list is cut off. Keep its complete texts.
    }
}

void SoundTags::addTexts(SNDFILE* file) {
    for (const auto& [kind, name] : TextNames)
        if (const char* const text = sf_get_string(file, kind); text != nullptr && !m_properties.contains(name))
            m_properties.insert(name, textOf(text));
}

std::vector<std::string> SoundTags::namesBeyondTexts() const {
    std::vector<std::string> names;
    for (const auto& [name, values] : m_properties) {
        const std::string text = name.to8Bit(true);
        const auto isText = [&](const auto& row) { return row.second == text; };
        if (std::none_of(TextNames.begin(), TextNames.end(), isText)) names.push_back(text);
    }
    return names;
}

bool SoundTags::statesLoudness() const {
    return std::any_of(m_properties.begin(), m_properties.end(), [](const auto& property) {
        return property.first.startsWith("REPLAYGAIN_") || property.first.startsWith("R128_");
    });
}

std::vector<std::string> SoundTags::framesOfId3Only() const {
    std::vector<std::string> names;
    for (const TagLib::ID3v2::Frame* frame : m_id3->frameList()) names.emplace_back(frame->frameID().data(), 4);
    return names;
}

bool SoundTags::knows(int format) {
    return kindOf(format) != TagKind::None;
}

void SoundTags::write(const FileBytes& bytes, int format) {
    if (kindOf(format) == TagKind::Mpeg) {
        bytes.replace(0, 0, id3());
        return;
    }
    TagStream stream(bytes);
    bool isWritten = false;
    const auto writeOgg = [&](const auto& file) {
        if (!file->isValid() || file->tag() == nullptr) return;
        replaceXiph(*file->tag(), *file->tag(), m_properties, m_pictures);
        isWritten = file->save();
    };
    if (kindOf(format) == TagKind::Vorbis) writeOgg(open<TagLib::Ogg::Vorbis::File>(stream));
    if (kindOf(format) == TagKind::Opus) writeOgg(open<TagLib::Ogg::Opus::File>(stream));
    if (kindOf(format) == TagKind::Flac) {
        const auto file = open<TagLib::FLAC::File>(stream);
        if (file->isValid()) {
            replaceXiph(*file->xiphComment(true), *file, m_properties, m_pictures);
            isWritten = file->save();
        } else {
            writeOgg(open<TagLib::Ogg::FLAC::File>(stream));
        }
    }
    stream.requireSuccess();
    if (!isWritten) throw FileError(bytes.name() + ": the tags cannot be written into the file");
}

std::string SoundTags::id3() {
    TagLib::ID3v2::Tag& tag = *m_id3;
    tag.setProperties(m_properties); // keeps the frames that are not properties
    for (const ByteVector& bytes : m_pictures) {
        const TagLib::FLAC::Picture block(bytes);
        // The tag becomes the owner of the frame, and deletes it.
        auto* const frame = new TagLib::ID3v2::AttachedPictureFrame;
        frame->setTextEncoding(String::UTF8);
        frame->setType(static_cast<TagLib::ID3v2::AttachedPictureFrame::Type>(block.type()));
        frame->setMimeType(block.mimeType());
        frame->setDescription(block.description());
        frame->setPicture(block.data());
        tag.addFrame(frame);
    }
    const ByteVector bytes = tag.render();
    return {bytes.data(), bytes.size()};
}

} // namespace eq
