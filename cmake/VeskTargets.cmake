# Settings that every target of the house shares.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
# Programs look for their modules in ../lib/vesk from where they lie.
set(VESK_OUTPUT_DIR ${CMAKE_BINARY_DIR} CACHE PATH "Folder of bin/ (programs) and lib/vesk/ (modules)")
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${VESK_OUTPUT_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${VESK_OUTPUT_DIR}/lib/vesk)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

find_program(VESK_CCACHE ccache)
if(VESK_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${VESK_CCACHE})
endif()

add_library(vesk_flags INTERFACE)
target_compile_options(vesk_flags INTERFACE -Wall -Wextra -Wconversion -Wshadow)
if(VESK_WARNINGS_AS_ERRORS)
  target_compile_options(vesk_flags INTERFACE -Werror)
endif()
if(APPLE)
  include(VeskAppleFlags)
else()
  target_compile_options(vesk_flags INTERFACE -ffunction-sections -fdata-sections)
  target_link_options(vesk_flags INTERFACE -Wl,--gc-sections)
  if(NOT VESK_FUZZ) # libFuzzer shares library symbols with libstdc++, and crashes on copies of its own
    target_link_options(vesk_flags INTERFACE -Wl,--exclude-libs,ALL)
  endif()
endif()
target_include_directories(vesk_flags INTERFACE ${CMAKE_SOURCE_DIR})

# One static library per layer or adapter; headers are named from the root of the repository.
function(vesk_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINK;PRIVATE_LINK" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_link_libraries(${name} PUBLIC vesk_flags ${ARG_LINK} PRIVATE ${ARG_PRIVATE_LINK})
endfunction()
