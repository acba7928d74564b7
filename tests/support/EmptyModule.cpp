// A library with nothing in it but a place to point at.

#ifdef _WIN32
extern "C" __declspec(dllexport) const char insideTheModule = 0;
#else
extern "C" [[gnu::visibility("default")]] const char insideTheModule = 0;
#endif
