; The setup program: installs for one user, without an administrator. installer/make_setup calls the compiler with
;   VERSION   the product's version, as 1.2.3
;   LISTS     a script that lists the files: the macros InstallFiles, EachFile and EachFolder
;   STAGE     the folder that the files lie in
;   OUTPUT    the setup program to be made
;   SIZE      of the installed files in KB
; Exit codes are part of the product: docs/installing.md lists them, and administrators' scripts rely on them.

Unicode true
Target amd64-unicode ; the DLLs register themselves in this process
ManifestSupportedOS all
ManifestDPIAware true
RequestExecutionLevel user
SetCompressor /SOLID zlib

!include LogicLib.nsh
!include FileFunc.nsh
!include MUI2.nsh
!include "${LISTS}"

Var Unpacked ; the folder in $INSTDIR where the files wait until the older version has gone

!define APPS_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\Quorvane"

!define CODE_EXCEL_RUNS 3
!define CODE_EXCEL_32_BIT 4
!define CODE_NOT_REGISTERED 5
!define CODE_FILE_IN_USE 6
!define CODE_OLDER_VERSION_STAYS 7
!define CODE_INCOMPLETE 8
!define CODE_OTHERS_FOLDER 9

Name "Quorvane"
OutFile "${OUTPUT}"
InstallDir "$LOCALAPPDATA\Programs\Quorvane"
InstallDirRegKey HKCU "${APPS_KEY}" "InstallLocation"
BrandingText "Quorvane ${VERSION}"
ShowInstDetails nevershow
ShowUninstDetails nevershow

VIProductVersion "${VERSION}.0"
VIFileVersion "${VERSION}.0"
VIAddVersionKey "CompanyName" "Tarnwick"
VIAddVersionKey "FileDescription" "Quorvane setup"
VIAddVersionKey "FileVersion" "${VERSION}"
VIAddVersionKey "LegalCopyright" "${COPYRIGHT}. ${LICENCE}."
VIAddVersionKey "ProductName" "Quorvane"
VIAddVersionKey "ProductVersion" "${VERSION}"

!define MUI_ABORTWARNING
!insertmacro MUI_PAGE_LICENSE "${STAGE}/LICENSE.txt"
!define MUI_PAGE_CUSTOMFUNCTION_LEAVE StayAtOthersFolder
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!define MUI_FINISHPAGE_TEXT "Excel opens Quorvane at its next start. The help tells how to calculate your first flash."
!define MUI_FINISHPAGE_SHOWREADME "$INSTDIR\Quorvane.chm"
!define MUI_FINISHPAGE_SHOWREADME_TEXT "Show the help"
!define MUI_FINISHPAGE_SHOWREADME_NOTCHECKED
!define MUI_FINISHPAGE_NOREBOOTSUPPORT
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

; End CODE TEXT: says why nothing more is done, and ends. Silent setups say it with the code alone.
!macro End code text
    MessageBox MB_OK|MB_ICONSTOP "${text}" /SD IDOK
    SetErrorLevel ${code}
    Quit
!macroend
!define End "!insertmacro End"

!include "${SCRIPTS}/excel.nsh"
!include "${SCRIPTS}/copies.nsh"

Function .onInit
    SetShellVarContext current
    ${GetParameters} $0
    ClearErrors
    ${GetOptions} $0 "/uninstall" $1
    ${IfNot} ${Errors}
        SetSilent silent
        ReadRegStr $R1 HKCU "${APPS_KEY}" "InstallLocation"
        ${If} $R1 != ""
        ${AndIfNot} ${FileExists} "$R1\Uninstall.exe"
            Call RemoveRemains
        ${Else}
            Call RemoveInstalled
        ${EndIf}
        SetErrorLevel $0
        Quit
    ${EndIf}
    Call RefuseOther32BitExcel
    Call WaitForExcel
FunctionEnd

!define OTHERS_FOLDER "$INSTDIR has files that are not those of Quorvane. Choose an empty folder, or a new one."

; A person may name another folder at once.
Function StayAtOthersFolder
    Call FolderIsOthers
    ${If} $0 == yes
        MessageBox MB_OK|MB_ICONEXCLAMATION "${OTHERS_FOLDER}"
        Abort
    ${EndIf}
FunctionEnd

