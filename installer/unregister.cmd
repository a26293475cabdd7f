@echo off
rem Takes back what register.cmd did for the current user. Exit codes: 0 done, 3 Excel is running, 5 a DLL could not be
rem unregistered.
setlocal
tasklist /fi "IMAGENAME eq EXCEL.EXE" /fi "USERNAME eq %USERNAME%" 2>nul | find "EXCEL.EXE" >nul
if not errorlevel 1 (
    echo Excel is running. Close it first: it writes its list of add-ins anew when it closes.
    exit /b 3
)
for %%F in (Quorvane.dll PengRobinson.dll) do (
    regsvr32 /u /s "%~dp0%%F"
    if errorlevel 1 (
        echo %%F could not be unregistered.
        exit /b 5
    )
)
echo Quorvane is no longer registered. Its files may be deleted.
exit /b 0
