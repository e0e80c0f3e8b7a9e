#pragma once
// The platform's asynchronous question of a file's enterprise protection: the
// StorageFile of the path, then the FileProtectionManager's protection info of
// it, each step continued by a completion handler on the platform's threads.
// Every failed step answers the info as failed, so its waiter always wakes.
// The runtime's functions are found at run time: systems before them, and
// Wine, fail at the first step.
#include "engine/win32/WindowsApi.h"

namespace SASM {

class BrokerFileProtectionInfo;

class Win32FileProtectionQuery {
 public:
  static constexpr const wchar_t* kStorageFileClass = L"Windows.Storage.StorageFile";
  static constexpr const wchar_t* kFileProtectionManagerClass =
      L"Windows.Security.EnterpriseData.FileProtectionManager";

  // Runs on the worker thread, which joins the multithreaded apartment on
  // first use and stays in it while answers may still be on their way.
  static void Start(const wchar_t* path, BrokerFileProtectionInfo& info);
};

}  // namespace SASM
