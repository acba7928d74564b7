#include "tests/support/PeResources.h"

#include <cstring>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string_view>

namespace {

using namespace std::string_view_literals;

constexpr std::size_t DosHeaderSize = 0x40;
constexpr std::size_t PeOffset = 0x3C;

constexpr std::size_t PeHeaderSize = 24; // the signature and the file header
constexpr std::size_t SectionCount = 6;
constexpr std::size_t OptionalHeaderSize = 20;

constexpr unsigned Magic64 = 0x20B;
constexpr std::size_t ResourceEntry32 = 96 + 2 * 8; // the third of the data directories
constexpr std::size_t ResourceEntry64 = 112 + 2 * 8;

constexpr std::size_t SectionHeaderSize = 40;
constexpr std::size_t SectionAddress = 12;
constexpr std::size_t SectionRawSize = 16;
constexpr std::size_t SectionRawOffset = 20;

constexpr std::size_t DirectorySize = 16;
constexpr std::size_t NamedEntryCount = 12;
constexpr std::size_t NumberedEntryCount = 14;
constexpr std::size_t EntrySize = 8;
constexpr std::uint32_t SubdirectoryBit = 0x80000000;

void require(bool holds, const char* what) {
    if (!holds) throw std::runtime_error(what);
}

std::string partOf(std::string_view bytes, std::size_t offset, std::size_t size) {
    require(offset <= bytes.size() && size <= bytes.size() - offset, "a structure leads outside");
    return std::string(bytes.substr(offset, size));
}

template <typename Number>
Number numberAt(std::string_view bytes, std::size_t offset) {
    Number number;
    std::memcpy(&number, partOf(bytes, offset, sizeof number).data(), sizeof number);
    return number;
}

class ModuleFile {
public:
    explicit ModuleFile(const std::string& path)
        : m_stream(path, std::ios::binary), m_size(std::filesystem::file_size(path)) {}

    std::string read(std::size_t offset, std::size_t size) {
        require(offset <= m_size && size <= m_size - offset, "the file ends early");
        std::string bytes(size, '\0');
        m_stream.seekg(static_cast<std::streamoff>(offset));
        m_stream.read(bytes.data(), static_cast<std::streamsize>(size));
        require(m_stream.good(), "the file cannot be read");
        return bytes;
    }

private:
    std::ifstream m_stream;
    std::size_t m_size;
};

/// The resource directory and the rest of its section.
struct ResourceSection {
    std::uint32_t address = 0; // in the module's memory
    std::string bytes;         // none in a module without resources
};

ResourceSection readSection(ModuleFile& file) {
    const std::string dos = file.read(0, DosHeaderSize);
    require(dos.starts_with("MZ"), "no module");
    const std::size_t start = numberAt<std::uint32_t>(dos, PeOffset);
    const std::string header = file.read(start, PeHeaderSize);
    require(header.starts_with("PE\0\0"sv), "no module");
    const std::size_t optionalSize = numberAt<std::uint16_t>(header, OptionalHeaderSize);
    const std::string optional = file.read(start + PeHeaderSize, optionalSize);
    const bool has64Bits = numberAt<std::uint16_t>(optional, 0) == Magic64;
    const auto address = numberAt<std::uint32_t>(optional, has64Bits ? ResourceEntry64 : ResourceEntry32);
    if (address == 0) return {};

    for (std::size_t i = 0; i < numberAt<std::uint16_t>(header, SectionCount); ++i) {
        const std::string row =
            file.read(start + PeHeaderSize + optionalSize + i * SectionHeaderSize, SectionHeaderSize);
        const auto sectionAddress = numberAt<std::uint32_t>(row, SectionAddress);
        const auto size = numberAt<std::uint32_t>(row, SectionRawSize);
        if (address < sectionAddress || address - sectionAddress >= size) continue;
        const std::size_t skipped = address - sectionAddress;
        return {address, file.read(numberAt<std::uint32_t>(row, SectionRawOffset) + skipped, size - skipped)};
    }
    throw std::runtime_error("the resources lie in no section");
}

struct Entry {
    std::uint32_t id;
    std::uint32_t target;
};

std::vector<Entry> entriesAt(std::string_view section, std::size_t directory) {
    const std::size_t count = std::size_t{numberAt<std::uint16_t>(section, directory + NamedEntryCount)} +
                              numberAt<std::uint16_t>(section, directory + NumberedEntryCount);
    std::vector<Entry> entries;
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t at = directory + DirectorySize + i * EntrySize;
        entries.push_back({numberAt<std::uint32_t>(section, at), numberAt<std::uint32_t>(section, at + 4)});
    }
    return entries;
}

std::vector<Entry> entriesBelow(std::string_view section, const Entry& entry) {
    require((entry.target & SubdirectoryBit) != 0, "the tree ends early");
    return entriesAt(section, entry.target & ~SubdirectoryBit);
}

std::string dataOf(const ResourceSection& section, const Entry& leaf) {
    require((leaf.target & SubdirectoryBit) == 0, "the tree is too deep");
    const auto address = numberAt<std::uint32_t>(section.bytes, leaf.target);
    const auto size = numberAt<std::uint32_t>(section.bytes, leaf.target + 4);
    require(address >= section.address, "data in front of its directory");
    return partOf(section.bytes, address - section.address, size);
}

} // namespace

std::vector<PeResource> readPeResources(const std::string& path, const std::set<std::uint32_t>& types) {
    ModuleFile file(path);
    const ResourceSection section = readSection(file);
    std::vector<PeResource> resources;
    if (section.bytes.empty()) return resources;
    for (const Entry& type : entriesAt(section.bytes, 0)) {
        if (!types.contains(type.id)) continue;
        for (const Entry& name : entriesBelow(section.bytes, type)) {
            for (const Entry& language : entriesBelow(section.bytes, name)) {
                resources.push_back({type.id, language.id, dataOf(section, language)});
            }
        }
    }
    return resources;
}
