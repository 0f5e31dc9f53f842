# Third-party libraries of every platform. ICU is linked as static archives: a process that starts anew for each operation
# gains 1 ms warm and 40 ms from a cold disk (measured), and the programs run where the library is another one.

find_package(Threads REQUIRED)

function(vesk_static_library target header)
  set(archives)
  foreach(name ${ARGN})
    find_library(VESK_ARCHIVE_${name} NAMES lib${name}.a REQUIRED)
    list(APPEND archives ${VESK_ARCHIVE_${name}})
  endforeach()
  find_path(VESK_INCLUDE_${target} ${header} REQUIRED)
  add_library(${target} INTERFACE)
  target_include_directories(${target} SYSTEM INTERFACE ${VESK_INCLUDE_${target}})
  target_link_libraries(${target} INTERFACE ${archives})
endfunction()

vesk_static_library(third_icu unicode/unistr.h icui18n icuuc icudata)
target_compile_definitions(third_icu INTERFACE U_STATIC_IMPLEMENTATION)
target_link_libraries(third_icu INTERFACE Threads::Threads ${CMAKE_DL_LIBS} m)
find_path(VESK_INCLUDE_JSON nlohmann/json.hpp REQUIRED)
add_library(third_json INTERFACE)
target_include_directories(third_json SYSTEM INTERFACE ${VESK_INCLUDE_JSON})

find_path(VESK_INCLUDE_ASIO asio.hpp REQUIRED)
add_library(third_asio INTERFACE)
target_include_directories(third_asio SYSTEM INTERFACE ${VESK_INCLUDE_ASIO})
# asio finds std::aligned_alloc only where a standard header came before its own: some sources would allocate with what
# others do not free.
# This release of asio knows the coroutines of g++ only; those of clang 16 are the standard ones too.
target_compile_definitions(third_asio INTERFACE ASIO_STANDALONE ASIO_NO_DEPRECATED ASIO_HAS_CO_AWAIT=1
  ASIO_DISABLE_STD_ALIGNED_ALLOC)
target_link_libraries(third_asio INTERFACE Threads::Threads)
# g++ 12 takes the frames of asio's coroutines for a mismatch: their operator new is inlined, their delete is not.
target_compile_options(third_asio INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-mismatched-new-delete>)

find_path(VESK_INCLUDE_CLI11 CLI/CLI.hpp REQUIRED)
add_library(third_cli11 INTERFACE)
target_include_directories(third_cli11 SYSTEM INTERFACE ${VESK_INCLUDE_CLI11})
