#include "tests/support/PeResources.h"

#include <cstring>
#include <fstream>
#include <stdexcept>

namespace {

constexpr std::uint32_t SubdirectoryBit = 0x80000000;

std::string partOf(const std::string& bytes, std::size_t offset, std::size_t size) {
    if (offset > bytes.size() || size > bytes.size() - offset) throw std::out_of_range("a structure leads outside");
    return bytes.substr(offset, size);
}

template <typename Number = std::uint32_t>
Number numberAt(const std::string& bytes, std::size_t offset) {
    Number number;
    std::memcpy(&number, partOf(bytes, offset, sizeof number).data(), sizeof number);
    return number;
}
constexpr auto wordAt = numberAt<std::uint16_t>;

/// A part of a file, whose other parts may be large.
std::string readPart(std::ifstream& file, std::size_t offset, std::size_t size) {
    std::string bytes(size, '\0');
    file.seekg(static_cast<std::streamoff>(offset));
    if (!file.read(bytes.data(), static_cast<std::streamsize>(size))) throw std::runtime_error("the file ends early");
    return bytes;
}

/// The resource directory and the rest of its section.
struct ResourceSection {
    std::uint32_t address = 0; // in the module's memory
    std::string bytes;         // none in a module without resources
};

ResourceSection readSection(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    const std::size_t start = numberAt(readPart(file, 0, 0x40), 0x3C);
    const std::string header = readPart(file, start, 24);
    if (numberAt(header, 0) != 0x4550) throw std::runtime_error("no module");
    const std::size_t optionalSize = wordAt(header, 20);
    const std::string optional = readPart(file, start + 24, optionalSize);
    const bool has64Bits = wordAt(optional, 0) == 0x20B;
    const auto address = numberAt(optional, has64Bits ? 128 : 112); // the third of the data directories
    if (address == 0) return {};
    for (std::size_t i = 0; i < wordAt(header, 6); ++i) {
        const std::string row = readPart(file, start + 24 + optionalSize + i * 40, 40);
        const std::size_t skipped = address - numberAt(row, 12);
        const std::size_t size = numberAt(row, 16);
        if (address >= numberAt(row, 12) && skipped < size)
            return {address, readPart(file, numberAt(row, 20) + skipped, size - skipped)};
    }
    throw std::runtime_error("the resources lie in no section");
}

/// The ids of a directory's entries, and where they lead.
std::vector<std::pair<std::uint32_t, std::size_t>> entriesAt(const std::string& section, std::size_t directory) {
    const std::size_t count = std::size_t{wordAt(section, directory + 12)} + wordAt(section, directory + 14);
    std::vector<std::pair<std::uint32_t, std::size_t>> entries;
    for (std::size_t at = directory + 16; entries.size() < count; at += 8)
        entries.emplace_back(numberAt(section, at), numberAt(section, at + 4) & ~SubdirectoryBit);
    return entries;
}

} // namespace

std::vector<PeResource> readPeResources(const std::string& path) {
    const auto [address, bytes] = readSection(path);
    std::vector<PeResource> resources;
    if (bytes.empty()) return resources;
    for (const auto& [type, names] : entriesAt(bytes, 0)) {
        for (const auto& [name, languages] : entriesAt(bytes, names)) {
            for (const auto& [language, data] : entriesAt(bytes, languages))
                resources.push_back({type, partOf(bytes, numberAt(bytes, data) - address, numberAt(bytes, data + 4))});
        }
    }
    return resources;
}
