#pragma once

namespace eq {

/// What a rewriter of a resource returns.
enum PrepStatus : int {
    PrepFailed = 0,    ///< the resource is not what its type promises, or its texts could not be expanded
    PrepNoInput = 1,   ///< there were no bytes
    PrepReplaced = 2,  ///< there is a new block, made with `new std::byte[]`
    PrepUnchanged = 3, ///< nothing needed changing
};

} // namespace eq
