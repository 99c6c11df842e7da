# korvale_updater_key(FILE HEADER): turns the updater's key tables (four lines of 32 hex digits: base
# key tables 1 and 2, vector tables 1 and 2) into a C++ header. Never prints what is in the file.
function(korvale_updater_key file header)
  if(NOT EXISTS "${file}")
    message(FATAL_ERROR "KORVALE_UPDATER_KEY_FILE: there is no file ${file}")
  endif()
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${file}")
  file(READ "${file}" content)
  string(REPLACE ";" "," content "${content}") # a list separator would hide a bad line
  string(REGEX REPLACE "\n$" "" content "${content}")
  string(REPLACE "\n" ";" lines "${content}")
  list(LENGTH lines line_count)
  if(NOT line_count EQUAL 4)
    message(FATAL_ERROR "KORVALE_UPDATER_KEY_FILE: ${file} must have four lines, not ${line_count}")
  endif()
  set(tables "")
  set(number 0)
  foreach(line IN LISTS lines)
    math(EXPR number "${number} + 1")
    string(LENGTH "${line}" length)
    if(NOT length EQUAL 32 OR NOT line MATCHES "^[0-9A-Fa-f]+$")
      message(FATAL_ERROR "KORVALE_UPDATER_KEY_FILE: line ${number} of ${file} is not 32 hex digits")
    endif()
    string(REGEX REPLACE "(..)" "0x\\1, " bytes "${line}")
    string(STRIP "${bytes}" bytes)
    string(APPEND tables "    ${bytes}\n")
    if(number EQUAL 2)
      set(base_key "${tables}")
      set(tables "")
    endif()
  endforeach()
  file(
    CONFIGURE
    OUTPUT
    "${header}"
    CONTENT
    [[#pragma once

#include <array>
#include <cstdint>

namespace korvale {

/// Generated from KORVALE_UPDATER_KEY_FILE.
inline constexpr std::array<std::uint8_t, 32> updaterBaseKey{
@base_key@};
inline constexpr std::array<std::uint8_t, 32> updaterVectorArea{
@tables@};

} // namespace korvale
]]
    @ONLY)
  if(file STREQUAL "${PROJECT_SOURCE_DIR}/resources/updater_key.hex")
    message(
      NOTICE
      "Updater key: the DEVELOPMENT tables in resources/updater_key.hex. A build that shall read a "
      "real updater's messages needs -DKORVALE_UPDATER_KEY_FILE=<its key file>.")
  endif()
endfunction()
