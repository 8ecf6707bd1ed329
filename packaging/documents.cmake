# The papers of the Debian package, made from the house's own: the licences, CHANGELOG.md, the man
# page. Sets released, the date of this version.
set(papers ${CMAKE_CURRENT_BINARY_DIR})
set(maintainer "VXQ <vxq@vxq.invalid>")

function(compressed file)
    execute_process(COMMAND gzip -9nf ${papers}/${file} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# debian_licence(FILE NAME OUT): the text as a licence paragraph of a copyright file.
function(debian_licence file name out)
    file(READ ${CMAKE_SOURCE_DIR}/${file} text)
    string(STRIP "${text}" text)
    string(REGEX REPLACE "\n\n+" "\n.\n" text "${text}")
    string(REPLACE "\n" "\n " text "${text}")
    set(${out} "License: ${name}\n ${text}\n" PARENT_SCOPE)
endfunction()

file(READ copyright text)
debian_licence(LICENSE Expat code)
debian_licence(content/LICENSE CC-BY-4.0 content)
file(WRITE ${papers}/copyright "${text}${code}\n${content}")

# debian_changelog(OUT): CHANGELOG.md, whose entries begin with "## VERSION, DATE", as Debian has it.
function(debian_changelog out)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/CHANGELOG.md)
    file(STRINGS ${CMAKE_SOURCE_DIR}/CHANGELOG.md lines)
    set(text "")
    foreach(line IN LISTS lines)
        if(line MATCHES "^## (.*), (.*)$")
            string(APPEND text "${signature}tarvisk (${CMAKE_MATCH_1}) unstable; urgency=medium\n\n")
            execute_process(COMMAND date --utc --rfc-email --date=${CMAKE_MATCH_2}
                OUTPUT_VARIABLE date OUTPUT_STRIP_TRAILING_WHITESPACE)
            set(signature "\n -- ${maintainer}  ${date}\n\n")
        elseif(line MATCHES "^- (.*)$")
            string(APPEND text "  * ${CMAKE_MATCH_1}\n")
        elseif(line MATCHES "^  (.*)$")
            string(APPEND text "    ${CMAKE_MATCH_1}\n")
        endif()
    endforeach()
    file(WRITE ${out} "${text}${signature}")
endfunction()

file(STRINGS ${CMAKE_SOURCE_DIR}/CHANGELOG.md newest REGEX "^## " LIMIT_COUNT 1)
if(NOT newest MATCHES "^## ${PROJECT_VERSION}, ([0-9-]+)$")
    message(FATAL_ERROR "CHANGELOG.md begins with \"${newest}\", but the show is ${PROJECT_VERSION}")
endif()
set(released ${CMAKE_MATCH_1})
debian_changelog(${papers}/changelog)
compressed(changelog)
configure_file(tarvisk.6.in tarvisk.6 @ONLY)
compressed(tarvisk.6)
configure_file(org.vxq.tarvisk.metainfo.xml.in org.vxq.tarvisk.metainfo.xml @ONLY)
