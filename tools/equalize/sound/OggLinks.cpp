#include "tools/equalize/sound/OggLinks.h"

#include "support/BinaryReader.h"
#include "tools/equalize/pipes/OggPageWatch.h"
#include "tools/equalize/pipes/OggPages.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <numeric>
#include <system_error>

namespace eq {

std::string faultOfOgg(const std::string& file) {
    std::error_code ignored;
    if (!std::filesystem::is_regular_file(file, ignored)) return "";
    const std::uint64_t length = std::filesystem::file_size(file);
    std::ifstream stream(file, std::ios::binary);
    std::array<char, OggFixedHeader + 255> bytes = {};
    bool hasSound = false;
    for (std::uint64_t position = 0; position < length;) {
        stream.clear();
        stream.seekg(static_cast<std::streamoff>(position));
        stream.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        BinaryReader page(bytes.data(), static_cast<std::size_t>(stream.gcount()));
        try {
            if (page.readBytes(4) != "OggS") return ""; // not a page: libsndfile skips it, or the sound ends
            page.skip(1);
            const bool beginsStream = (page.read<std::uint8_t>() & OggBeginOfStream) != 0;
            if (beginsStream && hasSound) return OggPageWatch::severalStreams(position);
            hasSound = hasSound || !beginsStream;
            page.skip(20);
            const std::size_t segments = page.read<std::uint8_t>();
            for (std::size_t i = 0; i < segments; ++i) position += page.read<std::uint8_t>();
            position += OggFixedHeader + segments;
        } catch (const EndOfData&) {
            position = length + 1;
        }
        if (position > length) return OggPageWatch::CutOff;
    }
    return "";
}

} // namespace eq
