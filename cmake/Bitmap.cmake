# quillmate_bitmap(DRAWING SIZE BITMAP): draws an SVG file into a PNG of SIZE pixels a side when a target
# needs it. Without the tool for it the configuration fails.
function(quillmate_bitmap drawing size bitmap)
  find_program(QUILLMATE_RSVG rsvg-convert)
  if(NOT QUILLMATE_RSVG)
    message(FATAL_ERROR "rsvg-convert is missing (Debian: librsvg2-bin): it draws the icons.")
  endif()
  get_filename_component(folder ${bitmap} DIRECTORY)
  file(MAKE_DIRECTORY ${folder})
  add_custom_command(OUTPUT ${bitmap}
    COMMAND ${QUILLMATE_RSVG} -w ${size} -h ${size} -o ${bitmap} ${drawing}
    DEPENDS ${drawing} VERBATIM)
endfunction()
