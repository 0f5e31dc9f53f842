# Rights that a program carries in itself: a property list in the section `.vesk.entitlements` of its file, which nothing
# loads. It is added after linking, so that link-time optimisation and the collection of unused sections leave it alone.

if(NOT CMAKE_OBJCOPY)
  message(FATAL_ERROR "objcopy is missing; install the package binutils.")
endif()

# vesk_embed_entitlements(TARGET FILE)
function(vesk_embed_entitlements target file)
  cmake_path(ABSOLUTE_PATH file NORMALIZE)
  set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${file})
  add_custom_command(TARGET ${target} POST_BUILD VERBATIM
    COMMAND ${CMAKE_OBJCOPY} --add-section .vesk.entitlements=${file}
      --set-section-flags .vesk.entitlements=noload,readonly $<TARGET_FILE:${target}>)
endfunction()
