# The libraries that users link: Tarnwell::QorvaneShared, unless BUILD_SHARED_LIBS is OFF, and Tarnwell::QorvaneStatic. Tarnwell::Qorvane is the first of
# them that there is. Here and in an installed package the names are the same.
list(JOIN QORVANE_NAMES ";\n    " exported)
file(CONFIGURE OUTPUT qorvane.map CONTENT "{\n  global:\n    @exported@;\n  local: *;\n};\n" @ONLY)

add_library(qorvane_static STATIC $<TARGET_OBJECTS:qorvane_objects>)
set(kinds Static)
if(NOT DEFINED BUILD_SHARED_LIBS OR BUILD_SHARED_LIBS)
  list(PREPEND kinds Shared)
  add_library(qorvane_shared SHARED $<TARGET_OBJECTS:qorvane_objects>)
  set_target_properties(qorvane_shared PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION 1 LINK_DEPENDS ${CMAKE_CURRENT_BINARY_DIR}/qorvane.map)
  # A program that loads a library linked with fast-math options has its FTZ and DAZ set at start.
  target_link_options(qorvane_shared PRIVATE -O2 -fno-fast-math -fno-unsafe-math-optimizations
                      LINKER:--version-script=${CMAKE_CURRENT_BINARY_DIR}/qorvane.map LINKER:-z,relro LINKER:-z,now LINKER:-z,noexecstack LINKER:-z,text
                      LINKER:--as-needed)
  if(NOT QORVANE_SANITIZE)
    target_link_options(qorvane_shared PRIVATE LINKER:-z,defs)
    set_target_properties(qorvane_shared PROPERTIES LINKER_LANGUAGE C)  # the C++ runtime isn't needed
  endif()
endif()
foreach(kind IN LISTS kinds)
  string(TOLOWER qorvane_${kind} target)
  set_target_properties(${target} PROPERTIES OUTPUT_NAME Tarnwell.Qorvane EXPORT_NAME Qorvane${kind})
  target_include_directories(${target} INTERFACE $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/frame/include> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
  target_link_libraries(${target} PRIVATE "$<BUILD_INTERFACE:${OpenMP_CXX_LIBRARIES}>")
  add_library(Tarnwell::Qorvane${kind} ALIAS ${target})
  if(NOT TARGET Tarnwell::Qorvane)
    add_library(Tarnwell::Qorvane ALIAS ${target})
  endif()
endforeach()

if(NOT QORVANE_INSTALL)
  return()
endif()
# What a program needs to run is the component Runtime; all else is Development.
set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME Development)
# Each library has an export file of its own, so that builds of one and of both may be installed in one place, in any order.
set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/Qorvane)
foreach(kind IN LISTS kinds)
  string(TOLOWER qorvane_${kind} target)
  install(TARGETS ${target} EXPORT Qorvane${kind} LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT Runtime NAMELINK_COMPONENT Development
          ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
  install(EXPORT Qorvane${kind} NAMESPACE Tarnwell:: FILE Qorvane${kind}Targets.cmake DESTINATION ${package_folder})
endforeach()
include(CMakePackageConfigHelpers)
configure_package_config_file(cmake/QorvaneConfig.cmake.in QorvaneConfig.cmake INSTALL_DESTINATION ${package_folder})
write_basic_package_version_file(QorvaneConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/QorvaneConfig.cmake ${CMAKE_CURRENT_BINARY_DIR}/QorvaneConfigVersion.cmake DESTINATION ${package_folder})
# The header, and beside it the bindings, both as sources.
install(FILES frame/include/qorvane.h frame/include/qorvane.hpp frame/include/qorvane.f90 DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY man/man3 DESTINATION ${CMAKE_INSTALL_MANDIR})

# qorvane-info calls the installed library; the level's features, which that doesn't tell, it detects by the same source. It finds the library from where it
# stands, but for the packages, whose library is where the system looks.
set_source_files_properties(tools/info.cpp PROPERTIES COMPILE_OPTIONS "${plain_processor}")
add_executable(qorvane-info tools/info.cpp frame/detection.cpp)
target_compile_options(qorvane-info PRIVATE ${optimisation} -fno-lto ${QORVANE_EXACT_MATH} -fno-exceptions -fno-rtti)
target_include_directories(qorvane-info PRIVATE ${PROJECT_SOURCE_DIR})
target_link_libraries(qorvane-info PRIVATE Tarnwell::Qorvane qorvane_warnings)
target_link_options(qorvane-info PRIVATE -O2 -fno-fast-math -fno-unsafe-math-optimizations LINKER:--as-needed)
if(NOT QORVANE_SANITIZE)
  set_target_properties(qorvane-info PROPERTIES LINKER_LANGUAGE C)
endif()
if(NOT QORVANE_PACKAGES AND NOT IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}" AND NOT IS_ABSOLUTE "${CMAKE_INSTALL_BINDIR}")
  file(RELATIVE_PATH library_folder /${CMAKE_INSTALL_BINDIR} /${CMAKE_INSTALL_LIBDIR})
  set_target_properties(qorvane-info PROPERTIES INSTALL_RPATH "$ORIGIN/${library_folder}")
endif()
install(TARGETS qorvane-info DESTINATION ${CMAKE_INSTALL_BINDIR})

# The folders are relative to qorvane.pc, so that an installation may be moved, unless they were given as absolute ones.
if(IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}")
  set(pc_prefix ${CMAKE_INSTALL_PREFIX})
else()
  file(RELATIVE_PATH pc_prefix /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
  string(PREPEND pc_prefix "\${pcfiledir}/")
endif()
foreach(folder LIBDIR INCLUDEDIR)
  set(pc_${folder} ${CMAKE_INSTALL_${folder}})
  if(NOT IS_ABSOLUTE "${pc_${folder}}")
    string(PREPEND pc_${folder} "\${prefix}/")
  endif()
endforeach()
# The folder of the runtime is named where a C compiler doesn't look by itself, as of clang's.
set(openmp_libraries)
foreach(name IN LISTS OpenMP_CXX_LIB_NAMES)
  get_filename_component(folder "${OpenMP_${name}_LIBRARY}" DIRECTORY)
  if(NOT folder IN_LIST CMAKE_C_IMPLICIT_LINK_DIRECTORIES)
    list(APPEND openmp_libraries -L${folder})
  endif()
  list(APPEND openmp_libraries -l${name})
endforeach()
list(JOIN openmp_libraries " " OPENMP_LIBS_PRIVATE)
configure_file(cmake/qorvane.pc.in qorvane.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/qorvane.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

if(QORVANE_PACKAGES)
  include(cmake/QorvanePackages.cmake)
endif()
