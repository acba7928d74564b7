// Measures how long a host waits for the language files at the first use, and how long each later look-up takes.

#include "tests/support/TemporaryFolder.h"
#include "wedge/CLanguageStore.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>
#include <vector>

namespace eq {

namespace {

constexpr int KeysPerFile = 2000;
constexpr WORD English = 1033;

std::string keyOf(int number) {
    return "IDS_Benchmark_" + std::to_string(number);
}

std::string fileText(int firstKey, int keys) {
    std::string text = "// A language file for measuring\n\n[Module]\n";
    for (int key = firstKey; key < firstKey + keys; ++key) {
        text += keyOf(key) + " = A text of usual length\\nwith \\x41 in it, number " + std::to_string(key) + "\n";
    }
    return text;
}

std::string modulePath(const TemporaryFolder& folder) {
    return folder.path("Module.dll");
}

/// Builds the store from English files with different keys. The store reads the English files several times: once for
/// each step of its search whose language is English.
void buildFromEnglishFiles(benchmark::State& state) {
    const TemporaryFolder folder;
    std::int64_t bytes = 0;
    for (int file = 0; file < state.range(0); ++file) {
        const std::string text = fileText(file * KeysPerFile, KeysPerFile);
        // The store compares only the start of a file's name: the digits, one more byte, and "lng".
        folder.write("1033_lng " + std::to_string(file) + ".lng", text);
        bytes += static_cast<std::int64_t>(text.size());
    }
    for (auto _ : state) {
        const CLanguageStore store(modulePath(folder), 0);
        benchmark::DoNotOptimize(store.Find("IDS_Benchmark_0"));
    }
    state.SetBytesProcessed(bytes * static_cast<std::int64_t>(state.iterations()));
}
BENCHMARK(buildFromEnglishFiles)->Arg(75)->Arg(150)->Arg(300)->Unit(benchmark::kMillisecond);

/// Builds the store in a folder with many languages, like the shipped folder. Only the files of the wanted languages
/// are read.
void buildBesideManyLanguages(benchmark::State& state) {
    const TemporaryFolder folder;
    for (int file = 0; file < 300; ++file) {
        folder.write("Equalizer" + std::to_string(1025 + file) + ".lng", fileText(0, KeysPerFile));
    }
    for (auto _ : state) {
        const CLanguageStore store(modulePath(folder), English + 1);
        benchmark::DoNotOptimize(store.Find("IDS_Benchmark_0"));
    }
}
BENCHMARK(buildBesideManyLanguages)->Unit(benchmark::kMillisecond);

/// Measures a look-up. The argument is the number of keys in the store. Several threads look up keys together, each in
/// a different order.
void lookUp(benchmark::State& state) {
    static const CLanguageStore* store = nullptr;
    const int keys = static_cast<int>(state.range(0));
    if (state.thread_index() == 0) {
        const TemporaryFolder folder;
        folder.write("1033.lng", fileText(0, keys));
        store = new CLanguageStore(modulePath(folder), 0);
    }
    std::vector<std::string> wanted;
    for (int i = 0; i < 1000; ++i) {
        constexpr std::int64_t Stride = 7919; // a prime number, so that consecutive keys are far apart in the store
        wanted.push_back(keyOf(static_cast<int>((i + state.thread_index()) * Stride % keys)));
    }
    std::size_t next = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(store->Find(wanted[next].c_str()));
        next = next + 1 == wanted.size() ? 0 : next + 1;
    }
    if (state.thread_index() == 0) delete store;
}
BENCHMARK(lookUp)->Arg(200)->Arg(2000)->Arg(20000)->Arg(200000)->Arg(600000);
BENCHMARK(lookUp)->Arg(2000)->ThreadRange(1, 4)->UseRealTime();

/// Decodes a value with many escapes. The argument is the length of the value in bytes.
void decodeValue(benchmark::State& state) {
    std::string value;
    while (value.size() < static_cast<std::size_t>(state.range(0))) value += "\\nab\\x41";
    for (auto _ : state) benchmark::DoNotOptimize(decode_value(value));
    state.SetBytesProcessed(static_cast<std::int64_t>(value.size()) * static_cast<std::int64_t>(state.iterations()));
}
BENCHMARK(decodeValue)->Arg(1 << 10)->Arg(1 << 20)->Arg(10 << 20);

} // namespace

} // namespace eq
