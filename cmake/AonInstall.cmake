# What `cmake --install` puts where. All of it can be moved afterwards, as a whole.
#
#   component     what it holds
#   client        the libraries that a client runs with
#   development   headers, CMake package, pkg-config file and .aidl files: to build a client
#   service       the service, the stand-ins for the platform that it runs on, and the programs with
#                 their manual pages and completions for shells
#
# The libraries bear the platform's names, libcutils.so for one. They lie in a folder of their own,
# which only their users' rpath names, so that none of them ever stands in for a system's library.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(library_dir "${CMAKE_INSTALL_LIBDIR}/zarvo-aon")
set(include_dir "${CMAKE_INSTALL_INCLUDEDIR}/zarvo-aon")
set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/ZarvoAon")
set(pkgconfig_dir "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
file(RELATIVE_PATH to_libraries "${CMAKE_INSTALL_FULL_BINDIR}"
                                "${CMAKE_INSTALL_FULL_LIBDIR}/zarvo-aon")

# aon_find_libraries_from(TARGET FOLDER): the installed target looks for libraries in FOLDER, and
# where it found those of the system when it was linked.
function(aon_find_libraries_from target folder)
  set_target_properties(${target} PROPERTIES INSTALL_RPATH "${folder}"
                                             INSTALL_RPATH_USE_LINK_PATH ON)
endfunction()

set(client_libraries aon_aidl_package)
set(service_libraries zarvo_hal_aon cutils mtkcam_aov mtkcam_modulehelper)
set(programs)
if(TARGET binder_ndk)
  list(APPEND client_libraries binder_ndk)
  list(APPEND service_libraries aon_host_control_interface)
  list(APPEND programs aon-demo aonctl vendor.zarvo.hardware.camera.aon-service)
endif()
foreach(library IN LISTS client_libraries service_libraries)
  aon_find_libraries_from(${library} "$ORIGIN")
endforeach()
foreach(program IN LISTS programs)
  aon_find_libraries_from(${program} "$ORIGIN/${to_libraries}")
endforeach()

install(TARGETS ${service_libraries} LIBRARY DESTINATION "${library_dir}" COMPONENT service)
install(TARGETS ${programs} RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT service)
if(programs)
  set(ctl_dir "${PROJECT_SOURCE_DIR}/host/ctl")
  install(FILES "${ctl_dir}/man/aonctl.1" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1"
          COMPONENT service)
  install(FILES "${ctl_dir}/man/vendor.zarvo.hardware.camera.aon-service.8"
          DESTINATION "${CMAKE_INSTALL_MANDIR}/man8" COMPONENT service)
  install(FILES "${ctl_dir}/completion/aonctl.bash" RENAME aonctl
          DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions" COMPONENT service)
  install(FILES "${ctl_dir}/completion/_aonctl"
          DESTINATION "${CMAKE_INSTALL_DATADIR}/zsh/site-functions" COMPONENT service)
endif()
install(TARGETS ${client_libraries} platform_binder EXPORT ZarvoAon
        LIBRARY DESTINATION "${library_dir}" COMPONENT client
        INCLUDES DESTINATION "${include_dir}")

install(DIRECTORY "$<TARGET_PROPERTY:aon_aidl_package,AON_AIDL_INCLUDE_DIR>/aidl"
        DESTINATION "${include_dir}" COMPONENT development)
install(DIRECTORY "${PROJECT_SOURCE_DIR}/interface/vendor"
        DESTINATION "${CMAKE_INSTALL_DATADIR}/zarvo-aon/aidl" COMPONENT development)
if(TARGET binder_ndk)
  install(DIRECTORY "${PROJECT_SOURCE_DIR}/host/binder/include/android"
          DESTINATION "${include_dir}" COMPONENT development)
endif()

# find_package(ZarvoAon 1.0 CONFIG) gives ZarvoAon::client.
set_target_properties(aon_aidl_package PROPERTIES EXPORT_NAME client)
set_target_properties(platform_binder PROPERTIES EXPORT_NAME binder)
install(EXPORT ZarvoAon NAMESPACE ZarvoAon:: FILE ZarvoAonConfig.cmake
        DESTINATION "${package_dir}" COMPONENT development)
write_basic_package_version_file("${PROJECT_BINARY_DIR}/ZarvoAonConfigVersion.cmake"
                                 COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/ZarvoAonConfigVersion.cmake" DESTINATION "${package_dir}"
        COMPONENT development)

# pkg-config --cflags --libs zarvo-aon-client
file(RELATIVE_PATH to_headers "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig"
                              "${CMAKE_INSTALL_FULL_INCLUDEDIR}/zarvo-aon")
if(TARGET binder_ndk)
  set(binder_cflags)
  set(binder_libs "-lbinder_ndk")
else()
  set(binder_cflags "-isystem ${AON_BINDER_NDK_INCLUDE_DIR}")
  cmake_path(GET AON_BINDER_NDK_LIBRARY PARENT_PATH binder_dir)
  set(binder_libs "-Wl,-rpath,${binder_dir} ${AON_BINDER_NDK_LIBRARY}")
endif()
configure_file("${CMAKE_CURRENT_LIST_DIR}/zarvo-aon-client.pc.in"
               "${PROJECT_BINARY_DIR}/zarvo-aon-client.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/zarvo-aon-client.pc" DESTINATION "${pkgconfig_dir}"
        COMPONENT development)
