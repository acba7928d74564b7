// A host that knows the VST 2 interface and the effects by published numbers only.
//
//   record ZamEQ2|Equalizer PATH
//
// Compares the record of the effect in PATH with the published layout. The record of ZamEQ2, an effect of other
// authors, proves that the layout in this file is right. For the Equalizer, also compares texts, sound and version.
// Prints "PATH is as published", or prints each fault and exits with 1.

#ifdef _WIN32
#include <windows.h>
#else
#define _GNU_SOURCE
#include <dlfcn.h>
#endif
#include <math.h>
#include <stdbool.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>

// Offsets of the record's fields, in 32-bit and in 64-bit processes.
#define AT(offset32, offset64) (sizeof(void*) == 4 ? (offset32) : (offset64))
enum {
    Magic = 0,
    Dispatcher = AT(4, 8),
    Process = AT(8, 16),
    SetParameter = AT(12, 24),
    GetParameter = AT(16, 32),
    NumPrograms = AT(20, 40),
    NumParams = AT(24, 44),
    NumInputs = AT(28, 48),
    NumOutputs = AT(32, 52),
    Flags = AT(36, 56),
    Resvd1 = AT(40, 64),
    Resvd2 = AT(44, 72),
    InitialDelay = AT(48, 80),
    RealQualities = AT(52, 84),
    OffQualities = AT(56, 88),
    IoRatio = AT(60, 92),
    Object = AT(64, 96),
    User = AT(68, 104),
    UniqueId = AT(72, 112),
    Version = AT(76, 116),
    ProcessReplacing = AT(80, 120),
    Future = AT(84, 128),
    FutureBytes = 60,
};

// The dispatcher's opcodes.
enum {
    effClose = 1,
    effGetProgramName = 5,
    effGetParamLabel = 6,
    effGetParamDisplay = 7,
    effGetParamName = 8,
    effIdentify = 22,
    effGetVstVersion = 58,
};

static const struct {
    const char* name;
    int offset;
    int32_t zamEq2;
    int32_t equalizer;
} numbers[] = {
    {"magic", Magic, 0x56737450, 0x56737450},
    {"numPrograms", NumPrograms, 1, 1},
    {"numParams", NumParams, 12, 13},
    {"numInputs", NumInputs, 1, 2},
    {"numOutputs", NumOutputs, 1, 2},
    {"flags", Flags, 0x11, 0x19},
    {"initialDelay", InitialDelay, 0, 2048},
    {"realQualities", RealQualities, 0, 0},
    {"offQualities", OffQualities, 0, 0},
    {"ioRatio", IoRatio, 0, 0x3F800000}, // 1.0
    {"uniqueID", UniqueId, 0x5A455132, 0x4D68567A},
    {"version", Version, 0x00040100, 1},
};

// The Equalizer's texts. A parameter is displayed at its default, at 1 and at 0.
static const struct {
    const char* name;
    const char* label;
    const char* display[3];
} parameters[13] = {
    {"Volume", "dB", {"+0.0 dB", "-12.0 dB", "+12.0 dB"}},
    {"Frequency(1)", "Hz", {"20 Hz", "20 Hz", "20 kHz"}},
    {"Frequency(2)", "Hz", {"200 Hz", "20 Hz", "20 kHz"}},
    {"Frequency(3)", "Hz", {"2.0 kHz", "20 Hz", "20 kHz"}},
    {"Frequency(4)", "Hz", {"20 kHz", "20 Hz", "20 kHz"}},
    {"Gain(1)", "dB", {"+0.0 dB", "-10.0 dB", "+10.0 dB"}},
    {"Gain(2)", "dB", {"+0.0 dB", "-10.0 dB", "+10.0 dB"}},
    {"Gain(3)", "dB", {"+0.0 dB", "-10.0 dB", "+10.0 dB"}},
    {"Gain(4)", "dB", {"+0.0 dB", "-10.0 dB", "+10.0 dB"}},
    {"Q(1)", "", {"5.0", "1.0", "10.0"}},
    {"Q(2)", "", {"5.0", "1.0", "10.0"}},
    {"Q(3)", "", {"5.0", "1.0", "10.0"}},
    {"Q(4)", "", {"5.0", "1.0", "10.0"}},
};

// The Equalizer's gain for a sine of 2000 Hz, with one parameter changed. Band 3 is at 2000 Hz.
static const struct {
    int parameter;
    float value;
    double decibels;
} gains[] = {{0, 1, -12}, {0, 0, 12}, {7, 1, -10}, {7, 0, 10}};

typedef intptr_t HostCallback(char* effect, int32_t opcode, int32_t index, intptr_t value, void* data, float option);
typedef char* EffectMain(HostCallback* host);
typedef intptr_t DispatcherCode(char* effect, int32_t opcode, int32_t index, intptr_t value, void* data, float option);
typedef void ProcessCode(char* effect, float** inputs, float** outputs, int32_t frames);
typedef void SetParameterCode(char* effect, int32_t index, float value);
typedef float GetParameterCode(char* effect, int32_t index);

