# All compiler settings of the project, in one INTERFACE target that every target links.
add_library(korvale_flags INTERFACE)
target_compile_features(korvale_flags INTERFACE cxx_std_20)
target_compile_options(
  korvale_flags
  INTERFACE -Wall
            -Wextra
            -Wpedantic
            -Wconversion
            $<$<CXX_COMPILER_ID:Clang>:-Wno-sign-conversion> # no part of GCC's -Wconversion
            -Wshadow
            -Werror)
target_compile_definitions(
  korvale_flags
  INTERFACE QT_NO_CAST_FROM_ASCII
            QT_NO_CAST_TO_ASCII
            QT_NO_URL_CAST_FROM_STRING
            QT_NO_FOREACH
            QT_NO_KEYWORDS
            QT_STRICT_ITERATORS
            QT_DISABLE_DEPRECATED_BEFORE=0x060400)

# Hardening of what is shipped. Left out, each with its reason: -D_GLIBCXX_ASSERTIONS (a tenth of a
# batch's instructions), -fsanitize=safe-stack and CFI of clang (Debian builds with GCC),
# -ftrivial-auto-var-init=zero (what is uninitialised shall stay visible to valgrind and the sanitizers).
include(CheckPIESupported)
check_pie_supported()
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
target_compile_options(
  korvale_flags INTERFACE $<$<CONFIG:Release>:-fstack-protector-strong -fstack-clash-protection
                          -fcf-protection=full -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3>)
target_link_options(korvale_flags INTERFACE LINKER:-z,relro LINKER:-z,now LINKER:-z,noexecstack)

set(KORVALE_SANITIZE "" CACHE STRING "Sanitizers, as given to -fsanitize=")
if(KORVALE_SANITIZE)
  target_compile_options(korvale_flags INTERFACE -fsanitize=${KORVALE_SANITIZE}
                                                 -fno-omit-frame-pointer)
  target_link_options(korvale_flags INTERFACE -fsanitize=${KORVALE_SANITIZE})
endif()

# What nearly every file of a room includes is compiled once. Files still include what they use; Clang,
# which takes precompiled headers only with exactly the same definitions, builds without them and shows
# where one does not.
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  set(CMAKE_DISABLE_PRECOMPILE_HEADERS ON)
endif()

# The lower rooms and the tables read, fold, sort and search lists of a million rows, and all menu entries
# at the start; what the others do, they do a few times a second at most: they are built for size.
set(KORVALE_SMALL_ROOMS agent_link shell core)

# korvale_room(NAME SOURCES... LINK...): one library per folder of src/, named after it.
function(korvale_room name)
  cmake_parse_arguments(ROOM "" "" "SOURCES;LINK;PRIVATE_LINK" ${ARGN})
  add_library(korvale_${name} STATIC ${ROOM_SOURCES})
  target_include_directories(korvale_${name} PUBLIC "${PROJECT_SOURCE_DIR}/src")
  target_link_libraries(
    korvale_${name}
    PUBLIC ${ROOM_LINK}
    PRIVATE korvale_flags ${ROOM_PRIVATE_LINK})
  if(name IN_LIST KORVALE_SMALL_ROOMS)
    target_compile_options(korvale_${name} PRIVATE $<$<CONFIG:Release>:-Os>)
    target_precompile_headers(korvale_${name} REUSE_FROM korvale_small_room_headers)
  else()
    target_precompile_headers(korvale_${name} REUSE_FROM korvale_room_headers)
  endif()
endfunction()
