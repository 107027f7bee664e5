# Makes the help that is installed, one file without links to others, from the site's page about the
# effect: cmake -DPAGE=<index.html> -DHELP=<help.html> -P MakeHelp.cmake
cmake_path(GET PAGE PARENT_PATH folder)
file(READ "${PAGE}" help)

# replace(<before> <after>): fails where the page does not have the text.
function(replace before after)
    string(FIND "${help}" "${before}" place)
    if(place EQUAL -1)
        message(FATAL_ERROR "${PAGE} does not have: ${before}")
    endif()
    string(REPLACE "${before}" "${after}" result "${help}")
    set(help "${result}" PARENT_SCOPE)
endfunction()

file(READ "${folder}/../style.css" style)
replace("<link rel=\"stylesheet\" href=\"../style.css\"/>" "<style>\n${style}</style>")
replace("<link rel=\"icon\" type=\"image/svg+xml\" href=\"../pictures/icon.svg\"/>\n" "")
string(REGEX REPLACE "<header class=\"top\">.*</header>\n" "" help "${help}")
execute_process(COMMAND base64 --wrap=0 "${folder}/../pictures/effect.png"
    OUTPUT_VARIABLE picture COMMAND_ERROR_IS_FATAL ANY)
replace("src=\"../pictures/effect.png\"" "src=\"data:image/png;base64,${picture}\"")

file(WRITE "${HELP}" "${help}")
