# The application bundle: the companion as its main program, the broker as a helper that the assistant starts, signed
# from the inside out.

set(VESK_BUNDLE_IDENTIFIER "app.veskhq.vesk" CACHE STRING "Identifier of the application bundle")
set(VESK_RELEASE_CHANNEL "stable" CACHE STRING "Release channel of the build")
set(VESK_CODE_SIGN_IDENTITY "-" CACHE STRING "Identity to sign with; - signs for this machine alone")
set(VESK_ICLOUD_CONTAINER "" CACHE STRING "iCloud container of the build; empty for a build without iCloud")
set(VESK_APPLE_TEAM "" CACHE STRING "Identifier of the signing team")

set(VESK_APPLICATION ${VESK_OUTPUT_DIR}/Vesk.app)
set(VESK_APPLICATION_SOURCES ${CMAKE_CURRENT_LIST_DIR}/application)
set(VESK_ENTITLEMENTS ${CMAKE_SOURCE_DIR}/VeskCapabilityBroker/VeskCapabilityBroker.entitlements)
if(VESK_ICLOUD_CONTAINER)
  set(VESK_ICLOUD_ENABLED "<true/>")
else()
  set(VESK_ICLOUD_ENABLED "<false/>")
endif()

# vesk_in_application(TARGET FOLDER IDENTIFIER) puts a program into Contents/FOLDER. It has the information dictionary in
# itself too: what asks the user for consent reads it from the program that asks.
function(vesk_in_application target folder identifier)
  set(VESK_PROGRAM ${target})
  set(VESK_PROGRAM_IDENTIFIER ${identifier})
  set(information ${CMAKE_BINARY_DIR}/${target}-Info.plist)
  configure_file(${VESK_APPLICATION_SOURCES}/Info.plist.in ${information} @ONLY)
  set_target_properties(${target} PROPERTIES
    RUNTIME_OUTPUT_DIRECTORY ${VESK_APPLICATION}/Contents/${folder}
    LINK_DEPENDS ${information})
  target_link_options(${target} PRIVATE "LINKER:-sectcreate,__TEXT,__info_plist,${information}")
endfunction()

# vesk_application(MAIN_PROGRAM HELPER) lays out what lies around the programs, and signs.
function(vesk_application main_program helper)
  configure_file(${CMAKE_BINARY_DIR}/${main_program}-Info.plist ${VESK_APPLICATION}/Contents/Info.plist COPYONLY)
  if(CMAKE_HOST_APPLE)
    find_program(VESK_CODESIGN codesign REQUIRED)
    set(sign ${VESK_CODESIGN} --force --sign ${VESK_CODE_SIGN_IDENTITY} --entitlements ${VESK_ENTITLEMENTS})
    add_custom_target(VeskApplication ALL VERBATIM
      COMMAND ${sign} ${VESK_APPLICATION}/Contents/Helpers/${helper}
      COMMAND ${sign} ${VESK_APPLICATION})
    add_dependencies(VeskApplication ${main_program} ${helper})
  endif()
  install(DIRECTORY ${VESK_APPLICATION} DESTINATION . USE_SOURCE_PERMISSIONS)
endfunction()
