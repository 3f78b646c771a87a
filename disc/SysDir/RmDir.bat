@echo off
rem Removes one folder with all that is in it: RmDir.bat "C:\Folder\to remove"
rem A link inside the folder is removed as a link; what it points to stays.
rem Nothing is removed when the folder is missing, not absolute, or the root of a drive or share.

setlocal EnableExtensions DisableDelayedExpansion
set "folder=%~1"
if not defined folder exit /b 1
if "%folder:~0,2%"=="\\" goto share
if not "%folder:~1,2%"==":\" exit /b 1

rem "C:\x\.." and "C:\\" are roots too, which only the full name shows.
set "folder=%~f1"
if "%folder:~3%"=="" exit /b 1
goto remove

:share
set "folder=%~f1"
set "inside="
for /f "tokens=3 delims=\" %%p in ("%folder%") do set "inside=%%p"
if not defined inside exit /b 1

:remove
if not exist "%folder%\" exit /b 0
rd /s /q "%folder%"
if exist "%folder%\" exit /b 1
exit /b 0
