# Installs the tree, moves the install, builds the example client against it as a project of its
# own, with CMake and with pkg-config, and runs both against the installed service.
# Called with -DBUILD=… -DSOURCE=… -DSCRATCH=… -DLIBDIR=… -DGENERATOR=… -DCOMPILER=… -DFLAGS=…
# -DPKG_CONFIG=…
cmake_minimum_required(VERSION 3.25)

set(prefix "${SCRATCH}/moved")
file(REMOVE_RECURSE "${SCRATCH}")
execute_process(COMMAND "${CMAKE_COMMAND}" --install "${BUILD}" --strip
                        --prefix "${SCRATCH}/first"
                OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
file(RENAME "${SCRATCH}/first" "${prefix}")

# Nothing that was installed points back to where it came from. Stripped, because clang names lambdas
# in debug information by the paths of their sources. A sanitizer, which has FLAGS, names places so.
execute_process(COMMAND grep -rlF -e "${BUILD}" -e "${SOURCE}" "${prefix}"
                OUTPUT_VARIABLE found RESULT_VARIABLE result)
if(NOT result EQUAL 1 AND FLAGS STREQUAL "")
  message(FATAL_ERROR "paths of the build stand in:\n${found}")
endif()

# What people look for beside a program.
foreach(file man/man1/aonctl.1 man/man8/vendor.zarvo.hardware.camera.aon-service.8
             bash-completion/completions/aonctl zsh/site-functions/_aonctl)
  if(NOT EXISTS "${prefix}/share/${file}")
    message(SEND_ERROR "not installed: share/${file}")
  endif()
endforeach()

file(COPY "${SOURCE}/examples/client" DESTINATION "${SCRATCH}")
execute_process(
  COMMAND "${CMAKE_COMMAND}" -S "${SCRATCH}/client" -B "${SCRATCH}/build" -G "${GENERATOR}"
          "-DCMAKE_PREFIX_PATH=${prefix}" "-DCMAKE_CXX_COMPILER=${COMPILER}"
          "-DCMAKE_CXX_FLAGS=${FLAGS}"
  COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND "${CMAKE_COMMAND}" --build "${SCRATCH}/build" COMMAND_ERROR_IS_FATAL ANY)

set(ENV{PKG_CONFIG_PATH} "${prefix}/${LIBDIR}/pkgconfig")
execute_process(COMMAND "${PKG_CONFIG}" --cflags --libs zarvo-aon-client
                OUTPUT_VARIABLE package OUTPUT_STRIP_TRAILING_WHITESPACE
                COMMAND_ERROR_IS_FATAL ANY)
separate_arguments(arguments UNIX_COMMAND "${FLAGS} -std=c++20 client.cpp ${package}")
execute_process(COMMAND "${COMPILER}" ${arguments} -o "${SCRATCH}/by-pkg-config"
                WORKING_DIRECTORY "${SCRATCH}/client" COMMAND_ERROR_IS_FATAL ANY)

# Sockets need a short path.
execute_process(COMMAND mktemp -d OUTPUT_VARIABLE runtime OUTPUT_STRIP_TRAILING_WHITESPACE
                COMMAND_ERROR_IS_FATAL ANY)
set(ENV{AON_RUNTIME_DIR} "${runtime}")
unset(ENV{LD_LIBRARY_PATH})
set(session [[
"$1" >"$2" 2>&1 & service=$!
shift 2
"$@"; client=$?
kill $service; wait $service; service=$?
echo "client $client, service $service"
[ $client = 0 ] && { [ $service = 0 ] || [ $service = 143 ]; }
]])
execute_process(COMMAND "${prefix}/bin/aonctl" --version COMMAND_ERROR_IS_FATAL ANY)
foreach(client build/aon-example-client by-pkg-config)
  execute_process(
    COMMAND sh -c "${session}" sh
            "${prefix}/bin/vendor.zarvo.hardware.camera.aon-service" "${SCRATCH}/service.log"
            "${SCRATCH}/${client}" 3
    OUTPUT_VARIABLE output RESULT_VARIABLE result TIMEOUT 60)
  set(steps "register.*subscribe.*start.*face.*face.*face.*stop.*unsubscribe.*unregister")
  if(NOT result EQUAL 0 OR NOT output MATCHES "${steps}")
    file(READ "${SCRATCH}/service.log" log)
    message(SEND_ERROR "${client} ended with ${result} and said:\n${output}\nthe service:\n${log}")
  endif()
endforeach()
file(REMOVE_RECURSE "${runtime}")
