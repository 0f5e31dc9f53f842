# Objective-C++ with reference counting, and the warnings that concern it.

enable_language(OBJCXX)
set(CMAKE_OBJCXX_STANDARD 20)
set(CMAKE_OBJCXX_STANDARD_REQUIRED ON)
set(CMAKE_OBJCXX_EXTENSIONS OFF)
set(CMAKE_OBJCXX_VISIBILITY_PRESET hidden)
if(VESK_CCACHE AND NOT CMAKE_OBJCXX_COMPILER_LAUNCHER)
  set(CMAKE_OBJCXX_COMPILER_LAUNCHER ${VESK_CCACHE})
endif()

# Objects are let go also where a C++ exception passes.
target_compile_options(vesk_flags INTERFACE
  $<$<COMPILE_LANGUAGE:OBJCXX>:-fobjc-arc;-fobjc-arc-exceptions;-fblocks>
  $<$<COMPILE_LANGUAGE:OBJCXX>:-Wnullability;-Wnullability-completeness;-Wnullable-to-nonnull-conversion>
  $<$<COMPILE_LANGUAGE:OBJCXX>:-Wundeclared-selector;-Wselector;-Wstrict-selector-match;-Wobjc-messaging-id>
  $<$<COMPILE_LANGUAGE:OBJCXX>:-Warc-retain-cycles;-Warc-repeated-use-of-weak;-Wimplicit-retain-self>
  -Wunguarded-availability-new)
target_link_options(vesk_flags INTERFACE -Wl,-dead_strip)
