# Debian's form of what every installation has, in the folder that CPack is about to pack: the changelog,
# compressed manual pages, and what lintian shall not report.
if(NOT CPACK_GENERATOR STREQUAL "DEB")
    return()
endif()
set(share "${CPACK_TEMPORARY_DIRECTORY}/usr/share")
execute_process(
    COMMAND "${CMAKE_CURRENT_LIST_DIR}/changelog" "${CMAKE_CURRENT_LIST_DIR}/../../CHANGELOG.md"
        "${CPACK_DEBIAN_PACKAGE_MAINTAINER}"
    OUTPUT_FILE "${share}/doc/orvalo/changelog"
    COMMAND_ERROR_IS_FATAL ANY)
file(MAKE_DIRECTORY "${share}/lintian/overrides")
file(COPY_FILE "${CMAKE_CURRENT_LIST_DIR}/lintian-overrides" "${share}/lintian/overrides/orvalo")
file(GLOB plain "${share}/man/*/*.[1-9]" "${share}/doc/orvalo/changelog")
# Without names and times, so that each build gives the same bytes.
execute_process(COMMAND gzip --best --no-name ${plain} COMMAND_ERROR_IS_FATAL ANY)
file(GLOB packed "${share}/man/*/*.gz" "${share}/doc/orvalo/*.gz")
file(CHMOD ${packed} PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
