@echo off
rem Registers Quorvane and its property package for the current user, from the folder that this file lies in. Run it again
rem after the folder was moved or its files were replaced. Exit codes: 0 done, 3 Excel is running, 4 Excel is the 32-bit
rem edition, 5 a DLL could not be registered, and what was registered before still is.
rem With /u it takes that back, unless another folder's DLL is registered: unregister.cmd calls it so.
setlocal DisableDelayedExpansion

rem A 32-bit program that starts this has the 32-bit tools, which register elsewhere.
if not defined PROCESSOR_ARCHITEW6432 goto native
set PROCESSOR_ARCHITEW6432=
"%SystemRoot%\Sysnative\cmd.exe" /d /c ""%~f0" %1"
exit /b %errorlevel%

:native
set "tools=%SystemRoot%\System32"
"%tools%\tasklist.exe" /fi "IMAGENAME eq EXCEL.EXE" /fi "USERNAME eq %USERNAME%" 2>nul | "%tools%\find.exe" "EXCEL.EXE" >nul
if not errorlevel 1 (
    echo Excel is running. Close it first: it writes its list of add-ins anew when it closes.
    exit /b 3
)
if "%~1"=="/u" goto unregister

call :value office HKLM\Software\Microsoft\Office\ClickToRun\Configuration "/v InstallationPath"
call :value platform HKLM\Software\Microsoft\Office\ClickToRun\Configuration "/v Platform"
if "%platform%"=="x86" if exist "%office%\root\Office16\EXCEL.EXE" (
    echo Excel is the 32-bit edition. Quorvane is a 64-bit add-in and needs the 64-bit edition of Excel.
    exit /b 4
)
call :registered earlierAddIn Quorvane.Excel.1
call :registered earlierPackage Tarnwick.PengRobinson.1
call :register Quorvane.dll Quorvane.Excel.1
if not errorlevel 1 call :register PengRobinson.dll Tarnwick.PengRobinson.1
if errorlevel 1 (
    call :restore Quorvane.dll "%earlierAddIn%"
    call :restore PengRobinson.dll "%earlierPackage%"
    exit /b 5
)
echo Quorvane is registered. Excel opens it at its next start.
exit /b 0

:unregister
call :remove Quorvane.dll Quorvane.Excel.1
if not errorlevel 1 call :remove PengRobinson.dll Tarnwick.PengRobinson.1
if errorlevel 1 exit /b 5
echo Quorvane is not registered from this folder any more. Its files may be deleted.
exit /b 0

rem :register DLL PROGID. A DLL may not be able to write down the name of its folder: letters that this Windows cannot write
rem become question marks.
:register
"%tools%\regsvr32.exe" /s "%~dp0%1"
if errorlevel 1 goto notRegistered
call :registered now %2
call :own %1
if /i not "%now%"=="%own%" goto notRegistered
if not "%now:?=%"=="%now%" goto notRegistered
exit /b 0
:notRegistered
echo %1 could not be registered.
exit /b 1

rem :restore DLL EARLIER
:restore
if "%~2"=="" goto takeBack
"%tools%\regsvr32.exe" /s %2
if not errorlevel 1 exit /b 0
:takeBack
"%tools%\regsvr32.exe" /u /s "%~dp0%1"
exit /b

rem :remove DLL PROGID
:remove
call :registered now %2
call :own %1
if /i "%now%"=="%own%" goto removeOwn
if not exist "%now%" goto removeOwn
echo "%now%" is registered, and stays so.
exit /b 0
:removeOwn
"%tools%\regsvr32.exe" /u /s "%~dp0%1"
if not errorlevel 1 exit /b 0
echo %1 could not be unregistered.
exit /b 1

rem :own DLL: its path, with the letters that the output of programs has.
:own
for /f "delims=" %%P in ('echo "%~dp0%1"') do set "own=%%~P"
exit /b

rem :registered VARIABLE PROGID: the path of the DLL that COM loads, or nothing.
:registered
set "%1="
call :value class HKCU\Software\Classes\%2\CLSID /ve
if defined class call :value %1 HKCU\Software\Classes\CLSID\%class%\InprocServer32 /ve
exit /b

rem :value VARIABLE KEY "/ve or /v NAME": the text of that value, or nothing. It stands in the last line.
:value
set "%1="
set line=
for /f "delims=" %%L in ('%tools%\reg.exe query %2 %~3 2^>nul') do set "line=%%L"
if not defined line exit /b
set "text=%line:*REG_SZ    =%"
if not "%text%"=="%line%" set "%1=%text%"
exit /b
