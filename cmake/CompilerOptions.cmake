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
# All coefficients come from the mathematical library at run time. If the compiler evaluated a call with constant
# arguments, the result could differ from the library's result in the last bit.
add_compile_options(-fno-builtin-pow -fno-builtin-tan -fno-builtin-cos)

# Use SSE, because x87 arithmetic has excess precision. Realign the stack, because 32-bit hosts align it to only four
# bytes.
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
# check crashes. The first option prevents this computation. foreign-leaks.txt lists the known leaks of foreign
# libraries, and foreign-races.txt lists the races that ThreadSanitizer reports in foreign libraries.
set(EQ_TEST_ENVIRONMENT "ASAN_OPTIONS=intercept_tls_get_addr=0"
  "LSAN_OPTIONS=suppressions='${PROJECT_SOURCE_DIR}/tests/foreign-leaks.txt':print_suppressions=0"
  "TSAN_OPTIONS=suppressions='${PROJECT_SOURCE_DIR}/tests/foreign-races.txt'")

# The shipped programs check themselves at run time. These faults end the process: a function overwrites its stack
# frame, the stack grows past its guard page, a copy exceeds its buffer, or an index exceeds its container. The other
# builds have sanitizers.
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
  # Instrument all layers, so that the fuzzer sees which code an input reaches.
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()

# Debug information and the texts of assertions contain paths relative to the project's folder. The built files
# therefore do not contain the path of the project's folder.
add_compile_options("-ffile-prefix-map=${PROJECT_SOURCE_DIR}/=")

if(WIN32)
  # The products may import only system libraries, so they link the compiler's libraries statically.
  add_compile_definitions(WIN32_LEAN_AND_MEAN NOMINMAX _WIN32_WINNT=0x0601)
  add_link_options(-static)
else()
  # The loader resolves the functions of other libraries when it loads the library. Without this option it would resolve
  # a function at the first call, which may be on the audio thread.
  add_link_options(LINKER:-z,now)
endif()

# The warnings of the project's own targets.
add_library(eq_warnings INTERFACE)
target_compile_options(eq_warnings INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion)
# In a unity build, several sources are one translation unit, and see each other's names.
target_compile_options(eq_warnings INTERFACE
  $<$<BOOL:$<TARGET_PROPERTY:UNITY_BUILD>>:-Wno-shadow;$<$<CXX_COMPILER_ID:GNU>:-Wno-subobject-linkage>>)
if(EQ_WARNINGS_AS_ERRORS)
  target_compile_options(eq_warnings INTERFACE -Werror)
endif()

# These headers can be precompiled, which makes a build faster. A source then compiles even if it lacks an include, so
# the builds for users do not precompile them.
set(EQ_PRECOMPILED_HEADERS <algorithm> <array> <cmath> <cstddef> <cstdint> <cstdio> <cstdlib> <cstring> <filesystem>
  <functional> <map> <memory> <optional> <string> <string_view> <utility> <vector>)
if(EQ_PRECOMPILE AND NOT WIN32)
  # Pango requires this option, and all targets that use the same headers must have the same options.
  add_compile_options(-pthread)
endif()

# Lets a target use the precompiled headers of its kind, "layers" or "tests", if EQ_PRECOMPILE contains the kind.
function(eq_precompile name kind)
  if(NOT kind IN_LIST EQ_PRECOMPILE)
    return()
  endif()
  target_precompile_headers(${name} REUSE_FROM precompiled-for-${kind})
  # GCC 12 reports overflows inside the standard library. It suppresses these false reports only for system headers, and
  # does not know that a precompiled header was one.
  target_compile_options(${name} PRIVATE
    $<$<CXX_COMPILER_ID:GNU>:-Wno-array-bounds;-Wno-stringop-overflow;-Wno-stringop-overread;-Wno-restrict>)
endfunction()

if("layers" IN_LIST EQ_PRECOMPILE)
  add_library(precompiled-for-layers STATIC EXCLUDE_FROM_ALL "${CMAKE_CURRENT_LIST_DIR}/empty.cpp")
  target_link_libraries(precompiled-for-layers PRIVATE eq_warnings)
  target_precompile_headers(precompiled-for-layers PRIVATE ${EQ_PRECOMPILED_HEADERS})
endif()

# Adds a layer: a static library from the sources of one folder. The libraries after LINK are the layers that it uses.
#   eq_add_layer(NAME sources... [LINK libraries...])
function(eq_add_layer name)
  cmake_parse_arguments(LAYER "" "" "LINK" ${ARGN})
  add_library(${name} STATIC ${LAYER_UNPARSED_ARGUMENTS})
  target_include_directories(${name} PUBLIC "${PROJECT_SOURCE_DIR}")
  target_link_libraries(${name} PUBLIC ${LAYER_LINK} PRIVATE eq_warnings)
  eq_precompile(${name} layers)
endfunction()
