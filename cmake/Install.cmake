# SPDX-FileCopyrightText: 2026 The Quillon developers
# SPDX-License-Identifier: GPL-3.0-or-later
# Installs the files beside the programs.
install(FILES packaging/quillon.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES src/ui/kit/icons/quillon.svg DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
install(FILES README.md CHANGELOG.md docs/用户手册.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(FILES docs/quillon-batch.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(FILES docs/quillon-batch.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES packaging/completions/quillon-batch.bash DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
  RENAME quillon-batch)
install(FILES packaging/completions/_quillon-batch DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions)
install(FILES packaging/completions/quillon-batch.fish DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d)
