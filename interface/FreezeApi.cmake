# Replaces FOLDER by the API of the .aidl files below SOURCES, and hashes it if a VERSION is given.
# Run by the freeze targets.
file(GLOB_RECURSE files "${SOURCES}/vendor/*.aidl")
file(REMOVE_RECURSE "${FOLDER}")
execute_process(
  COMMAND "${AIDL}" --dumpapi --structured --stability vintf "-I${SOURCES}" "--out=${FOLDER}"
          ${files}
  COMMAND_ERROR_IS_FATAL ANY)
if(VERSION)
  execute_process(COMMAND "${AIDL}" --hashapi --version ${VERSION} "${FOLDER}"
                  OUTPUT_VARIABLE hash COMMAND_ERROR_IS_FATAL ANY)
  file(WRITE "${FOLDER}/.hash" "${hash}")
endif()
