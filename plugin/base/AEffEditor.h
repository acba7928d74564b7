#pragma once

#include "plugin/base/AEffect.h"

#include <atomic>

namespace eq {

class AudioEffect;

/// The base class of an effect's editor. The effect owns its editor; the host reaches it through the effect's
/// dispatcher, on the thread of its user interface. Only `postUpdate` may come from another thread.
///
/// The virtual operations are a binary interface: their order is fixed.
class AEffEditor {
public:
    explicit AEffEditor(AudioEffect* owner) noexcept : effect(owner) {}
    virtual ~AEffEditor() = default;

    AEffEditor(const AEffEditor&) = delete;
    AEffEditor& operator=(const AEffEditor&) = delete;

    /// Gives the editor's size, in a record of the editor's own, or null.
    virtual int32 getRect(ERect** rect) {
        *rect = nullptr;
        return 0;
    }

    /// `window` is the host's parent window.
    virtual int32 open(void* window) {
        systemWindow = window;
        return 0;
    }

    virtual void close() {}

    /// Comes at times of the host's choice, while the editor is open.
    virtual void idle() {
        if (updateFlag.exchange(0) != 0) update();
    }

    /// Shows the parameters as they are now.
    virtual void update() {}

    /// Asks for an `update` at the next `idle`. From any thread.
    virtual void postUpdate() { updateFlag = 1; }

protected:
    AudioEffect* effect; // not owned
    void* systemWindow = nullptr;
    std::atomic<int32> updateFlag = 0;
};

} // namespace eq
