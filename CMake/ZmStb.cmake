# Programs read and write pictures with stb from its package: single headers that every variant can use, cross-compiled
# ones included. Only stb's own folder may be added to the include path.
find_path(ZMMATH_STB_DIR stb_image_write.h
    PATHS /usr/include/stb /usr/local/include/stb
    PATH_SUFFIXES stb
    NO_CMAKE_FIND_ROOT_PATH
    DOC "Folder of stb_image_write.h")
