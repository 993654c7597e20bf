# What hosts get. Installing registers Tabulor with a system: the libraries and headers, found
# through a CMake package (find_package(Tabulor)) or pkg-config (tabulor), the command line
# (installed by src/app), and the desktop entry and file type of report definitions.
include(CMakePackageConfigHelpers)

# C hosts link Tabulor::tabulor_c: the C header and libtabulor. Once installed it names the
# library file rather than Tabulor::tabulor, whose Qt requirements would make a C host find
# Qt's package, which takes a C++ compiler.
add_library(tabulor_c INTERFACE)
target_include_directories(tabulor_c INTERFACE
    $<BUILD_INTERFACE:${PROJECT_BINARY_DIR}/include>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
target_link_libraries(tabulor_c INTERFACE
    $<BUILD_INTERFACE:$<LINK_ONLY:tabulor>>
    $<INSTALL_INTERFACE:$<INSTALL_PREFIX>/${CMAKE_INSTALL_LIBDIR}/${CMAKE_SHARED_LIBRARY_PREFIX}tabulor${CMAKE_SHARED_LIBRARY_SUFFIX}>)
add_library(Tabulor::tabulor_c ALIAS tabulor_c)

install(TARGETS tabulor_print tabulor_c EXPORT TabulorTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})

# The C++ interface, under include/tabulor and included as the library includes it
# ("component/Tabulor.h"): the component, the recordset a host hands in, the page document a
# report is rendered into with its outputs, printer output, and the preview's view and
# navigation bar (in libtabulor_designer). Nothing else is installed: the rest of the library
# is hidden from hosts (production/base/Export.h).
set(public_headers
    component/AccessMode.h
    component/Prompt.h
    component/Tabulor.h
    production/base/Export.h
    production/data/Recordset.h
    production/data/host/ItemModelRecordset.h
    production/pages/DisplayList.h
    production/pages/PageDocument.h
    production/pages/PageHooks.h
    production/pages/PageSetup.h
    production/pages/PageSink.h
    production/pages/PngOutput.h
    production/pages/PreviewNavigation.h
    production/pages/ReportOutput.h
    production/pdf/PdfFileOutput.h
    printing/PrinterOutput.h
    gui/preview/PreviewControl.h
    gui/preview/PreviewView.h)
foreach(header IN LISTS public_headers)
    get_filename_component(folder ${header} DIRECTORY)
    install(FILES ${PROJECT_SOURCE_DIR}/src/${header}
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/tabulor/${folder})
endforeach()
# The install test compiles every one of them on its own, as a host would.
list(JOIN public_headers " " TABULOR_PUBLIC_HEADERS)
file(WRITE ${PROJECT_BINARY_DIR}/package/public-headers.txt "${TABULOR_PUBLIC_HEADERS}\n")

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/Tabulor)
install(EXPORT TabulorTargets NAMESPACE Tabulor:: DESTINATION ${package_dir})
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/TabulorConfig.cmake.in
    ${PROJECT_BINARY_DIR}/package/TabulorConfig.cmake
    INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/package/TabulorConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES
    ${PROJECT_BINARY_DIR}/package/TabulorConfig.cmake
    ${PROJECT_BINARY_DIR}/package/TabulorConfigVersion.cmake
    DESTINATION ${package_dir})

# The pkg-config file finds the prefix from where it lies, so that the tree may be installed
# under any prefix (cmake --install --prefix) and moved.
set(pc_dir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH TABULOR_PC_PREFIX /prefix/${pc_dir} /prefix)
configure_file(${CMAKE_CURRENT_LIST_DIR}/tabulor.pc.in ${PROJECT_BINARY_DIR}/package/tabulor.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/package/tabulor.pc DESTINATION ${pc_dir})

install(FILES ${CMAKE_CURRENT_LIST_DIR}/tabulor.desktop
    DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${CMAKE_CURRENT_LIST_DIR}/tabulor-mime.xml
    DESTINATION ${CMAKE_INSTALL_DATADIR}/mime/packages
    RENAME tabulor.xml)

# The translations of the messages and windows, one folder a language; the user's locale picks
# one when no string file is given.
install(DIRECTORY ${PROJECT_SOURCE_DIR}/share/tabulor/
    DESTINATION ${CMAKE_INSTALL_DATADIR}/tabulor)
