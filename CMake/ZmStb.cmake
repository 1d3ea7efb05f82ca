# Programs read and write pictures with the packaged stb, single headers that
# every variant can use, cross-compiled ones included: only its own folder may
# be added to their include path.
find_path(ZMMATH_STB_DIR stb_image_write.h
    PATHS /usr/include/stb /usr/local/include/stb
    PATH_SUFFIXES stb
    NO_CMAKE_FIND_ROOT_PATH
    DOC "Folder of stb_image_write.h")
