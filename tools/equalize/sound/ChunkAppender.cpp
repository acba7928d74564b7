#include "tools/equalize/sound/ChunkAppender.h"

#include "support/BinaryWriter.h"
#include "tools/common/Errors.h"

#include <string>

namespace eq {
namespace {

ContainerChunks chunksOf(const FileBytes& file) {
    if (std::optional<ContainerChunks> chunks = ContainerChunks::read(file, false)) return *std::move(chunks);
    throw FileError(file.name() + ": the written file is damaged: its header cannot be read");
}

} // namespace

ChunkAppender::ChunkAppender(const FileBytes& file) : m_file(file), m_chunks(chunksOf(file)), m_end(file.length()) {
    pad();
}

void ChunkAppender::append(const FileBytes& source, const Chunk& chunk) {
    writeHeader(chunk.id, chunk.size);
    m_file.copy(source, chunk.position, m_end, chunk.size);
    m_end += chunk.size;
    pad();
}

void ChunkAppender::append(std::string_view id, std::string_view contents) {
    writeHeader(id, contents.size());
    m_file.write(m_end, contents);
    m_end += contents.size();
    pad();
}

void ChunkAppender::writeHeader(std::string_view id, std::uint64_t size) {
    BinaryWriter header(m_chunks.byteOrder());
    header.writeBytes(id);
    header.write(static_cast<std::uint32_t>(size));
    m_file.write(m_end, header.written());
    m_end += header.offset();
}

void ChunkAppender::pad() {
    if (m_end % 2 == 0) return;
    m_file.write(m_end, std::string_view("\0", 1));
    ++m_end;
}

void ChunkAppender::finish() {
    constexpr std::uint64_t UncountedBytes = 8;
    BinaryWriter size(m_chunks.byteOrder());
    if (m_chunks.m_hasLongSizes)
        size.write(m_end - UncountedBytes);
    else
        size.write(static_cast<std::uint32_t>(m_end - UncountedBytes));
    constexpr std::uint64_t SizePosition = 4;
    m_file.write(m_chunks.m_hasLongSizes ? m_chunks.all().at(0).position : SizePosition, size.written());

    constexpr std::uint64_t TimePosition = 4;
    for (const Chunk& chunk : m_chunks.all())
        if (chunk.id == "PEAK") m_file.write(chunk.position + TimePosition, std::string_view("\0\0\0\0", 4));
}

} // namespace eq
