#pragma once

#include "support/ContextException.h"

namespace eq {

/// A template that cannot be rewritten. It never leaves the rewriters.
class prep_exception : public ContextException {
public:
    using ContextException::ContextException;

    /// Raised for the condition that failed, given as its text.
    explicit prep_exception(const char* condition) noexcept
        : ContextException(nullptr, condition, "", 0, "prep_exception") {}
};

} // namespace eq