static int faults = 0;

static void check(bool good, const char* what, double value) {
    if (good) return;
    printf("FAULT: %s: %.10g\n", what, value);
    faults++;
}

static void checkText(const char* what, const char* text, const char* expected) {
    if (strcmp(text, expected) == 0) return;
    printf("FAULT: %s is \"%s\" instead of \"%s\"\n", what, text, expected);
    faults++;
}

static intptr_t host(char* effect, int32_t opcode, int32_t index, intptr_t value, void* data, float option) {
    (void)effect, (void)index, (void)value, (void)data, (void)option;
    const int32_t audioMasterVersion = 1;
    return opcode == audioMasterVersion ? 2400 : 0;
}

#ifdef _WIN32
static void* load(const char* path) {
    return LoadLibraryA(path);
}
static void* find(void* library, const char* name) {
    return (void*)GetProcAddress(library, name);
}
static void unload(void* library) {
    FreeLibrary(library);
}
static bool isLoaded(const char* path) {
    return GetModuleHandleA(path) != NULL;
}
static void* moduleOf(void* address) {
    HMODULE module = NULL;
    const DWORD flags = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    return GetModuleHandleExA(flags, address, &module) ? (void*)module : NULL;
}
#else
static void* load(const char* path) {
    return dlopen(path, RTLD_NOW);
}
static void* find(void* library, const char* name) {
    return dlsym(library, name);
}
static void unload(void* library) {
    dlclose(library);
}
static bool isLoaded(const char* path) {
    return dlopen(path, RTLD_NOW | RTLD_NOLOAD) != NULL;
}
static void* moduleOf(void* address) {
    Dl_info module;
    return dladdr(address, &module) ? module.dli_fbase : NULL;
}
#endif

static void* pointerAt(const char* effect, int offset) {
    void* pointer;
    memcpy(&pointer, effect + offset, sizeof pointer);
    return pointer;
}

static intptr_t dispatch(char* effect, int32_t opcode, int32_t index, void* data) {
    return ((DispatcherCode*)pointerAt(effect, Dispatcher))(effect, opcode, index, 0, data, 0);
}

static void setParameter(char* effect, int32_t index, float value) {
    ((SetParameterCode*)pointerAt(effect, SetParameter))(effect, index, value);
}

static void checkRecord(const char* effect, void* module, bool foreign) {
    for (size_t i = 0; i < sizeof numbers / sizeof *numbers; i++) {
        int32_t value;
        memcpy(&value, effect + numbers[i].offset, sizeof value);
        check(value == (foreign ? numbers[i].zamEq2 : numbers[i].equalizer), numbers[i].name, value);
    }
    const int code[] = {Dispatcher, Process, SetParameter, GetParameter, ProcessReplacing};
    for (int i = 0; i < 5; i++) check(moduleOf(pointerAt(effect, code[i])) == module, "no function at offset", code[i]);
    const int null[] = {Resvd1, Resvd2, User};
    for (int i = 0; i < 3; i++) check(pointerAt(effect, null[i]) == NULL, "not null at offset", null[i]);
    check(foreign || pointerAt(effect, Object), "null at offset", Object);
    for (int i = 0; i < FutureBytes; i++) check(effect[Future + i] == 0, "not zero at offset", Future + i);
}

static void checkTexts(char* effect) {
    char text[256] = "";
    for (int i = 0; i < 13; i++) {
        dispatch(effect, effGetParamName, i, text);
        checkText("a name", text, parameters[i].name);
        dispatch(effect, effGetParamLabel, i, text);
        checkText("a label", text, parameters[i].label);
        for (int k = 0; k < 3; k++) {
            if (k > 0) setParameter(effect, i, k == 1);
            dispatch(effect, effGetParamDisplay, i, text);
            checkText(parameters[i].name, text, parameters[i].display[k]);
        }
        const float value = ((GetParameterCode*)pointerAt(effect, GetParameter))(effect, i);
        check(value == 0, "a parameter that was set to 0", value);
    }
    dispatch(effect, effGetProgramName, 0, text);
    checkText("the program", text, "Parametric Equalizer");
    check(dispatch(effect, effIdentify, 0, NULL) == 0x4E764566, "the answer to effIdentify", 0);
    check(dispatch(effect, effGetVstVersion, 0, NULL) == 2, "the answer to effGetVstVersion", 0);
}

enum { Rate = 44100, Frames = Rate / 2, Measured = Rate / 10 };
static float input[2][Frames], replaced[2][Frames], added[2][Frames];

