#include "curve/model/ChangeHistory.h"

#include <algorithm>
#include <utility>

namespace eq {

void ChangeHistory::add(Change change) {
    if (changes.size() == Most) changes.erase(changes.begin());
    changes.push_back(std::move(change));
    latestIsStep = false;
}

void ChangeHistory::addStep(Change change, std::uint32_t time) {
    const bool isSame =
        latestIsStep && !changes.empty() && time - latestStepTime <= MergeMilliseconds &&
        std::ranges::equal(changes.back().before, change.before, {}, &Change::Before::index, &Change::Before::index);
    if (!isSame) add(std::move(change));
    latestIsStep = true;
    latestStepTime = time;
}

std::optional<Change> ChangeHistory::takeLatest() {
    if (changes.empty()) return std::nullopt;
    Change latest = std::move(changes.back());
    changes.pop_back();
    latestIsStep = false;
    return latest;
}

} // namespace eq
