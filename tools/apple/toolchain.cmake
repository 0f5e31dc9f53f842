# Builds for macOS on Linux, as far as that goes: clang for Apple processors, our own declarations of the frameworks, and
# stubs to link against. What comes out shows that the sources are valid and that nothing is left undefined; it never
# runs and is never shipped.

set(CMAKE_SYSTEM_NAME Darwin)
set(CMAKE_SYSTEM_PROCESSOR arm64)
set(CMAKE_SYSTEM_VERSION 23)

set(VESK_REPOSITORY ${CMAKE_CURRENT_LIST_DIR}/../..)
cmake_path(ABSOLUTE_PATH VESK_REPOSITORY NORMALIZE)
set(VESK_PREPARED ${VESK_REPOSITORY}/build/check-apple/prepared)
execute_process(COMMAND /usr/bin/python3 ${CMAKE_CURRENT_LIST_DIR}/prepare_sdk.py ${VESK_REPOSITORY} ${VESK_PREPARED}
  COMMAND_ERROR_IS_FATAL ANY)

foreach(language C CXX OBJCXX)
  set(CMAKE_${language}_COMPILER_TARGET arm64-apple-macos14.0)
  set(CMAKE_${language}_COMPILER_WORKS TRUE)
endforeach()
set(CMAKE_C_COMPILER /usr/bin/clang-19)
set(CMAKE_CXX_COMPILER /usr/bin/clang++-19)
set(CMAKE_OBJCXX_COMPILER /usr/bin/clang++-19)
set(CMAKE_AR /usr/bin/llvm-ar-19)
set(CMAKE_RANLIB /usr/bin/llvm-ranlib-19)
set(CMAKE_INSTALL_NAME_TOOL /usr/bin/llvm-install-name-tool-19)
set(CMAKE_OSX_ARCHITECTURES arm64)
set(CMAKE_OSX_DEPLOYMENT_TARGET 14.0)
set(CMAKE_OSX_SYSROOT ${VESK_PREPARED}/sdk)
# The tries of CMake itself compile and do not link: there is next to nothing to link against.
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
set(CMAKE_HAVE_LIBC_PTHREAD TRUE)

execute_process(COMMAND clang-19 -print-resource-dir OUTPUT_VARIABLE resources OUTPUT_STRIP_TRAILING_WHITESPACE
  COMMAND_ERROR_IS_FATAL ANY)
string(JOIN " " headers
  -nostdinc
  "-isystem ${VESK_PREPARED}/site"
  "-isystem /usr/lib/llvm-19/include/c++/v1"
  "-isystem ${resources}/include"
  "-isystem ${VESK_PREPARED}/libc"
  "-isystem ${CMAKE_CURRENT_LIST_DIR}/libc"
  "-isystem /usr/include/x86_64-linux-musl"
  "-iframework ${VESK_PREPARED}/sdk/System/Library/Frameworks")
set(CMAKE_CXX_FLAGS_INIT "${headers}")
set(CMAKE_OBJCXX_FLAGS_INIT "${headers}")
# Unoptimised code asks for more of the compiler's runtime than the stubs have.
set(CMAKE_CXX_FLAGS_DEBUG_INIT "-O1")
set(CMAKE_OBJCXX_FLAGS_DEBUG_INIT "-O1")
set(CMAKE_EXE_LINKER_FLAGS_INIT "--ld-path=/usr/bin/ld64.lld-19 -mlinker-version=820 -nostdlib -lSystem -lc++ -lobjc")

# A new header that now comes before another one changes no file that a compilation has read: without its name in the
# command, ccache would go on giving out what was compiled before, and ninja would not compile again.
file(GLOB_RECURSE declared RELATIVE ${CMAKE_CURRENT_LIST_DIR} ${CMAKE_CURRENT_LIST_DIR}/libc/* ${CMAKE_CURRENT_LIST_DIR}/sdk/*)
string(MD5 declared "${declared}")
add_compile_definitions(VESK_DECLARED="${declared}")

# Portable libraries, where a Mac has them of a package manager.
set(CMAKE_FIND_ROOT_PATH ${VESK_PREPARED})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(CMAKE_INCLUDE_PATH /portable)
set(CMAKE_LIBRARY_PATH /sdk/usr/local/lib)
