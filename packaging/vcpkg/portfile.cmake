# Untried: written by vcpkg's documentation, never run.  Give the commit and its SHA512 of a release.
vcpkg_from_github(
  OUT_SOURCE_PATH SOURCE_PATH
  REPO gxshape/gxshape
  REF "v${VERSION}"
  SHA512 0)

vcpkg_check_features(OUT_FEATURE_OPTIONS FEATURE_OPTIONS
  FEATURES
    cairo GXSHAPE_CAIRO
    tool GXSHAPE_TOOL)

vcpkg_cmake_configure(
  SOURCE_PATH "${SOURCE_PATH}"
  OPTIONS
    -DGXSHAPE_TESTS=OFF
    -DGXSHAPE_EXAMPLES=OFF
    -DGXSHAPE_WERROR=OFF
    -DGXSHAPE_IO=ON
    ${FEATURE_OPTIONS})
vcpkg_cmake_install()
vcpkg_cmake_config_fixup(CONFIG_PATH lib/cmake/gxshape)
vcpkg_fixup_pkgconfig()
if("tool" IN_LIST FEATURES)
  vcpkg_copy_tools(TOOL_NAMES gxshape AUTO_CLEAN)
endif()
file(REMOVE_RECURSE "${CURRENT_PACKAGES_DIR}/debug/include" "${CURRENT_PACKAGES_DIR}/debug/share")
vcpkg_install_copyright(FILE_LIST "${SOURCE_PATH}/LICENSE" "${SOURCE_PATH}/NOTICE")
