# Compiles through ccache where it is installed. A launcher script sets what ccache needs for
# precompiled headers. The script is named ccache, because clang's tools skip only a launcher of that
# name when they look for the compiler.
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
