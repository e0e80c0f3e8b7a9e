#pragma once
// The one way Win32 code includes the Windows headers. The API's A/W name
// macros would rename the seams' own members (LoadString, CreateDirectory...),
// so they are undone here; Win32 code calls the W functions by their full names.
#include <windows.h>

#undef LoadString
#undef CreateDirectory
#undef RemoveDirectory
#undef GetTempPath
#undef GetSystemDirectory
#undef GetSystemWow64Directory
#undef ShellExecute
#undef GetFullPathName
#undef GetLongPathName
#undef DeleteFile
#undef MoveFileEx
#undef CopyFile
#undef ReplaceFile
#undef FindFirstFile
#undef FindNextFile
#undef GetFileAttributes
#undef SetFileAttributes
#undef GetFileAttributesEx
#undef ReportEvent
#undef CreateFile
#undef CharUpperBuff
#undef DispatchMessage  // ILcdAccessor::DispatchMessage; the message pump calls DispatchMessageW
#undef OpenService  // IServiceManager::OpenService; Win32 code calls OpenServiceW
