# What a Debian package has beyond an installation; run in the tree that becomes the package.
set(root ${CPACK_TEMPORARY_DIRECTORY}/usr)

# gzip's -n keeps its own time out of them.
file(GLOB_RECURSE documents ${root}/share/man/*.1 ${root}/share/doc/*/changelog)
execute_process(COMMAND gzip -9n ${documents} COMMAND_ERROR_IS_FATAL ANY)

file(GLOB modules ${root}/lib/plim/modules/*.so)
execute_process(COMMAND strip --remove-section=.comment --remove-section=.note ${root}/bin/plim ${modules}
    COMMAND_ERROR_IS_FATAL ANY)

file(COPY ${CMAKE_CURRENT_LIST_DIR}/debian/lintian-overrides DESTINATION ${root}/share/lintian/overrides)
file(RENAME ${root}/share/lintian/overrides/lintian-overrides ${root}/share/lintian/overrides/plim)
