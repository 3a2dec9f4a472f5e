# The guide that the program shows: the pages of docs/ for its users, in each language that has them.

# orvane_guide(TARGET): the pages as resources of TARGET, ":/guide/en/user-guide.html" and so on.
# English ones are in docs/, others in a folder of the language's code.
function(orvane_guide target)
  find_program(ORVANE_CMARK cmark-gfm REQUIRED DOC "Makes HTML of the guide")
  find_package(Python3 REQUIRED COMPONENTS Interpreter)
  set(docs ${PROJECT_SOURCE_DIR}/docs)
  set(script ${PROJECT_SOURCE_DIR}/cmake/guide.py)
  set(style ${PROJECT_SOURCE_DIR}/cmake/guide.css)
  file(GLOB pictures CONFIGURE_DEPENDS ${docs}/images/*.png)
  file(GLOB translated CONFIGURE_DEPENDS RELATIVE ${docs} ${docs}/??/*.md)
  set(english user-guide.md files.md keys.md menus.md popups.md profiles.md)
  list(TRANSFORM english PREPEND ${docs}/ OUTPUT_VARIABLE sources)
  foreach(page IN LISTS english translated)
    set(name ${page})
    if(page IN_LIST english)
      set(name en/${page})
    endif()
    cmake_path(REPLACE_EXTENSION name html)
    set(made ${CMAKE_CURRENT_BINARY_DIR}/guide/${name})
    add_custom_command(
      OUTPUT ${made}
      COMMAND Python3::Interpreter ${script} ${ORVANE_CMARK} ${docs}/${page} ${made}
      DEPENDS ${script} ${style} ${pictures} ${docs}/${page} ${sources}
      COMMENT "Making the guide's ${name}"
      VERBATIM)
    set_source_files_properties(${made} PROPERTIES QT_RESOURCE_ALIAS ${name})
    list(APPEND pages ${made})
  endforeach()
  qt_add_resources(${target} guide PREFIX /guide FILES ${pages})
endfunction()
