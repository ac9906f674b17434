# AIDL packages as shared libraries.
#
# aon_aidl_library(<target>
#   NAME <name>            # the package, or whatever names the interface: <name>-V<version>-ndk.so
#   VERSION <number>
#   HASH <hash>            # 40 hexadecimal digits, or notfrozen
#   ROOT <folder>          # the folder in which the packages' folders lie
#   FILES <path>...        # relative to ROOT
#   [VINTF]                # the types are marked @VintfStability
#   [LIBRARIES <target>...])   # packages that this one imports from
#
# Code that links to <target> includes <aidl/.../Type.h>. The code is made while building, by the
# compiler of host/aidl or by the one that AON_AIDL names.

# The files that the compiler makes of one .aidl file follow from its name.
function(aon_aidl_outputs headers sources include_dir source_dir file)
  cmake_path(GET file PARENT_PATH folder)
  cmake_path(GET file STEM type)
  string(REGEX REPLACE "^I([A-Z])" "\\1" base "${type}")
  set(headers_dir "${include_dir}/aidl/${folder}")
  set(${headers} "${headers_dir}/${type}.h" "${headers_dir}/Bn${base}.h"
                 "${headers_dir}/Bp${base}.h" PARENT_SCOPE)
  set(${sources} "${source_dir}/${folder}/${type}.cpp" PARENT_SCOPE)
endfunction()

function(aon_aidl_library target)
  cmake_parse_arguments(PARSE_ARGV 1 AIDL "VINTF" "NAME;VERSION;HASH;ROOT" "FILES;LIBRARIES")
  set(include_dir "${CMAKE_CURRENT_BINARY_DIR}/${target}/include")
  set(source_dir "${CMAKE_CURRENT_BINARY_DIR}/${target}/source")
  set(headers)
  set(sources)
  set(inputs)
  foreach(file IN LISTS AIDL_FILES)
    aon_aidl_outputs(more_headers more_sources "${include_dir}" "${source_dir}" "${file}")
    list(APPEND headers ${more_headers})
    list(APPEND sources ${more_sources})
    list(APPEND inputs "${AIDL_ROOT}/${file}")
  endforeach()

  set(roots "-I${AIDL_ROOT}")
  set(imported)
  foreach(library IN LISTS AIDL_LIBRARIES)
    get_target_property(root ${library} AON_AIDL_ROOT)
    get_target_property(files ${library} AON_AIDL_FILES)
    list(APPEND roots "-I${root}")
    list(APPEND imported ${files})
  endforeach()

  set(compiler $<TARGET_FILE:aon_aidl_compiler>)
  set(compiler_target aon_aidl_compiler)
  set(system)
  set(emulator ${CMAKE_CROSSCOMPILING_EMULATOR})
  if(AON_AIDL)
    set(compiler "${AON_AIDL}")
    set(compiler_target)
    set(system SYSTEM)
    set(emulator)
  endif()
  set(stability)
  if(AIDL_VINTF)
    set(stability --stability vintf)
  endif()
  add_custom_command(
    OUTPUT ${headers} ${sources}
    COMMAND ${emulator} ${compiler} --lang=ndk --structured ${stability} --version ${AIDL_VERSION}
            --hash ${AIDL_HASH} --min_sdk_version=30 ${roots} -h "${include_dir}" -o
            "${source_dir}" ${inputs}
    DEPENDS ${inputs} ${imported} ${compiler} ${compiler_target}
    COMMENT "Compiling the AIDL package ${AIDL_NAME}"
    VERBATIM)

  add_library(${target} SHARED ${sources} ${headers})
  set_target_properties(${target} PROPERTIES
    PREFIX ""
    OUTPUT_NAME "${AIDL_NAME}-V${AIDL_VERSION}-ndk"
    SUFFIX ".so"
    AON_AIDL_INCLUDE_DIR "${include_dir}"
    AON_AIDL_ROOT "${AIDL_ROOT}"
    AON_AIDL_FILES "${inputs}")
  target_include_directories(${target} ${system} PUBLIC "$<BUILD_INTERFACE:${include_dir}>")
  target_compile_features(${target} PUBLIC cxx_std_17)
  target_compile_definitions(${target} PRIVATE BINDER_STABILITY_SUPPORT)
  target_link_libraries(${target} PUBLIC platform_binder ${AIDL_LIBRARIES} PRIVATE aon_phone_options)
  if(AON_PHONE_FLAGS)
    # The phone's build gives exceptions only where they are asked for, as for the rooms.
    target_compile_options(${target} PRIVATE -fno-exceptions)
  endif()
  if(AON_AIDL)
    # Warnings in code of another compiler are not ours to mend.
    target_compile_options(${target} PRIVATE -w)
  endif()
endfunction()
