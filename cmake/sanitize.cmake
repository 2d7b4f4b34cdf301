# Sanitizer and fuzzing builds, each in a build folder of its own
# (scripts/sanitize, scripts/fuzz). Every target of the build is instrumented,
# ours and the test programs alike; Qt, ALSA and GoogleTest come from Debian as
# they are.
#
#   -DDIALCRAFT_SANITIZE=address,undefined   ASan + UBSan, stopping at the first report
#   -DDIALCRAFT_SANITIZE=thread              TSan
#   -DDIALCRAFT_FUZZ=ON                      libFuzzer targets of tests/fuzz (clang only)
set(DIALCRAFT_SANITIZE "" CACHE STRING "Sanitizers for every target: address,undefined or thread; empty for none")
option(DIALCRAFT_FUZZ "Build the libFuzzer targets of tests/fuzz (needs clang)" OFF)

if(DIALCRAFT_FUZZ)
  if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    message(FATAL_ERROR "DIALCRAFT_FUZZ needs clang (CC=clang CXX=clang++); scripts/fuzz sets it up")
  endif()
  # The fuzz targets run under ASan and UBSan too, so a memory error or
  # undefined behaviour stops them as a crash does.
  if(NOT DIALCRAFT_SANITIZE)
    set(DIALCRAFT_SANITIZE address,undefined)
  endif()
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()

if(DIALCRAFT_SANITIZE)
  add_compile_options(-fsanitize=${DIALCRAFT_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${DIALCRAFT_SANITIZE})
endif()
