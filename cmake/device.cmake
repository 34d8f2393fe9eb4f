# device.cmake: quorvane.dll for ARM Windows CE (Windows Mobile 2003 and later), with CeGCC's gcc 4.4.
#
# The same sources as the desktop DLL, as gcc 4.4 reads them: -std=gnu++0x,
# nullptr through a header forced in by this build only. The device's own
# library names; libgcc linked in, since no device has libgcc_s.
if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE MinSizeRel)
endif()
set(CMAKE_CXX_FLAGS "${CMAKE_CXX_FLAGS} -std=gnu++0x -fno-exceptions -fno-rtti -Wall -include ${CMAKE_CURRENT_SOURCE_DIR}/platform/win32/device_compat.h")
add_compile_definitions(UNICODE _UNICODE WIN32_LEAN_AND_MEAN _WIN32_WCE=0x420 _WIN32_IE=0x0400)
include_directories(${CMAKE_CURRENT_SOURCE_DIR})
# The desktop defaults (kernel32, user32, …) do not exist on the device: coredll is all of them.
set(CMAKE_CXX_STANDARD_LIBRARIES "")

include(cmake/art.cmake)

file(GLOB DEVICE_SOURCES CONFIGURE_DEPENDS
  item/*.cpp trafficlog/*.cpp charts/*.cpp adapters/*.cpp diagnostics/*.cpp wireless/*.cpp options/*.cpp
  platform/*.cpp platform/win32/*.cpp)
add_library(quorvane SHARED ${DEVICE_SOURCES} ${QUORVANE_RC} resources/quorvane.def)
set_target_properties(quorvane PROPERTIES PREFIX "" OUTPUT_NAME quorvane)
# Stripped: flash is scarce on a handheld, and no debugger reads it there.
target_link_options(quorvane PRIVATE -static-libgcc -s)
target_link_libraries(quorvane PRIVATE aygshell commctrl iphlpapi ws2 wininet CellCore coredll)
add_dependencies(quorvane art)
