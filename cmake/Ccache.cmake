# Compiles through ccache where it is installed. A launcher sets what ccache needs for precompiled
# headers. It is called ccache too, because clang's tools look for the compiler behind that name only.
find_program(ORVALO_CCACHE ccache)
if(ORVALO_CCACHE)
    set(launcher "${CMAKE_BINARY_DIR}/launcher/ccache")
    file(CONFIGURE OUTPUT "${launcher}" @ONLY CONTENT [[
#!/bin/sh
export CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
exec "@ORVALO_CCACHE@" "$@"
]])
    file(CHMOD "${launcher}" PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE
        GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
    set(CMAKE_C_COMPILER_LAUNCHER "${launcher}")
    set(CMAKE_CXX_COMPILER_LAUNCHER "${launcher}")
    # ccache sees a precompiled header only where the preprocessor's output names it.
    add_compile_options(-fpch-preprocess)
endif()
