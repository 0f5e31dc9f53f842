# Adapter modules: shared objects in lib/vesk beside the programs' bin, which a program opens on first use. What they link
# costs a start nothing until then.

# vesk_module(NAME SOURCES … LINK …) makes lib/vesk/vesk-NAME.so.
function(vesk_module name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
  set(target vesk-${name})
  add_library(${target} MODULE ${ARG_SOURCES})
  target_link_libraries(${target} PRIVATE vesk_flags ${ARG_LINK})
  set_target_properties(${target} PROPERTIES PREFIX "")
endfunction()

# vesk_needs_modules(TARGET NAME…) builds modules along with a program that opens them.
function(vesk_needs_modules target)
  list(TRANSFORM ARGN PREPEND vesk- OUTPUT_VARIABLE modules)
  add_dependencies(${target} ${modules})
endfunction()
