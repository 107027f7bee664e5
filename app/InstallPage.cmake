# Makes a page of the installed site, one file that needs no other for its look, from a page of the
# site: cmake -DPAGE=<index.html> -DTOP=<from its folder to the site's> -DINSTALLED=<html>
# [-DALONE=ON] -P InstallPage.cmake. ALONE: without links to other pages.
cmake_path(GET PAGE PARENT_PATH folder)
file(READ "${PAGE}" page)

# replace(<before> <after>): fails where the page does not have the text.
function(replace before after)
    string(FIND "${page}" "${before}" place)
    if(place EQUAL -1)
        message(FATAL_ERROR "${PAGE} does not have: ${before}")
    endif()
    string(REPLACE "${before}" "${after}" result "${page}")
    set(page "${result}" PARENT_SCOPE)
endfunction()

file(READ "${folder}/${TOP}style.css" style)
replace("<link rel=\"stylesheet\" href=\"${TOP}style.css\"/>" "<style>\n${style}</style>")
replace("<link rel=\"icon\" type=\"image/svg+xml\" href=\"${TOP}pictures/icon.svg\"/>\n" "")
string(REGEX MATCHALL "\"${TOP}pictures/[a-z-]+\\.(png|svg)\"" pictures "${page}")
list(REMOVE_DUPLICATES pictures)
foreach(quoted IN LISTS pictures)
    string(REPLACE "\"" "" picture "${quoted}")
    execute_process(COMMAND base64 --wrap=0 "${folder}/${picture}"
        OUTPUT_VARIABLE content COMMAND_ERROR_IS_FATAL ANY)
    set(type png)
    if(picture MATCHES "\\.svg$")
        set(type svg+xml)
    endif()
    replace("${quoted}" "\"data:image/${type};base64,${content}\"")
endforeach()
if(ALONE)
    string(REGEX REPLACE "<header class=\"top\">.*</header>\n" "" page "${page}")
else()
    replace("<body>\n" "<body>\n<p class=\"installed\">This page was installed with Orvalo.</p>\n")
    # A browser that reads files shows a folder's list, not its page.
    string(REGEX REPLACE "href=\"([A-Za-z./]*/)([\"#])" "href=\"\\1index.html\\2" page "${page}")
endif()

file(WRITE "${INSTALLED}" "${page}")
