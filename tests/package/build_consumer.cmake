# Installs the build into an empty folder, builds the consumer against it and runs it.
function(run)
  execute_process(COMMAND ${ARGV} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "${ARGV}\nfailed (${result}):\n${output}")
  endif()
endfunction()

file(REMOVE_RECURSE ${WORK_DIR})
run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${WORK_DIR}/installed)
set(flags)
if(SANITIZE)
  set(flags "-DCMAKE_CXX_FLAGS=-fsanitize=address,undefined")
endif()
run(${CMAKE_COMMAND} -S ${CONSUMER_DIR} -B ${WORK_DIR}/build -G Ninja
  -DCMAKE_CXX_COMPILER=${COMPILER} -DCMAKE_PREFIX_PATH=${WORK_DIR}/installed ${flags})
run(${CMAKE_COMMAND} --build ${WORK_DIR}/build)
run(${WORK_DIR}/build/consumer)
