# Cross-build of quorvane.dll for the device: ARM Windows CE with CeGCC's arm-mingw32ce.
#
# A device developer's own CeGCC on PATH is used as it is; otherwise the
# prebuilt one beside the checkout (../shared/toolchains) is unpacked once
# into the build folder. Without either, the device build is skipped with a
# message (dev.sh says so; the DLL check skips).
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR arm)
set(QUORVANE_DEVICE ON)

# try_compile runs this file again from other folders: the first run's
# answer is handed on through the environment of this one cmake process.
if(NOT DEFINED ENV{QUORVANE_CEGCC_BIN})
  find_program(_cegcc_gxx arm-mingw32ce-g++)
  if(_cegcc_gxx)
    get_filename_component(_cegcc_bin "${_cegcc_gxx}" DIRECTORY)
  else()
    get_filename_component(_shared "${CMAKE_CURRENT_LIST_DIR}/../../shared/toolchains" ABSOLUTE)
    set(_archive "${_shared}/cegcc-arm-mingw32ce.tar.xz")
    set(_unpacked "${CMAKE_BINARY_DIR}/cegcc")
    if(NOT EXISTS "${_unpacked}/bin/arm-mingw32ce-g++")
      if(NOT EXISTS "${_archive}")
        message(FATAL_ERROR "No device toolchain: arm-mingw32ce-g++ is not on PATH and ${_archive} is missing. "
                            "Install CeGCC (arm-mingw32ce) or put the shared toolchains folder beside the checkout.")
      endif()
      message(STATUS "Unpacking the device toolchain into ${CMAKE_BINARY_DIR}")
      execute_process(COMMAND tar -xJf "${_archive}" -C "${CMAKE_BINARY_DIR}" RESULT_VARIABLE _rc)
      if(NOT _rc EQUAL 0)
        message(FATAL_ERROR "Cannot unpack ${_archive}")
      endif()
    endif()
    set(_cegcc_bin "${_unpacked}/bin")
  endif()
  set(ENV{QUORVANE_CEGCC_BIN} "${_cegcc_bin}")
endif()

set(CMAKE_C_COMPILER $ENV{QUORVANE_CEGCC_BIN}/arm-mingw32ce-gcc)
set(CMAKE_CXX_COMPILER $ENV{QUORVANE_CEGCC_BIN}/arm-mingw32ce-g++)
set(CMAKE_RC_COMPILER $ENV{QUORVANE_CEGCC_BIN}/arm-mingw32ce-windres)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
