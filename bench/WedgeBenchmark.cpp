// Measures the cost of the wedge: the rewriting of a dialog when it is first found, and the later finds and loads.

#include "platform/CriticalSection.h"
#include "tests/support/TemplateBuilder.h"
#include "wedge/OwnModule.h"
#include "wedge/functions/WedgeState.h"
#include "wedge/resources/DialogReader.h"

#include <benchmark/benchmark.h>

#include <cstddef>
#include <functional>
#include <map>
#include <memory>

namespace eq {

namespace {

constexpr std::uintptr_t DialogType = 5;
constexpr unsigned Items = 44;

/// Returns a dialog with as many controls as the editor's dialog. Every second title is a key.
TemplateBuilder largeDialog() {
    TemplateBuilder dialog;
    dialog.words({1, 0xFFFF}).doubleWord(0).doubleWord(0).doubleWord(0x40000048).words({Items, 0, 0, 318, 247});
    dialog.word(0).word(0).text(u"").words({8, 0, 0}).text(u"MS Shell Dlg");
    for (unsigned id = 0; id < Items; ++id) {
        dialog.align().doubleWord(0).doubleWord(0).doubleWord(0x50000000).words({1, 2, 3, 4}).doubleWord(id);
        dialog.words({0xFFFF, 0x82}).text(id % 2 == 0 ? u"{T_Long}" : u"Slider1").word(0);
    }
    return dialog;
}

void rewriteADialog(benchmark::State& state) {
    const TemplateBuilder dialog = largeDialog();
    for (auto _ : state) {
        void* block = nullptr;
        if (PrepareDialogResource(dialog.get().data(), dialog.get().size(), &block) != PrepReplaced)
            state.SkipWithError("not replaced");
        const std::unique_ptr<std::byte[]> owner(static_cast<std::byte*>(block));
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(dialog.get().size()));
}
BENCHMARK(rewriteADialog);

HRSRC knownDialog() {
    for (const unsigned id : {141U, 142U, 143U, 110U, 111U})
        FindResourceW(ownModule(), MAKEINTRESOURCEW(id), MAKEINTRESOURCEW(DialogType));
    return FindResourceW(ownModule(), MAKEINTRESOURCEW(142), MAKEINTRESOURCEW(DialogType));
}

/// Measures the least possible cost of a cached find.
void lookUpInAMapUnderALock(benchmark::State& state) {
    std::map<HRSRC, void*, std::less<>> map;
    char keys[5];
    for (char& key : keys) map[reinterpret_cast<HRSRC>(&key)] = &key;
    CriticalSection lock;
    for (auto _ : state) {
        const CriticalSectionEntry entry(lock);
        benchmark::DoNotOptimize(map.find(reinterpret_cast<HRSRC>(&keys[1])));
    }
}
BENCHMARK(lookUpInAMapUnderALock);

void findWhatIsCached(benchmark::State& state) {
    const HRSRC dialog = knownDialog();
    const HMODULE module = ownModule();
    for (auto _ : state) benchmark::DoNotOptimize(wedgeState().resourceCache.Prepare(module, dialog, DialogType));
}
BENCHMARK(findWhatIsCached);

void loadWhatIsCached(benchmark::State& state) {
    const HRSRC dialog = knownDialog();
    for (auto _ : state) benchmark::DoNotOptimize(LoadResource(nullptr, dialog));
}
BENCHMARK(loadWhatIsCached);

} // namespace

} // namespace eq
