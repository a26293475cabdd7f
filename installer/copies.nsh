; The installed copies: registering, removing, and telling when they cannot be removed.

; Register DLL PROGID: lets the DLL enter itself, and sets $0 to "ok" when COM will find it for the ProgID. The path in the
; registry is compared because a DLL may not be able to write down the name of its folder.
!macro Register dll progId
    StrCpy $0 failed
    ClearErrors
    RegDLL "$INSTDIR\${dll}"
    ${IfNot} ${Errors}
        ReadRegStr $1 HKCU "Software\Classes\${progId}\CLSID" ""
        ReadRegStr $1 HKCU "Software\Classes\CLSID\$1\InprocServer32" ""
        ${If} $1 == "$INSTDIR\${dll}"
            StrCpy $0 ok
        ${EndIf}
    ${EndIf}
!macroend

; Unregister DLL PROGID: not when another copy, which stays, is the one that is registered.
!macro Unregister dll progId
    ReadRegStr $1 HKCU "Software\Classes\${progId}\CLSID" ""
    ReadRegStr $1 HKCU "Software\Classes\CLSID\$1\InprocServer32" ""
    ${If} $1 == "$INSTDIR\${dll}"
    ${OrIfNot} ${FileExists} "$1"
        UnRegDLL "$INSTDIR\${dll}"
    ${EndIf}
!macroend

; RefuseFilesInUse: ends before anything is changed when a program has one of the binaries open.
!macro RefuseFileInUse file
    ${If} ${FileExists} "$INSTDIR\${file}"
        ClearErrors
        FileOpen $0 "$INSTDIR\${file}" a
        ${If} ${Errors}
            ${End} ${CODE_FILE_IN_USE} "$INSTDIR\${file} is in use. Close the programs that work with Quorvane or with its \
                property package, then try again."
        ${EndIf}
        FileClose $0
    ${EndIf}
!macroend
!macro RefuseFilesInUse
    !insertmacro RefuseFileInUse "Quorvane.dll"
    !insertmacro RefuseFileInUse "PengRobinson.dll"
    !insertmacro RefuseFileInUse "quorvane-sheet.exe"
!macroend

; RemoveCopies: takes back all that setup does. Files that setup did not bring stay, with their folders.
!macro CopyFunctions un
Function ${un}RemoveCopies
    !insertmacro Unregister "Quorvane.dll" "Quorvane.Excel.1"
    !insertmacro Unregister "PengRobinson.dll" "Tarnwick.PengRobinson.1"
    SetOutPath "$TEMP" ; the current folder cannot be removed
    !insertmacro RemoveFiles
    Delete "$INSTDIR\Uninstall.exe"
    RMDir "$INSTDIR"
    Delete "$SMPROGRAMS\Quorvane\Quorvane help.lnk"
    Delete "$SMPROGRAMS\Quorvane\Quorvane examples.lnk"
    RMDir "$SMPROGRAMS\Quorvane"
    DeleteRegKey HKCU "${APPS_KEY}"
FunctionEnd
!macroend
!insertmacro CopyFunctions ""
!insertmacro CopyFunctions "un."

; RemoveInstalled: runs the uninstaller of the installed version, whichever that is and wherever it lies, and waits for it;
; $0 is its exit code, 0 when nothing is installed.
Function RemoveInstalled
    StrCpy $0 0
    ReadRegStr $R1 HKCU "${APPS_KEY}" "InstallLocation"
    ${If} $R1 != ""
    ${AndIf} ${FileExists} "$R1\Uninstall.exe"
        ClearErrors
        ; With its folder named in this way, which allows no quotes, it works from where it is instead of from a copy that
        ; nobody can wait for.
        ExecWait '"$R1\Uninstall.exe" /S _?=$R1' $0
        ${If} ${Errors}
            StrCpy $0 2
        ${EndIf}
        ${If} $0 = 0
            Delete "$R1\Uninstall.exe"
            RMDir "$R1"
        ${EndIf}
    ${EndIf}
FunctionEnd
