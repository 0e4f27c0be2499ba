; The installer: for one user, without administrator rights, and an uninstaller that removes exactly
; what was installed.
;
; The language of the window is what lies beside the program, so it is installed. Without a choice it
; stays what it is; the first time it is the system's, or English. For unattended installation:
;     gbdriver-VERSION-windows-setup.exe /S /LANGUAGE=en|zh|ja
;
; Defined on the command line: VERSION, LANGUAGES (folder of the translations), ICON, OUTPUT, and the
; two lists INSTALL_LIST and REMOVE_LIST that tools/windows/package.sh writes.

!include FileFunc.nsh
!include LogicLib.nsh
!include Sections.nsh

; 64 bits, as the programs are.
Target amd64-unicode
Unicode true
SetCompressor /SOLID lzma

!define NAME "Velora Cartridge Driver"
!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\gbdriver"

Name "${NAME}"
BrandingText "${NAME} ${VERSION}"
OutFile "${OUTPUT}"
Icon "${ICON}"
UninstallIcon "${ICON}"
RequestExecutionLevel user
InstallDir "$LOCALAPPDATA\Programs\${NAME}"
InstallDirRegKey HKCU "${UNINSTALL_KEY}" "InstallLocation"
ShowInstDetails nevershow
ShowUninstDetails nevershow

; The installer speaks the system's language, the first of these where that is another.
LoadLanguageFile "${NSISDIR}/Contrib/Language files/English.nlf"
LoadLanguageFile "${NSISDIR}/Contrib/Language files/SimpChinese.nlf"
LoadLanguageFile "${NSISDIR}/Contrib/Language files/Japanese.nlf"

LangString languageOfWindow ${LANG_ENGLISH} "Language of the window"
LangString languageOfWindow ${LANG_SIMPCHINESE} "窗口语言"
LangString languageOfWindow ${LANG_JAPANESE} "ウィンドウの言語"
LangString chooseLanguage ${LANG_ENGLISH} \
    "Which language shall the window of ${NAME} speak? To change it later, install the program again."
LangString chooseLanguage ${LANG_SIMPCHINESE} \
    "请选择 ${NAME} 的窗口语言。以后如需更换，请重新安装本程序。"
LangString chooseLanguage ${LANG_JAPANESE} \
    "${NAME} のウィンドウの言語を選択してください。後で変更するには、もう一度インストールしてください。"

VIProductVersion "${VERSION}.0"
VIAddVersionKey /LANG=${LANG_ENGLISH} "ProductName" "${NAME}"
VIAddVersionKey /LANG=${LANG_ENGLISH} "ProductVersion" "${VERSION}"
VIAddVersionKey /LANG=${LANG_ENGLISH} "FileVersion" "${VERSION}"
VIAddVersionKey /LANG=${LANG_ENGLISH} "FileDescription" "${NAME} installer"
VIAddVersionKey /LANG=${LANG_ENGLISH} "LegalCopyright" "MIT licence"

PageEx components
    Caption ": $(languageOfWindow)"
    ComponentText "$(chooseLanguage)" " " "$(languageOfWindow)"
PageExEnd
Page directory
Page instfiles
UninstPage uninstConfirm
UninstPage instfiles

Section "-Program"
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

; Of these, one is chosen. Each takes away what was chosen before.
!macro removeLanguages
    Delete "$INSTDIR\gb3_chs.qm"
    Delete "$INSTDIR\gb3_jpn.qm"
!macroend

Section "English" english
    !insertmacro removeLanguages
SectionEnd

Section /o "中文 (Chinese)" chinese
    !insertmacro removeLanguages
    SetOutPath "$INSTDIR"
    File "${LANGUAGES}/gb3_chs.qm"
SectionEnd

Section /o "日本語 (Japanese)" japanese
    !insertmacro removeLanguages
    SetOutPath "$INSTDIR"
    File "${LANGUAGES}/gb3_jpn.qm"
SectionEnd

Var chosen

Function .onInit
    StrCpy $chosen ${english}
    ${If} ${FileExists} "$INSTDIR\gb3_chs.qm"
        StrCpy $chosen ${chinese}
    ${ElseIf} ${FileExists} "$INSTDIR\gb3_jpn.qm"
        StrCpy $chosen ${japanese}
    ${ElseIfNot} ${FileExists} "$INSTDIR\gbdriver.exe"
        ${If} $LANGUAGE = ${LANG_SIMPCHINESE}
            StrCpy $chosen ${chinese}
        ${ElseIf} $LANGUAGE = ${LANG_JAPANESE}
            StrCpy $chosen ${japanese}
        ${EndIf}
    ${EndIf}

    ${GetParameters} $0
    ClearErrors
    ${GetOptions} $0 "/LANGUAGE=" $1
    ${IfNot} ${Errors}
        ${If} $1 == "en"
            StrCpy $chosen ${english}
        ${ElseIf} $1 == "zh"
            StrCpy $chosen ${chinese}
        ${ElseIf} $1 == "ja"
            StrCpy $chosen ${japanese}
        ${Else}
            MessageBox MB_OK|MB_ICONSTOP "/LANGUAGE=$1: choose en, zh or ja." /SD IDOK
            SetErrorLevel 2
            Quit
        ${EndIf}
    ${EndIf}
    !insertmacro UnselectSection ${english}
    !insertmacro SelectSection $chosen
FunctionEnd

Function .onSelChange
    !insertmacro StartRadioButtons $chosen
        !insertmacro RadioButton ${english}
        !insertmacro RadioButton ${chinese}
        !insertmacro RadioButton ${japanese}
    !insertmacro EndRadioButtons
FunctionEnd

Section "Uninstall"
    SetShellVarContext current
    !include "${REMOVE_LIST}"
    !insertmacro removeLanguages
    Delete "$INSTDIR\uninstall.exe"
    RMDir "$INSTDIR"
    ; The installer makes this folder for a user's first program; only an empty one goes.
    RMDir "$LOCALAPPDATA\Programs"
    Delete "$SMPROGRAMS\${NAME}.lnk"
    DeleteRegKey HKCU "${UNINSTALL_KEY}"
SectionEnd
