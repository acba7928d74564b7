// This library is loaded before libsndfile. Its `sf_write_int` drops the second half of each block of samples, and
// reports success.

#include <dlfcn.h>
#include <sndfile.h>

extern "C" __attribute__((visibility("default"))) sf_count_t sf_write_int(SNDFILE* file, const int* samples,
                                                                          sf_count_t count) {
    using Write = sf_count_t (*)(SNDFILE*, const int*, sf_count_t);
    static const auto write = reinterpret_cast<Write>(dlsym(RTLD_NEXT, "sf_write_int"));
    write(file, samples, count / 2);
    return count;
}
