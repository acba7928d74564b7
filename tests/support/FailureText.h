#pragma once

#include <string>

namespace eq {

/// Returns the text of the `Failure` that `action` throws. The text has N in place of the line number, because the
/// number changes with the code.
template <typename Failure, typename Action>
std::string failureOf(const Action& action) {
    try {
        action();
    } catch (const Failure& failure) {
        std::string text = failure.what();
        const std::size_t end = text.find(']');
        const std::size_t begin = text.find_last_not_of("0123456789", end - 1) + 1;
        return begin < end ? text.replace(begin, end - begin, "N") : text;
    }
    return "no failure";
}

} // namespace eq
