; The copies on this computer: registering, moving and removing them, and telling when that cannot be done.

; ReadRegistered PROGID: $1 is the path of the DLL that COM loads for it, or empty.
!macro ReadRegistered progId
    ReadRegStr $1 HKCU "Software\Classes\${progId}\CLSID" ""
    ${If} $1 != ""
        ReadRegStr $1 HKCU "Software\Classes\CLSID\$1\InprocServer32" ""
    ${EndIf}
!macroend

; Register DLL PROGID: lets the DLL in $R0 enter itself, and sets $0 to "ok" when COM will find it for the ProgID. The path in
; the registry is compared because a DLL may not be able to write down the name of its folder.
!macro Register dll progId
    StrCpy $0 failed
    ClearErrors
    RegDLL "$R0\${dll}"
    ${IfNot} ${Errors}
        !insertmacro ReadRegistered ${progId}
        ${If} $1 == "$R0\${dll}"
            StrCpy $0 ok
        ${EndIf}
    ${EndIf}
!macroend

; RegisterCopies: those in $R0; $0 is "ok" when both are registered.
Function RegisterCopies
    !insertmacro Register "Quorvane.dll" "Quorvane.Excel.1"
    ${If} $0 == ok
        !insertmacro Register "PengRobinson.dll" "Tarnwick.PengRobinson.1"
    ${EndIf}
FunctionEnd

; Whatever is registered when setup begins is registered again when setup gives up.
Var RegisteredAddIn
Var RegisteredPackage
Function RememberRegistered
    !insertmacro ReadRegistered "Quorvane.Excel.1"
    StrCpy $RegisteredAddIn $1
    !insertmacro ReadRegistered "Tarnwick.PengRobinson.1"
    StrCpy $RegisteredPackage $1
FunctionEnd

!macro Restore dll path
    ClearErrors
    RegDLL "${path}"
    ${If} ${Errors}
        UnRegDLL "$Unpacked\${dll}"
    ${EndIf}
!macroend
Function RestoreRegistered
    !insertmacro Restore "Quorvane.dll" $RegisteredAddIn
    !insertmacro Restore "PengRobinson.dll" $RegisteredPackage
FunctionEnd

; The files that wait for their place, and the folder when there is nothing else in it.
Function RemoveUnpacked
    SetOutPath "$TEMP" ; the current folder cannot be removed
    RMDir /r $Unpacked
    RMDir $INSTDIR
FunctionEnd

!macro MakeFolder folder
    CreateDirectory "$INSTDIR\${folder}"
!macroend
!macro MoveFile file
    ${If} ${FileExists} "$INSTDIR\${file}"
        Delete "$INSTDIR\${file}"
    ${EndIf}
    Rename "$Unpacked\${file}" "$INSTDIR\${file}"
!macroend

; FolderIsOthers: $0 is "yes" when files of somebody else lie in $INSTDIR, which must neither be overwritten now nor be removed
; together with Quorvane. In a folder of Quorvane's name may lie what a user had added to an earlier version.
!macro NoteFile file
    ${If} ${FileExists} "$INSTDIR\${file}"
        StrCpy $0 yes
    ${EndIf}
!macroend
Function FolderIsOthers
    StrCpy $0 no
    ReadRegStr $1 HKCU "${APPS_KEY}" "InstallLocation"
    ${If} $1 == $INSTDIR
    ${OrIf} ${FileExists} "$INSTDIR\Quorvane.dll"
        Return
    ${EndIf}
    ${GetFileName} $INSTDIR $1
    ${If} $1 == "Quorvane"
        !insertmacro EachFile NoteFile
    ${Else}
        ${DirState} $INSTDIR $1
        ${If} $1 = 1
            StrCpy $0 yes
        ${EndIf}
    ${EndIf}
FunctionEnd

; Unregister DLL PROGID: the DLL in $R0, but not when another copy, which stays, is the one that is registered.
!macro Unregister dll progId
    !insertmacro ReadRegistered ${progId}
    ${If} $1 == "$INSTDIR\${dll}"
    ${OrIf} $1 == "$R0\${dll}"
    ${OrIfNot} ${FileExists} $1
        UnRegDLL "$R0\${dll}"
    ${EndIf}
