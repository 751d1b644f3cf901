; SPDX-License-Identifier: GPL-3.0-or-later
; The installer: the program and its firmware update for all users of the machine, an entry in the start menu, and an
; uninstaller in the list of programs. /S asks nothing; /D=FOLDER, as the last argument, names another folder. Exit status 2:
; the program is running, or the folder cannot be written.
;   makensis -DVALUES=installer.nsh -DFILES=FOLDER -DOUTPUT=FILE [-DSIGN=COMMAND] installer.nsi

!include MUI2.nsh
!include x64.nsh
!include WinVer.nsh
!include FileFunc.nsh
!include "${VALUES}"

!define NAME "WQV-KRV20 Updater"
!define PROGRAM "WQVUpdateProgram.exe"
!define LIST_ENTRY "Software\Microsoft\Windows\CurrentVersion\Uninstall\WQVUpdateProgram"

Target amd64-unicode
Name "${NAME}"
OutFile "${OUTPUT}"
InstallDir "$PROGRAMFILES64\${NAME}"
RequestExecutionLevel admin
ManifestDPIAware true
SetCompressor /SOLID lzma
BrandingText "${NAME} ${VERSION}"

VIProductVersion "${VERSION}"
VIAddVersionKey FileDescription "Installer of the ${NAME}"
VIAddVersionKey FileVersion "${VERSION}"
VIAddVersionKey ProductName "WQVUpdateProgram"
VIAddVersionKey ProductVersion "${VERSION}"
VIAddVersionKey CompanyName "${PUBLISHER}"
VIAddVersionKey LegalCopyright "GPL-3.0-or-later"

!define MUI_ICON "${__FILEDIR__}/wqv-krv20-updater.ico"
!define MUI_UNICON "${__FILEDIR__}/wqv-krv20-updater.ico"
!define MUI_FINISHPAGE_RUN "$INSTDIR\${PROGRAM}"

!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE English

; Both see the 64-bit registry and the start menu of all users.
!macro PREPARE
    SetRegView 64
    SetShellVarContext all
!macroend

!macro GIVE_UP TEXT
    MessageBox MB_OK|MB_ICONSTOP "${TEXT}" /SD IDOK
    SetErrorLevel 2
    Quit
!macroend

; The file of a running program cannot be opened for writing, whoever runs it.
!macro REFUSE_IF_RUNNING
    ${If} ${FileExists} "$INSTDIR\${PROGRAM}"
        ClearErrors
        FileOpen $0 "$INSTDIR\${PROGRAM}" a

        ${If} ${Errors}
            !insertmacro GIVE_UP "The ${NAME} is running, or its folder cannot be written. Let it finish, close it, and start again."
        ${EndIf}

        FileClose $0
    ${EndIf}
!macroend

!macro DELETE_FILES
    Delete "$INSTDIR\${PROGRAM}"
    Delete "$INSTDIR\WQV-KRV20_UP.upd"
    Delete "$INSTDIR\copyright.txt"
    Delete "$INSTDIR\LICENSE.txt"
!macroend

Function .onInit
    !insertmacro PREPARE

    ${IfNot} ${RunningX64}
    ${OrIfNot} ${AtLeastWin10}
        !insertmacro GIVE_UP "The ${NAME} takes Windows 10 or 11, 64-bit."
    ${EndIf}

    ; Where it is installed already, unless a folder was named.
    ${If} $INSTDIR == "$PROGRAMFILES64\${NAME}"
        ReadRegStr $0 HKLM "${LIST_ENTRY}" InstallLocation

        ${If} $0 != ""
            StrCpy $INSTDIR $0
        ${EndIf}
    ${EndIf}
FunctionEnd

Function un.onInit
    !insertmacro PREPARE
FunctionEnd

Section
    !insertmacro REFUSE_IF_RUNNING

    ; Nothing of another version stays, not even its firmware update.
    !insertmacro DELETE_FILES

    SetOutPath "$INSTDIR"
    ClearErrors
    File /r "${FILES}/*"
    WriteUninstaller "$INSTDIR\uninstall.exe"

    ${If} ${Errors}
        !insertmacro GIVE_UP "The files cannot be written."
    ${EndIf}

    CreateShortcut "$SMPROGRAMS\${NAME}.lnk" "$INSTDIR\${PROGRAM}"

    ${GetSize} "$INSTDIR" "/S=0K" $0 $1 $2
    WriteRegStr HKLM "${LIST_ENTRY}" DisplayName "${NAME}"
    WriteRegStr HKLM "${LIST_ENTRY}" DisplayVersion "${VERSION}"
    WriteRegStr HKLM "${LIST_ENTRY}" DisplayIcon "$INSTDIR\${PROGRAM}"
    WriteRegStr HKLM "${LIST_ENTRY}" Publisher "${PUBLISHER}"
    WriteRegStr HKLM "${LIST_ENTRY}" URLInfoAbout "${HOMEPAGE}"
    WriteRegStr HKLM "${LIST_ENTRY}" InstallLocation "$INSTDIR"
    WriteRegStr HKLM "${LIST_ENTRY}" UninstallString '"$INSTDIR\uninstall.exe"'
    WriteRegStr HKLM "${LIST_ENTRY}" QuietUninstallString '"$INSTDIR\uninstall.exe" /S'
    WriteRegDWORD HKLM "${LIST_ENTRY}" EstimatedSize $0
    WriteRegDWORD HKLM "${LIST_ENTRY}" NoModify 1
    WriteRegDWORD HKLM "${LIST_ENTRY}" NoRepair 1
SectionEnd

Section Uninstall
    !insertmacro REFUSE_IF_RUNNING
    !insertmacro DELETE_FILES
    Delete "$INSTDIR\uninstall.exe"

    ; Only if it is empty.
    RMDir "$INSTDIR"
    Delete "$SMPROGRAMS\${NAME}.lnk"
    DeleteRegKey HKLM "${LIST_ENTRY}"
SectionEnd

; The uninstaller is a program of its own: it is signed before it is packed.
!ifdef SIGN
    !uninstfinalize '${SIGN} "%1"'
!endif
