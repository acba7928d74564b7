#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace eq {

/// The normalised values of the parameters of one change, as they were before it.
struct Change {
    struct Before {
        int index;
        float p;
        friend bool operator==(const Before&, const Before&) = default;
    };
    std::vector<Before> before;
};

/// The changes that the user can take back. It keeps the latest of them.
class ChangeHistory {
public:
    static constexpr std::size_t Most = 100;
    /// Steps of the wheel or of a held key are one change while they follow each other within this time.
    static constexpr std::uint32_t MergeMilliseconds = 500;

    /// Adds a completed drag, or a typed value.
    void add(Change change);
    /// Adds a step at a time in milliseconds, or merges it with the latest change if that is a recent step of the same
    /// parameters. The clock may overflow.
    void addStep(Change change, std::uint32_t time);
    /// Removes and returns the latest change.
    [[nodiscard]] std::optional<Change> takeLatest();

private:
    std::vector<Change> changes;
    bool latestIsStep = false;
    std::uint32_t latestStepTime = 0;
};

} // namespace eq
