; The installer: for one user, without administrator rights, and an uninstaller that removes exactly
; what was installed.
;
; Defined on the command line: VERSION, FILES (folder to install), ICON, OUTPUT, and the two lists
; INSTALL_LIST and REMOVE_LIST that tools/windows/package.sh writes.

; 64 bits, as the programs are.
Target amd64-unicode
Unicode true
SetCompressor /SOLID lzma

!define NAME "Velora Cartridge Driver"
!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\gbdriver"

Name "${NAME}"
OutFile "${OUTPUT}"
Icon "${ICON}"
UninstallIcon "${ICON}"
RequestExecutionLevel user
InstallDir "$LOCALAPPDATA\Programs\${NAME}"
InstallDirRegKey HKCU "${UNINSTALL_KEY}" "InstallLocation"
ShowInstDetails nevershow
ShowUninstDetails nevershow

VIProductVersion "${VERSION}.0"
VIAddVersionKey "ProductName" "${NAME}"
VIAddVersionKey "ProductVersion" "${VERSION}"
VIAddVersionKey "FileVersion" "${VERSION}"
VIAddVersionKey "FileDescription" "${NAME} installer"
VIAddVersionKey "LegalCopyright" "MIT licence"

Page directory
Page instfiles
UninstPage uninstConfirm
UninstPage instfiles

Section
    SetShellVarContext current
    !include "${INSTALL_LIST}"
    SetOutPath "$INSTDIR"
    WriteUninstaller "$INSTDIR\uninstall.exe"
    ; The working folder of the shortcut: file dialogs open there.
    SetOutPath "$DOCUMENTS"
    CreateShortcut "$SMPROGRAMS\${NAME}.lnk" "$INSTDIR\gbdriver.exe"
    WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayName" "${NAME}"
    WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayVersion" "${VERSION}"
    WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayIcon" "$INSTDIR\gbdriver.exe"
    WriteRegStr HKCU "${UNINSTALL_KEY}" "InstallLocation" "$INSTDIR"
    WriteRegStr HKCU "${UNINSTALL_KEY}" "UninstallString" '"$INSTDIR\uninstall.exe"'
    WriteRegStr HKCU "${UNINSTALL_KEY}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
    WriteRegDWORD HKCU "${UNINSTALL_KEY}" "NoModify" 1
    WriteRegDWORD HKCU "${UNINSTALL_KEY}" "NoRepair" 1
SectionEnd

Section "Uninstall"
    SetShellVarContext current
    !include "${REMOVE_LIST}"
    Delete "$INSTDIR\uninstall.exe"
    RMDir "$INSTDIR"
    ; The installer makes this folder for a user's first program; only an empty one goes.
    RMDir "$LOCALAPPDATA\Programs"
    Delete "$SMPROGRAMS\${NAME}.lnk"
    DeleteRegKey HKCU "${UNINSTALL_KEY}"
SectionEnd
