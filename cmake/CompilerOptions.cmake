# Options of everything in the project, other people's sources (GoogleTest) excepted where they say so.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

# The engine's output is defined to the bit: each operation is rounded by itself, ...
add_compile_options(-ffp-contract=off)
# ... and coefficients always come from the mathematical library at run time. A compiler that folds a call with
# constant arguments rounds correctly, which libraries do not.
add_compile_options(-fno-builtin-pow -fno-builtin-tan -fno-builtin-cos)

# x87 arithmetic would keep excess precision, and 32-bit hosts call with a stack aligned to four bytes only.
set(EQ_32_BIT_OPTIONS -msse2 -mfpmath=sse -mstackrealign)
if(CMAKE_SIZEOF_VOID_P EQUAL 4)
  add_compile_options(${EQ_32_BIT_OPTIONS})
endif()

if(EQ_SANITIZE)
  add_compile_options(-fsanitize=${EQ_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${EQ_SANITIZE})
endif()

# The environment of every test. AddressSanitizer guesses the bounds of a module's thread-local data from the 16 bytes
# before them. Where those bytes belong to its own heap, the guess is an invalid address, and the leak check crashes.
# A leak of a foreign library has a line in foreign-leaks.txt.
set(EQ_TEST_ENVIRONMENT "ASAN_OPTIONS=intercept_tls_get_addr=0"
  "LSAN_OPTIONS=suppressions='${PROJECT_SOURCE_DIR}/tests/foreign-leaks.txt':print_suppressions=0")

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
  # Lets the fuzzer see the path of an input through all layers.
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()

# Debug information and asserted conditions name files by their place in the project, so that the place of the project
# does not show in what is built.
add_compile_options("-ffile-prefix-map=${PROJECT_SOURCE_DIR}/=")

if(WIN32)
  # Only system libraries may be imported, so the compiler's own are linked in.
  add_compile_definitions(WIN32_LEAN_AND_MEAN NOMINMAX _WIN32_WINNT=0x0601)
  add_link_options(-static)
else()
  # Functions of other libraries are bound when the library is loaded, not at their first call on the audio thread.
  add_link_options(LINKER:-z,now)
endif()

# Warnings for our own targets.
add_library(eq_warnings INTERFACE)
target_compile_options(eq_warnings INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion)
if(EQ_WARNINGS_AS_ERRORS)
  target_compile_options(eq_warnings INTERFACE -Werror)
endif()

# A layer: a static library of the sources of one folder. Its link dependencies name the layers below it.
#   eq_add_layer(NAME sources... [LINK libraries...])
function(eq_add_layer name)
  cmake_parse_arguments(LAYER "" "" "LINK" ${ARGN})
  add_library(${name} STATIC ${LAYER_UNPARSED_ARGUMENTS})
  target_include_directories(${name} PUBLIC "${PROJECT_SOURCE_DIR}")
  target_link_libraries(${name} PUBLIC ${LAYER_LINK} PRIVATE eq_warnings)
endfunction()
