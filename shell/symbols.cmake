# The icons, compiled in under the names by which the views ask for them. They are Bootstrap Icons,
# from the package bootstrap-icons.
set(plim_symbols
    archivebox archive
    arrow.down.left arrow-down-left
    arrow.down.to.line arrow-bar-down
    arrow.up.arrow.down arrow-down-up
    arrow.up.right arrow-up-right
    arrow.up.to.line arrow-bar-up
    bold type-bold
    book.closed.fill journal-bookmark-fill
    checklist ui-checks
    checkmark.circle check-circle
    checkmark.circle.fill check-circle-fill
    chevron.down chevron-down
    chevron.up chevron-up
    circle circle
    divide hr
    globe globe
    italic type-italic
    link link-45deg
    list.bullet list-ul
    list.number list-ol
    macwindow.badge.plus window-plus
    magnifyingglass search
    note.text card-text
    paintpalette.fill palette-fill
    pin.fill pin-fill
    plus plus-lg
    plus.rectangle.on.rectangle window-stack
    shuffle shuffle
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
qt_add_resources(plim_shell symbols PREFIX /plim/symbols FILES ${plim_symbol_files})
