# The compiler options of the project. Targets of other projects (GoogleTest) get all options except the warnings.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

# The engine's output is defined to the bit. Each operation is rounded separately: a fused multiply-add would round once
# instead of twice.
add_compile_options(-ffp-contract=off)
# Coefficients always come from the mathematical library at run time. A compiler that evaluates a call with constant
# arguments rounds the result correctly, and libraries do not always do so.
add_compile_options(-fno-builtin-pow -fno-builtin-tan -fno-builtin-cos)

# x87 arithmetic would compute with excess precision. 32-bit hosts align the stack to only four bytes.
set(EQ_32_BIT_OPTIONS -msse2 -mfpmath=sse -mstackrealign)
if(CMAKE_SIZEOF_VOID_P EQUAL 4)
  add_compile_options(${EQ_32_BIT_OPTIONS})
endif()

if(EQ_SANITIZE)
  add_compile_options(-fsanitize=${EQ_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${EQ_SANITIZE})
endif()

# The environment of every test. AddressSanitizer computes the bounds of a module's thread-local data from the 16 bytes
# before the data. If these bytes belong to AddressSanitizer's own heap, the result is an invalid address, and the leak
# check crashes. The first option prevents this computation. Each known leak of a foreign library has a line in
# foreign-leaks.txt, and each race that ThreadSanitizer reports of one has a line in foreign-races.txt.
set(EQ_TEST_ENVIRONMENT "ASAN_OPTIONS=intercept_tls_get_addr=0"
  "LSAN_OPTIONS=suppressions='${PROJECT_SOURCE_DIR}/tests/foreign-leaks.txt':print_suppressions=0"
  "TSAN_OPTIONS=suppressions='${PROJECT_SOURCE_DIR}/tests/foreign-races.txt'")

# Checks of the shipped programs at run time: a stack that is overwritten, or that grows past its guard page, copies
# beyond the end of a buffer, and indices beyond the end of a container end the process. The other builds have sanitizers.
if(CMAKE_BUILD_TYPE MATCHES "^Rel" AND NOT EQ_SANITIZE)
  add_compile_options(-fstack-protector-strong)
  if(WIN32)
    add_link_options(-fstack-protector-strong)
  else()
    add_compile_options(-fstack-clash-protection -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3)
    add_compile_definitions(_GLIBCXX_ASSERTIONS)
    add_link_options(LINKER:-z,relro)
  endif()
endif()

if(EQ_BUILD_FUZZERS)
  # The instrumentation of all layers shows the fuzzer the path of an input.
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()

# Debug information and asserted conditions name files by their place in the project, so that the place of the project
# does not show in what is built.
add_compile_options("-ffile-prefix-map=${PROJECT_SOURCE_DIR}/=")

if(WIN32)
  # The products may import system libraries only, so the compiler's libraries are linked statically.
  add_compile_definitions(WIN32_LEAN_AND_MEAN NOMINMAX _WIN32_WINNT=0x0601)
  add_link_options(-static)
else()
  # The loader binds the functions of other libraries when it loads the library, not at their first call, which may be
  # on the audio thread.
  add_link_options(LINKER:-z,now)
endif()

# The warnings of the project's own targets.
add_library(eq_warnings INTERFACE)
target_compile_options(eq_warnings INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion)
if(EQ_WARNINGS_AS_ERRORS)
  target_compile_options(eq_warnings INTERFACE -Werror)
endif()

# Adds a layer: a static library of the sources of one folder. The libraries after LINK are the layers below.
#   eq_add_layer(NAME sources... [LINK libraries...])
function(eq_add_layer name)
  cmake_parse_arguments(LAYER "" "" "LINK" ${ARGN})
  add_library(${name} STATIC ${LAYER_UNPARSED_ARGUMENTS})
  target_include_directories(${name} PUBLIC "${PROJECT_SOURCE_DIR}")
  target_link_libraries(${name} PUBLIC ${LAYER_LINK} PRIVATE eq_warnings)
endfunction()
