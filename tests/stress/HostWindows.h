#pragma once

#ifdef _WIN32
#define EQ_EXPORT
#else
#define EQ_EXPORT __attribute__((visibility("default")))
#endif

// A host's windows. On Windows they are part of the program. The stand-in's windows live in the library that it is part
// of, so on Linux these are further exports of a library that is made for this test.
extern "C" {
/// A hidden window. Also readies the common controls.
EQ_EXPORT void* makeHostWindow();
EQ_EXPORT void destroyHostWindow(void* window);
EQ_EXPORT int countChildren(void* window);
/// The windows of this thread that stand by themselves; on Linux, all that there are.
EQ_EXPORT int countWindows();
EQ_EXPORT void pumpMessages();
}