// Plays the input through one of the two audio functions, 500 frames per call.
static void play(char* effect, int function, float output[2][Frames]) {
    for (int at = 0; at < Frames; at += 500) {
        float* in[] = {input[0] + at, input[1] + at};
        float* out[] = {output[0] + at, output[1] + at};
        ((ProcessCode*)pointerAt(effect, function))(effect, in, out, at + 500 < Frames ? 500 : Frames - at);
    }
}

static double sine(int frame, double phase) {
    return sin(2 * 3.14159265358979 * 2000 / Rate * frame + phase);
}

static void checkGain(EffectMain* entry, int parameter, float value, double decibels) {
    char* effect = entry(host);
    setParameter(effect, parameter, value);
    for (int i = 0; i < Frames; i++) input[0][i] = input[1][i] = (float)sine(i, 0);
    play(effect, ProcessReplacing, replaced);
    for (int channel = 0; channel < 2; channel++) {
        double a = 0, b = 0;
        for (int i = Frames - Measured; i < Frames; i++) {
            a += replaced[channel][i] * sine(i, 0);
            b += replaced[channel][i] * sine(i, 1.570796326794897);
        }
        const double measured = 20 * log10(2 * hypot(a, b) / Measured);
        check(fabs(measured - decibels) < 0.001, "gain in dB", measured);
    }
    dispatch(effect, effClose, 0, NULL);
}

// Each channel has one impulse, at a different frame. At its default settings the effect is a delay.
static void checkDelay(EffectMain* entry) {
    const int impulse[] = {0, 700}, delay = 2048;
    memset(input, 0, sizeof input);
    for (int channel = 0; channel < 2; channel++) {
        input[channel][impulse[channel]] = 1;
        for (int i = 0; i < Frames; i++) replaced[channel][i] = added[channel][i] = 0.25f;
    }
    const int functions[] = {ProcessReplacing, Process};
    for (int k = 0; k < 2; k++) {
        char* effect = entry(host);
        play(effect, functions[k], k == 0 ? replaced : added);
        dispatch(effect, effClose, 0, NULL);
    }
    for (int channel = 0; channel < 2; channel++) {
        for (int i = 0; i < Frames; i++) {
            const float expected = i == impulse[channel] + delay ? 1 : 0;
            check(fabsf(replaced[channel][i] - expected) < 1e-6f, "processReplacing is wrong at frame", i);
            check(added[channel][i] == replaced[channel][i] + 0.25f, "process is wrong at frame", i);
            if (faults > 20) return;
        }
    }
}

static void checkVersion(const char* path) {
#ifdef _WIN32
    static char resource[4096];
    VS_FIXEDFILEINFO* fixed;
    UINT size;
    check(GetFileVersionInfoA(path, 0, sizeof resource, resource), "no version resource", GetLastError());
    if (!VerQueryValueA(resource, "\\", (void**)&fixed, &size)) return check(false, "no fixed version", GetLastError());
    // Version 2.0.0.117, with 16 bits per number.
    check(fixed->dwFileVersionMS == 0x20000 && fixed->dwFileVersionLS == 117, "version", fixed->dwFileVersionLS);
    check(fixed->dwProductVersionMS == 0x20000 && fixed->dwProductVersionLS == 117, "product",
          fixed->dwProductVersionLS);
    const char* texts[][2] = {{"\\StringFileInfo\\000004b0\\FileVersion", "2.0.0.117"},
                              {"\\StringFileInfo\\000004b0\\ProductVersion", "2.0.0.117"},
                              {"\\StringFileInfo\\000004b0\\OriginalFilename", "Parametric Equalizer.DLL"}};
    for (int i = 0; i < 3; i++) {
        char* text;
        const bool found = VerQueryValueA(resource, texts[i][0], (void**)&text, &size);
        checkText(texts[i][0], found ? text : "", texts[i][1]);
    }
#else
    (void)path;
#endif
}

int main(int argc, char** argv) {
    if (argc != 3) return 2;
    const bool foreign = strcmp(argv[1], "ZamEQ2") == 0;
    for (int turn = 0; turn < 5; turn++) {
        void* library = load(argv[2]);
        void* entry = library ? find(library, "main") : NULL;
        char* effect = entry ? ((EffectMain*)entry)(host) : NULL;
        check(effect, "no effect at load", turn + 1);
        if (!effect) return 1;
        checkRecord(effect, moduleOf(entry), foreign);
        if (faults > 0) return 1;
        if (!foreign) checkTexts(effect);
        dispatch(effect, effClose, 0, NULL);
        if (!foreign && turn == 0) {
            checkDelay(entry);
            for (size_t i = 0; i < sizeof gains / sizeof *gains; i++)
                checkGain(entry, gains[i].parameter, gains[i].value, gains[i].decibels);
            checkVersion(argv[2]);
        }
        unload(library);
        check(!isLoaded(argv[2]), "still loaded after unload", turn + 1);
    }
    if (faults == 0) printf("%s is as published\n", argv[2]);
    return faults > 0;
}
