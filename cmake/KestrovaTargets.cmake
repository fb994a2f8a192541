# How a target of this project is made: one place for flags, include path, export and install.
include(CMakePackageConfigHelpers)

add_library(kestrova_flags INTERFACE)
if(MSVC)
  target_compile_options(kestrova_flags INTERFACE /W4 /permissive- /utf-8
    $<$<BOOL:${KESTROVA_WARNINGS_AS_ERRORS}>:/WX>)
else()
  target_compile_options(kestrova_flags INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion
    -Wnon-virtual-dtor -Wold-style-cast -Woverloaded-virtual
    # g++ 12 takes "text" + std::string(...) for overlapping memory when it optimises.
    $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>
    $<$<BOOL:${KESTROVA_WARNINGS_AS_ERRORS}>:-Werror>)
endif()
if(KESTROVA_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()
if(KESTROVA_FUZZERS)
  # Counts the ways through the code. Comparisons are not traced, which would take half of the time:
  # the dictionary names the words.
  add_compile_options(-fsanitize=fuzzer-no-link -fno-sanitize-coverage=trace-cmp)
endif()
if(KESTROVA_COVERAGE)
  add_compile_options(--coverage)
  add_link_options(--coverage)
endif()

# kestrova_library(<name> COMPONENT <component> SOURCES ... HEADERS ... [LINK ...] [PRIVATE_LINK ...])
# makes the static library kestrova_<name>, known as Kestrova_Sel::<name> here and when installed.
# HEADERS are the public ones, relative to the top folder.
function(kestrova_library name)
  cmake_parse_arguments(arg "" "COMPONENT" "SOURCES;HEADERS;LINK;PRIVATE_LINK" ${ARGN})
  set(target kestrova_${name})
  add_library(${target} STATIC ${arg_SOURCES})
  add_library(Kestrova_Sel::${name} ALIAS ${target})
  set_target_properties(${target} PROPERTIES EXPORT_NAME ${name} POSITION_INDEPENDENT_CODE ON)
  target_compile_features(${target} PUBLIC cxx_std_20)
  target_include_directories(${target} PUBLIC
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/kestrova_sel>)
  target_link_libraries(${target} PUBLIC ${arg_LINK}
    PRIVATE $<BUILD_INTERFACE:kestrova_flags> ${arg_PRIVATE_LINK})
  install(TARGETS ${target} EXPORT Kestrova_Sel_${arg_COMPONENT} COMPONENT ${arg_COMPONENT})
  foreach(header ${arg_HEADERS})
    get_filename_component(folder ${header} DIRECTORY)
    install(FILES ${PROJECT_SOURCE_DIR}/${header}
      DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/kestrova_sel/${folder} COMPONENT ${arg_COMPONENT})
  endforeach()
  set_property(GLOBAL APPEND PROPERTY KESTROVA_COMPONENTS ${arg_COMPONENT})
  set_property(GLOBAL APPEND PROPERTY KESTROVA_PUBLIC_HEADERS ${arg_HEADERS})
endfunction()

# Writes and installs the package files: find_package(Kestrova_Sel COMPONENTS core sqlite standalone).
function(kestrova_install_package)
  set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/Kestrova_Sel)
  get_property(components GLOBAL PROPERTY KESTROVA_COMPONENTS)
  list(REMOVE_DUPLICATES components)
  foreach(component ${components})
    install(EXPORT Kestrova_Sel_${component} NAMESPACE Kestrova_Sel::
      FILE Kestrova_Sel_${component}.cmake DESTINATION ${package_dir} COMPONENT ${component})
  endforeach()
  configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/Kestrova_SelConfig.cmake.in
    ${PROJECT_BINARY_DIR}/Kestrova_SelConfig.cmake INSTALL_DESTINATION ${package_dir})
  write_basic_package_version_file(${PROJECT_BINARY_DIR}/Kestrova_SelConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
  install(FILES ${PROJECT_BINARY_DIR}/Kestrova_SelConfig.cmake
    ${PROJECT_BINARY_DIR}/Kestrova_SelConfigVersion.cmake
    DESTINATION ${package_dir} COMPONENT core)
endfunction()
