@echo off
rem Takes back what register.cmd did for the current user. Exit codes: 0 done, 3 Excel is running, 5 a DLL could not be
rem unregistered.
rem Without "call" the exit code is that of the other script.
"%~dp0register.cmd" /u
