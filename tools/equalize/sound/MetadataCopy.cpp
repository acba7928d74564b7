#include "tools/equalize/sound/MetadataCopy.h"

#include "tools/common/Errors.h"
#include "tools/equalize/sound/NativeTags.h"
#include "tools/equalize/sound/OutputFormat.h"
#include "tools/equalize/sound/TrailingTags.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <set>

namespace eq {
namespace {

int containerOf(int format) {
    return format & SF_FORMAT_TYPEMASK;
}

/// Returns the family of a format. Returns nothing for a format without chunks that can be copied.
std::optional<ChunkFamily> chunkFamilyOf(int format) {
    switch (containerOf(format)) {
    case SF_FORMAT_WAV:
    case SF_FORMAT_WAVEX:
        return (format & SF_FORMAT_ENDMASK) == SF_ENDIAN_BIG ? ChunkFamily::Rifx : ChunkFamily::Riff;
    case SF_FORMAT_RF64:
        return ChunkFamily::Riff;
    case SF_FORMAT_AIFF:
        return ChunkFamily::Aiff;
    default:
        return std::nullopt;
    }
}

template <typename Record>
void copyRecord(SNDFILE* from, SNDFILE* to, int get, int set) {
    Record record = {};
    if (sf_command(from, get, &record, sizeof record) == SF_TRUE) sf_command(to, set, &record, sizeof record);
}

void copySpeakers(SNDFILE* from, SNDFILE* to, int channels) {
    std::vector<int> speakers(static_cast<std::size_t>(channels));
    const int size = static_cast<int>(speakers.size() * sizeof(int));
    if (sf_command(from, SFC_GET_CHANNEL_MAP_INFO, speakers.data(), size) == SF_TRUE)
        sf_command(to, SFC_SET_CHANNEL_MAP_INFO, speakers.data(), size);
}

/// Copies all cue points. SF_CUES has space for only 100 points, so the buffer is larger than SF_CUES.
void copyCues(SNDFILE* from, SNDFILE* to) {
    constexpr std::size_t SizeOfCount = offsetof(SF_CUES, cue_points);
    std::uint32_t count = 0;
    if (sf_command(from, SFC_GET_CUE_COUNT, &count, sizeof count) != SF_TRUE) return;
    std::vector<char> cues(SizeOfCount + std::size_t{count} * sizeof(SF_CUE_POINT));
    const int size = static_cast<int>(cues.size());
    if (sf_command(from, SFC_GET_CUE, cues.data(), size) == SF_TRUE) sf_command(to, SFC_SET_CUE, cues.data(), size);
}

/// Returns whether a LIST chunk contains texts. Other LIST chunks contain labels of marks, or other data.
bool holdsTexts(const FileBytes& file, const Chunk& chunk) {
    constexpr std::uint64_t Longest = 1U << 24U;
    return chunk.id == "LIST" && chunk.size <= Longest && file.read(chunk.position, 4) == "INFO";
}

std::string withoutBlanks(std::string text) {
    while (!text.empty() && text.back() == ' ') text.pop_back();
    return text;
}

} // namespace

MetadataCopy::MetadataCopy(const AudioReader& source, int outputFormat)
    : m_name(source.name()),
      m_source(source.handle()),
      m_inputFormat(source.info().format),
      m_outputFormat(outputFormat),
      m_channels(source.info().channels),
      m_descriptor(source.openMetadata()),
      m_bytes(m_descriptor.get(), m_name) {
    readSource(source.isLengthOpen());
    // For these formats, libsndfile's texts only repeat the tags that `readSource` has read.
    if (m_chunks || !SoundTags::knows(m_inputFormat)) m_tags.addTexts(m_source);
    noteLostChunks();
    if (!m_copiesChunks) noteLostTags();
}

void MetadataCopy::readSource(bool isSoundOpen) {
    m_chunks = ContainerChunks::read(m_bytes, isSoundOpen);
    m_copiesChunks = m_chunks && m_chunks->family() == chunkFamilyOf(m_outputFormat);
    if (m_copiesChunks) return;
    constexpr std::uint64_t LongestTag = 1U << 28U; // the size field of an ID3v2 tag has 28 bits
    const Chunk* const tag = m_chunks ? m_chunks->tag() : nullptr;
    if (tag != nullptr && tag->size <= LongestTag) m_tags.readId3(m_bytes.read(tag->position, tag->size));
    if (m_chunks)
        for (const Chunk& chunk : m_chunks->all())
            if (holdsTexts(m_bytes, chunk)) m_tags.readInfo(m_bytes.read(chunk.position, chunk.size));
    if (!m_chunks) m_tags.read(m_bytes, m_inputFormat);
}

void MetadataCopy::addToHeader(SNDFILE* output) {
    copySpeakers(m_source, output, m_channels);
    if (m_copiesChunks || SoundTags::knows(m_outputFormat)) return;
    copyTexts(output);
    copyRecord<SF_BROADCAST_INFO>(m_source, output, SFC_GET_BROADCAST_INFO, SFC_SET_BROADCAST_INFO);
    copyRecord<SF_INSTRUMENT>(m_source, output, SFC_GET_INSTRUMENT, SFC_SET_INSTRUMENT);
    copyCues(m_source, output);
}

void MetadataCopy::copyTexts(SNDFILE* output) {
    bool isHeld = true;
    for (int kind = SF_STR_FIRST; kind <= SF_STR_LAST; ++kind)
        if (const char* const text = sf_get_string(m_source, kind))
            isHeld = sf_set_string(output, kind, text) == 0 && isHeld;
    if (!isHeld)
        m_notes.push_back("not all titles and similar texts are copied: " + containerName(m_outputFormat) +
                          " cannot hold them");
}

void MetadataCopy::addAfterSound(const FileBytes& output) {
    if (chunkFamilyOf(m_outputFormat)) {
        ChunkAppender chunks(output);
        if (m_copiesChunks)
            for (const Chunk& chunk : m_chunks->descriptions()) copyChunk(chunk, chunks);
        else if (m_tags.pictures() > 0 || !m_tags.namesBeyondTexts().empty() || !m_tags.framesOfId3Only().empty())
            chunks.append(containerOf(m_outputFormat) == SF_FORMAT_AIFF ? "ID3 " : "id3 ", m_tags.id3());
        chunks.finish();
        return;
    }
    if (!SoundTags::knows(m_outputFormat)) return;
    if (staysMpeg() && copyMpegTags(m_bytes, output)) return;
    if (!m_tags.empty()) m_tags.write(output, m_outputFormat);
    copyFlacBlocks(m_bytes, output);
}

// Copies the header into a file in memory, and adds the metadata to it as to a complete file without sound.
MetadataCopy::StreamParts MetadataCopy::addToStream(const std::string& header) {
    constexpr std::size_t ChunkHeader = 8;
    const bool isMpeg = containerOf(m_outputFormat) == SF_FORMAT_MPEG;
    // Chunks are added before the header of the sound's chunk. MPEG tags are added before the whole header.
    const std::size_t kept = isMpeg ? 0 : header.size() - (chunkFamilyOf(m_outputFormat) ? ChunkHeader : 0);
    const FileDescriptor memory = fileInMemory(header.substr(0, kept));
    const FileBytes bytes(memory.get(), "the header");
    addAfterSound(bytes);
    const std::uint64_t trailing = isMpeg ? trailingTagSize(bytes) : 0;
    const std::uint64_t leading = bytes.length() - trailing;
    return {bytes.read(0, leading) + header.substr(kept), bytes.read(leading, trailing)};
}

void MetadataCopy::copyChunk(const Chunk& chunk, ChunkAppender& output) {
    if (chunk.size <= std::numeric_limits<std::uint32_t>::max())
        output.append(m_bytes, chunk);
    else
        m_notes.push_back("the chunk " + withoutBlanks(chunk.id) + " is not copied: it has more than 4 GiB");
}

void MetadataCopy::noteLostChunks() {
    if (!m_chunks) return;
    if (m_chunks->cutOff())
        m_notes.push_back(m_name + ": the chunk " + withoutBlanks(*m_chunks->cutOff()) +
                          " is not copied: the end of the file cuts it off");
    if (m_copiesChunks) return;
    // The output has the contents of these chunks as tags or as libsndfile's texts. libsndfile writes marks, loops and
    // `bext` only into WAV.
    std::set<std::string> held = {"id3 ", "ID3 ", "NAME", "AUTH", "ANNO", "(c) "};
    if (chunkFamilyOf(m_outputFormat) && containerOf(m_outputFormat) != SF_FORMAT_AIFF)
        held.insert({"LIST", "bext", "cue ", "inst", "smpl", "INST", "MARK"});
    std::vector<std::string> lost;
    for (const Chunk& chunk : m_chunks->descriptions()) {
        const std::string name = withoutBlanks(chunk.id);
        if (holdsTexts(m_bytes, chunk) || held.contains(chunk.id)) continue;
        if (std::find(lost.begin(), lost.end(), name) == lost.end()) lost.push_back(name);
    }
    noteLost("chunk", "chunks", lost);
}

bool MetadataCopy::staysMpeg() const {
    return containerOf(m_inputFormat) == SF_FORMAT_MPEG && containerOf(m_outputFormat) == SF_FORMAT_MPEG;
}

void MetadataCopy::noteLostTags() {
    if (m_tags.statesLoudness())
        m_notes.emplace_back(
            "the tags of ReplayGain state the loudness of the sound before the effect; measure the output again");
    if (staysMpeg()) return;
    const bool holdsId3 = containerOf(m_outputFormat) == SF_FORMAT_MPEG || chunkFamilyOf(m_outputFormat);
    if (!holdsId3) noteLost("tag", "tags", m_tags.framesOfId3Only());
    if (holdsId3 || SoundTags::knows(m_outputFormat)) return;
    noteLost("tag", "tags", m_tags.namesBeyondTexts());
    if (m_tags.pictures() > 0)
        m_notes.push_back("pictures are not copied: " + containerName(m_outputFormat) + " cannot hold them");
}

void MetadataCopy::noteLost(const char* one, const char* several, const std::vector<std::string>& names) {
    if (names.empty()) return;
    const bool isOne = names.size() == 1;
    std::string note = "the " + std::string(isOne ? one : several);
    for (const std::string& name : names) note += (&name == names.data() ? " " : ", ") + name;
    m_notes.push_back(note + (isOne ? " is" : " are") + " not copied: " + containerName(m_outputFormat) +
                      " cannot hold " + (isOne ? "it" : "them"));
}

} // namespace eq
