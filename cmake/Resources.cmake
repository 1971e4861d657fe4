# SPDX-FileCopyrightText: 2026 The Quillon developers
# SPDX-License-Identifier: GPL-3.0-or-later
# What lies in the program folder beside the helpers: files that options look for, and the colour profiles.
set(resources ${CMAKE_SOURCE_DIR}/src/helpers/resources)
set(profiles /usr/share/color/icc)

# quillon_resource(<file> <name>): a file of the program folder.
function(quillon_resource file name)
  if(NOT EXISTS ${file})
    message(WARNING "${file} is missing: ${name} will be missing in the program folder")
    return()
  endif()
  configure_file(${file} ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${name} COPYONLY)
  cmake_path(GET name PARENT_PATH folder)
  cmake_path(GET name FILENAME entry)
  install(FILES ${file} DESTINATION lib/quillon/${folder} RENAME ${entry})
endfunction()

quillon_resource(${resources}/base.pdf BasePdf.dll)
quillon_resource(${resources}/pdf_pages.txt Aspose.pdf.dll)
quillon_resource(${profiles}/sRGB.icc ColorConfigs/sRGB.icc)
quillon_resource(${profiles}/ghostscript/default_cmyk.icc ColorConfigs/Default.icm)
