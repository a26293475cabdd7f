; What setup has to know about Excel: whether it is running, and whether it is the 32-bit one.

; RefuseOther32BitExcel: ends when Excel is installed, and only as a 32-bit program, into which a 64-bit add-in cannot be
; loaded. Where none is found, setup goes on: the worksheet runner needs no Excel, and Excel may be installed later.
Var Excel32 ; how many were found
Var Excel64

; The program itself tells best. A path of the registry may stand in quotes.
Function CountExcel ; $0: file name of EXCEL.EXE, or empty
    StrCpy $1 $0 1
    ${If} $1 == '"'
        StrCpy $0 $0 -1 1
    ${EndIf}
    System::Call 'kernel32::GetBinaryTypeW(w r0, *i .r1) i .r2'
    ${If} $2 <> 0
        ${If} $1 = 6 ; SCS_64BIT_BINARY
            IntOp $Excel64 $Excel64 + 1
        ${ElseIf} $1 = 0 ; SCS_32BIT_BINARY
            IntOp $Excel32 $Excel32 + 1
        ${EndIf}
    ${EndIf}
FunctionEnd

!macro CountExcelOfVersion version
    ReadRegStr $0 HKLM "Software\Microsoft\Office\${version}\Excel\InstallRoot" "Path"
    ${If} $0 != ""
        StrCpy $0 "$0\EXCEL.EXE"
        Call CountExcel
    ${EndIf}
!macroend

Function RefuseOther32BitExcel
    StrCpy $Excel32 0
    StrCpy $Excel64 0
    ReadRegStr $0 HKCU "Software\Microsoft\Windows\CurrentVersion\App Paths\excel.exe" ""
    Call CountExcel
    ReadRegStr $0 HKLM "Software\Microsoft\Windows\CurrentVersion\App Paths\excel.exe" ""
    Call CountExcel
    !insertmacro CountExcelOfVersion "16.0"
    !insertmacro CountExcelOfVersion "15.0"
    !insertmacro CountExcelOfVersion "14.0"
    SetRegView 32
    !insertmacro CountExcelOfVersion "16.0"
    !insertmacro CountExcelOfVersion "15.0"
    !insertmacro CountExcelOfVersion "14.0"
    SetRegView 64
    ; Office that came over the network; its list of products does not tell whether Excel is among them.
    ReadRegStr $0 HKLM "Software\Microsoft\Office\ClickToRun\Configuration" "InstallationPath"
    StrCpy $0 "$0\root\Office16\EXCEL.EXE"
    Call CountExcel
    ${If} $Excel32 <> 0
    ${AndIf} $Excel64 = 0
        ${End} ${CODE_EXCEL_32_BIT} "The Excel on this computer is the 32-bit edition. Quorvane is a 64-bit add-in and needs the \
            64-bit edition of Excel: File > Account > About Excel shows which one it is.$\r$\n$\r$\nNothing was installed."
    ${EndIf}
FunctionEnd

; ExcelRuns: sets $0 to "yes" when an Excel of this session is running, with or without a window.
!macro ExcelFunctions un
Function ${un}ExcelRuns
    StrCpy $0 no
    FindWindow $1 "XLMAIN"
    ${If} $1 <> 0
        StrCpy $0 yes
        Return
    ${EndIf}
    System::Call 'kernel32::GetCurrentProcessId() i .r1'
    System::Call 'kernel32::ProcessIdToSessionId(i r1, *i .r7)'
    System::Call 'kernel32::CreateToolhelp32Snapshot(i 2, i 0) p .r1' ; TH32CS_SNAPPROCESS
    ${If} $1 P= -1
        Return
    ${EndIf}
    ; PROCESSENTRY32W: its process at byte 8, its program's name at byte 44, 568 bytes in all
    System::Call '*(i 568, &v564) p .r2'
    System::Call 'kernel32::Process32FirstW(p r1, p r2) i .r3'
    ${While} $3 <> 0
        System::Call '*$2(i, i, i .r4, i, p, i, i, i, i, i, &w260 .r5)'
        ${If} $5 == "EXCEL.EXE"
            System::Call 'kernel32::ProcessIdToSessionId(i r4, *i .r6)'
            ${If} $6 = $7
                StrCpy $0 yes
            ${EndIf}
        ${EndIf}
        System::Call 'kernel32::Process32NextW(p r1, p r2) i .r3'
    ${EndWhile}
    System::Free $2
    System::Call 'kernel32::CloseHandle(p r1)'
FunctionEnd

; WaitForExcel: lets the user close Excel, or ends.
Function ${un}WaitForExcel
    again:
    Call ${un}ExcelRuns
    ${If} $0 == yes
        MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "Excel is running. When it closes it writes its list of add-ins anew, \
            and would undo what is changed now.$\r$\n$\r$\nSave your work, close Excel, and choose Retry." \
            /SD IDCANCEL IDRETRY again
        SetErrorLevel ${CODE_EXCEL_RUNS}
        Quit
    ${EndIf}
FunctionEnd
!macroend
!insertmacro ExcelFunctions ""
!insertmacro ExcelFunctions "un."
