# The icons, compiled in under the names by which the views ask for them. They are Bootstrap Icons,
# from the package bootstrap-icons, but for the refrigerator, which is ours.
set(plim_symbols
    archivebox archive
    arrow.down.left arrow-down-left
    arrow.down.to.line arrow-bar-down
    arrow.up.arrow.down arrow-down-up
    arrow.up.right arrow-up-right
    arrow.up.to.line arrow-bar-up
    arrow.uturn.backward arrow-counterclockwise
    arrow.uturn.forward arrow-clockwise
    bold type-bold
    book.closed.fill journal-bookmark-fill
    checklist ui-checks
    checkmark check-lg
    checkmark.circle check-circle
    checkmark.circle.fill check-circle-fill
    chevron.down chevron-down
    chevron.up chevron-up
    circle circle
    clock.arrow.circlepath clock-history
    divide hr
    folder folder2-open
    globe globe
    h1 type-h1
    h2 type-h2
    h3 type-h3
    info.circle info-circle
    italic type-italic
    keyboard keyboard
    link link-45deg
    list.bullet list-ul
    list.number list-ol
    macwindow.badge.plus window-plus
    magnifyingglass search
    note.text card-text
    paintpalette.fill palette-fill
    paragraph text-paragraph
    pin.fill pin-fill
    plus plus-lg
    plus.rectangle.on.rectangle window-stack
    power power
    printer printer
    shuffle shuffle
    square.and.arrow.down download
    square.and.arrow.up upload
    strikethrough type-strikethrough
    trash trash3
    tray inbox
    tray.and.arrow.up box-arrow-up
    underline type-underline
    xmark x-lg
    xmark.circle.fill x-circle-fill
)
find_path(PLIM_SYMBOLS_DIRECTORY archive.svg PATHS /usr/share/bootstrap-icons/svg NO_DEFAULT_PATH REQUIRED)
set(plim_symbol_files)
while(plim_symbols)
    list(POP_FRONT plim_symbols name icon)
    set_source_files_properties(${PLIM_SYMBOLS_DIRECTORY}/${icon}.svg PROPERTIES QT_RESOURCE_ALIAS ${name}.svg)
    list(APPEND plim_symbol_files ${PLIM_SYMBOLS_DIRECTORY}/${icon}.svg)
endwhile()
# "-22" is the same drawn on a grid of 22 units: no edge of 16 lies between two pixels there.
foreach(name IN ITEMS refrigerator.fill refrigerator.fill-22 refrigerator.fill-24)
    set_source_files_properties(icons/${name}.svg PROPERTIES QT_RESOURCE_ALIAS ${name}.svg)
    list(APPEND plim_symbol_files icons/${name}.svg)
endforeach()
qt_add_resources(plim_shell symbols PREFIX /plim/symbols FILES ${plim_symbol_files})
