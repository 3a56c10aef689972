# quillmate_picture_resources(RESULT): a resource file like images.qrc with a PNG for each drawing.
function(quillmate_picture_resources result)
  set(pictureSize 256) # pixels; larger than an icon on any screen
  find_program(QUILLMATE_RSVG rsvg-convert)
  if(NOT QUILLMATE_RSVG)
    message(FATAL_ERROR "rsvg-convert is missing (Debian: librsvg2-bin): it draws the icons.")
  endif()
  file(STRINGS images.qrc drawings REGEX "<file>")
  set(entries)
  set(pictures)
  foreach(line ${drawings})
    string(REGEX REPLACE ".*<file>(.*)\\.svg</file>.*" "\\1" name "${line}")
    set(drawing ${CMAKE_CURRENT_SOURCE_DIR}/${name}.svg)
    set(picture ${CMAKE_CURRENT_BINARY_DIR}/pictures/${name}.png)
    get_filename_component(folder ${picture} DIRECTORY)
    add_custom_command(OUTPUT ${picture}
      COMMAND ${CMAKE_COMMAND} -E make_directory ${folder}
      COMMAND ${QUILLMATE_RSVG} -w ${pictureSize} -h ${pictureSize} -o ${picture} ${drawing}
      DEPENDS ${drawing} VERBATIM)
    list(APPEND pictures ${picture})
    string(APPEND entries "  <file alias=\"${name}.png\">pictures/${name}.png</file>\n")
  endforeach()
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS images.qrc)
  add_custom_target(quillmate_pictures DEPENDS ${pictures})
  set(resources ${CMAKE_CURRENT_BINARY_DIR}/images.qrc)
  file(CONFIGURE OUTPUT ${resources} @ONLY CONTENT
    "<RCC>\n <qresource prefix=\"/images\">\n${entries} </qresource>\n</RCC>\n")
  set(${result} ${resources} PARENT_SCOPE)
endfunction()
