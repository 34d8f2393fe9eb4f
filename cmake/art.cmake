# art.cmake: the images, drawn by the generator at build time, and the resource compiler's search path.
find_package(Python3 REQUIRED COMPONENTS Interpreter)
set(ART_DIR ${CMAKE_BINARY_DIR}/art)
file(GLOB ART_SOURCES CONFIGURE_DEPENDS resources/art/*.py)
# The usage chart's images are drawn from the layout its painter uses.
list(APPEND ART_SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/charts/usage_layout.h)
add_custom_command(OUTPUT ${ART_DIR}/art.stamp
  COMMAND ${Python3_EXECUTABLE} ${CMAKE_CURRENT_SOURCE_DIR}/resources/art/build.py ${ART_DIR}
  DEPENDS ${ART_SOURCES}
  COMMENT "Drawing the images")
add_custom_target(art DEPENDS ${ART_DIR}/art.stamp)
file(GLOB RC_PARTS CONFIGURE_DEPENDS resources/*.rc resources/*.h)
set(QUORVANE_RC ${CMAKE_CURRENT_SOURCE_DIR}/resources/quorvane.rc)
set_source_files_properties(${QUORVANE_RC} PROPERTIES OBJECT_DEPENDS "${ART_DIR}/art.stamp;${RC_PARTS}")
set(CMAKE_RC_FLAGS "${CMAKE_RC_FLAGS} -I${ART_DIR} -I${CMAKE_CURRENT_SOURCE_DIR}/resources -I${CMAKE_CURRENT_SOURCE_DIR}")

