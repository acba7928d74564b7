#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace eq {

/// One change of the user: the normalised values that its parameters had before the change.
struct Change {
    struct Before {
        int index;
        float p;
        friend bool operator==(const Before&, const Before&) = default;
    };
    std::vector<Before> before;
};

/// The changes that the user can undo. Keeps the latest `Most` changes.
class ChangeHistory {
public:
    static constexpr std::size_t Most = 100;
    /// Steps of the wheel or of a held key become one change if each step follows the previous step within this time.
    static constexpr std::uint32_t MergeMilliseconds = 500;

    /// Adds a completed drag, or a typed value.
    void add(Change change);
    /// Adds a step, or merges the step with the latest change if that change is a recent step of the same parameters.
    /// `time` is in milliseconds, and may wrap around.
    void addStep(Change change, std::uint32_t time);
    /// Removes and returns the latest change. Returns nothing if there is none.
    [[nodiscard]] std::optional<Change> takeLatest();

private:
    std::vector<Change> changes;
    bool latestIsStep = false;
    std::uint32_t latestStepTime = 0;
};

} // namespace eq
