# Lets the Python reader print a text database and compares that with the listing that came with it.
#   cmake -D DUMP=program -D PYTHON=program -D READER=script -D SCRATCH=folder -P compare_python_reader.cmake
file(REMOVE_RECURSE ${SCRATCH})
file(MAKE_DIRECTORY ${SCRATCH})
execute_process(COMMAND ${DUMP} ${SCRATCH}/onf ${SCRATCH}/expected COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${PYTHON} ${READER} ${SCRATCH}/onf OUTPUT_FILE ${SCRATCH}/found COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${CMAKE_COMMAND} -E compare_files ${SCRATCH}/expected ${SCRATCH}/found RESULT_VARIABLE differs)
if(differs)
  message(FATAL_ERROR "${SCRATCH}/expected and ${SCRATCH}/found differ")
endif()
