#pragma once

#include "plugin/base/AEffect.h"

#include <atomic>

namespace eq {

class AudioEffect;

/// The base class of an effect's editor. The effect owns its editor. The host calls the editor through the effect's
/// dispatcher, on the thread of its user interface. Only `postUpdate` may be called on another thread.
///
/// The virtual operations are a binary interface: their order is fixed.
class AEffEditor {
public:
    explicit AEffEditor(AudioEffect* owner) noexcept : effect(owner) {}
    virtual ~AEffEditor() = default;

    AEffEditor(const AEffEditor&) = delete;
    AEffEditor& operator=(const AEffEditor&) = delete;

    /// Returns 1 and the address of the editor's size in `rect`, or returns 0 and null. The editor owns the size.
    virtual int32 getRect(ERect** rect) {
        *rect = nullptr;
        return 0;
    }

    /// Opens the editor in `window`, the host's parent window.
    virtual int32 open(void* window) {
        systemWindow = window;
        return 0;
    }

    virtual void close() {}

    /// The host calls this function repeatedly while the editor is open.
    virtual void idle() {
        if (updateFlag.exchange(0) != 0) update();
    }

    /// Shows the current parameters.
    virtual void update() {}

    /// Requests an `update` at the next `idle`. Any thread may call this.
    virtual void postUpdate() { updateFlag = 1; }

protected:
    AudioEffect* effect; // not owned
    void* systemWindow = nullptr;
    std::atomic<int32> updateFlag = 0;
};

} // namespace eq
