# Run by cpack before it packs: adds copyright and changes to each Debian package, compresses the manual pages,
# and puts the completions for zsh where Debian's looks for them.
if(NOT CPACK_GENERATOR STREQUAL "DEB")
    return()
endif()

function(zm_gzip from to)
    execute_process(COMMAND gzip -9nc INPUT_FILE "${from}" OUTPUT_FILE "${to}" COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# The changes of the package itself: none beside those of the library.
string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)
set(scratch "${CPACK_TEMPORARY_DIRECTORY}-changes")
file(WRITE "${scratch}" "zmmath (${CPACK_PACKAGE_VERSION}) unstable; urgency=medium

  * See CHANGELOG.md.gz.

 -- ${CPACK_DEBIAN_PACKAGE_MAINTAINER}  ${date}
")

file(STRINGS "${CPACK_ZMMATH_SOURCE}/LICENSE" lines)
set(licence "")
foreach(line IN LISTS lines)
    if(line STREQUAL "")
        set(line ".")
    endif()
    string(APPEND licence " ${line}\n")
endforeach()

foreach(component IN LISTS CPACK_COMPONENTS_ALL)
    string(TOUPPER "${component}" upper)
    set(root "${CPACK_TEMPORARY_DIRECTORY}/${component}/usr/share")
    set(doc "${root}/doc/${CPACK_DEBIAN_${upper}_PACKAGE_NAME}")
    file(MAKE_DIRECTORY "${doc}")
    zm_gzip("${CPACK_ZMMATH_SOURCE}/CHANGELOG.md" "${doc}/CHANGELOG.md.gz")
    zm_gzip("${scratch}" "${doc}/changelog.gz")
    configure_file("${CMAKE_CURRENT_LIST_DIR}/DebianCopyright.in" "${doc}/copyright" @ONLY)
    if(EXISTS "${root}/zsh/site-functions")
        file(RENAME "${root}/zsh/site-functions" "${root}/zsh/vendor-completions")
    endif()
    file(GLOB_RECURSE pages "${root}/man/*.1")
    foreach(page IN LISTS pages)
        zm_gzip("${page}" "${page}.gz")
        file(REMOVE "${page}")
    endforeach()
endforeach()
