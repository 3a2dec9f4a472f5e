# Where an installed program finds what comes with it, and what "cmake --install" puts where a
# distribution has it. The movable folder of the build tree needs none of this.
include(GNUInstallDirs)

# The name of the program on the desktop: of its entry, its icon and its description.
set(ORVANE_DESKTOP_ID com.example.Orvane)
set(ORVANE_SHARED ${CMAKE_INSTALL_DATADIR}/orvane)
set(ORVANE_HELPERS ${CMAKE_INSTALL_LIBEXECDIR}/orvane)
# By way of the program, so that what is installed can be moved as a whole.
file(RELATIVE_PATH ORVANE_SHARED_FOLDER /prefix/${CMAKE_INSTALL_BINDIR} /prefix/${ORVANE_SHARED})
file(RELATIVE_PATH ORVANE_HELPER_FOLDER /prefix/${CMAKE_INSTALL_BINDIR} /prefix/${ORVANE_HELPERS})

# orvane_install(): after all targets.
function(orvane_install)
  set(id ${ORVANE_DESKTOP_ID})
  set(packaging ${PROJECT_SOURCE_DIR}/packaging)
  set(data ${CMAKE_INSTALL_DATADIR})
  install(TARGETS orvane RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  if(TARGET orvane-sound)
    install(TARGETS orvane-sound RUNTIME DESTINATION ${ORVANE_HELPERS})
  endif()
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/appdata/ DESTINATION ${ORVANE_SHARED}/AppData)
  install(FILES ${packaging}/${id}.desktop DESTINATION ${data}/applications)
  install(FILES ${packaging}/${id}.metainfo.xml DESTINATION ${data}/metainfo)
  install(FILES ${packaging}/${id}.mime.xml DESTINATION ${data}/mime/packages RENAME ${id}.xml)
  install(FILES ${packaging}/orvane.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
  orvane_install_icon(${PROJECT_SOURCE_DIR}/src/widgets/program-icon.svg apps ${id})
  orvane_install_icon(${packaging}/profile.svg mimetypes application-x-orvane-profile)
endfunction()

# orvane_install_icon(SVG KIND NAME): as it is and, where there is the tool that draws them, in the
# sizes that desktops ask for.
function(orvane_install_icon svg kind name)
  set(icons ${CMAKE_INSTALL_DATADIR}/icons/hicolor)
  install(FILES ${svg} DESTINATION ${icons}/scalable/${kind} RENAME ${name}.svg)
  find_program(ORVANE_RSVG rsvg-convert DOC "Draws the icons' sizes")
  if(NOT ORVANE_RSVG)
    return()
  endif()
  foreach(size 16 22 24 32 48 64 128 256 512)
    set(png ${PROJECT_BINARY_DIR}/icons/${name}-${size}.png)
    add_custom_command(
      OUTPUT ${png}
      COMMAND ${CMAKE_COMMAND} -E make_directory ${PROJECT_BINARY_DIR}/icons
      COMMAND ${ORVANE_RSVG} --width ${size} --height ${size} --output ${png} ${svg}
      DEPENDS ${svg}
      VERBATIM)
    list(APPEND pngs ${png})
    install(FILES ${png} DESTINATION ${icons}/${size}x${size}/${kind} RENAME ${name}.png)
  endforeach()
  add_custom_target(icon-${name} ALL DEPENDS ${pngs})
endfunction()
