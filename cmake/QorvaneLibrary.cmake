# The library that users link, and its installation.
list(JOIN QORVANE_NAMES ";\n    " exported)
file(CONFIGURE OUTPUT qorvane.map CONTENT "{\n  global:\n    @exported@;\n  local: *;\n};\n" @ONLY)

if(BUILD_SHARED_LIBS)
  add_library(qorvane SHARED $<TARGET_OBJECTS:qorvane_objects>)
  target_link_options(qorvane PRIVATE LINKER:--version-script=${CMAKE_CURRENT_BINARY_DIR}/qorvane.map LINKER:-z,relro LINKER:-z,now LINKER:-z,noexecstack
                      LINKER:-z,text LINKER:--as-needed)
  if(NOT QORVANE_SANITIZE)
    target_link_options(qorvane PRIVATE LINKER:-z,defs)
    set_target_properties(qorvane PROPERTIES LINKER_LANGUAGE C)  # the C++ runtime isn't needed
  endif()
else()
  add_library(qorvane STATIC $<TARGET_OBJECTS:qorvane_objects>)
endif()
add_library(Tarnwell::Qorvane ALIAS qorvane)
set_target_properties(qorvane PROPERTIES OUTPUT_NAME Tarnwell.Qorvane EXPORT_NAME Qorvane VERSION ${PROJECT_VERSION} SOVERSION 1
                      LINK_DEPENDS ${CMAKE_CURRENT_BINARY_DIR}/qorvane.map)
target_include_directories(qorvane INTERFACE $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/frame/include> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
target_link_libraries(qorvane PRIVATE $<BUILD_INTERFACE:${OpenMP_CXX_LIBRARIES}>)

include(CMakePackageConfigHelpers)
configure_package_config_file(cmake/QorvaneConfig.cmake.in QorvaneConfig.cmake INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/Qorvane)
write_basic_package_version_file(QorvaneConfigVersion.cmake COMPATIBILITY SameMajorVersion)
list(TRANSFORM OpenMP_CXX_LIB_NAMES PREPEND -l OUTPUT_VARIABLE openmp_libraries)
list(JOIN openmp_libraries " " OPENMP_LIBS_PRIVATE)
file(RELATIVE_PATH prefix_from_pc /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(cmake/qorvane.pc.in qorvane.pc @ONLY)

install(TARGETS qorvane EXPORT Qorvane LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(FILES frame/include/qorvane.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(EXPORT Qorvane NAMESPACE Tarnwell:: FILE QorvaneTargets.cmake DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/Qorvane)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/QorvaneConfig.cmake ${CMAKE_CURRENT_BINARY_DIR}/QorvaneConfigVersion.cmake
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/Qorvane)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/qorvane.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
