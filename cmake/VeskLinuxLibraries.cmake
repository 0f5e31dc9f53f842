# Third-party libraries of the Linux adapters. Like ICU, libical and SQLite are linked as static archives.

vesk_static_library(third_ical libical/ical.h ical)
target_link_libraries(third_ical INTERFACE third_icu)
vesk_static_library(third_sqlite sqlite3.h sqlite3)
target_link_libraries(third_sqlite INTERFACE Threads::Threads ${CMAKE_DL_LIBS} m)

vesk_static_library(third_sodium sodium.h sodium)
target_compile_definitions(third_sodium INTERFACE SODIUM_STATIC)

vesk_static_library(third_elf gelf.h elf z)
# Of the archive, a program has only what it asks for; the broker asks for nothing.
vesk_static_library(third_crypto openssl/evp.h crypto)
target_link_libraries(third_crypto INTERFACE Threads::Threads ${CMAKE_DL_LIBS})

# Debian has no archive of it; as a shared library it costs a start 0.03 ms (measured).
find_path(VESK_INCLUDE_PLIST plist/plist.h REQUIRED)
find_library(VESK_LIBRARY_PLIST plist-2.0 REQUIRED)
add_library(third_plist INTERFACE)
target_include_directories(third_plist SYSTEM INTERFACE ${VESK_INCLUDE_PLIST})
target_link_libraries(third_plist INTERFACE ${VESK_LIBRARY_PLIST})

# Only modules link it: it would cost every start 0.5 ms (measured).
find_path(VESK_INCLUDE_SYSTEMD systemd/sd-bus.h REQUIRED)
find_library(VESK_LIBRARY_SYSTEMD systemd REQUIRED)
add_library(third_systemd INTERFACE)
target_include_directories(third_systemd SYSTEM INTERFACE ${VESK_INCLUDE_SYSTEMD})
target_link_libraries(third_systemd INTERFACE ${VESK_LIBRARY_SYSTEMD})

# The numbers of AT-SPI's roles and states; its library is not linked, since it waits for the answer to each question.
find_path(VESK_INCLUDE_ATSPI atspi/atspi-constants.h PATH_SUFFIXES at-spi-2.0 REQUIRED)
add_library(third_atspi INTERFACE)
target_include_directories(third_atspi SYSTEM INTERFACE ${VESK_INCLUDE_ATSPI})

# Only modules link it: as part of a program it would cost each start a millisecond.
find_package(PkgConfig REQUIRED)
pkg_check_modules(VESK_GMIME REQUIRED IMPORTED_TARGET gmime-3.0)
add_library(third_gmime INTERFACE)
target_link_libraries(third_gmime INTERFACE PkgConfig::VESK_GMIME)

# Only modules link it: it would cost every start three milliseconds.
pkg_check_modules(VESK_CURL REQUIRED IMPORTED_TARGET libcurl)
add_library(third_curl INTERFACE)
target_link_libraries(third_curl INTERFACE PkgConfig::VESK_CURL)

# Only modules link it.
pkg_check_modules(VESK_SECRET REQUIRED IMPORTED_TARGET libsecret-1)
add_library(third_secret INTERFACE)
target_compile_definitions(third_secret INTERFACE SECRET_WITH_UNSTABLE SECRET_API_SUBJECT_TO_CHANGE)
target_link_libraries(third_secret INTERFACE PkgConfig::VESK_SECRET)

# Only modules link it.
pkg_check_modules(VESK_QPDF REQUIRED IMPORTED_TARGET libqpdf)
add_library(third_qpdf INTERFACE)
target_compile_definitions(third_qpdf INTERFACE POINTERHOLDER_TRANSITION=4)
target_link_libraries(third_qpdf INTERFACE PkgConfig::VESK_QPDF)

# Only modules link it.
pkg_check_modules(VESK_FFMPEG REQUIRED IMPORTED_TARGET libavformat libavcodec libavfilter libavutil libswscale
  libswresample)
add_library(third_ffmpeg INTERFACE)
target_link_libraries(third_ffmpeg INTERFACE PkgConfig::VESK_FFMPEG)

pkg_check_modules(VESK_HEIF REQUIRED IMPORTED_TARGET libheif)
add_library(third_heif INTERFACE)
target_link_libraries(third_heif INTERFACE PkgConfig::VESK_HEIF)
pkg_check_modules(VESK_EXIF REQUIRED IMPORTED_TARGET libexif)
add_library(third_exif INTERFACE)
target_link_libraries(third_exif INTERFACE PkgConfig::VESK_EXIF)

# Only modules link them.
pkg_check_modules(VESK_XCB REQUIRED IMPORTED_TARGET xcb xcb-randr xcb-res xcb-shm xcb-xinput xcb-xkb xcb-xtest
  xkbcommon-x11)
add_library(third_xcb INTERFACE)
target_link_libraries(third_xcb INTERFACE PkgConfig::VESK_XCB)
pkg_check_modules(VESK_PIXMAN REQUIRED IMPORTED_TARGET pixman-1)
add_library(third_pixman INTERFACE)
target_link_libraries(third_pixman INTERFACE PkgConfig::VESK_PIXMAN)
pkg_check_modules(VESK_PNG REQUIRED IMPORTED_TARGET libpng zlib)
add_library(third_png INTERFACE)
target_link_libraries(third_png INTERFACE PkgConfig::VESK_PNG)
pkg_check_modules(VESK_XKBCOMMON REQUIRED IMPORTED_TARGET xkbcommon)
add_library(third_xkbcommon INTERFACE)
target_link_libraries(third_xkbcommon INTERFACE PkgConfig::VESK_XKBCOMMON)

# The code of Wayland's protocols is written out when the build is configured, so that tools which read the sources
# without building them find it.
pkg_check_modules(VESK_WAYLAND REQUIRED IMPORTED_TARGET wayland-client)
pkg_get_variable(VESK_WAYLAND_PROTOCOLS wayland-protocols pkgdatadir)
pkg_get_variable(VESK_WAYLAND_SCANNER wayland-scanner wayland_scanner)
function(vesk_wayland_protocol target xml)
  set(folder ${CMAKE_BINARY_DIR}/wayland-protocols)
  file(MAKE_DIRECTORY ${folder})
  cmake_path(GET xml STEM name)
  foreach(kind_and_file "client-header;${name}-client-protocol.h" "server-header;${name}-server-protocol.h"
      "private-code;${name}-protocol.c")
    list(GET kind_and_file 0 kind)
    list(GET kind_and_file 1 file)
    if(NOT EXISTS ${folder}/${file})
      execute_process(COMMAND ${VESK_WAYLAND_SCANNER} ${kind} ${xml} ${folder}/${file} COMMAND_ERROR_IS_FATAL ANY)
    endif()
  endforeach()
  target_sources(${target} PRIVATE ${folder}/${name}-protocol.c)
  target_include_directories(${target} SYSTEM PUBLIC ${folder})
endfunction()
add_library(third_wayland STATIC)
vesk_wayland_protocol(third_wayland
  ${VESK_WAYLAND_PROTOCOLS}/unstable/xdg-output/xdg-output-unstable-v1.xml)
target_link_libraries(third_wayland PUBLIC PkgConfig::VESK_WAYLAND)
