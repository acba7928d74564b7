#pragma once

#include "curve/model/ChangeHistory.h"
#include "curve/model/ParameterPort.h"
#include "parameters/ParameterTable.h"

#include <array>
#include <cstdint>
#include <initializer_list>

namespace eq {

using NormalisedParameters = std::array<float, ParameterCount>;

/// The parameter values that the editor last read, the user's changes, and their history. A change sets only the
/// parameters that it names.
class EditorModel {
public:
    explicit EditorModel(ParameterPort& parameterPort);

    /// Reads all parameters, so that the editor follows the host.
    void refresh();

    [[nodiscard]] const NormalisedParameters& normalised() const noexcept { return values; }
    /// Returns the value in the parameter's unit. The host may have set a value outside the range.
    [[nodiscard]] double value(int index) const noexcept;
    /// Returns the value limited to the parameter's range. A NaN becomes the lowest value.
    [[nodiscard]] double limitedValue(int index) const noexcept;

    /// `beginDrag` begins a drag of the named parameters, `change` sets one of them, and `endDrag` records the drag as
    /// one change.
    void beginDrag(std::initializer_list<int> indexes);
    void change(int index, double value);
    void endDrag();

    /// Sets a parameter as one change. A value outside the range is limited.
    void enter(int index, double value);
    /// Sets a parameter by a step of the wheel or of a key, at the event's time in milliseconds.
    void step(int index, double value, std::uint32_t time);
    /// Undoes the latest change, if there is one.
    void undo();

    [[nodiscard]] ParameterPort& host() noexcept { return port; }

private:
    [[nodiscard]] Change::Before before(int index) const;
    void send(int index, float p);
    /// Sends a value as a separate gesture. Returns false if the parameter has this value already.
    bool sendAlone(int index, float p);

    ParameterPort& port;
    NormalisedParameters values{};
    ChangeHistory history;
    Change drag;
};

} // namespace eq
