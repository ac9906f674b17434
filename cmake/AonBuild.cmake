# How everything here is compiled: language, warnings, hardening, sanitizers.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/lib")
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")

if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE RelWithDebInfo CACHE STRING "Build type" FORCE)
endif()

# Object files name their sources relative to the repository's root, so that the cache serves every
# clone, wherever it lies. Start debuggers in the root.
add_compile_options("-ffile-prefix-map=${CMAKE_SOURCE_DIR}=.")
find_program(AON_CCACHE ccache)
if(AON_CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER "${CMAKE_COMMAND}" -E env "CCACHE_BASEDIR=${CMAKE_SOURCE_DIR}"
                                  "${AON_CCACHE}")
endif()

find_package(Threads REQUIRED)

# aon_options: linked privately by every target of this project.
add_library(aon_options INTERFACE)
target_compile_options(aon_options INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow
                                             -Wnon-virtual-dtor -fstack-protector-strong)
target_link_options(aon_options INTERFACE -Wl,-z,relro -Wl,-z,now -Wl,--no-undefined)
target_link_libraries(aon_options INTERFACE Threads::Threads)
target_compile_definitions(aon_options INTERFACE _GLIBCXX_ASSERTIONS)
if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
  target_compile_options(aon_options INTERFACE -Wthread-safety)
endif()
if(AON_WERROR)
  target_compile_options(aon_options INTERFACE -Werror)
endif()
if(AON_SANITIZE)
  # A sanitizer's own runtime is found when the program starts, not when a library is linked.
  target_compile_options(aon_options INTERFACE -fsanitize=${AON_SANITIZE} -fno-omit-frame-pointer
                                               -fno-sanitize-recover=all)
  target_link_options(aon_options INTERFACE -fsanitize=${AON_SANITIZE} -Wl,-z,undefs)
elseif(NOT CMAKE_BUILD_TYPE STREQUAL "Debug")
  target_compile_options(aon_options INTERFACE -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
endif()
if(AON_COVERAGE)
  if(NOT CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    message(FATAL_ERROR "AON_COVERAGE needs clang++")
  endif()
  target_compile_options(aon_options INTERFACE -fprofile-instr-generate -fcoverage-mapping
                                               -fprofile-update=atomic)
  target_link_options(aon_options INTERFACE -fprofile-instr-generate)
endif()

# aon_phone_options: aon_options for what also runs on a phone. Its standard library there is another
# one, and there is no run-time type information. AIDL packages also do without exceptions there.
add_library(aon_phone_options INTERFACE)
target_link_libraries(aon_phone_options INTERFACE aon_options)
if(AON_PHONE_FLAGS)
  if(NOT CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    message(FATAL_ERROR "AON_PHONE_FLAGS needs clang++")
  endif()
  target_compile_options(aon_phone_options INTERFACE -stdlib=libc++ -fno-rtti)
  # The phone's linker also refuses a version script that names what is not there.
  target_link_options(aon_phone_options INTERFACE -stdlib=libc++ -fuse-ld=lld
                                                  -Wl,--no-undefined-version)
endif()
