# Run by cpack after it has packed: removes the scripts that cpack gives a package with a shared library. They refresh the
# linker's cache, which the package's trigger does once for all packages of an installation.
if(NOT CPACK_GENERATOR STREQUAL "DEB")
    return()
endif()
foreach(package IN LISTS CPACK_PACKAGE_FILES)
    set(content "${package}.content")
    execute_process(COMMAND dpkg-deb -R "${package}" "${content}" COMMAND_ERROR_IS_FATAL ANY)
    if(EXISTS "${content}/DEBIAN/postinst")
        file(REMOVE "${content}/DEBIAN/postinst" "${content}/DEBIAN/postrm")
        execute_process(COMMAND dpkg-deb --root-owner-group -b "${content}" "${package}"
            OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
    endif()
    file(REMOVE_RECURSE "${content}")
endforeach()
