#include "tools/equalize/EffectLibrary.h"

#include "tools/common/Errors.h"
#include "tools/equalize/LanguageFaults.h"
#include "tools/equalize/ParameterText.h"

#include <cstring>
#include <string_view>

#include <dlfcn.h>

namespace eq {
namespace {

constexpr int32 HostVersion = 2;

intptr answerEffect(AEffect*, int32 opcode, int32, intptr, void*, float) {
    return opcode == audioMasterVersion ? HostVersion : 0;
}

/// Returns whether the effect is the equalizer. This program knows the parameters of no other effect.
bool isTheEqualizer(const AEffect& effect) {
    constexpr std::string_view Identity = "zVhM";
    return effect.magic == EffectMagic && std::memcmp(&effect.uniqueID, Identity.data(), sizeof effect.uniqueID) == 0 &&
           effect.numParams == ParameterCount && effect.numInputs == 2 && effect.numOutputs == 2 &&
           (effect.flags & effFlagsCanReplacing) != 0 && effect.initialDelay >= 0;
}

} // namespace

void EffectLibrary::Unloader::operator()(void* library) const {
    dlclose(library);
}

EffectLibrary::EffectLibrary(const std::filesystem::path& file)
    // The path must be absolute, because dlopen searches the system's folders for a name without a folder.
    : m_file(std::filesystem::absolute(file)), m_library(dlopen(m_file.c_str(), RTLD_NOW | RTLD_LOCAL)) {
    if (!m_library) throw FileError(std::string("the plug-in cannot be loaded: ") + dlerror());
    m_main = reinterpret_cast<EffectMainProc>(dlsym(m_library.get(), "main"));
    if (m_main == nullptr) throw FileError(m_file.string() + ": this is not a plug-in: it has no export \"main\"");
}

std::filesystem::path EffectLibrary::defaultPlace() {
    const std::filesystem::path folder = std::filesystem::read_symlink("/proc/self/exe").parent_path();
    // The library may be in the folder of the program, below the prefix of an installation, or in the home of a user
    // whose programs are in ~/.local/bin.
    std::string tried;
    for (const char* const place : {".", "../lib/vst", "../../.vst/parametric-equalizer"}) {
        std::filesystem::path file = (folder / place / "Parametric Equalizer.so").lexically_normal();
        if (std::filesystem::exists(file)) return file;
        tried += (tried.empty() ? " " : ", ") + file.string();
    }
    throw FileError("the plug-in is missing; name its file with --plugin; it is not one of these:" + tried);
}

AEffect* EffectLibrary::makeInstance() const {
    const std::lock_guard lock(m_mainInUse);
    AEffect* const effect = m_main(answerEffect);
    if (effect == nullptr)
        throw FileError(m_file.string() + ": the plug-in creates no instance; " +
                        languageFaultText(m_file.parent_path()));
    if (isTheEqualizer(*effect)) return effect;
    if (effect->magic == EffectMagic) effect->dispatcher(effect, effClose, 0, 0, nullptr, 0.0F);
    throw FileError(m_file.string() +
                    ": the plug-in is not the equalizer; --plugin must name 'Parametric Equalizer.so'");
}

} // namespace eq
