# For compiling without linking: the host's Qt, whose headers are the same, stands in for one that was
# built for Windows and so has import libraries.
file(TOUCH ${CMAKE_BINARY_DIR}/nothing.a)
function(quillmate_name_import_libraries)
  foreach(part Core Gui Widgets PrintSupport)
    set_target_properties(Qt6::${part} PROPERTIES IMPORTED_IMPLIB ${CMAKE_BINARY_DIR}/nothing.a)
  endforeach()
endfunction()
cmake_language(DEFER CALL quillmate_name_import_libraries)
