#pragma once

#include "curve/model/ChangeHistory.h"
#include "curve/model/ParameterPort.h"
#include "parameters/ParameterTable.h"

#include <array>
#include <cstdint>
#include <initializer_list>

namespace eq {

using NormalisedParameters = std::array<float, ParameterCount>;

/// The parameters as the editor last read them, the changes that the user makes, and their history. A change sets the
/// parameters that it names and no others.
class EditorModel {
public:
    explicit EditorModel(ParameterPort& parameterPort);

    /// Reads all parameters, so that the editor follows the host.
    void refresh();

    [[nodiscard]] const NormalisedParameters& normalised() const noexcept { return values; }
    /// Returns the value in the parameter's unit, as the host set it: it may be outside the range.
    [[nodiscard]] double value(int index) const noexcept;
    /// The same, limited to the range.
    [[nodiscard]] double limitedValue(int index) const noexcept;

    /// A drag: `beginDrag` names the parameters, `change` sets one of them, and `endDrag` makes one change of it all.
    void beginDrag(std::initializer_list<int> indexes);
    void change(int index, double value);
    void endDrag();

    /// Sets a parameter as one change. A value outside the range is limited.
    void enter(int index, double value);
    /// Sets a parameter by a step of the wheel or of a key, at the event's time in milliseconds.
    void step(int index, double value, std::uint32_t time);
    /// Takes the latest change back, if there is one.
    void undo();

    [[nodiscard]] ParameterPort& host() noexcept { return port; }

private:
    [[nodiscard]] Change::Before before(int index) const;
    void send(int index, float p);
    /// Sends a value in a gesture of its own. Returns false if it is the present value.
    bool sendAlone(int index, float p);

    ParameterPort& port;
    NormalisedParameters values{};
    ChangeHistory history;
    Change drag;
};

} // namespace eq
