# Looks at the built library from outside: what it needs and what it shows.
# Called with -DLIBRARY=… -DREADELF=… -DNM=…
cmake_minimum_required(VERSION 3.25)

execute_process(COMMAND "${READELF}" -d "${LIBRARY}" OUTPUT_VARIABLE dynamic
                COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "\\(NEEDED\\)[^\n]*\\[[^]]*\\]" lines "${dynamic}")
set(allowed
    libbinder_ndk.so vendor.zarvo.hardware.camera.aon-V1-ndk.so liblog.so.0 libcutils.so
    libmtkcam_aov.so libmtkcam_modulehelper.so
    libstdc++.so.6 libm.so.6 libgcc_s.so.1 libc.so.6)
set(needed "")
foreach(line IN LISTS lines)
  string(REGEX REPLACE ".*\\[(.*)\\]" "\\1" name "${line}")
  list(APPEND needed "${name}")
  if(NOT name IN_LIST allowed AND NOT name MATCHES "^ld-linux")
    message(SEND_ERROR "the library needs ${name}, which no vendor process may count on")
  endif()
endforeach()
foreach(name libbinder_ndk.so vendor.zarvo.hardware.camera.aon-V1-ndk.so liblog.so.0 libcutils.so
             libmtkcam_aov.so libmtkcam_modulehelper.so)
  if(NOT name IN_LIST needed)
    message(SEND_ERROR "the library does not need ${name}: which code is it made of?")
  endif()
endforeach()

execute_process(COMMAND "${NM}" -D --defined-only -C "${LIBRARY}" OUTPUT_VARIABLE symbols
                COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "[^\n]+" symbols "${symbols}")
set(shown 0)
foreach(symbol IN LISTS symbols)
  if(symbol MATCHES "zarvo::aon::AONService")
    math(EXPR shown "${shown} + 1")
  else()
    message(SEND_ERROR "the library shows more than its service: ${symbol}")
  endif()
endforeach()
if(shown EQUAL 0)
  message(SEND_ERROR "the library does not show its service")
endif()
