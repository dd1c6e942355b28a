# The default palette files are data, generated at build time into ${RASTERMILL_DATA_DIR}/palettes
# by scripts/gen-palettes.cpp. Include this file after RASTERMILL_DATA_DIR is set.
set(RM_PALETTE_DIR "${RASTERMILL_DATA_DIR}/palettes")
set(RM_PALETTE_FILES
  "${RM_PALETTE_DIR}/default_8_Colors_palette.pal"
  "${RM_PALETTE_DIR}/default_16_Colors_palette.pal"
  "${RM_PALETTE_DIR}/default_256_Colors_palette.pal"
  "${RM_PALETTE_DIR}/default_grayscale_256_Colors_palette.pal"
  "${RM_PALETTE_DIR}/default_4096_Colors_palette.pal"
  "${RM_PALETTE_DIR}/default_65536_Colors_palette.pal"
  "${RM_PALETTE_DIR}/default_262144_Colors_palette.pal")

add_executable(rm_gen_palettes "${CMAKE_CURRENT_LIST_DIR}/../scripts/gen-palettes.cpp")
add_custom_command(
  OUTPUT ${RM_PALETTE_FILES}
  COMMAND rm_gen_palettes "${RM_PALETTE_DIR}"
  DEPENDS rm_gen_palettes
  COMMENT "Generating the default palette files in ${RM_PALETTE_DIR}"
  VERBATIM)
add_custom_target(rm_palettes ALL DEPENDS ${RM_PALETTE_FILES})

# The engine and its tests read these files, so they are made first. The targets are created
# later in the configure run, hence the deferred call.
function(rm_palettes_attach)
  foreach(target rm_engine engine_tests)
    if(TARGET ${target})
      add_dependencies(${target} rm_palettes)
    endif()
  endforeach()
endfunction()
cmake_language(DEFER DIRECTORY "${CMAKE_SOURCE_DIR}" CALL rm_palettes_attach)
