# quillmate_windows_program(TARGET DESCRIPTION): gives the executable its version resource, icon and
# manifest. Does nothing elsewhere than on Windows.
function(quillmate_windows_program target description)
  if(NOT WIN32)
    return()
  endif()
  enable_language(RC)
  set(PROGRAM_FILE ${target}.exe)
  set(PROGRAM_DESCRIPTION ${description})
  set(PROGRAM_MANIFEST ${CMAKE_SOURCE_DIR}/cmake/program.manifest)
  quillmate_windows_icon(PROGRAM_ICON)
  set(HAS_ICON ${PROGRAM_ICON})
  set(resource ${CMAKE_CURRENT_BINARY_DIR}/${target}.rc)
  configure_file(${CMAKE_SOURCE_DIR}/cmake/program.rc.in ${resource} @ONLY)
  target_sources(${target} PRIVATE ${resource})
  set_source_files_properties(${resource} PROPERTIES
    INCLUDE_DIRECTORIES ${CMAKE_BINARY_DIR}/src/support
    OBJECT_DEPENDS "${PROGRAM_MANIFEST};${PROGRAM_ICON}")
  if(MSVC)
    target_link_options(${target} PRIVATE /MANIFEST:NO) # the resource has it
  endif()
endfunction()

# Draws the program's icon in the sizes that Windows asks for; empty without the tools for it.
function(quillmate_windows_icon result)
  set(${result} "" PARENT_SCOPE)
  find_program(QUILLMATE_RSVG rsvg-convert)
  find_program(QUILLMATE_ICOTOOL icotool)
  if(NOT QUILLMATE_RSVG OR NOT QUILLMATE_ICOTOOL)
    message(WARNING "rsvg-convert or icotool is missing (Debian: librsvg2-bin, icoutils): "
      "the programs get no icon.")
    return()
  endif()
  set(icon ${CMAKE_BINARY_DIR}/icon/quillmate.ico)
  set(${result} ${icon} PARENT_SCOPE)
  if(TARGET quillmate_icon)
    return()
  endif()
  set(drawing ${CMAKE_SOURCE_DIR}/src/images/program/quillmate.svg)
  set(bitmaps)
  set(entries)
  foreach(size 16 20 24 32 40 48 64 256)
    set(bitmap ${CMAKE_BINARY_DIR}/icon/${size}.png)
    quillmate_bitmap(${drawing} ${size} ${bitmap})
    list(APPEND bitmaps ${bitmap})
    if(size EQUAL 256) # kept as a PNG, as Windows itself does with this size
      set(bitmap --raw=${bitmap})
    endif()
    list(APPEND entries ${bitmap})
  endforeach()
  add_custom_command(OUTPUT ${icon}
    COMMAND ${QUILLMATE_ICOTOOL} --create -o ${icon} ${entries}
    DEPENDS ${bitmaps} COMMENT "Drawing the icon" VERBATIM)
  add_custom_target(quillmate_icon DEPENDS ${icon})
endfunction()
