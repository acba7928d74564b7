#pragma once

#include "wedge/functions/PropertyPages.h"
#include "wedge/functions/PropertySheets.h"
#include "wedge/resources/AcceleratorRegistry.h"
#include "wedge/resources/CountedBlock.h"
#include "wedge/resources/ResourceCache.h"

namespace eq {

/// All process-wide state of the wedge. The object is built while the library loads and destroyed while it unloads. A
/// member may refer to the members before it.
struct WedgeState {
    /// Lets the language store show its message in the wedge's message box.
    WedgeState() noexcept;

    CountedBlockIndex blocks;
    CountedIndex<PageThunk> thunks;
    ResourceCache resourceCache{blocks};
    AcceleratorRegistry acceleratorRegistry;
    PropertyPageState pages;
    SheetContext sheets;
};

/// Returns the only WedgeState of the process.
[[nodiscard]] WedgeState& wedgeState() noexcept;

} // namespace eq
