#include "tools/equalize/sound/MpegPipe.h"

#include "tools/equalize/pipes/SoundInput.h"
#include "tools/equalize/sound/FileBytes.h"
#include "tools/equalize/sound/TrailingTags.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>

namespace eq {
namespace {

constexpr std::size_t ReadSize = 16384;
constexpr std::size_t Held = 16384;

/// Returns the position of the first tag that begins with its name, or npos. `trailingTagSize` finds all other tags by
/// their ends. The header and the footer of an APE tag have the same name: a flag distinguishes them.
std::size_t beginOfTag(const std::string& bytes) {
    constexpr std::string_view Ape("APETAGEX\xD0\x07\0\0", 12);
    constexpr std::size_t FlagPosition = 23;
    constexpr unsigned IsHeader = 0x20;
    const std::size_t lyrics = bytes.find("LYRICSBEGIN");
    const std::size_t ape = bytes.find(Ape);
    const bool isHeader = ape != std::string::npos && ape + FlagPosition < bytes.size() &&
                          (static_cast<unsigned char>(bytes[ape + FlagPosition]) & IsHeader) != 0;
    return isHeader ? std::min(ape, lyrics) : lyrics;
}

} // namespace

MpegPipe::MpegPipe(PipeSource& pipe) : m_pipe(pipe) {
    m_pipe.seek(0);
}

void MpegPipe::receive() {
    std::array<char, ReadSize> piece;
    const std::size_t count = m_pipe.read(piece.data(), piece.size());
    m_waiting.append(piece.data(), count);
    const std::size_t begin = beginOfTag(m_waiting);
    if (begin != std::string::npos) {
        m_waiting.resize(begin);
        m_hasTrailingTags = true;
        m_isOver = true;
    } else if (count < piece.size()) {
        const FileDescriptor memory = fileInMemory(m_waiting);
        const auto tags = static_cast<std::size_t>(trailingTagSize(FileBytes(memory.get(), m_pipe.name())));
        m_waiting.resize(m_waiting.size() - tags);
        m_hasTrailingTags = tags > 0;
        m_isOver = true;
    }
    m_ready = m_isOver ? m_waiting.size() : m_waiting.size() - std::min(Held, m_waiting.size());
}

std::size_t MpegPipe::read(char* bytes, std::size_t count) {
    while (m_ready == 0 && !m_isOver) receive();
    const std::size_t part = std::min(count, m_ready);
    std::memcpy(bytes, m_waiting.data(), part);
    m_waiting.erase(0, part);
    m_ready -= part;
    return part;
}

} // namespace eq
