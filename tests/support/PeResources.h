#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <vector>

/// A resource of a Windows module, with the numbers of its type and language.
struct PeResource {
    std::uint32_t type;
    std::uint32_t language;
    std::string bytes;
};

/// The resources of these types in a module, none if it holds no resources at all. Throws std::exception for a file
/// that is no module or whose structures lead outside.
std::vector<PeResource> readPeResources(const std::string& path, const std::set<std::uint32_t>& types);
