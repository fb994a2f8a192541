# Installs the build into an empty folder, builds the project EXAMPLE_DIR against it, runs its
# PROGRAM, and compares what that prints with the project's output.txt.
cmake_minimum_required(VERSION 3.25)

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
  set(flags "-DCMAKE_CXX_FLAGS=-fsanitize=address,undefined -fno-sanitize-recover=all")
endif()
# A copy outside the source tree: nothing but the installed headers can be found from there.
get_filename_component(folder ${EXAMPLE_DIR} NAME)
file(COPY ${EXAMPLE_DIR} DESTINATION ${WORK_DIR})
run(${CMAKE_COMMAND} -S ${WORK_DIR}/${folder} -B ${WORK_DIR}/build -G Ninja
  -DCMAKE_CXX_COMPILER=${COMPILER} -DCMAKE_PREFIX_PATH=${WORK_DIR}/installed ${flags})
run(${CMAKE_COMMAND} --build ${WORK_DIR}/build)

execute_process(COMMAND ${WORK_DIR}/build/${PROGRAM}
  RESULT_VARIABLE result OUTPUT_FILE ${WORK_DIR}/output.txt ERROR_VARIABLE errors)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "The example failed (${result}):\n${errors}")
endif()
file(READ ${WORK_DIR}/output.txt printed)
file(READ ${EXAMPLE_DIR}/output.txt expected)
if(NOT printed STREQUAL expected)
  message(FATAL_ERROR "The example prints\n${printed}\ninstead of\n${expected}")
endif()
