#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// A resource of a Windows module, with the number of its type.
struct PeResource {
    std::uint32_t type;
    std::string bytes;
};

/// The resources of a module. Throws std::exception for a file that is no module or whose structures lead outside.
std::vector<PeResource> readPeResources(const std::string& path);
