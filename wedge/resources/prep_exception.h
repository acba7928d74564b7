#pragma once

#include "support/ContextException.h"

namespace eq {

/// Thrown for a template that cannot be rewritten. The rewriters catch the exception themselves.
class prep_exception : public ContextException {
public:
    using ContextException::ContextException;

    /// `condition` is the text of the check that failed.
    explicit prep_exception(const char* condition) noexcept
        : ContextException(nullptr, condition, "", 0, "prep_exception") {}
};

} // namespace eq
