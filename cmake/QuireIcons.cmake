# The icon at every size, drawn from packaging/icons/quire.svg at build time: for
# the window, which has them among its resources, and for the desktop's menus.
find_program(QUIRE_RSVG_CONVERT rsvg-convert REQUIRED DOC "Draws the icon; of the package librsvg2-bin")

set(quire_icon_sizes 16 22 24 32 48 64 128 256 512)
set(quire_icon_drawing ${PROJECT_SOURCE_DIR}/packaging/icons/quire.svg)
set(quire_icon_folder ${CMAKE_BINARY_DIR}/icons)
file(MAKE_DIRECTORY ${quire_icon_folder})

set(quire_icons)
foreach(size IN LISTS quire_icon_sizes)
    set(icon ${quire_icon_folder}/${size}.png)
    add_custom_command(OUTPUT ${icon}
        COMMAND ${QUIRE_RSVG_CONVERT} --width ${size} --height ${size} --output ${icon} ${quire_icon_drawing}
        DEPENDS ${quire_icon_drawing} VERBATIM)
    list(APPEND quire_icons ${icon})
endforeach()
add_custom_target(quire_icons ALL DEPENDS ${quire_icons})
