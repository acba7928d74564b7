#pragma once

#include <cstddef>

namespace eq::standin {

/// Makes a compiled resource file that lies in a module's data the resources of that module, while the object lives.
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
