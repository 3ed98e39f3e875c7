# The icon of the program's windows; packaging/icons renders it.
set(plim_icon_files)
foreach(size IN ITEMS 16 24 32 48 64 128)
    set(file ${PROJECT_BINARY_DIR}/packaging/icons/${size}.png)
    set_source_files_properties(${file} PROPERTIES GENERATED TRUE QT_RESOURCE_ALIAS ${size}.png)
    list(APPEND plim_icon_files ${file})
endforeach()
qt_add_resources(plim_shell applicationicon PREFIX /plim/icon FILES ${plim_icon_files})
add_dependencies(plim_shell plim_icons)
