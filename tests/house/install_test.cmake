# Installs the build into a scratch folder, then configures, builds and runs a small consumer against it.
function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE status)
  if(status)
    message(FATAL_ERROR "failed (${status}): ${ARGN}")
  endif()
endfunction()

file(REMOVE_RECURSE ${SCRATCH})
run(${CMAKE_COMMAND} --install ${BUILD} --config "${CONFIG}" --prefix ${SCRATCH}/prefix)
set(flags "")
if(SANITIZE)
  set(flags "-fsanitize=${SANITIZE}")
endif()
run(${CMAKE_COMMAND} -S ${CONSUMER} -B ${SCRATCH}/build -G ${GENERATOR} -D CMAKE_CXX_COMPILER=${COMPILER} -D
    CMAKE_BUILD_TYPE=${CONFIG} -D CMAKE_CXX_FLAGS=${flags} -D CMAKE_PREFIX_PATH=${SCRATCH}/prefix)
run(${CMAKE_COMMAND} --build ${SCRATCH}/build)
run(${SCRATCH}/build/consumer)
run(${SCRATCH}/prefix/bin/quilon --version)
