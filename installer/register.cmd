@echo off
rem Registers Quorvane and its property package for the current user, from the folder that this file lies in. Run it again
rem after the folder was moved or its files were replaced. Exit codes: 0 done, 3 Excel is running, 4 Excel is the 32-bit
rem edition, 5 a DLL could not be registered, and none is.
setlocal
tasklist /fi "IMAGENAME eq EXCEL.EXE" /fi "USERNAME eq %USERNAME%" 2>nul | find "EXCEL.EXE" >nul
if not errorlevel 1 (
    echo Excel is running. Close it first: it writes its list of add-ins anew when it closes.
    exit /b 3
)
reg query HKLM\Software\Microsoft\Office\ClickToRun\Configuration /v Platform 2>nul | find "x86" >nul
if not errorlevel 1 (
    echo Excel is the 32-bit edition. Quorvane is a 64-bit add-in and needs the 64-bit edition of Excel.
    exit /b 4
)
for %%F in (Quorvane.dll PengRobinson.dll) do (
    regsvr32 /s "%~dp0%%F"
    if errorlevel 1 (
        echo %%F could not be registered.
        for %%G in (Quorvane.dll PengRobinson.dll) do regsvr32 /u /s "%~dp0%%G"
        exit /b 5
    )
)
echo Quorvane is registered. Excel opens it at its next start.
exit /b 0