!macroend

!macro NoteFileInUse file
    StrCpy $0 "$R0\${file}"
    Call ${PREFIX}NoteFileInUse
!macroend
!macro RemoveFile file
    Delete "$INSTDIR\${file}"
    ${If} ${FileExists} "$INSTDIR\${file}"
        StrCpy $0 "$INSTDIR\${file}"
    ${EndIf}
!macroend
!macro RemoveFolder folder
    RMDir "$INSTDIR\${folder}"
!macroend

!macro CopyFunctions un
!define PREFIX "${un}"

; $R2 is the file $0 when a program has it open so that it can be neither replaced nor removed. A file that may only be read
; cannot be opened for writing, and one that is run can be opened for removing: so both are tried.
Function ${un}NoteFileInUse
    System::Call 'kernel32::CreateFileW(w r0, i 0x40000000, i 7, p 0, i 3, i 0, p 0) p .r1 ?e' ; GENERIC_WRITE
    Pop $2
    System::Call 'kernel32::CloseHandle(p r1)'
    System::Call 'kernel32::CreateFileW(w r0, i 0x10000, i 7, p 0, i 3, i 0, p 0) p .r1 ?e' ; DELETE
    Pop $3
    System::Call 'kernel32::CloseHandle(p r1)'
    ${If} $2 = 32 ; ERROR_SHARING_VIOLATION
    ${OrIf} $3 = 32
        StrCpy $R2 $0
    ${EndIf}
FunctionEnd

; RefuseFilesInUse: ends before anything is changed when a program has one of the files in $R0 open.
Function ${un}RefuseFilesInUse
    StrCpy $R2 ""
    !insertmacro EachFile NoteFileInUse
    ${If} $R2 != ""
        ${End} ${CODE_FILE_IN_USE} "$R2 is in use. Close the help and the programs that work with Quorvane or with its \
            property package, then try again."
    ${EndIf}
FunctionEnd

; RemoveCopies: takes back all that setup does; the DLLs in $R0 unregister themselves. Files that setup did not bring stay, with
; their folders. When one of the others stays, $0 is its name, and the entry in the list of apps stays with it; otherwise it is
; empty.
Function ${un}RemoveCopies
    !insertmacro Unregister "Quorvane.dll" "Quorvane.Excel.1"
    !insertmacro Unregister "PengRobinson.dll" "Tarnwick.PengRobinson.1"
    SetOutPath "$TEMP" ; the current folder cannot be removed
    StrCpy $0 ""
    !insertmacro EachFile RemoveFile
    !insertmacro EachFolder RemoveFolder
    ${If} $0 != ""
        Return
    ${EndIf}
    Delete "$INSTDIR\Uninstall.exe"
    RMDir "$INSTDIR"
    Delete "$SMPROGRAMS\Quorvane\Quorvane help.lnk"
    Delete "$SMPROGRAMS\Quorvane\Quorvane examples.lnk"
    RMDir "$SMPROGRAMS\Quorvane"
    DeleteRegKey HKCU "${APPS_KEY}"
FunctionEnd
!undef PREFIX
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

; RemoveRemains: when somebody has deleted the folder $R1 or its uninstaller, this version's DLLs take the classes back.
; $0 is the exit code.
Function RemoveRemains
    Call WaitForExcel
    StrCpy $INSTDIR $R1
    StrCpy $R0 $INSTDIR
    Call RefuseFilesInUse
    InitPluginsDir
    File "/oname=$PLUGINSDIR\Quorvane.dll" "${STAGE}/Quorvane.dll"
    File "/oname=$PLUGINSDIR\PengRobinson.dll" "${STAGE}/PengRobinson.dll"
    StrCpy $R0 $PLUGINSDIR
    Call RemoveCopies
    ${If} $0 == ""
        StrCpy $0 0
    ${Else}
        StrCpy $0 ${CODE_INCOMPLETE}
    ${EndIf}
FunctionEnd
