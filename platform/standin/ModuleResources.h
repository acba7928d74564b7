#pragma once

#include <cstddef>

namespace eq::standin {

/// Registers a compiled resource file as resources of the module whose data contains the file. The destructor ends the
/// registration.
class ModuleResources {
public:
    ModuleResources(const std::byte* begin, const std::byte* end) noexcept;
    ~ModuleResources();
    ModuleResources(const ModuleResources&) = delete;
    ModuleResources& operator=(const ModuleResources&) = delete;

    const std::byte* const begin;
    const std::byte* const end;
    ModuleResources* next;
};

} // namespace eq::standin
