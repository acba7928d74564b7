#include "tools/editor-host/EffectFile.h"

#include "tools/common/Errors.h"

#include <dlfcn.h>

namespace eq {

EffectFile::EffectFile(const std::string& path) : m_handle(dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL)) {
    if (!m_handle) throw FileError(dlerror());
}

EffectFile::~EffectFile() {
    dlclose(m_handle);
}

EffectMainProc EffectFile::entry() const noexcept {
    return reinterpret_cast<EffectMainProc>(dlsym(m_handle, "main"));
}

} // namespace eq
