#pragma once

namespace eq {

/// The result of a rewriter.
enum PrepStatus : int {
    PrepFailed = 0,    ///< the resource is not in the format of its type, or its texts could not be expanded
    PrepNoInput = 1,   ///< the resource is a null pointer
    PrepReplaced = 2,  ///< the rewriter made a new block with `new std::byte[]`
    PrepUnchanged = 3, ///< the resource needs no change
};

} // namespace eq