; An older version goes only when all that can fail has been done: the files are unpacked, and the DLLs can be registered from
; this folder.
Section
    Call WaitForExcel ; it may have been started since the first page
    Call FolderIsOthers
    ${If} $0 == yes
        ${End} ${CODE_OTHERS_FOLDER} "${OTHERS_FOLDER}"
    ${EndIf}
    StrCpy $R0 $INSTDIR
    Call RefuseFilesInUse
    ReadRegStr $R0 HKCU "${APPS_KEY}" "InstallLocation"
    ${If} $R0 != ""
        Call RefuseFilesInUse
    ${EndIf}

    StrCpy $Unpacked "$INSTDIR\~new"
    RMDir /r $Unpacked ; of a setup that was interrupted
    ClearErrors
    SetOverwrite try
    !insertmacro InstallFiles
    WriteUninstaller "$Unpacked\Uninstall.exe"
    ${If} ${Errors}
        Call RemoveUnpacked
        ${End} ${CODE_FILE_IN_USE} "The files could not be written to $INSTDIR. Choose another folder, or free some space.\
            $\r$\n$\r$\nNothing was changed."
    ${EndIf}

    Call RememberRegistered
    StrCpy $R0 $Unpacked
    Call RegisterCopies
    ${If} $0 != ok
        Call RestoreRegistered
        Call RemoveUnpacked
        ${End} ${CODE_NOT_REGISTERED} "Quorvane could not be registered from $INSTDIR. \
            If the folder's name has letters of another language than that of Windows, choose another folder.\
            $\r$\n$\r$\nNothing was changed."
    ${EndIf}

    Call RemoveInstalled
    ${If} $0 <> 0
        StrCpy $R3 $0
        Call RestoreRegistered
        Call RemoveUnpacked
        ${End} ${CODE_OLDER_VERSION_STAYS} "The installed version of Quorvane could not be removed (code $R3). \
            Remove it in the Apps settings of Windows, then run this setup again."
    ${EndIf}

    ClearErrors
    !insertmacro EachFolder MakeFolder
    !insertmacro EachFile MoveFile
    !insertmacro MoveFile "Uninstall.exe"
    StrCpy $0 failed
    ${IfNot} ${Errors}
        StrCpy $R0 $INSTDIR
        Call RegisterCopies
    ${EndIf}
    ${If} $0 != ok
        StrCpy $R0 $Unpacked
        Call RemoveCopies
        Call RemoveUnpacked
        ${End} ${CODE_INCOMPLETE} "The files could not be put in place in $INSTDIR. Run this setup again, or choose another folder."
    ${EndIf}
    Call RemoveUnpacked

    SetOutPath "$INSTDIR" ; the folder that the entries start in
    CreateDirectory "$SMPROGRAMS\Quorvane"
    CreateShortcut "$SMPROGRAMS\Quorvane\Quorvane help.lnk" "$INSTDIR\Quorvane.chm"
    CreateShortcut "$SMPROGRAMS\Quorvane\Quorvane examples.lnk" "$INSTDIR\examples"
    WriteRegStr HKCU "${APPS_KEY}" "DisplayName" "Quorvane"
    WriteRegStr HKCU "${APPS_KEY}" "DisplayVersion" "${VERSION}"
    WriteRegStr HKCU "${APPS_KEY}" "Publisher" "Tarnwick"
    WriteRegStr HKCU "${APPS_KEY}" "DisplayIcon" "$INSTDIR\Uninstall.exe"
    WriteRegStr HKCU "${APPS_KEY}" "InstallLocation" "$INSTDIR"
    WriteRegStr HKCU "${APPS_KEY}" "UninstallString" '"$INSTDIR\Uninstall.exe"'
    WriteRegStr HKCU "${APPS_KEY}" "QuietUninstallString" '"$INSTDIR\Uninstall.exe" /S'
    WriteRegDWORD HKCU "${APPS_KEY}" "EstimatedSize" ${SIZE}
    WriteRegDWORD HKCU "${APPS_KEY}" "NoModify" 1
    WriteRegDWORD HKCU "${APPS_KEY}" "NoRepair" 1
SectionEnd

Function un.onInit
    SetShellVarContext current
    Call un.WaitForExcel
FunctionEnd

Section Uninstall
    Call un.WaitForExcel
    StrCpy $R0 $INSTDIR
    Call un.RefuseFilesInUse
    Call un.RemoveCopies
    ${If} $0 != ""
        ${End} ${CODE_INCOMPLETE} "$0 could not be removed. Quorvane stays in the list of apps: remove it again from there."
    ${EndIf}
SectionEnd
